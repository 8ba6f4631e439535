// Snapshots of adapters with random replies: only read-only operations are called, nothing is read
// without bounds, and every format stays valid for any replies.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <nlohmann/json.hpp>
#include <random>
#include <regex>
#include <sstream>

#include "adapter/common.h"
#include "snapshot/json.h"
#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tests/snapshot/reply_stub.h"
#include "tools/status/changes.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

using Random = std::mt19937;

static bool oneIn(Random* random, unsigned count) {
    return (*random)() % count == 0;
}

// Random bytes, of which few or many are set.
static void fillReply(Random* random, unsigned density, void* reply, std::size_t size) {
    auto* bytes = static_cast<std::uint8_t*>(reply);
    for (std::size_t i = 0; i < size; ++i) {
        const auto draw = (*random)();
        if (draw % 8 < density)
            bytes[i] = static_cast<std::uint8_t>(draw >> 8);
    }
}

// A list header that mostly announces a few records, so that lists of all lengths occur.
static void fillHeader(Random* random, void* reply, std::size_t size) {
    if (size < sizeof(ReplyHeader) || oneIn(random, 8))
        return;
    static_cast<ReplyHeader*>(reply)->bytesUsed = static_cast<std::uint32_t>((*random)() % (size + 16));
}

static int replyAtRandom(Random* random, unsigned density, const std::string& operation, void* reply,
                         std::size_t size) {
    if (reply != nullptr)
        fillReply(random, density, reply, size);
    if (operation == "q5_getNumberOfHBA") {
        const std::uint32_t count = oneIn(random, 50) ? 0 : 1 + static_cast<std::uint32_t>((*random)() % 3);
        std::memcpy(reply, &count, sizeof count);
    } else if (reply != nullptr)
        fillHeader(random, reply, size);
    if (reply != nullptr && oneIn(random, 40))
        static_cast<std::uint8_t*>(reply)[size] ^= 1;
    return oneIn(random, 12) ? static_cast<int>((*random)() % 100) - 50 : 0;
}

static Snapshot randomSnapshot(unsigned seed) {
    Random random(seed);
    const unsigned density = seed % 9;
    respondInTest = [&](const std::string& operation, void* reply, std::size_t size) {
        return replyAtRandom(&random, density, operation, reply, size);
    };
    Snapshot snapshot;
    if (openAdapters(&snapshot) == OpenResult::opened) {
        readControllers(&snapshot);
        closeAdapters();
    }
    return snapshot;
}

static constexpr unsigned kSeeds = 45;

TEST(RandomReplies, LeadOnlyToListedOperations) {
    static const std::set<std::string> listed = {"q5_initialize",
                                                 "q5_discover",
                                                 "q5_getNumberOfHBA",
                                                 "q5_finalize",
                                                 "q5_getControllerInfo",
                                                 "q5_getControllerSettings",
                                                 "q5_getDriverInfo",
                                                 "q5_getDiscoverPath",
                                                 "q5_getBatteryInfo",
                                                 "q5_getBuzzerStatus",
                                                 "q5_getEnclosureInfo",
                                                 "q5_getEnclosureStatus",
                                                 "q5_getPhyDrvInfo",
                                                 "q5_getPhyDrvSettings",
                                                 "q5_getPhyDrvLocateStatus",
                                                 "q5_getDataTransferSpeed",
                                                 "q5_getHBAMediaPatrolProgress",
                                                 "q5_getLogDrvInfo",
                                                 "q5_getLogDrvSettings",
                                                 "q5_getAryLostDisk",
                                                 "q5_getLogDrvInitProgress",
                                                 "q5_getLogDrvSynchProgress",
                                                 "q5_getRedundancyCheckProgress",
                                                 "q5_getMigrationProgress",
                                                 "q5_getRebuildProgress"};
    calledOperations.clear();
    for (unsigned seed = 0; seed < kSeeds; ++seed)
        randomSnapshot(seed);
    EXPECT_EQ(calledOperations, listed); // and all of them occur
}

TEST(RandomReplies, StayWithinBounds) {
    for (unsigned seed = 0; seed < kSeeds; ++seed) {
        const Snapshot snapshot = randomSnapshot(seed);
        for (const Controller& controller : snapshot.controllers) {
            EXPECT_LE(controller.drives.size(), kMaxSnapshotDrives);
            EXPECT_LE(controller.logicalDrives.size(), std::size_t{kMaxLogDrvs});
            EXPECT_LE(controller.enclosures.size(), std::size_t{kMaxEnclosures});
            for (std::size_t i = 1; i < controller.drives.size(); ++i)
                EXPECT_LT(controller.drives[i - 1].number, controller.drives[i].number);
        }
    }
}

struct Outputs {
    std::string text, verbose, json, plugin, metrics;
};

static Outputs outputsOf(const Snapshot& snapshot) {
    const Limits limits;
    const Findings findings = evaluate(snapshot, limits, nullptr);
    const Report report = {snapshot, findings, limits};
    return {formatText(report, {}), formatText(report, {true, false, false}), formatJson(report),
            formatPlugin(report), formatMetrics(report)};
}

static void expectPlainLines(const std::string& text) {
    EXPECT_TRUE(isUtf8(text));
    for (const char character : text)
        if (character != '\n' && static_cast<unsigned char>(character) < 0x20) {
            ADD_FAILURE() << "control character in: " << text;
            return;
        }
    EXPECT_EQ(text.back(), '\n');
}

// name{label="value",...} number; comments are HELP and TYPE; no series occurs twice.
static void expectMetrics(const std::string& text) {
    static const std::regex series(
        R"re(([a-z0-9_]+(\{[a-z]+[a-z_]*="([^"\\]|\\\\|\\")*"(,[a-z_]+="([^"\\]|\\\\|\\")*")*\})?) -?[0-9]+(\.[0-9]+)?)re");
    std::istringstream lines(text);
    std::set<std::string> seen;
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (line.starts_with("# HELP ") || line.starts_with("# TYPE "))
            continue;
        if (!std::regex_match(line, match, series)) {
            ADD_FAILURE() << line;
            continue;
        }
        EXPECT_TRUE(seen.insert(match[1]).second) << line;
    }
}

static void expectPlugin(const std::string& text) {
    EXPECT_EQ(std::count(text.begin(), text.end(), '|'), 1) << text;
    EXPECT_LT(text.find('|'), text.find('\n'));
}

// Reading it back and writing it again gives the same state.
static void expectLossless(const std::string& text) {
    Snapshot snapshot;
    ASSERT_EQ(snapshotFromText(text, &snapshot), "");
    Json whole = Json::parse(text);
    for (const char* key : {"format", "status", "exitStatus", "summary", "findings"})
        whole.erase(key);
    EXPECT_EQ(whole.dump(), snapshotToJson(snapshot).dump());
}

TEST(RandomReplies, LeaveEveryFormatValid) {
    for (unsigned seed = 0; seed < kSeeds && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Outputs outputs = outputsOf(randomSnapshot(seed));
        expectPlainLines(outputs.text);
        expectPlainLines(outputs.verbose);
        expectPlainLines(outputs.plugin);
        expectPlugin(outputs.plugin);
        expectLossless(outputs.json);
        if (seed % 5 == 0)
            expectMetrics(outputs.metrics);
    }
}

TEST(RandomReplies, LeaveComparisonsPrintable) {
    const Limits limits;
    for (unsigned seed = 0; seed + 1 < kSeeds; ++seed) {
        const Snapshot earlier = randomSnapshot(seed), now = randomSnapshot(seed + 1);
        for (const Line& line : changeLines(&earlier, now, limits)) {
            EXPECT_TRUE(isUtf8(line.text));
            EXPECT_EQ(line.text.find('\n'), std::string::npos);
        }
    }
}

static int shell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

static std::string scratchFile(const std::string& name, const std::string& text) {
    const std::string path = testing::TempDir() + "/" + name;
    std::ofstream(path) << text;
    return path;
}

TEST(RandomReplies, SatisfyTheSchema) {
    const std::string root = TESTS_ROOT;
    std::string command =
        "/usr/bin/python3 " + root + "/status/check_json " + root + "/../docs/cli-status.schema.json";
    for (unsigned seed = 0; seed < 9; ++seed)
        command += " " + scratchFile("random" + std::to_string(seed) + ".json",
                                     outputsOf(randomSnapshot(seed)).json);
    const int status = shell(command);
    if (status == 77 || status == 127)
        GTEST_SKIP() << "needs python3-jsonschema";
    EXPECT_EQ(status, 0);
}

TEST(RandomReplies, SatisfyPromtool) {
    if (shell("command -v promtool >/dev/null") != 0)
        GTEST_SKIP() << "needs promtool, of Debian's package prometheus";
    for (unsigned seed = 0; seed < 18; ++seed)
        EXPECT_EQ(shell("promtool check metrics <" +
                        scratchFile("random.prom", outputsOf(randomSnapshot(seed)).metrics)),
                  0)
            << "seed " << seed;
}
