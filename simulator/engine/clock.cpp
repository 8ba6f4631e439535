// The real clock, and the world's clock, which can be ahead of it and faster.
#include "simulator/engine/clock.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace q5sim {

// Seconds; both leave room for additions.
static constexpr std::int64_t kLatestNow = std::int64_t{1} << 40;
static constexpr std::int64_t kMaxAhead = std::int64_t{1} << 40;

std::int64_t currentRealTime() {
    const char* fixed = std::getenv("Q5SIM_NOW");
    if (fixed == nullptr || fixed[0] == '\0')
        return static_cast<std::int64_t>(std::time(nullptr));
    return std::clamp<std::int64_t>(std::strtoll(fixed, nullptr, 10), 0, kLatestNow);
}

// A real clock that was set back does not set the world's clock back any further.
static std::int64_t ahead(const World& world, std::int64_t realTime) {
    if (world.speed <= 1 || realTime <= world.speedSince)
        return world.clockOffset;
    const std::int64_t elapsed = std::min(realTime - world.speedSince, kMaxAhead / world.speed);
    return world.clockOffset + elapsed * (world.speed - 1);
}

std::int64_t scaledTime(const World& world, std::int64_t realTime) {
    return realTime + ahead(world, realTime);
}

void changeSpeed(World& world, std::int64_t realTime, std::int64_t speed) {
    world.clockOffset = std::min(ahead(world, realTime), kMaxAhead);
    world.speed = speed;
    world.speedSince = speed == 1 ? 0 : realTime;
}

} // namespace q5sim
