// When a wait is over, with which exit status, and what is printed meanwhile.
#include <gtest/gtest.h>

#include "tests/wait/views.h"

static constexpr std::int64_t kMinute = 60'000;
static const std::string kArchive = "logical drive 0 Archive of controller 0";
static const std::string kEndedRebuild =
    "rebuild of " + kArchive + ": 45%\nrebuild of " + kArchive + " has ended\n";

// Feeds views at given times, and collects the messages: errors begin with "! ".
struct Watching : testing::Test {
    Watch watch;
    std::string messages;

    WaitStatus take(const View& view, std::int64_t now = 0) {
        const WaitStatus status = handleView(&watch, view, now);
        reportPercentages(&watch, now, 0);
        for (const Message& message : watch.messages)
            messages += (message.isError ? "! " : "") + message.text + "\n";
        watch.messages.clear();
        return status;
    }
    // An activity that has ended at the second reading, which the third one confirms.
    WaitStatus takeEnd(const View& active, const View& after) {
        take(active);
        take(after);
        return take(after);
    }
    void expectMessages(const std::string& expected) {
        EXPECT_EQ(messages, expected);
        messages.clear();
    }
};

TEST_F(Watching, FinishesAtOnceWhenNothingIsActive) {
    EXPECT_EQ(take(quietView(ArrayState::online)), WaitStatus::finished);
    expectMessages("no activity is running\n" + kArchive + " is online\n");
}

TEST_F(Watching, ReportsAStateThatNoActivityImproves) {
    EXPECT_EQ(take(quietView(ArrayState::degraded)), WaitStatus::notOnline);
    expectMessages("no activity is running\n" + kArchive + " is degraded\n");
    watch.options.kinds = kRebuilding;
    EXPECT_EQ(take(quietView(ArrayState::critical)), WaitStatus::notOnline);
    expectMessages("no rebuild is running\n" + kArchive + " is critical\n");
}

TEST_F(Watching, FinishesWithoutAnyLogicalDrive) {
    EXPECT_EQ(take(View{}), WaitStatus::finished);
    expectMessages("no activity is running\n");
}

TEST_F(Watching, WaitsForTheEndOfAnActivity) {
    EXPECT_EQ(take(activeView(kRebuilding, 45)), WaitStatus::waiting);
    expectMessages("rebuild of " + kArchive + ": 45%\n");
    EXPECT_EQ(take(quietView(ArrayState::online)), WaitStatus::waiting);
    expectMessages("rebuild of " + kArchive + " has ended\n");
    EXPECT_EQ(take(quietView(ArrayState::online)), WaitStatus::finished);
    expectMessages(kArchive + " is online\n");
}

TEST_F(Watching, ReportsAnAbortedActivity) {
    EXPECT_EQ(takeEnd(activeView(kRebuilding, 45), quietView(ArrayState::critical)), WaitStatus::notOnline);
    expectMessages(kEndedRebuild + kArchive + " is critical\n");
}

TEST_F(Watching, FollowsAChainOfActivities) {
    take(activeView(kRebuilding, 99));
    EXPECT_EQ(take(quietView(ArrayState::online)), WaitStatus::waiting);
    EXPECT_EQ(take(activeView(kSynchronizing, 0)), WaitStatus::waiting);
    EXPECT_EQ(take(quietView(ArrayState::online)), WaitStatus::waiting);
    EXPECT_EQ(take(quietView(ArrayState::online)), WaitStatus::finished);
    expectMessages("rebuild of " + kArchive + ": 99%\nrebuild of " + kArchive + " has ended\n" +
                   "synchronization of " + kArchive + ": 0%\nsynchronization of " + kArchive +
                   " has ended\n" + kArchive + " is online\n");
}

// Of several logical drives, only those that were waited for count.
TEST_F(Watching, ChecksOnlyAwaitedLogicalDrives) {
    View view = activeView(kRebuilding, 45);
    view.arrays.push_back({arrayTarget(1, 2, ""), ArrayState::offline});
    take(view);
    view.activities.clear();
    view.arrays[0].state = ArrayState::online;
    take(view);
    EXPECT_EQ(take(view), WaitStatus::finished);
}

TEST_F(Watching, AnotherArrayWithTheSameNumberIsNotTheOneWaitedFor) {
    View view = quietView(ArrayState::online);
    view.arrays[0].target.array = 7;
    EXPECT_EQ(takeEnd(activeView(kRebuilding, 45), view), WaitStatus::notOnline);
    expectMessages(kEndedRebuild + kArchive + " no longer exists\n");
}

TEST_F(Watching, AnotherNameMayBeAnotherLogicalDrive) {
    View view = quietView(ArrayState::online);
    view.arrays[0].target.name = "New";
    EXPECT_EQ(takeEnd(activeView(kRebuilding, 45), view), WaitStatus::notOnline);
    expectMessages(kEndedRebuild + kArchive + " is now named \"New\"; it may be another one\n");
}

TEST_F(Watching, AnotherLevelOrSizeMayBeAnotherLogicalDrive) {
    for (const ArrayShape& shape : {ArrayShape{kRaid5, 4096}, ArrayShape{kRaid1, 4097}}) {
        watch = Watch{};
        View active = activeView(kRebuilding, 45), after = quietView(ArrayState::online);
        active.activities[0].target.shape = {kRaid1, 4096};
        after.arrays[0].target.shape = shape;
        EXPECT_EQ(takeEnd(active, after), WaitStatus::notOnline);
        expectMessages(kEndedRebuild + kArchive + " has another level or size; it may be another one\n");
    }
}

TEST_F(Watching, AnOfflineLogicalDriveMayReportNoSize) {
    View active = activeView(kRebuilding, 45), after = quietView(ArrayState::offline);
    active.activities[0].target.shape = {kRaid1, 4096};
    after.arrays[0].target.shape = {kRaid1, 0};
    EXPECT_EQ(takeEnd(active, after), WaitStatus::notOnline);
    expectMessages(kEndedRebuild + kArchive + " is offline\n");
}

// Whether or not it is waited for.
TEST_F(Watching, AMigrationChangesLevelAndSize) {
    View active = activeView(kRebuilding, 45), after = quietView(ArrayState::online);
    active.arrays[0].isMigrating = true;
    after.arrays[0].target.shape = {kRaid5, 8192};
    EXPECT_EQ(takeEnd(active, after), WaitStatus::finished);
    expectMessages(kEndedRebuild + kArchive + " is online\n");
}

TEST_F(Watching, ReportsADeletedLogicalDrive) {
    EXPECT_EQ(takeEnd(activeView(kRebuilding, 45), View{}), WaitStatus::notOnline);
    expectMessages(kEndedRebuild + kArchive + " no longer exists\n");
}

TEST_F(Watching, EndsWhenOnlyPausedActivitiesAreLeft) {
    EXPECT_EQ(take(activeView(kRebuilding, 45, true)), WaitStatus::paused);
    expectMessages("rebuild of " + kArchive + " is paused at 45%\nonly paused activities are left\n");
}

TEST_F(Watching, WaitsWhileAnotherActivityRuns) {
    View view = activeView(kRebuilding, 45, true);
    view.activities.push_back({kRedundancyChecking, arrayTarget(0, 1, ""), 7, false});
    EXPECT_EQ(take(view), WaitStatus::waiting);
    expectMessages("rebuild of " + kArchive +
                   " is paused at 45%\n"
                   "redundancy check of logical drive 1 of controller 0: 7%\n");
    view.activities.pop_back();
    EXPECT_EQ(take(view), WaitStatus::paused);
    expectMessages(
        "redundancy check of logical drive 1 of controller 0 has ended\nonly paused activities are left\n");
}

TEST_F(Watching, WaitsForPausedActivitiesToo) {
    watch.options.pausedToo = true;
    EXPECT_EQ(take(activeView(kRebuilding, 45, true)), WaitStatus::waiting);
    EXPECT_EQ(take(activeView(kRebuilding, 45, true)), WaitStatus::waiting);
    expectMessages("rebuild of " + kArchive + " is paused at 45%\n");
    EXPECT_EQ(take(activeView(kRebuilding, 46)), WaitStatus::waiting);
    expectMessages("rebuild of " + kArchive + " was resumed at 46%\nrebuild of " + kArchive + ": 46%\n");
}

TEST_F(Watching, TimesOut) {
    watch.start = 1000;
    watch.options.timeout = kMinute;
    EXPECT_EQ(take(activeView(kRebuilding, 45), 1000 + kMinute - 1), WaitStatus::waiting);
    EXPECT_EQ(take(activeView(kRebuilding, 45), 1000 + kMinute), WaitStatus::timeout);
}

TEST_F(Watching, FinishesRatherThanTimingOut) {
    watch.options.timeout = 0;
    EXPECT_EQ(take(quietView(ArrayState::online), kMinute), WaitStatus::finished);
}

TEST_F(Watching, GivesUpWhenTheFirstReadingFails) {
    EXPECT_EQ(take(failedView()), WaitStatus::unreadable);
    expectMessages("! controller 0: q5_getLogDrvInfo failed with result 1\n");
}

TEST_F(Watching, ToleratesTwoFailedReadings) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(take(activeView(kRebuilding, 45)), WaitStatus::waiting);
        messages.clear();
        EXPECT_EQ(take(failedView()), WaitStatus::waiting);
        EXPECT_EQ(take(failedView()), WaitStatus::waiting);
        expectMessages("! controller 0: q5_getLogDrvInfo failed with result 1; trying again\n");
    }
    EXPECT_EQ(take(failedView()), WaitStatus::unreadable);
    expectMessages("! controller 0: q5_getLogDrvInfo failed with result 1\n");
}

// A failed reading says nothing about activities.
TEST_F(Watching, KeepsActivitiesDuringFailures) {
    take(activeView(kRebuilding, 45));
    take(failedView());
    EXPECT_EQ(take(activeView(kRebuilding, 45)), WaitStatus::waiting);
    EXPECT_EQ(watch.tracks.size(), 1u);
}

TEST_F(Watching, WaitsForAnActivityWithoutReadableProgress) {
    EXPECT_EQ(take(activeView(kMigrating, std::nullopt)), WaitStatus::waiting);
    expectMessages("migration of " + kArchive + ": ?%\n");
    EXPECT_EQ(take(activeView(kMigrating, std::nullopt), kMinute), WaitStatus::waiting);
    expectMessages(""); // it has not changed
    EXPECT_EQ(take(activeView(kMigrating, 3), 2 * kMinute), WaitStatus::waiting);
    expectMessages("migration of " + kArchive + ": 3%\n");
}

TEST_F(Watching, FinishesWithACompletedPatrol) {
    EXPECT_EQ(take(patrolView(kPatrolRunning, 12)), WaitStatus::waiting);
    take(patrolView(0));
    EXPECT_EQ(take(patrolView(0)), WaitStatus::finished);
    expectMessages("media patrol of drive 3 of controller 0: 12%\n"
                   "media patrol of drive 3 of controller 0 has ended\n");
}

TEST_F(Watching, ReportsAPatrolThatDidNotComplete) {
    for (const auto& [state, text] : {std::pair<std::uint16_t, const char*>{kPatrolAborted, " was aborted\n"},
                                      {kPatrolStopped, " was stopped\n"}}) {
        watch = Watch{};
        take(patrolView(kPatrolRunning, 12));
        take(patrolView(state));
        messages.clear();
        EXPECT_EQ(take(patrolView(state)), WaitStatus::notOnline);
        expectMessages(std::string("media patrol of drive 3 of controller 0") + text);
    }
}

TEST_F(Watching, ReportsAPatrolledDriveThatDisappeared) {
    take(patrolView(kPatrolRunning, 12));
    take(View{});
    messages.clear();
    EXPECT_EQ(take(View{}), WaitStatus::notOnline);
    expectMessages("drive 3 of controller 0 is no longer listed\n");
}

TEST_F(Watching, ReportsThatNoPatrolIsRunning) {
    watch.options.kinds = kMediaPatrol;
    EXPECT_EQ(take(patrolView(kPatrolStopped)), WaitStatus::finished);
    expectMessages("no media patrol is running\n");
}

// One line for each changed percentage, at most one a minute.
TEST_F(Watching, PrintsAtMostOneLineAMinute) {
    take(activeView(kRebuilding, 45), 0);
    take(activeView(kRebuilding, 46), kMinute - 1);
    expectMessages("rebuild of " + kArchive + ": 45%\n");
    take(activeView(kRebuilding, 46), kMinute);
    expectMessages("rebuild of " + kArchive + ": 46%\n");
    take(activeView(kRebuilding, 46), 3 * kMinute);
    expectMessages("");
    take(activeView(kRebuilding, 20), 4 * kMinute);
    expectMessages("rebuild of " + kArchive + ": 20%\n");
}

// Steps to 46% at minute 1 and 48% at minute 2; 52% are left at 2% a minute. The clock reads 00:00 UTC.
TEST_F(Watching, PrintsRateAndEnd) {
    setenv("TZ", "UTC", 1);
    tzset();
    take(activeView(kRebuilding, 45), 0);
    take(activeView(kRebuilding, 46), kMinute);
    messages.clear();
    take(activeView(kRebuilding, 48), 2 * kMinute);
    expectMessages("rebuild of " + kArchive + ": 48%, 2.0%/min, ends about 00:26\n");
}
