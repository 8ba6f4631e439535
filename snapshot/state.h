// The state of a logical drive, as users see it.
#pragma once

#include "snapshot/snapshot.h"

enum class ArrayState { online, degraded, critical, offline };

// The worst of the reported states counts; no state at all is offline.
ArrayState arrayState(const LogicalDrive& drive);
const char* arrayStateText(ArrayState state);

inline bool isPaused(const Activity& activity) {
    return activity.state == kActivityPaused;
}
