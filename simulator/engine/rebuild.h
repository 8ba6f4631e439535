// Rebuilds of lost members onto other extents.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// An extent to rebuild onto: the IDs of the drive and the extent, from 0.
struct RebuildChoice {
    std::uint32_t drive = 0;
    std::uint32_t extent = 0;
};

// Why the array cannot be rebuilt onto these extents; empty: it can.
std::string rebuildRefusal(const Controller& controller, const LogicalDrive& array,
                           const std::vector<RebuildChoice>& choices);

// Starts a rebuild onto these extents, each of which replaces a lost member. Returns false when the
// array or an extent does not allow it.
bool startRebuild(Controller& controller, LogicalDrive& array, const std::vector<RebuildChoice>& choices,
                  std::int64_t now);

// The spares that would replace the array's lost members; dedicated spares come first.
std::vector<RebuildChoice> usableSpares(const Controller& controller, const LogicalDrive& array);

// Makes the drives of a finished rebuild members.
void finishRebuild(Controller& controller, LogicalDrive& array);

// Frees the extents of an unfinished rebuild.
void abortRebuild(Controller& controller, LogicalDrive& array);

} // namespace q5sim
