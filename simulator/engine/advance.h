// What happens in the world without being asked for: activities and patrols end, failures are
// noticed, spares step in.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// Brings the world up to the time now. Idempotent: a second call changes nothing.
void settle(World& world, std::int64_t now);

// Whether settle would change anything.
bool settleIsDue(const World& world, std::int64_t now);

} // namespace q5sim
