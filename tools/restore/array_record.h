// The record from which a logical drive is created again.
#pragma once

#include "config/logdrv_block.h"
#include "snapshot/snapshot.h"

// The saved logical drive as import would read it, without members.
LogDrvConfigRecord recordOf(std::uint32_t controller, const LogicalDrive& saved);

// Whether the command creates from the record what was saved.
bool isCreatable(const LogicalDrive& saved, const LogDrvConfigRecord& record);

// Whether the saved logical drive is a JBOD that does not use all of its extents, of this total size, because
// it was rounded down to whole GB. A JBOD is created without a size, and its rounding is not saved.
bool isRoundedJbod(const LogicalDrive& saved, std::uint64_t size);
