// The world's clock: ahead of the real one, and perhaps faster.
#include "simulator/engine/clock.h"

#include <algorithm>

namespace q5sim {

static constexpr std::int64_t kMaxAhead = std::int64_t{1} << 40;

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
