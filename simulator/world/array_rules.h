// Rules of the RAID levels: valid geometries, capacity and redundancy. Nothing here changes a world.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// The geometry of an existing or requested array.
struct ArrayGeometry {
    std::uint8_t level = 0;
    std::size_t members = 0;
    std::uint8_t parity = 0;    // RAIDMF
    std::uint8_t subArrays = 0; // RAID50
};
ArrayGeometry geometryOf(const LogicalDrive& drive);

// "RAID5"; "unknown RAID level"
const char* levelName(std::uint8_t level);

// Whether the level allows these members, parity and subarrays.
bool isValidGeometry(const ArrayGeometry& geometry);

// How many members' worth of space holds data; 0: the geometry is invalid.
std::size_t dataMembers(const ArrayGeometry& geometry);

// Whether the level survives the loss of a member.
bool isRedundant(std::uint8_t level);

// Whether the adapters accept a stripe size, in KB.
bool isValidStripe(std::uint32_t stripe);

// Whether the member at this position contributes to the array: its drive works and holds an extent of
// the array. The target of a running rebuild does not contribute yet.
bool isWorkingMember(const Controller& controller, const LogicalDrive& drive, std::size_t position);

// Whether the drive is a member that missed writes.
bool isStaleMember(const LogicalDrive& array, std::uint32_t drive);

// Whether the other members can reconstruct data that is unreadable at this position.
bool canReconstruct(const Controller& controller, const LogicalDrive& array, std::size_t position);

// Whether the running rebuild reads the member at this position.
bool isReadForRebuild(const LogicalDrive& array, std::size_t position);

// Positions of lost members, ascending.
std::vector<std::size_t> lostMembers(const Controller& controller, const LogicalDrive& drive);

// The FunctionalBit that follows from the array's drives; 0: offline. Degraded while some redundancy
// is left, critical when none is.
std::uint8_t functionalStatus(const Controller& controller, const LogicalDrive& drive);

// "online". status: as functionalStatus() returns it.
const char* statusName(std::uint8_t status);

// The adapters' record of an extent, with the bits that follow from its drive and its array.
ExtentEntry extentEntry(const Controller& controller, const Drive& drive, std::size_t index);

} // namespace q5sim
