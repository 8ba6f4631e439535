// Allocation and release of extents.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

inline constexpr std::size_t kNoExtent = SIZE_MAX;

// Index of the smallest free extent of at least this many sectors, or kNoExtent.
std::size_t bestFitFreeExtent(const Drive& drive, std::uint64_t sectors);

// Whether the extent belongs to an array, known or foreign.
inline bool isAssigned(const Extent& extent) {
    return extent.use == kUseArray || extent.use == kUseForeign;
}

// Gives the first sectors of the extent to an array. The rest becomes an extent of its own with the
// previous use, unless it is below one MB or the drive can have no more extents.
void allocateExtent(const Controller& controller, Drive& drive, std::size_t index, std::uint64_t sectors,
                    std::uint16_t arrayId);

// Frees the extent that the array holds on one drive, or all its extents and dedicated spares.
void freeMemberExtent(Drive& drive, std::uint16_t arrayId);
void freeAllOfArray(Controller& controller, std::uint16_t arrayId);

// The index of the member extent of the array on the drive, or kNoExtent.
std::size_t memberExtent(const Drive& drive, std::uint16_t arrayId);

// Whether the drive holds a member extent of the array.
bool holdsExtentOf(const Drive& drive, std::uint16_t arrayId);

} // namespace q5sim
