// The world's clock.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// The world's time at a real time.
std::int64_t scaledTime(const World& world, std::int64_t realTime);

// Changes the speed of the clock from a real time on.
void changeSpeed(World& world, std::int64_t realTime, std::int64_t speed);

} // namespace q5sim
