// The bytes that an adapter answers from which is out of its mind.
#pragma once

#include "tests/fuzz/bytes.h"

extern Bytes randomReplies;
