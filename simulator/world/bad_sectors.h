// The unreadable sectors of a drive.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// Adds bad sectors, as far as they are on the drive and the list has room. Returns how many are new.
std::uint64_t addBadSectors(Drive& drive, std::uint64_t start, std::uint64_t count);

// Adds count bad sectors in places spread evenly over the drive.
void spreadBadSectors(Drive& drive, std::uint64_t count);

// Counts the bad sectors from start to start + size, or all of them.
std::uint64_t countBadSectors(const Drive& drive, std::uint64_t start, std::uint64_t size);
std::uint64_t countBadSectors(const Drive& drive);

// Removes them; returns their number.
std::uint64_t repairBadSectors(Drive& drive, std::uint64_t start, std::uint64_t size);

} // namespace q5sim
