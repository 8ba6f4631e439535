// What became of the objects whose activities are over.
#pragma once

#include "tools/wait/watch.h"

// Adds what there is to say to the messages. Without an activity that ended, all selected logical drives
// are looked at.
Verdict conclude(Watch* watch, const View& view);
