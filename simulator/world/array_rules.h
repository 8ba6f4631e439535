// What the RAID levels demand and survive. Nothing here changes a world.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// The shape of an array, existing or wanted.
struct ArrayGeometry {
    std::uint8_t level = 0;
    std::size_t members = 0;
    std::uint8_t parity = 0;    // RAIDMF
    std::uint8_t subArrays = 0; // RAID50
};
ArrayGeometry geometryOf(const LogicalDrive& drive);

const char* levelName(std::uint8_t level);

// Whether an array of this level can have so many members.
bool shapeIsPossible(const ArrayGeometry& shape);

// How many members' worth of space holds data; 0 of an impossible shape.
std::size_t dataMembers(const ArrayGeometry& shape);

bool isRedundant(std::uint8_t level);

// Stripe sizes that an adapter takes, in KB.
bool stripeIsPossible(std::uint32_t stripe);

// Whether the member at this position gives its share to the array. The target of a running rebuild
// does not yet.
bool memberIsPresent(const Controller& controller, const LogicalDrive& drive, std::size_t position);

// Positions of lost members, ascending.
std::vector<std::size_t> lostMembers(const Controller& controller, const LogicalDrive& drive);

// The FunctionalBit of an array as its drives are now; 0: offline. Degraded while some redundancy is
// left, critical when none is.
std::uint8_t functionalStatus(const Controller& controller, const LogicalDrive& drive);
const char* statusName(std::uint8_t status);

// Bits of the extent's record that follow from its drive and its array.
ExtentEntry extentEntry(const Controller& controller, const Drive& drive, std::size_t index);

} // namespace q5sim
