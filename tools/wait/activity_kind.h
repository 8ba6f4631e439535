// What can be waited for: the activities of logical drives, and media patrol of drives.
#pragma once

#include "adapter/logdrv.h"

inline constexpr unsigned kMediaPatrol = 32; // in addition to the bits of ActivityBit
inline constexpr unsigned kAllKinds = kAnyActivity | kMediaPatrol;
