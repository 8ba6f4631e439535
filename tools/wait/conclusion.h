// The outcome of activities that have ended.
#pragma once

#include "tools/wait/watch.h"

// Appends the messages. If no activity has ended, all selected logical drives are checked.
WaitStatus conclude(Watch* watch, const View& view);
