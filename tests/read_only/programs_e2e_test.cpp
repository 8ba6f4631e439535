// The programs other than cli, in each of their modes, with an adapter library that terminates any caller of
// an operation that changes something: only cli-restore --apply does.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/e2e/harness.h"

namespace fs = std::filesystem;

static const std::string programs = PROGRAMS;
using Words = std::vector<std::string>;

static constexpr int kAborted = 128 + 6;

// The built-in world, in which a logical drive is initialized, another one is checked and a drive is
// patrolled.
struct ReadOnlyPrograms : testing::Test {
    Session session;

    void SetUp() override {
        session.setVariable("PATH", "/usr/bin:/bin");
        session.setVariable("GUARDED_CALLS", calls());
        simulate("cli-rehearse", {"init", "-a", "start", "-l", "0", "-i", "0"});
        simulate("cli-rehearse", {"rc", "-a", "start", "-l", "1", "-i", "0"});
        simulate("cli-rehearse", {"mp", "-a", "start", "-p", "1", "-i", "0"});
        fs::create_directory(session.path("kept"));
    }
    void TearDown() override { EXPECT_EQ(readFile(calls()), ""); }
    std::string calls() const { return session.path("guarded.calls"); }

    // With the simulated adapters themselves.
    void simulate(const std::string& name, const Words& words) {
        session.variables.erase("LD_LIBRARY_PATH");
        session.program = programs + "/" + name;
        const ProcessOutcome outcome = session.run(words);
        ASSERT_EQ(outcome.status, 0) << outcome;
    }
    ProcessOutcome run(const std::string& name, const Words& words) {
        session.preferLibraries(GUARDED);
        session.program = programs + "/" + name;
        return session.run(words);
    }
    // Nothing is called, and what the adapters would keep stays as it is.
    void expectNoChange(const std::string& name, const Words& words, int status) {
        const std::string world = session.worldText();
        const ProcessOutcome outcome = run(name, words);
        EXPECT_EQ(outcome.status, status) << name << " " << testing::PrintToString(words) << "\n" << outcome;
        EXPECT_EQ(readFile(calls()), "") << name << " " << testing::PrintToString(words);
        EXPECT_EQ(session.worldText(), world);
    }
    void expectNoBackupChange(const Words& more, int status) {
        Words words = {"-d", "kept", "--cli", E2E_REHEARSAL};
        words.insert(words.end(), more.begin(), more.end());
        expectNoChange("cli-backup", words, status);
    }
    // Without its suffix.
    std::string newestBackup() const {
        std::string newest;
        for (const auto& entry : fs::directory_iterator(session.path("kept")))
            if (entry.path().extension() == ".cfg")
                newest = std::max(newest, "kept/" + entry.path().stem().string());
        return newest;
    }
};

// The guard works for each program that could call something: see also TryGuard.DetectsAChange.
TEST_F(ReadOnlyPrograms, OnlyAppliedRestoresChangeAnything) {
    expectNoBackupChange({}, 0);
    simulate("cli-rehearse", {"ctrl", "-a", "mod", "-i", "0", "-s", "smartpoll=33"});
    const std::string backup = newestBackup();
    expectNoChange("cli-restore", {"-i", "0", backup}, 1);
    EXPECT_EQ(run("cli-restore", {"-i", "0", "--apply", backup}).status, kAborted);
    EXPECT_EQ(readFile(calls()), "q5_setControllerSettings\n");
    fs::remove(calls());
}

TEST_F(ReadOnlyPrograms, Summaries) {
    for (const char* name : {"cli-capture", "cli-try", "cli-backup", "cli-restore", "cli-wait"})
        for (const char* word : {"--help", "--version"})
            expectNoChange(name, {word}, 0);
}

TEST_F(ReadOnlyPrograms, Capture) {
    for (const Words& words : {Words{}, Words{"--anonymous"}, Words{"-o", "copy.json"}})
        expectNoChange("cli-capture", words, 0);
    expectNoChange("cli-capture", {"-o", "none/copy.json"}, 3);
}

// One list of commands with each operation that deletes, sets, creates or starts something.
TEST_F(ReadOnlyPrograms, Try) {
    expectNoChange("cli-try", {"logdrv", "-a", "del", "-l", "0", "-i", "0"}, 1);
    expectNoChange("cli-try", {"buzz", "-a", "disable", "-i", "0"}, 0);
    expectNoChange("cli-try", {"logdrv", "-a", "del", "-l", "9", "-i", "0"}, 2);
    writeFile(session.path("list"), "ctrl -a mod -i 0 -s \"smartpoll=33\"\n"
                                    "event\n"
                                    "mp -a stop -p 1 -i 0\n"
                                    "buzz -a disable -i 0\n"
                                    "logdrv -a del -l 1 -i 0\n");
    expectNoChange("cli-try", {"-f", "list"}, 1);
    expectNoChange("cli-try", {"-f", "none"}, 3);
    session.preferLibraries(GUARDED);
    session.program = "/bin/sh";
    const std::string typed = "printf 'logdrv -a del -l 0 -i 0\\nevent\\nexit\\n' | ";
    EXPECT_EQ(session.run({"-c", typed + programs + "/cli-try --shell"}).status, 1);
}

TEST_F(ReadOnlyPrograms, Backup) {
    expectNoBackupChange({}, 0);
    expectNoBackupChange({}, 0); // unchanged
    simulate("cli-rehearse", {"ctrl", "-a", "mod", "-i", "0", "-s", "smartpoll=33"});
    expectNoBackupChange({"--keep", "1"}, 0);
    simulate("q5sim", {"pull-drive", "0", "8"});
    expectNoBackupChange({"--keep", "1"}, 1); // fewer drives
    expectNoChange("cli-backup", {"-d", "none", "--cli", E2E_REHEARSAL}, 3);
}

TEST_F(ReadOnlyPrograms, Restore) {
    expectNoBackupChange({}, 0);
    const std::string backup = newestBackup();
    expectNoChange("cli-restore", {"-i", "0", backup}, 0);
    expectNoChange("cli-restore", {"-i", "0", "--apply", backup}, 0); // nothing is left to do
    expectNoChange("cli-restore", {"-i", "5", backup}, 3);
    simulate("cli-rehearse", {"logdrv", "-a", "del", "-l", "1", "-i", "0"});
    expectNoChange("cli-restore", {"-i", "0", backup}, 1);
    expectNoChange("cli-restore", {"-i", "0", "--drives", "4=6", backup}, 4);
    simulate("q5sim", {"fail-drive", "0", "4"});
    expectNoChange("cli-restore", {"-i", "0", backup}, 4);
    expectNoChange("cli-restore", {"-i", "0", "--apply", backup}, 4);
}

TEST_F(ReadOnlyPrograms, Wait) {
    for (const char* kind : {"init", "rc", "mp", "any"})
        expectNoChange("cli-wait", {"--timeout", "0", "--for", kind}, 3);
    for (const char* kind : {"sync", "migrate", "rb"})
        expectNoChange("cli-wait", {"--timeout", "0", "--for", kind}, 0);
    expectNoChange("cli-wait", {"--timeout", "0", "-q", "-i", "0", "-l", "1", "--every", "0.1"}, 3);
    expectNoChange("cli-wait", {"-i", "1"}, 0);
    simulate("cli-rehearse", {"rc", "-a", "pause", "-l", "1", "-i", "0"});
    expectNoChange("cli-wait", {"-l", "1", "-i", "0"}, 4);
    expectNoChange("cli-wait", {"-l", "1", "-i", "0", "--paused-too", "--timeout", "0"}, 3);
}
