// Handing out pieces of drives and taking them back, so that members and extents always agree.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

inline constexpr std::size_t kNoExtent = SIZE_MAX;

// Index of the smallest free extent of at least so many sectors, or kNoExtent.
std::size_t fittingFreeExtent(const Drive& drive, std::uint64_t sectors);

// Gives the extent's first sectors to an array; the rest keeps its purpose in an extent of its own,
// unless it is below one MB or the drive has no room for another extent.
void allocateExtent(const Controller& controller, Drive& drive, std::size_t index, std::uint64_t sectors,
                    std::uint16_t arrayId);

// Frees the extent that the array holds on one drive, or all that belongs to it, its spares included.
void freeMemberExtent(Drive& drive, std::uint16_t arrayId);
void freeAllOfArray(Controller& controller, std::uint16_t arrayId);

bool hasMemberExtent(const Drive& drive, std::uint16_t arrayId);

} // namespace q5sim
