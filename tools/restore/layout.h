// The extents of the drives at each point of a plan.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "snapshot/snapshot.h"

struct Region {
    std::uint64_t start = 0, size = 0; // sectors
    std::string use;                   // "logical drive 0 Archive"; empty: free
    std::uint64_t end() const { return start + size; }
    bool isFree() const { return use.empty(); }
};
using Layout = std::vector<Region>; // a region's position is the index of its extent

// The layout of each drive, by its number.
using Layouts = std::map<std::uint32_t, Layout>;
Layouts presentLayouts(const Controller& controller);

// What an extent is used for; empty: it is free.
std::string extentUser(const Controller& controller, const ExtentEntry& extent);

// The index of the region that holds a sector, or the number of regions.
std::size_t findRegion(const Layout& layout, std::uint64_t sector);

// Cuts a region in two at an offset from its start, or assigns its first sectors to a use. index is that of
// an existing region, which is not smaller.
void splitRegion(Layout* layout, std::size_t index, std::uint64_t offset);
void takeRegion(Layout* layout, std::size_t index, std::uint64_t size, const std::string& use);

// Why a range of sectors cannot be used, as the predicate of a sentence about the drive; empty: it is in one
// free region.
std::string obstacleInRange(const Layout& layout, std::uint64_t start, std::uint64_t size);
