// Fuzzes sequences of operations with random records on one world while time passes. Afterward the world
// must be consistent and survive writing and reading (checked for every eighth input length: JSON is slow).
#include <cstdlib>
#include <iterator>

#include "simulator/file/world_json.h"
#include "simulator/store/world_store.h"
#include "simulator/world/invariants.h"
#include "tests/fuzz/memory_world.h"
#include "tests/fuzz/operation_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes = {data, size};
    q5sim::resetWorld();
    for (int i = 0; i < 64 && bytes.left > 0; ++i) {
        operations[takeValue<std::uint8_t>(&bytes) % std::size(operations)](&bytes);
        q5sim::fuzzedWorld.clockOffset += takeValue<std::uint8_t>(&bytes) * 60;
    }
    q5sim::currentWorld(); // advances it
    if (!q5sim::findViolations(q5sim::fuzzedWorld).empty())
        std::abort();
    q5sim::World again;
    q5sim::ValidationError error;
    if (size % 8 == 0 && (!q5sim::worldFromJson(q5sim::worldToJson(q5sim::fuzzedWorld), again, error) ||
                          !(again == q5sim::fuzzedWorld)))
        std::abort();
    return 0;
}
