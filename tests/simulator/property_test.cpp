// Random operations, faults and time steps on random worlds, with all invariants checked after each. A
// failing sequence is shrunk and printed as a script. Runs a sample; PROPERTY_STEPS=100000 runs them all.
#include <cstdlib>
#include <random>
#include <set>

#include "tests/simulator/faulted_world.h"

namespace {
struct Step {
    int kind = 0;
    std::uint32_t controller = 0, drive = 0, number = 0;
};
using Script = std::vector<Step>;
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
         addMediaErrors(controllerOf(w, s), s.drive, 1 + s.number % 2000,
                        static_cast<int>(s.number % 102) - 1, now);
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
             drives.push_back((s.drive + i) % 8);
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
static constexpr int kKinds = kFaults + static_cast<int>(std::size(operations));

static const char* nameOf(const Step& step) {
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
    else
        operations[step.kind - kFaults].call(step);
    const q5sim::World& after = *q5sim::currentWorld();
    std::vector<std::string> lines = q5sim::findViolations(after);
    for (const std::string& line : q5sim::findStepViolations(before, after))
        lines.push_back(line);
    if (lines.empty())
        return progressViolation(before, after);
    return lines.front();
}

static std::string runScript(const Script& script, std::size_t& failedAt) {
    q5sim::resetWorld();
    for (failedAt = 0; failedAt < script.size(); failedAt++)
        if (std::string violation = runStep(script[failedAt]); !violation.empty())
            return violation;
    return "";
}

// Leaves out steps as long as the script still fails.
static Script shrunk(Script script) {
    std::size_t failedAt = 0;
    for (std::size_t size = script.size() / 2; size > 0; size /= 2)
        for (std::size_t start = 0; start + size <= script.size();) {
            Script shorter = script;
            shorter.erase(shorter.begin() + static_cast<std::ptrdiff_t>(start),
                          shorter.begin() + static_cast<std::ptrdiff_t>(start + size));
            if (runScript(shorter, failedAt).empty())
                start += size;
            else
                script = shorter;
        }
    return script;
}

static std::string textOf(const Script& script) {
    std::string text;
    for (const Step& step : script)
        text += std::string(nameOf(step)) + " controller " + std::to_string(step.controller) + " drive " +
                std::to_string(step.drive + 1) + " number " + std::to_string(step.number) + "\n";
    return text;
}

static Script randomScript(Number& random, std::size_t length) {
    Script script(length);
    for (Step& step : script)
        step = {static_cast<int>(random() % kKinds), static_cast<std::uint32_t>(random() % 2),
                static_cast<std::uint32_t>(random() % 8), static_cast<std::uint32_t>(random() % 10000)};
    return script;
}

TEST(Properties, RandomScriptsKeepTheInvariants) {
    const char* wanted = std::getenv("PROPERTY_STEPS");
    const long steps = wanted != nullptr ? std::atol(wanted) : 4000;
    static constexpr std::size_t kLength = 100;
    Number random(12345);
    for (long done = 0; done < steps; done += kLength) {
        const Script script = randomScript(random, kLength);
        std::size_t failedAt = 0;
        const std::string violation = runScript(script, failedAt);
        if (violation.empty())
            continue;
        const Script all(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(failedAt) + 1);
        const Script few = shrunk(all);
        FAIL() << violation << "; shrunk: " << runScript(few, failedAt) << "\n" << textOf(few);
    }
}
