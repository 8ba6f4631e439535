// What hands do to drives, and no operation of the adapters can.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// All return false, with nothing changed, when the controller has no such drive or it is not in the
// state for this. The consequences follow when the world settles.
bool failDrive(Controller& controller, std::uint32_t driveId);
// Puts a new, empty drive of the same kind in the place of a failed one.
bool replaceDrive(Controller& controller, std::uint32_t driveId, std::int64_t now);

} // namespace q5sim
