// What cli-backup leaves when it is killed, when a system call fails, and when several run at the same time:
// earlier backups are complete and unchanged, a new one is complete or absent, and the next run succeeds.
//
// By default a sample of the system calls is tried; with CRASH_TESTS=all every call, and further kills at
// random moments until there were 1,000.
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <random>
#include <thread>

#include "tests/backup/backup_fixture.h"

static constexpr int kNoTracing = 77, kNotReached = 78;

static bool isWholeRun() {
    const char* value = std::getenv("CRASH_TESTS");
    return value != nullptr && value == std::string("all");
}

// There are two backups. The adapters have changed since, so that the next run saves and removes the oldest.
struct BackupCrash : BackupSession {
    Files before;
    int kills = 0, published = 0, rotated = 0;

    void SetUp() override {
        BackupSession::SetUp();
        for (const int rate : {1, 2}) {
            changeRate(rate);
            ASSERT_EQ(backup().status, 0);
        }
        changeRate(3);
        before = files();
        ASSERT_EQ(before.size(), 4u);
    }
    void putBack() const {
        removeBackups();
        for (const auto& [name, content] : before)
            writeFile(kept + "/" + name, content);
    }
    ProcessOutcome inject(const std::string& fault, const std::string& call) {
        return runOther(CRASH_INJECTOR,
                        {fault, call, CLI_BACKUP, "-d", "kept", "--keep", "2", "--cli", E2E_REHEARSAL});
    }
    int countCalls() {
        putBack();
        const std::string file = session.path("calls");
        if (inject("count", file).status == kNoTracing)
            return 0;
        return std::atoi(readFile(file).c_str());
    }
    // Runs the fault at every call or at a sample of them.
    template <typename Check>
    bool tryFault(const std::string& fault, int sample, Check check) {
        const int calls = countCalls();
        const int step = isWholeRun() ? 1 : std::max(1, calls / sample);
        for (int call = 1; call <= calls; call += step) {
            putBack();
            const ProcessOutcome outcome = inject(fault, std::to_string(call));
            SCOPED_TRACE(fault + " at call " + std::to_string(call) + " of " + std::to_string(calls));
            check(outcome);
            expectWhole();
        }
        return calls > 0;
    }
    // The newest earlier backup is as it was; the oldest may have been removed, once the new one was there.
    void expectWhole() {
        const Files now = files();
        const bool saved = holdsNewBackup(now);
        published += saved;
        int removed = 0;
        for (auto file = before.begin(); file != before.end(); ++file) {
            const bool oldest = std::distance(before.begin(), file) < 2;
            const auto found = now.find(file->first);
            const bool isThere = found != now.end();
            EXPECT_TRUE(isThere || (saved && oldest)) << file->first << " is missing";
            EXPECT_TRUE(!isThere || found->second == file->second) << file->first;
            removed += !isThere;
        }
        rotated += removed == 2;
        for (const auto& [name, content] : now)
            EXPECT_TRUE(std::filesystem::path(name).extension() != ".cfg" ||
                        now.count(std::filesystem::path(name).stem().string() + ".json") == 1)
                << name;
    }
    bool holdsNewBackup(const Files& now) const {
        for (const auto& [name, content] : now)
            if (before.count(name) == 0 && std::filesystem::path(name).extension() == ".cfg") {
                EXPECT_NE(content.find("<SyncRate> 3\n"), std::string::npos);
                return true;
            }
        return false;
    }
    // The next run removes what is left over and ends with two complete backups.
    void expectNextRunSucceeds() {
        const ProcessOutcome outcome = backup({"--keep", "2"});
        EXPECT_EQ(outcome.status, 0) << outcome;
        EXPECT_GE(files().size(), 4u);
        EXPECT_EQ(files().size() % 2, 0u);
        EXPECT_TRUE(holdsNewBackup(files()));
        EXPECT_TRUE(std::filesystem::is_empty(kept + "/.cli-backup"));
    }
};

TEST_F(BackupCrash, KillAtACallLeavesCompleteBackups) {
    const bool traced = tryFault("kill", 60, [&](const ProcessOutcome& outcome) {
        kills += outcome.status == 128 + SIGKILL;
        EXPECT_TRUE(outcome.status == 128 + SIGKILL || outcome.status == kNotReached) << outcome;
        expectWhole();
        expectNextRunSucceeds();
    });
    if (!traced)
        GTEST_SKIP() << "programs cannot be traced here";
    EXPECT_GT(published, 0);
    EXPECT_GE(kills, 50);
    RecordProperty("kills", kills);
}

// The file system is full, or fails, from call to call.
TEST_F(BackupCrash, ErrorAtACallLeavesCompleteBackups) {
    bool traced = true;
    int failed = 0;
    for (const int error : {ENOSPC, EIO})
        traced = traced && tryFault("error:" + std::to_string(error), 60, [&](const ProcessOutcome& outcome) {
                     failed += outcome.status == 3;
                     // If success is reported, the backup exists.
                     EXPECT_TRUE(outcome.status != 0 || holdsNewBackup(files())) << outcome;
                 });
    if (!traced)
        GTEST_SKIP() << "programs cannot be traced here";
    EXPECT_GT(failed, 0);
}

// Starts cli-backup, or the program of cli in it, and kills it and everything it started after some time.
static int killAfter(const Session& session, const Words& words, int microseconds) {
    std::vector<std::string> variables;
    for (const auto& [name, value] : session.variables)
        variables.push_back(name + "=" + value);
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> arguments, environment;
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        for (const std::string& variable : variables)
            environment.push_back(const_cast<char*>(variable.c_str()));
        arguments.push_back(nullptr);
        environment.push_back(nullptr);
        setpgid(0, 0);
        if (chdir(session.directory.c_str()) == 0 && freopen("/dev/null", "w", stdout) != nullptr)
            execve(arguments[0], arguments.data(), environment.data());
        _exit(127);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    kill(-child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The moments are scaled to the duration of a run, so that all of it is covered.
TEST_F(BackupCrash, KillAtAnyMomentLeavesCompleteBackups) {
    const int wanted = isWholeRun() ? 1000 : 25;
    std::minstd_rand random(1);
    int reach = 40000;
    for (int attempt = 0; kills < wanted && attempt < 10 * wanted; ++attempt) {
        putBack();
        const int moment = std::uniform_int_distribution<int>(0, reach)(random);
        const bool killed =
            killAfter(session, {CLI_BACKUP, "-d", "kept", "--keep", "2", "--cli", E2E_REHEARSAL}, moment) ==
            128 + SIGKILL;
        reach = std::max(2000, killed ? reach + reach / 50 : reach - reach / 25);
        kills += killed;
        SCOPED_TRACE("killed after " + std::to_string(moment) + " microseconds");
        expectWhole();
        if (attempt % 10 == 0)
            expectNextRunSucceeds();
    }
    EXPECT_EQ(kills, wanted);
    RecordProperty("kills", kills);
    RecordProperty("published", published);
}

// A kill leaves its child process running for a moment. The next run waits for that process.
TEST_F(BackupCrash, NextRunWaitsForAnOrphanedExport) {
    writeFile(session.path("script"),
              "#!/bin/sh\n[ -e ../../once ] || { : >../../once; kill -9 $PPID; sleep 1; : >../../orphan; }\n"
              "exec \"" E2E_REHEARSAL "\" \"$@\"\n");
    std::filesystem::permissions(session.path("script"), std::filesystem::perms(0755));
    EXPECT_EQ(session.run({"-d", "kept", "--cli", "script"}).status, 128 + SIGKILL);
    EXPECT_EQ(session.run({"-d", "kept", "--cli", "script"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(session.path("orphan")));
    EXPECT_TRUE(std::filesystem::is_empty(kept + "/.cli-backup"));
    EXPECT_TRUE(holdsNewBackup(files()));
}

// Eight at the same time: one saves, the others find nothing changed.
TEST_F(BackupCrash, SeveralAtTheSameTimeSaveOnce) {
    session.setVariable("PATH", "/usr/bin:/bin");
    for (int round = 0; round < (isWholeRun() ? 50 : 3); ++round) {
        putBack();
        const ProcessOutcome outcome = runOther(
            "/bin/sh",
            {"-c",
             "for n in 1 2 3 4 5 6 7 8; do \"$0\" \"$@\" >out.$n 2>&1 || echo failed >>out.$n & done; wait; "
             "cat out.?",
             CLI_BACKUP, "-d", "kept", "--keep", "3", "--cli", E2E_REHEARSAL});
        int saved = 0, unchanged = 0;
        for (std::size_t at = 0; (at = outcome.out.find("saved as ", at)) != std::string::npos; ++at)
            ++saved;
        for (std::size_t at = 0; (at = outcome.out.find("unchanged since ", at)) != std::string::npos; ++at)
            ++unchanged;
        EXPECT_EQ(saved, 1) << outcome;
        EXPECT_EQ(unchanged, 7) << outcome;
        EXPECT_EQ(files().size(), 6u);
        expectWhole();
    }
}

// A file system that is really full, where one can be mounted.
TEST_F(BackupCrash, FullFileSystemLeavesEarlierBackups) {
    session.setVariable("PATH", "/usr/sbin:/usr/bin:/sbin:/bin");
    const ProcessOutcome outcome = runOther(
        "/bin/sh",
        {"-c",
         "unshare -m sh -c 'mkdir full && mount -t tmpfs -o size=4m none full 2>/dev/null || exit 77\n"
         "cp kept/* full/ && cp -r full before\n"
         "dd if=/dev/zero of=full/filler bs=1k 2>/dev/null; rm -f full/*.none\n"
         "\"$0\" -d full --cli \"$1\" >out 2>&1; status=$?\n"
         "rm full/filler; rm -rf full/.cli-backup; diff -r before full || exit 99\n"
         "cat out; exit $status' \"$0\" \"$1\" 2>/dev/null || exit $?",
         CLI_BACKUP, E2E_REHEARSAL});
    if (outcome.status == 77 || outcome.status == 1)
        GTEST_SKIP() << "no file system can be mounted here: " << outcome;
    EXPECT_EQ(outcome.status, 3) << outcome;
    EXPECT_EQ(outcome.out,
              "cli-backup: " E2E_REHEARSAL " export failed with status 12: Unable to create or open the "
              "specified configuration file \"new.cfg\"\n");
}
