// Bad sectors: what patrols, checks, rebuilds and migrations find and repair.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// When the array's rebuild or migration reaches its next bad sector; kNoDeadline: no bad sector is left.
std::int64_t nextBadSectorTime(const Controller& controller, const LogicalDrive& array);

// Handles the bad sectors that the rebuild or migration has reached at this time: repairs them, skips
// them or aborts.
void handleBadSectors(Controller& controller, LogicalDrive& array, std::int64_t at);

// Repairs the bad sectors in the drive's member extents that the arrays can reconstruct. Returns their
// number.
std::uint64_t repairDrive(Controller& controller, Drive& drive);

struct CheckedSectors {
    std::uint64_t found = 0;
    std::uint64_t repaired = 0;
};

// Counts the bad sectors in all members of the array, and repairs those that can be reconstructed on request.
CheckedSectors checkMembers(Controller& controller, const LogicalDrive& array, bool repair);

} // namespace q5sim
