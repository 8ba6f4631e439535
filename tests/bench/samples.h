// The records of the largest configuration, shared by the record stub and the printf baseline.
#pragma once

#include "adapter/event.h"
#include "adapter/logdrv.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"

// A drive of 16 extents; each array has an extent on two neighboring drives.
PhyDrvInfo sampleDrive(int id);
PhyDrvSettings sampleDriveSettings(int id);

// An array of the drives 2 id and 2 id + 1, modulo the number of drives.
LogDrvInfo sampleLogDrv(int id);
LogDrvSettings sampleLogDrvSettings(int id);

// The extents of an array as exports show them: the same index on each drive.
const char* sampleExtents(int logDrv);

// The members of an array as listings show them.
const char* sampleMembers(int logDrv);

inline constexpr int kSampleEvents = 51;
HBAEvent sampleEvent(int id);
