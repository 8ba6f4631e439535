// Replaces the world store by a world in memory, for fuzzers: the same rules without a file.
#include "tests/fuzz/memory_world.h"
#include "simulator/engine/advance.h"
#include "simulator/engine/clock.h"
#include "simulator/store/world_store.h"

namespace q5sim {

World fuzzedWorld;

static constexpr std::int64_t kNow = 1700000000;

bool openWorld() {
    return true;
}

void closeWorld() {}

bool isWorldOpen() {
    return true;
}

bool resetWorld() {
    fuzzedWorld = builtinWorld(kNow);
    return true;
}

std::int64_t worldTime(const World& world) {
    return scaledTime(world, kNow);
}

const World* currentWorld() {
    advanceTo(fuzzedWorld, worldTime(fuzzedWorld));
    return &fuzzedWorld;
}

void beginReports() {}

const World* storedWorld() {
    return &fuzzedWorld;
}

int changeWorld(const Change& change) {
    World changed = *currentWorld();
    const int result = change(changed, worldTime(changed));
    advanceTo(changed, worldTime(changed));
    if (result == 0)
        fuzzedWorld = changed;
    return result;
}

} // namespace q5sim
