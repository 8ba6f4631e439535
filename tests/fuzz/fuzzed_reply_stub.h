// The input from which the stub adapter takes its replies.
#pragma once

#include "tests/fuzz/bytes.h"

extern Bytes fuzzedReplies;
