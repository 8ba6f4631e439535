// Random operations, faults and time steps on the built-in world and on random ones, with all invariants
// checked after each. A failing sequence is shrunk and printed as a script, with the seed of its world. Runs
// a sample; PROPERTY_STEPS=100000 runs them all, PROPERTY_SEED=N only the script with this seed.
#include <cstdio>
#include <cstdlib>
#include <random>

#include "simulator/file/world_json.h"
#include "tests/fuzz/memory_world.h"
#include "tests/simulator/faulted_world.h"
#include "tests/simulator/random_world.h"

namespace {
struct Step {
    int kind = 0;
    std::uint32_t controller = 0, drive = 0, number = 0;
};
struct Script {
    std::uint32_t seed = 0; // of the world
    std::vector<Step> steps;
};
using Number = std::mt19937;

struct Action {
    const char* name;
    void (*run)(q5sim::World& world, std::int64_t now, const Step& step);
};
} // namespace

static q5sim::Controller& controllerOf(q5sim::World& world, const Step& step) {
    return world.controllers[step.controller % world.controllers.size()];
}

// Faults act on the world itself; operations are called between two changes.
static const Action faults[] = {
    {"fail-drive",
     [](q5sim::World& w, std::int64_t, const Step& s) { failDrive(controllerOf(w, s), s.drive); }},
    {"replace-drive", [](q5sim::World& w, std::int64_t now,
                         const Step& s) { replaceDrive(controllerOf(w, s), s.drive, now); }},
    {"pull-drive",
     [](q5sim::World& w, std::int64_t now, const Step& s) { pullDrive(controllerOf(w, s), s.drive, now); }},
    {"insert-drive --same",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         insertDrive(controllerOf(w, s), s.drive, q5sim::NewDrive::same, now);
     }},
    {"insert-drive --blank",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         insertDrive(controllerOf(w, s), s.drive, q5sim::NewDrive::blank, now);
     }},
    {"insert-drive --foreign",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         insertDrive(controllerOf(w, s), s.drive, q5sim::NewDrive::foreign, now);
     }},
    {"media-errors",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         std::uint64_t added = 0;
         addMediaErrors(controllerOf(w, s), s.drive, 1 + s.number % 2000,
                        static_cast<int>(s.number % 102) - 1, now, added);
     }},
    {"smart", [](q5sim::World& w, std::int64_t,
                 const Step& s) { setSmartFailure(controllerOf(w, s), s.drive, s.number % 2 == 0); }},
    {"battery",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         setBattery(controllerOf(w, s), static_cast<std::uint8_t>(s.number % 6), now);
     }},
    {"pull-enclosure",
     [](q5sim::World& w, std::int64_t now, const Step& s) { pullEnclosure(controllerOf(w, s), 0, now); }},
    {"insert-enclosure",
     [](q5sim::World& w, std::int64_t now, const Step& s) { insertEnclosure(controllerOf(w, s), 0, now); }},
    {"swap-controller",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         if (s.number % 8 == 0)
             swapController(controllerOf(w, s), now);
     }},
    {"power-cut",
     [](q5sim::World& w, std::int64_t now, const Step& s) {
         if (s.number % 8 == 0)
             cutPower(w, now);
     }},
    {"advance", [](q5sim::World& w, std::int64_t, const Step& s) { w.clockOffset += s.number % 400; }},
    {"set rebuildOnError and automatic rebuild",
     [](q5sim::World& w, std::int64_t, const Step& s) {
         controllerOf(w, s).rebuildOnError = s.number % 2 == 0 ? q5sim::kSkipOnError : q5sim::kAbortOnError;
         controllerOf(w, s).autoRebuild = s.number % 4 < 2;
     }},
};
static constexpr int kFaults = static_cast<int>(std::size(faults));

struct Operation {
    const char* name;
    void (*call)(const Step& step);
};

static std::uint32_t logDrvOf(const Step& step) {
    return step.number % 3;
}

static LogDrvIdBlock blockOf(const Step& step) {
    return {logDrvOf(step), {}};
}

static const Operation operations[] = {
    {"create",
     [](const Step& s) {
         static constexpr RaidLevel levels[] = {kRaid0, kRaid1, kRaid5, kRaid10, kRaidMf};
         const RaidLevel level = levels[s.number % 5];
         const std::uint32_t count = level == kRaid1 ? 2 : level == kRaid10 ? 4 : 3;
         std::vector<std::uint32_t> drives;
         for (std::uint32_t i = 0; i < count; i++)
             drives.push_back((s.drive + i) % kRandomDrives);
         const CreateArrayRequest wanted = request(level, 1000 + s.number % 5000, drives);
         q5_addHBAArray(hbaAddress(s.controller), 0, &wanted);
     }},
    {"delete",
     [](const Step& s) {
         const DeleteArrayRequest wanted = {1, logDrvOf(s)};
         if (s.number % 4 == 0)
             q5_delDiskArray(hbaAddress(s.controller), 0, &wanted, sizeof wanted);
     }},
    {"activate",
     [](const Step& s) {
         q5_activateLogDrv(hbaAddress(s.controller), 0, static_cast<std::uint16_t>(logDrvOf(s)));
     }},
    {"rebuild",
     [](const Step& s) {
         const RebuildEntry entry = {logDrvOf(s), s.drive, s.number % 4, {}};
         LogDrvInfo array = {};
         array.logDrvId = static_cast<std::uint16_t>(logDrvOf(s));
         q5_startHBARebuildExtent(hbaAddress(s.controller), 0, 1, &entry, &array);
     }},
    {"migrate",
     [](const Step& s) {
         MigrateRequest wanted = {};
         wanted.logDrvId = static_cast<std::uint16_t>(logDrvOf(s));
         wanted.raidLevel = kRaid5;
         wanted.memberCount = 1;
         wanted.member[0] = {s.number % 3, s.drive};
         q5_migrateHBAArray(hbaAddress(s.controller), 0, &wanted);
     }},
    {"init",
     [](const Step& s) {
         InitStartRequest wanted = {};
         wanted.logDrvId = logDrvOf(s);
         wanted.initType = 4;
         q5_startLogDrvInit(hbaAddress(s.controller), 0, &wanted, sizeof wanted);
     }},
    {"check",
     [](const Step& s) {
         RedundancyCheckRequest wanted = {};
         wanted.logDrvId = logDrvOf(s);
         q5_startRedundancyCheck(hbaAddress(s.controller), 0, &wanted);
     }},
    {"pause rebuild",
     [](const Step& s) {
         const LogDrvIdBlock block = blockOf(s);
         q5_pauseRebuild(hbaAddress(s.controller), 0, &block);
     }},
    {"resume rebuild",
     [](const Step& s) {
         const LogDrvIdBlock block = blockOf(s);
         q5_resumeRebuild(hbaAddress(s.controller), 0, &block);
     }},
    {"stop rebuild",
     [](const Step& s) {
         const LogDrvIdBlock block = blockOf(s);
         q5_stopRebuild(hbaAddress(s.controller), 0, &block);
     }},
    {"spare",
     [](const Step& s) {
         const auto owner = static_cast<std::uint16_t>(s.number % 2 == 0 ? kNoArray : logDrvOf(s));
         const ExtentPlacement wanted = {static_cast<std::uint16_t>(s.number % 3),
                                         static_cast<std::uint16_t>(s.drive), owner, 0};
         q5_spareHBAExtent(hbaAddress(s.controller), 0, &wanted);
     }},
    {"wipe",
     [](const Step& s) {
         const DriveSelector drive = {s.drive, 1};
         q5_removeHBADiskMDD(hbaAddress(s.controller), 0, &drive);
     }},
    {"delete extent",
     [](const Step& s) {
         const ExtentRef extent = {s.number % 3, s.drive};
         q5_deleteHBAExtent(hbaAddress(s.controller), 0, &extent);
     }},
    {"patrol",
     [](const Step& s) {
         const DriveSelector drive = {s.drive, 1};
         q5_startHBAMediaPatrol(hbaAddress(s.controller), 0, &drive);
     }},
};
// What random scripts contain. One more kind breaks an invariant, for the test of shrinking.
static constexpr int kKinds = kFaults + static_cast<int>(std::size(operations));

static void breakInvariant() {
    q5sim::fuzzedWorld.controllers[0].drives[0].extents[0].size = UINT64_MAX / 2;
}

static const char* nameOf(const Step& step) {
    if (step.kind == kKinds)
        return "break an invariant";
    return step.kind < kFaults ? faults[step.kind].name : operations[step.kind - kFaults].name;
}

// Progress of a job never decreases unless the power was cut or it started again.
static std::string progressViolation(const q5sim::World& before, const q5sim::World& after) {
    for (std::size_t c = 0; c < after.controllers.size(); c++)
        for (const q5sim::LogicalDrive& array : before.controllers[c].logicalDrives) {
            const q5sim::LogicalDrive* now = q5sim::findArray(after.controllers[c], array.arrayId);
            if (now != nullptr && now->activity.kind != 0 && now->activity.kind == array.activity.kind &&
                now->activity.since == array.activity.since &&
                now->activity.completedMb < array.activity.completedMb)
                return "the progress of logical drive " + std::to_string(array.logDrvId) + " decreased";
        }
    return "";
}

// The first violation after a step; empty: none.
static std::string runStep(const Step& step) {
    const q5sim::World before = *q5sim::currentWorld();
    if (step.kind < kFaults)
        q5sim::changeWorld([&](q5sim::World& world, std::int64_t now) {
            faults[step.kind].run(world, now, step);
            return 0;
        });
    else if (step.kind < kKinds)
        operations[step.kind - kFaults].call(step);
    else
        breakInvariant();
    const q5sim::World& after = *q5sim::currentWorld();
    std::vector<std::string> lines = q5sim::findViolations(after);
    for (const std::string& line : q5sim::findStepViolations(before, after))
        lines.push_back(line);
    if (lines.empty())
        return progressViolation(before, after);
    return lines.front();
}

// Every fourth script runs on the built-in world.
static void openStartingWorld(std::uint32_t seed) {
    q5sim::resetWorld();
    if (seed % 4 != 0)
        q5sim::fuzzedWorld = randomWorld(seed, q5sim::worldTime({}));
}

static std::string startingViolation() {
    q5sim::World read;
    q5sim::ValidationError error;
    if (!q5sim::worldFromJson(q5sim::worldToJson(q5sim::fuzzedWorld), read, error))
        return "the world file would be refused: " + error.reason;
    if (!(read == q5sim::fuzzedWorld))
        return "the world file has another world";
    const std::vector<std::string> lines = q5sim::findViolations(*q5sim::currentWorld());
    return lines.empty() ? "" : "at the start: " + lines.front();
}

// The first violation; failedAt is the number of steps before it.
static std::string runScript(const Script& script, std::size_t& failedAt) {
    openStartingWorld(script.seed);
    failedAt = 0;
    if (std::string violation = startingViolation(); !violation.empty())
        return violation;
    for (const Step& step : script.steps) {
        if (std::string violation = runStep(step); !violation.empty())
            return violation;
        failedAt++;
    }
    return "";
}

// Leaves out steps as long as the script still fails.
static Script shrunk(Script script) {
    std::size_t failedAt = 0;
    for (std::size_t size = script.steps.size(); size > 0; size /= 2)
        for (std::size_t start = 0; start + size <= script.steps.size();) {
            Script shorter = script;
            const auto first = shorter.steps.begin() + static_cast<std::ptrdiff_t>(start);
            shorter.steps.erase(first, first + static_cast<std::ptrdiff_t>(size));
            if (runScript(shorter, failedAt).empty())
                start += size;
            else
                script = shorter;
        }
    return script;
}

static std::string textOf(const Script& script) {
    std::string text = "PROPERTY_SEED=" + std::to_string(script.seed) +
                       ", world: " + (script.seed % 4 == 0 ? "built-in" : "random") + "\n";
    for (const Step& step : script.steps)
        text += std::string(nameOf(step)) + " controller " + std::to_string(step.controller) + " drive " +
                std::to_string(step.drive + 1) + " number " + std::to_string(step.number) + "\n";
    return text;
}

static Script randomScript(std::uint32_t seed, std::size_t length) {
    Script script = {seed, std::vector<Step>(length)};
    Number random(seed);
    for (Step& step : script.steps)
        step = {static_cast<int>(random() % kKinds), static_cast<std::uint32_t>(random() % 3),
                static_cast<std::uint32_t>(random() % kRandomDrives),
                static_cast<std::uint32_t>(random() % 10000)};
    return script;
}

static constexpr std::size_t kLength = 100;

// Fails with the shortest script that still breaks an invariant.
static void runSeed(std::uint32_t seed) {
    Script script = randomScript(seed, kLength);
    std::size_t failedAt = 0;
    const std::string violation = runScript(script, failedAt);
    if (violation.empty())
        return;
    script.steps.resize(std::min(failedAt + 1, script.steps.size()));
    const Script few = shrunk(script);
    FAIL() << violation << "; shrunk: " << runScript(few, failedAt) << "\n" << textOf(few);
}

static long setting(const char* name, long otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::atol(value) : otherwise;
}

TEST(Properties, RandomScriptsKeepTheInvariants) {
    const long only = setting("PROPERTY_SEED", -1), steps = setting("PROPERTY_STEPS", 4000);
    if (only >= 0)
        return runSeed(static_cast<std::uint32_t>(only));
    std::uint32_t seed = 1;
    for (long done = 0; done < steps && !testing::Test::HasFailure(); done += kLength)
        runSeed(seed++);
    std::printf("seeds 1 to %u\n", seed - 1);
}

// A script that fails is cut down to the steps that matter.
TEST(Properties, FailingScriptsAreShrunk) {
    Script script = randomScript(4, 10);
    const Step broken = {kKinds, 0, 0, 0};
    script.steps.insert(script.steps.begin() + 7, broken);
    const Script few = shrunk(script);
    ASSERT_EQ(few.steps.size(), 1u);
    EXPECT_EQ(few.steps[0].kind, kKinds);
    EXPECT_EQ(textOf(few), "PROPERTY_SEED=4, world: built-in\n"
                           "break an invariant controller 0 drive 1 number 0\n");
}
