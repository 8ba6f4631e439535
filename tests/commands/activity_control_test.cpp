// Pausing, resuming, stopping and restarting background activities: every action of every activity
// with its exact texts, for drive 3 of controller 2.
#include "commands/init.h"
#include "commands/migrate.h"
#include "commands/rebuild.h"
#include "commands/sync.h"
#include "tests/commands/logdrv_records.h"

namespace {
enum class When { always, running, notPaused, paused };

struct ControlRow {
    const char* name;
    int (*control)(int, char**);
    int bit;
    ProgressRead read;
    When when;
    const char* operation;
    std::uint32_t kind; // the second number of the request
    const char* count;
    const char* noDrive;
    const char* success;
    const char* failure;
};

class ActivityControls : public MockAdapterTest, public testing::WithParamInterface<ControlRow> {
protected:
    // Expects the reads that precede the operation, for a drive that meets its precondition.
    void expectReads(int result = 0) const {
        const ControlRow& row = GetParam();
        expectLookup(2, 3, driveWithActivities(row.bit), result);
        if (row.when == When::paused || row.when == When::notPaused)
            expectProgress(row.read, 2, 3, row.when == When::paused ? kPaused : kRunning, 42, result);
    }
};
} // namespace

static const ControlRow kControls[] = {
    {"InitPause", PauseLogDrvInit, 2, kInitRead, When::notPaused, "q5_pauseLogDrvInit", 0,
     "2: Invalid command for \"init -a pause\"!\n", "5: No logical drive with ID 3 is existed!\n",
     "0: Initialization paused on Array 3.\n", "8: Initialization is failed to pause on Array 3.\n"},
    {"InitResume", ResumeLogDrvInit, 2, kInitRead, When::paused, "q5_resumeLogDrvInit", 0,
     "2: Invalid number of parameters in command \"init\"!\n", "5: No logical drive with ID 3 is existed!\n",
     "0: Initialization resumed on Array 3.\n", "8: Initialization is failed to resume on Array 3.\n"},
    {"InitStop", StopLogDrvInit, 2, kInitRead, When::running, "q5_stopLogDrvInit", 0,
     "2: Invalid number of parameters in command \"init\"!\n", "5: No logical drive with ID 3 is existed!\n",
     "0: Initialization stopped on Array 3.\n", "8: Initialization is failed to stop on Array 3.\n"},
    {"RedundancyCheckPause", PauseLogDrvRC, 4, kCheckRead, When::notPaused, "q5_pauseRedundancyCheck", 0,
     "2: Invalid number of parameters in command \"rc -a pause\"!\n", kNoDriveOnController,
     "0: Redundancy check paused on Array 3.\n", "8: Redundancy check is failed to pause on Array 3.\n"},
    {"RedundancyCheckResume", ResumeLogDrvRC, 4, kCheckRead, When::paused, "q5_resumeRedundancyCheck", 0,
     "2: Invalid number of parameters in command \"rc -a resume\"!\n", kNoDriveOnController,
     "0: Redundancy check resumed on Array 3.\n", "8: Redundancy check is failed to resume on Array 3.\n"},
    {"RedundancyCheckStop", StopLogDrvRC, 4, kCheckRead, When::running, "q5_stopRedundancyCheck", 0,
     "2: Invalid number of parameters in command \"rc -a stop\"!\n", kNoDriveOnController,
     "0: Redundancy check stopped on Array 3.\n", "8: Redundancy check is failed to stop on Array 3.\n"},
    {"MigratePause", PauseLogDrvMigrate, 16, kMigrationRead, When::notPaused, "q5_PauseMigration", 1,
     "2: Invalid numbers of parameter in command \"migrate -a pause\"!\n", kNoDriveInController,
     "0: Migration paused on Array 3.\n", "8: Migration is failed to pause on Array 3.\n"},
    {"MigrateResume", ResumeLogDrvMigrate, 16, kMigrationRead, When::paused, "q5_ResumeMigration", 1,
     "2: Invalid numbers of parameter in command \"migrate -a resume\"!\n", kNoDriveInController,
     "0: Migration resumed on Array 3.\n", "8: Migration is failed to resume on Array 3.\n"},
    {"RebuildPause", PauseLogDrvRebuild, 1, kRebuildRead, When::notPaused, "q5_pauseRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a pause\"!\n", kNoDriveOnController,
     "0: Rebuild paused on Array 3.\n", "8: Rebuild is failed to pause on Array 3.\n"},
    {"RebuildResume", ResumeLogDrvRebuild, 1, kRebuildRead, When::paused, "q5_resumeRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a resume\"!\n", kNoDriveOnController,
     "0: Rebuild resumed on Array 3.\n", "8: Rebuild is failed to resume on Array 3.\n"},
    {"RebuildRestart", RestartLogDrvRebuild, 1, kRebuildRead, When::always, "q5_restartRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a restart\"!\n", kNoDriveOnController,
     "0: Rebuild is restarted on Array 3.\n", "8: Rebuild is failed to restart on Array 3.\n"},
    {"RebuildStop", StopLogDrvRebuild, 1, kRebuildRead, When::running, "q5_stopRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a stop\"!\n", kNoDriveOnController,
     "0: Rebuild aborted on Array 3.\n", "8: Rebuild is failed to abort on Array 3.\n"},
};
INSTANTIATE_TEST_SUITE_P(Of, ActivityControls, testing::ValuesIn(kControls), RowName());

TEST_P(ActivityControls, Succeed) {
    expectReads();
    expectControl(GetParam().operation, 2, 3, GetParam().kind);
    EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 3 -i 2"), GetParam().success);
}

TEST_P(ActivityControls, ReportFailure) {
    for (const int result : {1, -1, 8}) {
        expectReads();
        expectControl(GetParam().operation, 2, 3, GetParam().kind, result);
        EXPECT_EQ(outcomeOf(GetParam().control, "word -A action -I 2 -L 3"), GetParam().failure) << result;
    }
}

TEST_P(ActivityControls, IgnoreTheResultsOfReads) {
    expectReads(-1);
    expectControl(GetParam().operation, 2, 3, GetParam().kind);
    EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 3 -i 2"), GetParam().success);
}

TEST_P(ActivityControls, IgnoreOtherActivities) {
    for (const int activities : {0, 0xFF & ~GetParam().bit}) {
        expectLookup(2, 3, driveWithActivities(activities));
        if (GetParam().when == When::always)
            expectControl(GetParam().operation, 2, 3, GetParam().kind);
        EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 3 -i 2"),
                  GetParam().when == When::always ? GetParam().success : kSilentSuccess)
            << activities;
    }
}

TEST_P(ActivityControls, SucceedWhileAllActivitiesRun) {
    LogDrvInfo drive = driveWithActivities(0xFF);
    expectLookup(2, 3, drive);
    if (GetParam().when == When::paused || GetParam().when == When::notPaused)
        expectProgress(GetParam().read, 2, 3, GetParam().when == When::paused ? kPaused : kRunning, 42);
    expectControl(GetParam().operation, 2, 3, GetParam().kind);
    EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 3 -i 2"), GetParam().success);
}

TEST_P(ActivityControls, DoNothingInTheWrongState) {
    if (GetParam().when == When::paused || GetParam().when == When::notPaused) {
        const bool resumes = GetParam().when == When::paused;
        for (const std::uint8_t state : kUnpausedStates) {
            expectLookup(2, 3, driveWithActivities(GetParam().bit));
            expectProgress(GetParam().read, 2, 3, resumes ? state : kPaused, 42);
            EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 3 -i 2"), kSilentSuccess);
        }
    }
}

TEST_P(ActivityControls, RequireSevenWords) {
    for (const char* line :
         {"", "word", "word -a action", "word -a action -l 3", "word action -l 3 -i 2",
          "word -a action -l 3 -i 2 -l", "word -a action -l 3 -i 2 -l 3", "word -a action -q x"})
        EXPECT_EQ(outcomeOf(GetParam().control, line), GetParam().count) << line;
}

TEST_P(ActivityControls, ReportMissingDrive) {
    expectMissing(2, 3);
    EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 3 -i 2"), GetParam().noDrive);
}

TEST_P(ActivityControls, DefaultMissingIdsToZero) {
    expectMissing(0, 3);
    expectMissing(2, 0);
    outcomeOf(GetParam().control, "word -a action -l 1 -l 3");
    outcomeOf(GetParam().control, "word -a action -i 1 -i 2");
}

TEST_P(ActivityControls, RejectUnknownOptions) {
    for (const char* line :
         {"word -a action -l 3 -p 1", "word -a action l 3 -i 2", "word -a action -x y -l z"})
        EXPECT_EQ(outcomeOf(GetParam().control, line), kUnknownOptionOutcome) << line;
}

TEST_P(ActivityControls, RejectInvalidIds) {
    EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -l 0x3 -i 2"),
              "6: Invalid logical drive ID '0x3' specified\n");
    EXPECT_EQ(outcomeOf(GetParam().control, "word -a action -i +2 -x 3"),
              "6: Invalid controller ID '+2' specified\n");
}
