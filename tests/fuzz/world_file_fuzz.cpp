// Fuzzes the world file: a text that is taken must come back from its own writing, live on for years, and
// still be a world then. One that is refused must say where and why.
#include <cstdlib>

#include "simulator/engine/advance.h"
#include "simulator/file/world_json.h"
#include "tests/fuzz/bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    q5sim::World world, again;
    q5sim::ValidationError fault;
    if (!q5sim::worldFromJson(text, world, fault))
        return fault.line >= 1 && !fault.reason.empty() ? 0 : (std::abort(), 0);
    if (!q5sim::worldFromJson(q5sim::worldToJson(world), again, fault) || !(again == world))
        std::abort();
    for (std::int64_t now = 0; now < 4000000000; now += 500000000)
        q5sim::advanceTo(world, now);
    if (!q5sim::worldFromJson(q5sim::worldToJson(world), again, fault) || !(again == world))
        std::abort();
    return 0;
}
