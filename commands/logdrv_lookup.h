// Looks up one logical drive, the first step of nearly every command on logical drives.
#pragma once

#include "adapter/logdrv.h"

// Reads the drive's record. Returns false if there is no drive with that ID.
bool findLogDrv(std::uint32_t controller, std::uint32_t logDrvId, LogDrvInfo* drive);
