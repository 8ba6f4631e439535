// What could not be read now is taken from an earlier snapshot of the same adapters.
#pragma once

#include "snapshot/snapshot.h"

// Completes the present snapshot with the last known state of the lists and records that the adapters
// refused to report. The faults stay.
void keepUnread(const Snapshot& earlier, Snapshot* now);

// The state to keep for the next run: the completed present one, with the controllers that were not read
// because another one was chosen. A list that was complete counts as complete, so that an object that it
// lacks now is new when it is listed. If the library finds no controller, the earlier ones stay, although
// they are not counted: when they are back, they are compared with their last state.
Snapshot stateToKeep(const Snapshot& earlier, const Snapshot& now, std::optional<std::uint32_t> chosen);
