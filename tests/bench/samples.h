// The records of the largest configuration, as the adapter with records gives them and as the printing
// workload prints them.
#pragma once

#include "adapter/event.h"
#include "adapter/logdrv.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"

// A drive of 16 extents; each array has an extent on two neighbouring drives.
PhyDrvInfo sampleDrive(int id);
PhyDrvSettings sampleDriveSettings(int id);

// An array of the drives 2 id and 2 id + 1, counted through all drives again and again.
LogDrvInfo sampleLogDrv(int id);
LogDrvSettings sampleLogDrvSettings(int id);

// The extents of an array, the same one of each drive, as exports show them.
const char* sampleExtents(int logDrv);

// The members of an array as listings show them.
const char* sampleMembers(int logDrv);

inline constexpr int kSampleEvents = 51;
HBAEvent sampleEvent(int id);
