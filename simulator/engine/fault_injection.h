// Fault injection: changes to the hardware that no operation of the adapters can make.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// Both return false, with nothing changed, when the controller has no such drive or its state does not
// allow it. The consequences follow with advanceTo.
bool failDrive(Controller& controller, std::uint32_t driveId);
// Replaces a failed drive by a new, empty one of the same kind.
bool replaceDrive(Controller& controller, std::uint32_t driveId, std::int64_t now);

} // namespace q5sim
