// Captures of adapters with random replies: the file can always be read, holds what was assumed, and
// describes a copy that is captured the same way.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "adapter/common.h"
#include "simulator/file/world_json.h"
#include "snapshot/read.h"
#include "tests/snapshot/reply_stub.h"
#include "tools/capture/capture.h"

using Random = std::mt19937;

static void fillAtRandom(Random* random, unsigned density, std::uint8_t* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        const auto draw = (*random)();
        if (draw % 8 < density)
            bytes[i] = static_cast<std::uint8_t>(draw >> 8);
    }
}

static std::uint16_t below(Random* random, unsigned limit) {
    return static_cast<std::uint16_t>((*random)() % limit);
}

template <typename Value>
static void putAt(void* reply, std::size_t offset, Value value) {
    std::memcpy(static_cast<std::uint8_t*>(reply) + offset, &value, sizeof value);
}

// Logical drives and drives whose contents are plausible enough to get into the world.
static void makePlausible(Random* random, const std::string& operation, void* reply, std::size_t size) {
    static constexpr std::uint8_t levels[] = {kRaid0, kRaid1, kRaid5, kRaid10, kRaid50, kRaidMf};
    const std::size_t first = sizeof(ReplyHeader);
    if (operation == "q5_getLogDrvInfo" && size >= first + sizeof(LogDrvInfo)) {
        putAt<std::uint16_t>(reply, first, below(random, 3));
        putAt<std::uint8_t>(reply, first + 2, levels[(*random)() % std::size(levels)]);
        putAt<std::uint16_t>(reply, first + 42, static_cast<std::uint16_t>(1 + below(random, 8)));
        for (std::uint8_t i = 0; i < 8; i++)
            putAt<std::uint8_t>(reply, first + 144 + i, i);
        putAt<std::uint8_t>(reply, first + 176, 1);
        putAt<std::uint8_t>(reply, first + 180, 2);
    }
    for (std::size_t i = 0; operation == "q5_getPhyDrvInfo" && first + (i + 1) * sizeof(PhyDrvInfo) <= size;
         i++) {
        const std::size_t at = first + i * sizeof(PhyDrvInfo);
        putAt<std::uint16_t>(reply, at + 4, static_cast<std::uint16_t>(i));
        for (std::size_t k = 0; k < kMaxExtents; k++)
            putAt<std::uint16_t>(reply, at + 152 + k * sizeof(ExtentEntry) + 8, below(random, 3));
    }
}

static Snapshot randomSnapshot(unsigned seed) {
    Random random(seed);
    respondInTest = [&](const std::string& operation, void* reply, std::size_t size) {
        if (reply == nullptr)
            return 0;
        fillAtRandom(&random, seed % 9, static_cast<std::uint8_t*>(reply), size);
        if (operation == "q5_getNumberOfHBA")
            putAt<std::uint32_t>(reply, 0, 1u + below(&random, 3));
        else if (size >= sizeof(ReplyHeader))
            putAt<std::uint32_t>(reply, offsetof(ReplyHeader, bytesUsed),
                                 static_cast<std::uint32_t>(random() % (size + 16)));
        if (seed % 2 == 0)
            makePlausible(&random, operation, reply, size);
        return random() % 20 == 0 ? 7 : 0;
    };
    Snapshot snapshot;
    if (openAdapters(&snapshot) == OpenResult::opened) {
        readControllers(&snapshot);
        closeAdapters();
    }
    return snapshot;
}

TEST(CapturedRandomReplies, AreAWorldThatCanBeRead) {
    std::size_t logicalDrives = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        const Capture capture = captureWorld(randomSnapshot(seed), 1000);
        q5sim::World world;
        q5sim::ValidationError error;
        ASSERT_EQ(capture.problem, "") << seed;
        ASSERT_TRUE(q5sim::worldFromJson(capture.text, world, error)) << seed << ": " << error.reason;
        ASSERT_EQ(world.assumed, capture.assumed) << seed;
        for (const q5sim::Controller& controller : world.controllers)
            logicalDrives += controller.logicalDrives.size();
    }
    EXPECT_GT(logicalDrives, 100u); // the replies were not all refused
}
