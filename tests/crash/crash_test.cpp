// Crash safety and concurrency: the state of all files after the program was killed, a system call failed,
// signals arrived, or several programs ran at the same time. Files have their old or new content, an import
// is complete or not begun, and no session loses the changes of another one.
//
// By default a sample of the system calls is tried, and a few races; with CRASH_TESTS=all every call, 1,000
// signals and 200 races.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <sys/syscall.h>

#include "tests/crash/changing_commands.h"
#include "tests/e2e/harness.h"

static constexpr int kNoTracing = 77, kNotReached = 78;
using Words = std::vector<std::string>;

static bool isFullRun() {
    const char* value = std::getenv("CRASH_TESTS");
    return value != nullptr && value == std::string("all");
}

static int times(int sample, int whole) {
    return isFullRun() ? whole : sample;
}

// A program under the injector, over the world every_level.
static ProcessOutcome inject(Session& session, const std::string& fault, const std::string& call,
                             const Words& words) {
    Words all = {fault, call, session.program};
    all.insert(all.end(), words.begin(), words.end());
    const std::string program = session.program;
    session.program = CRASH_INJECTOR;
    const ProcessOutcome outcome = session.run(all);
    session.program = program;
    return outcome;
}

// The number of calls that a command makes; 0 if programs cannot be traced.
static int countCalls(Session& session, const Words& words, const std::string& number = "") {
    const std::string file = session.path("calls");
    if (inject(session, "count" + number, file, words).status == kNoTracing)
        return 0;
    return std::atoi(readFile(file).c_str());
}

// Runs a shell script in which "$CLI" is the program, "$Q5SIM" the fault injection tool of the simulated
// adapters, and "$1" a number of rounds.
static ProcessOutcome shell(Session& session, const std::string& script, int rounds = 0) {
    session.setVariable("CLI", session.program);
    session.setVariable("Q5SIM", CRASH_Q5SIM);
    session.setVariable("PATH", "/usr/bin:/bin");
    const std::string program = session.program;
    session.program = "/bin/sh";
    const ProcessOutcome outcome = session.run({"-c", script, "sh", std::to_string(rounds)});
    session.program = program;
    return outcome;
}

// The files that a command may change; restored before each attempt.
struct Files {
    std::string world, events, backup;
    bool operator==(const Files&) const = default;
};

static Files filesOf(const Session& session) {
    return {session.worldText(), readFile(session.eventFile()), readFile(session.path("all.cfg"))};
}

static void restore(const Session& session, const Files& files) {
    writeFile(session.world(), files.world);
    writeFile(session.eventFile(), files.events);
    writeFile(session.path("all.cfg"), files.backup);
    for (const auto& entry : std::filesystem::directory_iterator(session.directory))
        if (entry.path().filename().string().rfind(".cli-", 0) == 0 || entry.path().extension() == ".new")
            std::filesystem::remove(entry.path());
}

static std::string eventImage(std::uint32_t events) {
    std::string image(20408, '\0');
    image[0] = image[4] = static_cast<char>(events);
    for (std::uint32_t slot = 1; slot <= events; ++slot)
        image[8 + slot * 408 + 12] = static_cast<char>(slot);
    return image;
}

namespace {
class Crash : public testing::Test {
protected:
    // The old backup contains only the controllers, so that an export of everything differs from it.
    void SetUp() override {
        session.useWorld(fixtureWorld("every_level"));
        ASSERT_EQ(session.run({"export", "-t", "1", "-f", "all.cfg"}).status, 0);
        writeFile(session.eventFile(), eventImage(48));
        before = filesOf(session);
    }
    // Brings the built-in world into the state that a command needs.
    void prepare(const ChangingCommand& command) {
        std::filesystem::remove(session.world());
        const ProcessOutcome outcome =
            shell(session, "set -e; \"$CLI\" export -t 1 -f all.cfg; " + command.prepare);
        ASSERT_EQ(outcome.status, 0) << outcome;
        writeFile(session.eventFile(), eventImage(48));
        before = filesOf(session);
    }
    // Records the result of the command without a fault, and the number of its calls.
    bool recordReference(const Words& command, const std::string& number = "") {
        words = command;
        restore(session, before);
        session.run(words);
        after = filesOf(session);
        restore(session, before);
        calls = countCalls(session, words, number);
        return calls > 0;
    }
    // Tries the fault at every call, or at a sample of the given size, which differs from command to command.
    void tryFault(const std::string& fault, int attempts,
                  const std::function<void(const ProcessOutcome&, const Files&)>& check) {
        const int step = isFullRun() ? 1 : std::max(1, calls / attempts);
        for (int call = 1 + attempted * 37 % step; call <= calls; call += step) {
            restore(session, before);
            const ProcessOutcome outcome = inject(session, fault, std::to_string(call), words);
            SCOPED_TRACE(fault + " at call " + std::to_string(call) + " of " + words[0] + "\n" + outcome.out +
                         outcome.err);
            check(outcome, filesOf(session));
            ++attempted;
        }
    }
    // The event file after the command if the adapters deliver no events.
    std::string eventsOfRefusal() {
        restore(session, before);
        shell(session, "\"$Q5SIM\" refuse q5_getHBAEvents");
        session.run(words);
        return readFile(session.eventFile());
    }
    void expectOldOrNew(const Files& files) {
        EXPECT_TRUE(files.world == before.world || files.world == after.world);
        EXPECT_TRUE(files.events == before.events || files.events == after.events);
        EXPECT_TRUE(files.backup == before.backup || files.backup == after.backup);
    }

    Session session;
    Words words;
    Files before, after;
    int calls = 0, attempted = 0;
};
} // namespace

#define TRACE_OR_SKIP(...)             \
    if (!recordReference(__VA_ARGS__)) \
    GTEST_SKIP() << "programs cannot be traced here"

// The program makes one call after another: every world is the one after some of them, and consistent.
class Versions {
public:
    explicit Versions(const std::string& first) : seen{first} {}
    void add(const std::string& world, Session& session) {
        if (world == seen.back())
            return;
        EXPECT_EQ(std::count(seen.begin(), seen.end(), world), 0) << "an earlier version";
        seen.push_back(world);
        const ProcessOutcome check = shell(session, "\"$Q5SIM\" status --check");
        EXPECT_EQ(check.status, 0) << check;
    }
    int changes() const { return static_cast<int>(seen.size()) - 1; }

private:
    std::vector<std::string> seen;
};

static std::string joined(const Words& words) {
    std::string line;
    for (const std::string& word : words)
        line += (line.empty() ? "" : " ") + word;
    return line;
}

// The adapters' state is as before or after one of the command's changes.
TEST_F(Crash, KillOfAnyChangingCommandLeavesOldOrNewFiles) {
    int kills = 0;
    for (const ChangingCommand& command : changingCommands) {
        SCOPED_TRACE(joined(command.words));
        ASSERT_NO_FATAL_FAILURE(prepare(command));
        TRACE_OR_SKIP(command.words);
        EXPECT_EQ(before.world != after.world, command.changes > 0);
        Versions versions(before.world);
        tryFault("kill", 3, [&](const ProcessOutcome& outcome, const Files& files) {
            EXPECT_TRUE(outcome.status == 128 + SIGKILL || outcome.status == kNotReached) << outcome.status;
            EXPECT_TRUE(files.events == before.events || files.events == after.events);
            EXPECT_TRUE(files.backup == before.backup || files.backup == after.backup);
            versions.add(files.world, session);
            kills += outcome.status == 128 + SIGKILL;
        });
        EXPECT_LE(versions.changes(), command.changes);
        versions.add(after.world, session);
    }
    RecordProperty("kills", kills);
}

// Some of the kills must come before the backup is replaced.
TEST_F(Crash, KillOfAnExportKeepsTheBackupUntilTheNewOneIsComplete) {
    TRACE_OR_SKIP({"export", "-t", "0", "-f", "all.cfg"});
    ASSERT_NE(before.backup, after.backup);
    int kept = 0, replaced = 0;
    tryFault("kill", 60, [&](const ProcessOutcome&, const Files& files) {
        expectOldOrNew(files);
        ++(files.backup == after.backup ? replaced : kept);
    });
    EXPECT_GT(kept, 0);
    EXPECT_EQ(kept + replaced, attempted);
}

// A failure is reported by the exit status or on standard error, unless the export is complete.
TEST_F(Crash, ErrorDuringExportIsReportedOrHarmless) {
    TRACE_OR_SKIP({"export", "-t", "0", "-f", "all.cfg"});
    for (const int error : {EIO, ENOSPC, EACCES, EINTR})
        tryFault("error:" + std::to_string(error), 25,
                 [&](const ProcessOutcome& outcome, const Files& files) {
                     const bool silent = outcome.status == 0 && outcome.err.empty();
                     EXPECT_TRUE(!silent || files.backup == after.backup);
                     // If the controllers disappear during the export, the file is empty.
                     const bool vanished = outcome.out.find("No controller is existed") != std::string::npos;
                     const std::string left = vanished ? "" : before.backup;
                     EXPECT_TRUE(outcome.status == 0 || files.backup == left);
                 });
}

// Errors of the event file are not reported, but never damage it. Errors of the adapters are reported by
// them; what follows is up to the command, which may write a record back that could not be read.
TEST_F(Crash, ErrorDuringAnyChangingCommandIsReportedOrLeavesOldOrNewFiles) {
    for (const ChangingCommand& command : changingCommands) {
        if (command.words[0] == "export")
            continue;
        SCOPED_TRACE(joined(command.words));
        ASSERT_NO_FATAL_FAILURE(prepare(command));
        TRACE_OR_SKIP(command.words);
        const std::string refused = eventsOfRefusal();
        for (const int error : {EIO, ENOSPC})
            tryFault("error:" + std::to_string(error), 1, [&](const ProcessOutcome& outcome, Files files) {
                if (!outcome.err.empty())
                    files.world = before.world;
                if (!outcome.err.empty() && files.events == refused)
                    files.events = before.events;
                expectOldOrNew(files);
            });
    }
    RecordProperty("errors", attempted);
}

namespace {
// An import -c of a complete backup into a system that has changed since.
class CrashImport : public Crash {
protected:
    void SetUp() override {
        Crash::SetUp();
        ASSERT_EQ(session.run({"export", "-t", "0", "-f", "all.cfg"}).status, 0);
        ASSERT_EQ(session.run({"ctrl", "-a", "mod", "-i", "1", "-s", "syncrate=78"}).status, 0);
        before = filesOf(session);
    }
    const Words import = {"import", "-c", "-f", "all.cfg"};
};
} // namespace

TEST_F(CrashImport, SignalIsDeferredUntilItCompletes) {
    TRACE_OR_SKIP(import);
    ASSERT_NE(before.world, after.world);
    int done = 0;
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGQUIT, SIGPIPE}) {
        int late = 0; // with the call that ends the program
        tryFault("signal:" + std::to_string(signal), 5,
                 [&](const ProcessOutcome& outcome, const Files& files) {
                     EXPECT_TRUE(files.world == before.world || files.world == after.world);
                     late += outcome.status == 0;
                     EXPECT_TRUE(outcome.status == 128 + signal || outcome.status == 0) << outcome.status;
                     done += files.world == after.world;
                 });
        EXPECT_LE(late, 1);
    }
    EXPECT_GT(done, 0);
    RecordProperty("signals", attempted);
}

// The file is read completely before anything is changed.
TEST_F(CrashImport, ReadErrorChangesNothing) {
    const std::string number = "@" + std::to_string(SYS_read);
    TRACE_OR_SKIP(import, number);
    const int last = isFullRun() ? calls : std::min(calls, 20); // later ones are those of the adapters
    int refused = 0;
    for (const int error : {EIO, EISDIR})
        for (int call = 1; call <= last; ++call) {
            restore(session, before);
            const ProcessOutcome outcome =
                inject(session, "error:" + std::to_string(error) + number, std::to_string(call), import);
            SCOPED_TRACE("read " + std::to_string(call) + "\n" + outcome.out + outcome.err);
            if (!outcome.err.empty()) // a read of the simulated adapters, or of the loader
                continue;
            const std::string world = session.worldText();
            EXPECT_TRUE(outcome.status == 0 ? world == after.world : world == before.world);
            if (outcome.status != 12)
                continue;
            EXPECT_EQ(outcome.out, "Unable to open the specified configuration file \"all.cfg\"!!\n");
            ++refused;
        }
    EXPECT_GE(refused, 4); // both passes over the file, by both errors
}

// Each round changes two settings at the same time, and counts the rounds in which one was lost.
static std::string raceOf(const std::string& first, const std::string& second, const std::string& lost) {
    return "lost=0 i=0\nwhile [ $i -lt $1 ]; do i=$((i + 1)) value=$((i % 200 + 1))\n" + first + " & " +
           second + " & wait\n" + lost + " || lost=$((lost + 1))\ndone; echo $lost lost\n";
}

TEST_F(Crash, RaceOfControllerSettingsLosesNone) {
    const std::string mod = "\"$CLI\" ctrl -a mod -i 0 -s ";
    EXPECT_EQ(shell(session,
                    raceOf(mod + "syncrate=$value", mod + "initrate=$((201 - value))",
                           "{ \"$CLI\" ctrl -v -i 0 >shown; grep -q \"^Synchronization rate : $value\\$\" "
                           "shown && grep -q \"^Initialization rate : $((201 - value))\\$\" shown; }"),
                    times(15, 200)),
              (ProcessOutcome{0, "0 lost\n", ""}));
}

TEST_F(Crash, RaceOfLogicalDriveSettingsLosesNone) {
    const std::string mod = "\"$CLI\" logdrv -a mod -i 0 -l 0 -s ";
    EXPECT_EQ(
        shell(session,
              raceOf(mod + "lookahead=$((value % 8 + 1))", mod + "name=Name$value",
                     "{ \"$CLI\" logdrv -v -i 0 -l 0 >shown; grep -q \"^Array name : Name$value\\$\" "
                     "shown && grep -q \"^Driver Lookahead threshold: $((value % 8 + 1))\\$\" shown; }"),
              times(15, 200)),
        (ProcessOutcome{0, "0 lost\n", ""}));
}

TEST_F(CrashImport, RaceOfImportsCreatesEachLogicalDriveOnce) {
    const ProcessOutcome list = session.run({"logdrv", "-i", "0"});
    const auto lines = std::count(list.out.begin(), list.out.end(), '\n');
    const std::string command = "\"$CLI\" import -c -f all.cfg";
    // In parts, as each script has limited time.
    for (int rounds = 0; rounds < times(10, 200); rounds += 10)
        EXPECT_EQ(shell(session,
                        raceOf(command, command,
                               "[ $(\"$CLI\" logdrv -i 0 | grep -c .) -eq " + std::to_string(lines) + " ]"),
                        10),
                  (ProcessOutcome{0, "0 lost\n", ""}));
}

TEST_F(Crash, RaceOfHelpsKeepsTheEventFile) {
    EXPECT_EQ(shell(session,
                    "cp CLIEvent.dat kept; lost=0 i=0\nwhile [ $i -lt $1 ]; do i=$((i + 1))\n"
                    "for n in 1 2 3 4 5 6 7 8; do \"$CLI\" help exit >help.$n & done; wait\n"
                    "cmp -s CLIEvent.dat kept || lost=$((lost + 1))\ndone; echo $lost lost\n",
                    times(10, 300)),
              (ProcessOutcome{0, "0 lost\n", ""}));
}

// Sessions that show events at the same time: every event was either shown or is still stored.
TEST_F(Crash, RaceOfEventSessionsLosesNoEvent) {
    for (int round = 0; round < times(8, 200); ++round) {
        writeFile(session.eventFile(), eventImage(40));
        shell(session,
              "for n in 1 2 3 4; do printf 'event -i 1\\nevent -i 1\\n' | \"$CLI\" >shown.$n & done; wait");
        std::set<int> shown, kept;
        for (int n = 1; n <= 4; ++n) {
            const std::string text = readFile(session.path("shown." + std::to_string(n)));
            for (std::size_t at = 0; (at = text.find("0x", at)) != std::string::npos; ++at)
                shown.insert(static_cast<int>(std::strtol(text.c_str() + at, nullptr, 16)));
        }
        const std::string image = readFile(session.eventFile());
        ASSERT_EQ(image.size(), 20408u);
        const int position = image[0], count = image[4];
        for (int held = 0; held < count; ++held)
            kept.insert(image[static_cast<std::size_t>(8 + (position - held) * 408 + 12)]);
        EXPECT_EQ(kept.size(), static_cast<std::size_t>(count));
        std::set<int> all = shown;
        all.insert(kept.begin(), kept.end());
        EXPECT_EQ(all.size(), 40u);
        EXPECT_EQ(shown.size() + kept.size(), 40u);
    }
}

// Even if the parent ignores SIGPIPE.
TEST(EndlessMessage, StopsWithoutAReader) {
    Session session;
    const std::string line = "Invalid command for \"enclosure\"\n";
    EXPECT_EQ(shell(session,
                    "trap '' PIPE\n{ \"$CLI\" enclosure -a locate bogus; echo $? >status; } | head -n 2; "
                    "cat status",
                    0),
              (ProcessOutcome{0, line + line + "1\n", ""}));
}
