// Bringing lost members of an array back onto other extents.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// An extent to rebuild onto.
struct RebuildChoice {
    std::uint32_t drive = 0;
    std::uint32_t extent = 0;
};

// Starts a rebuild onto these extents, each taking the place of a lost member. Returns false, with
// the controller perhaps half changed, when the array or an extent does not allow it.
bool startRebuild(Controller& controller, LogicalDrive& array, const std::vector<RebuildChoice>& choices,
                  std::int64_t now);

// The spares that would step in for the array's lost members; the array's own spares come first.
std::vector<RebuildChoice> suitableSpares(const Controller& controller, const LogicalDrive& array);

void finishRebuild(Controller& controller, LogicalDrive& array);
// Gives the extents of an unfinished rebuild back.
void abortRebuild(Controller& controller, LogicalDrive& array);

} // namespace q5sim
