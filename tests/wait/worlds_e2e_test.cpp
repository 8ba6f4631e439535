// cli-wait over simulated worlds, with its output in a file. Time passes only when a test advances the world.
#include <gtest/gtest.h>

#include "tests/e2e/harness.h"

static const std::string kArchive = "logical drive 0 Archive of controller 0";

// Runs scripts in which cli-wait and q5sim are commands. "await TEXT" waits until the output of cli-wait,
// which is in "out", contains a text.
struct WaitWorlds : testing::Test {
    Session session;
    void SetUp() override {
        session.setVariable("PATH", session.directory + "/bin:/usr/bin:/bin");
        script("mkdir bin; ln -s '" CLI_WAIT "' bin/cli-wait; ln -s '" Q5SIM "' bin/q5sim; "
               "ln -s '" E2E_REHEARSAL "' bin/cli");
    }
    ProcessOutcome script(const std::string& text) {
        session.program = "/bin/sh";
        return session.run({"-c", "await() { until grep -q \"$1\" out err; do sleep 0.1; done; }\n" + text});
    }
    // Starts cli-wait in the background, runs the script, and then expects this status and output.
    void expect(const std::string& words, const std::string& text, int status, const std::string& output,
                const std::string& errors = "") {
        const ProcessOutcome outcome =
            script("{ : >out; : >err; cli-wait " + words + " --every 0.1 >out 2>err & }\n" + text +
                   "\nwait $!; status=$?; cat out; cat err >&2; exit $status");
        EXPECT_EQ(outcome, (ProcessOutcome{status, output, errors}));
    }
    std::string failed(const std::string& command) { return script("q5sim " + command).err; }
};

TEST_F(WaitWorlds, FinishesAtOnceInAHealthyWorld) {
    expect("", "", 0,
           "no activity is running\n" + kArchive + " is online\n" +
               "logical drive 1 System of controller 0 is online\n" +
               "logical drive 0 Scratch of controller 1 is online\n");
    expect("-q", "", 0, "");
    expect("-i 1 --for sync", "", 0,
           "no synchronization is running\nlogical drive 0 Scratch of controller 1 is online\n");
    expect("--for mp", "", 0, "no media patrol is running\n");
}

TEST_F(WaitWorlds, WaitsForARebuild) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0", "await ': 0%'; q5sim advance --until-idle >/dev/null", 0,
           "rebuild of " + kArchive + ": 0%\nrebuild of " + kArchive + " has ended\n" + kArchive +
               " is online\n");
}

TEST_F(WaitWorlds, WaitsForARebuildQuietly) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-q -l 0", "q5sim advance --until-idle >/dev/null", 0, "");
}

// The clock runs by itself, so that the rebuild may be over before the first reading.
TEST_F(WaitWorlds, WaitsWhileTheClockRuns) {
    session.variables.erase("Q5SIM_NOW");
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    EXPECT_EQ(failed("speed 200"), "");
    const ProcessOutcome outcome = script("exec cli-wait -l 0 --every 0.1 --for rb");
    EXPECT_EQ(outcome.status, 0);
    const std::string end = kArchive + " is online\n";
    ASSERT_GE(outcome.out.size(), end.size());
    EXPECT_EQ(outcome.out.substr(outcome.out.size() - end.size()), end);
}

TEST_F(WaitWorlds, ReportsAnAbortedRebuild) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0 --for rb", "await ': 0%'; cli rb -a abort -l 0 -i 0 >/dev/null", 1,
           "rebuild of " + kArchive + ": 0%\nrebuild of " + kArchive + " has ended\n" + kArchive +
               " is critical\n");
    expect("-l 0 --for rb", "", 1, "no rebuild is running\n" + kArchive + " is critical\n");
}

// The rebuild's target fails too, without another spare.
TEST_F(WaitWorlds, ReportsASecondFailure) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0", "await ': 0%'; q5sim fail-drive 0 3 >/dev/null", 1,
           "rebuild of " + kArchive + ": 0%\nrebuild of " + kArchive + " has ended\n" + kArchive +
               " is offline\n");
}

TEST_F(WaitWorlds, ReportsALogicalDriveDeletedMeanwhile) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0", "await ': 0%'; cli logdrv -a del -l 0 -i 0 >/dev/null", 1,
           "rebuild of " + kArchive + ": 0%\nrebuild of " + kArchive + " has ended\n" + kArchive +
               " no longer exists\n");
}

// Under the same number, array ID and name. No reading shows the time in between.
TEST_F(WaitWorlds, ReportsALogicalDriveCreatedAgainMeanwhile) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0 --for rb",
           "await ': 0%'; cp world.json other.json; Q5SIM_WORLD=$PWD/other.json; export Q5SIM_WORLD; "
           "cli logdrv -a del -l 0 -i 0 >/dev/null; "
           "cli logdrv -a add -i 0 -p 7 -z name=Archive,raid=raid0,capacity=100 >/dev/null; "
           "mv other.json world.json",
           1,
           "rebuild of " + kArchive + ": 0%\nrebuild of " + kArchive + " has ended\n" + kArchive +
               " has another level or size; it may be another one\n");
}

// A new logical drive is initialized and then synchronized.
TEST_F(WaitWorlds, WaitsForTheActivityThatFollows) {
    const std::string name = "logical drive 2 New of controller 0";
    EXPECT_EQ(script("cli logdrv -a add -p '7 8' -e '0 0' -i 0 "
                     "-z 'name=New,raid=raid1,init=quick,capacity=1000'"),
              (ProcessOutcome{0, "", ""}));
    expect("-l 2",
           "await 'initialization.*: 0%'; q5sim advance 1 >/dev/null; await 'synchronization.*: 0%'; "
           "q5sim advance --until-idle >/dev/null",
           0,
           "initialization of " + name + ": 0%\ninitialization of " + name +
               " has ended\nsynchronization of " + name + ": 0%\nsynchronization of " + name +
               " has ended\n" + name + " is online\n");
}

TEST_F(WaitWorlds, LeavesPausedActivities) {
    EXPECT_EQ(failed("fail-drive 0 2; cli rb -a pause -l 0 -i 0"), "");
    expect("-l 0", "", 4, "rebuild of " + kArchive + " is paused at 0%\nonly paused activities are left\n");
    expect("-l 0 --paused-too",
           "await paused; cli rb -a resume -l 0 -i 0 >/dev/null; await ': 0%'; q5sim advance --until-idle "
           ">/dev/null",
           0,
           "rebuild of " + kArchive + " is paused at 0%\nrebuild of " + kArchive +
               " was resumed at 0%\nrebuild of " + kArchive + ": 0%\nrebuild of " + kArchive +
               " has ended\n" + kArchive + " is online\n");
}

// They have ten seconds, even if the wait is shorter. The message is an error of the adapters.
static const std::string kNoAnswer = "cli-wait: timed out: the adapters do not answer\n";

TEST_F(WaitWorlds, TimesOutIfTheAdaptersDoNotAnswer) {
    EXPECT_EQ(failed("hang q5_getLogDrvInfo"), "");
    expect("--timeout 3", "", 3, "", kNoAnswer);
}

TEST_F(WaitWorlds, TimesOutIfTheAdaptersCannotBeOpened) {
    EXPECT_EQ(failed("hang q5_initialize"), "");
    expect("-q --timeout 0", "", 3, "", kNoAnswer);
}

TEST_F(WaitWorlds, LimitsEachReading) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0 --limit 5", "await ': 0%'; q5sim hang q5_getLogDrvInfo >/dev/null", 3,
           "rebuild of " + kArchive + ": 0%\n", kNoAnswer);
    expect("-l 0 --limit 1 --timeout 1000", "", 3, "", kNoAnswer);
    EXPECT_EQ(failed("clear-rules; q5sim hang q5_initialize"), "");
    expect("-q --limit 1", "", 3, "", kNoAnswer);
}

TEST_F(WaitWorlds, TimesOut) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    expect("-l 0 --timeout 0", "", 3, "rebuild of " + kArchive + ": 0%\n",
           "cli-wait: timed out after 0 seconds\n");
    expect("-l 0 --timeout 1", "", 3, "rebuild of " + kArchive + ": 0%\n",
           "cli-wait: timed out after 1 second\n");
}

TEST_F(WaitWorlds, WaitsForMediaPatrol) {
    EXPECT_EQ(script("cli mp -a start -p 7 -i 0").status, 0);
    expect("--for mp", "await ': 0%'; q5sim advance --until-idle >/dev/null", 0,
           "media patrol of drive 7 of controller 0: 0%\n"
           "media patrol of drive 7 of controller 0 has ended\n");
    EXPECT_EQ(script("cli mp -a start -p 7 -i 0").status, 0);
    expect("--for mp", "await ': 0%'; cli mp -a stop -p 7 -i 0 >/dev/null", 1,
           "media patrol of drive 7 of controller 0: 0%\n"
           "media patrol of drive 7 of controller 0 has ended\n"
           "media patrol of drive 7 of controller 0 was stopped\n");
}

TEST_F(WaitWorlds, GivesUpOnAdaptersThatRefuse) {
    EXPECT_EQ(failed("fail-drive 0 2; q5sim refuse q5_getLogDrvInfo"), "");
    expect("-l 0", "", 5, "", "cli-wait: controller 0: q5_getLogDrvInfo failed with result 1\n");
    EXPECT_EQ(failed("clear-rules; q5sim refuse q5_getLogDrvInfo --after 2"), "");
    expect("-l 0", "", 5, "rebuild of " + kArchive + ": 0%\n",
           "cli-wait: controller 0: q5_getLogDrvInfo failed with result 1; trying again\n"
           "cli-wait: controller 0: q5_getLogDrvInfo failed with result 1\n");
}

TEST_F(WaitWorlds, ToleratesAShortFailure) {
    EXPECT_EQ(failed("fail-drive 0 2; q5sim refuse q5_getLogDrvInfo --after 2 --times 2"), "");
    expect("-l 0", "await again; q5sim advance --until-idle >/dev/null", 0,
           "rebuild of " + kArchive + ": 0%\nrebuild of " + kArchive + " has ended\n" + kArchive +
               " is online\n",
           "cli-wait: controller 0: q5_getLogDrvInfo failed with result 1; trying again\n");
}

// A list that is shorter than the controller's count may lack what is active.
TEST_F(WaitWorlds, GivesUpOnListsThatAreShort) {
    EXPECT_EQ(failed("short q5_getLogDrvInfo; cli rc -a start -l 1 -i 0"), "");
    const std::string counts = "cli-wait: controller 0: counts 2 logical drives, but lists ";
    expect("-i 0", "", 5, "", counts + "1 logical drive\n");
    expect("-l 1", "", 5, "", counts + "1 logical drive\n");
    EXPECT_EQ(failed("clear-rules; q5sim zero q5_getLogDrvInfo"), "");
    expect("-l 0 --for rb", "", 5, "", counts + "0 logical drives\n");
    EXPECT_EQ(failed("clear-rules; q5sim zero q5_getPhyDrvInfo"), "");
    expect("--for mp", "", 5, "", "cli-wait: controller 0: counts 8 drives, but lists 0 drives\n");
    expect("-l 0", "", 0, "no activity is running\n" + kArchive + " is online\n"); // drives do not matter
}

TEST_F(WaitWorlds, AShortListEndsNoActivity) {
    const std::string system = "logical drive 1 System of controller 0";
    EXPECT_EQ(script("cli rc -a start -l 1 -i 0").status, 0);
    const std::string counts = "cli-wait: controller 0: counts 2 logical drives, but lists 1 logical drive";
    expect("-i 0", "await ': 0%'; q5sim short q5_getLogDrvInfo >/dev/null", 5,
           "redundancy check of " + system + ": 0%\n", counts + "; trying again\n" + counts + "\n");
}

// The last drive is the one that the shortened pages lack.
TEST_F(WaitWorlds, AShortListEndsNoMediaPatrol) {
    EXPECT_EQ(script("cli mp -a start -p 8 -i 0").status, 0);
    const std::string counts = "cli-wait: controller 0: counts 8 drives, but lists 7 drives";
    expect("-i 0 --for mp", "await ': 0%'; q5sim short q5_getPhyDrvInfo >/dev/null", 5,
           "media patrol of drive 8 of controller 0: 0%\n", counts + "; trying again\n" + counts + "\n");
}

// As if a logical drive were deleted between the count and the list.
TEST_F(WaitWorlds, ReadsAShortListAgain) {
    EXPECT_EQ(failed("short q5_getLogDrvInfo"), "");
    const std::string once =
        "sed -i 's/\"times\": 0/\"times\": 1/' world.json; grep -c '\"times\": 1' world.json";
    EXPECT_EQ(script(once).out, "1\n");
    expect("-l 0", "", 0, "no activity is running\n" + kArchive + " is online\n");
}

// Without the count, no list is known to be complete.
TEST_F(WaitWorlds, GivesUpWithoutTheCounts) {
    EXPECT_EQ(failed("refuse q5_getControllerInfo"), "");
    for (const char* words : {"-l 0", "--for mp"})
        expect(words, "", 5, "", "cli-wait: controller 0: q5_getControllerInfo failed with result 1\n");
}

// Any of the drives may be patrolled.
TEST_F(WaitWorlds, GivesUpOnRefusedMediaPatrols) {
    EXPECT_EQ(script("cli mp -a start -p 7 -i 0").status, 0);
    EXPECT_EQ(failed("refuse q5_getHBAMediaPatrolProgress"), "");
    const std::string refused =
        "cli-wait: drive 1 of controller 0: q5_getHBAMediaPatrolProgress failed with result 1";
    expect("--for mp", "", 5, "", refused + "\n");
    expect("", "", 5, "", refused + "\n");
    expect("-l 0", "", 0, "no activity is running\n" + kArchive + " is online\n");
    // After one call for each drive.
    EXPECT_EQ(failed("clear-rules; q5sim refuse q5_getHBAMediaPatrolProgress --after 8"), "");
    expect("-i 0 --for mp", "", 5, "media patrol of drive 7 of controller 0: 0%\n",
           refused + "; trying again\n" + refused + "\n");
}

TEST_F(WaitWorlds, WaitsWithoutReadableProgress) {
    EXPECT_EQ(failed("fail-drive 0 2; q5sim refuse q5_getRebuildProgress"), "");
    expect("-l 0 --timeout 0", "", 3, "rebuild of " + kArchive + ": ?%\n",
           "cli-wait: timed out after 0 seconds\n");
}

TEST_F(WaitWorlds, ReportsAdaptersThatCannotBeOpened) {
    EXPECT_EQ(failed("refuse q5_discover"), "");
    expect("", "", 5, "", "cli-wait: q5_discover failed with result 1\n");
    EXPECT_EQ(failed("clear-rules"), "");
    session.useWorld("{\"controllers\": []}");
    expect("", "", 5, "", "cli-wait: no controller is found\n");
}

// Without a terminal there is nothing to restore.
TEST_F(WaitWorlds, EndsWithTheSignal) {
    EXPECT_EQ(failed("fail-drive 0 2"), "");
    for (const auto& [name, number] : {std::pair{"INT", 2}, {"TERM", 15}, {"HUP", 1}}) {
        // A shell ignores SIGINT in its background jobs: env restores the default.
        const ProcessOutcome outcome =
            script(": >out; : >err; env --default-signal=INT cli-wait -l 0 >out & "
                   "await ': 0%'; kill -" +
                   std::string(name) + " $!; wait $!; status=$?; cat out; exit $status");
        EXPECT_EQ(outcome.status, 128 + number);
        EXPECT_EQ(outcome.out, "rebuild of " + kArchive + ": 0%\n") << name;
    }
}

// It never changes anything: the world stays as it was.
TEST_F(WaitWorlds, OnlyReads) {
    EXPECT_EQ(failed("fail-drive 0 2; cli rb -a pause -l 0 -i 0; cli mp -a start -p 7 -i 0"), "");
    const std::string before = session.worldText();
    expect("-l 0", "", 4, "rebuild of " + kArchive + " is paused at 0%\nonly paused activities are left\n");
    EXPECT_EQ(session.worldText(), before);
}
