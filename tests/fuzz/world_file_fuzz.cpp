// Fuzzes the world file: an accepted text must survive writing and reading, before and after years of
// world time, and keep the invariants once the time of its latest entry has come. A rejected one must report
// a line and a reason.
#include <cstdlib>

#include "simulator/engine/advance.h"
#include "simulator/file/world_json.h"
#include "simulator/world/invariants.h"
#include "tests/fuzz/bytes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    q5sim::World world, again;
    q5sim::ValidationError error;
    if (!q5sim::worldFromJson(text, world, error))
        return error.line >= 1 && !error.reason.empty() ? 0 : (std::abort(), 0);
    if (!q5sim::worldFromJson(q5sim::worldToJson(world), again, error) || !(again == world))
        std::abort();
    for (std::int64_t now = 0; now < 4000000000; now += 500000000)
        q5sim::advanceTo(world, now);
    if (!q5sim::findViolations(world).empty())
        std::abort();
    if (!q5sim::worldFromJson(q5sim::worldToJson(world), again, error) || !(again == world))
        std::abort();
    return 0;
}
