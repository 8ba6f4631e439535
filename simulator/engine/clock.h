// The real clock, and the world's clock, which can be ahead of it and faster.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// The real time in seconds since the epoch; $Q5SIM_NOW, if it is set, replaces it.
std::int64_t currentRealTime();

// The world's time at a real time.
std::int64_t scaledTime(const World& world, std::int64_t realTime);

// Lets the world's clock run speed times as fast as the real one, from a real time on. speed: 1 to kMaxSpeed.
void changeSpeed(World& world, std::int64_t realTime, std::int64_t speed);

} // namespace q5sim
