// Looking one logical drive up, as nearly every command on logical drives does first.
#pragma once

#include "adapter/logdrv.h"

// Reads the drive's record; false when the adapter knows none by that ID.
bool findLogDrv(std::uint32_t controller, std::uint32_t logDrvId, LogDrvInfo* drive);
