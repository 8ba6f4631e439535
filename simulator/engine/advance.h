// Automatic behavior: activities and patrols complete, failures are reported, automatic rebuilds start. Times
// are seconds of the world's clock.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// Brings the world up to the time now. Idempotent: a second call changes nothing.
void advanceTo(World& world, std::int64_t now);

// When the next running activity or patrol completes; kNoDeadline: none runs.
std::int64_t nextActivityTime(const World& world);

// Whether advanceTo would change anything.
bool hasDueTransitions(const World& world, std::int64_t now);

} // namespace q5sim
