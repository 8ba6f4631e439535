// The outcome of activities that have ended.
#pragma once

#include "tools/wait/watch.h"

// Checks the objects whose activities have ended or, if there are none, all selected logical drives. Appends
// messages about them. Returns finished or notOnline.
WaitStatus conclude(Watch* watch, const View& view);
