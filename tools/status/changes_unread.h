// What could not be read now is taken from an earlier snapshot of the same adapters.
#pragma once

#include "snapshot/snapshot.h"

// Completes the present snapshot with the last known state of the lists and records that the adapters
// refused to report. The faults stay.
void keepUnread(const Snapshot& earlier, Snapshot* now);

// Adds the controllers of which the present snapshot has nothing, because they were not to be read.
void keepOtherControllers(const Snapshot& earlier, Snapshot* now);
