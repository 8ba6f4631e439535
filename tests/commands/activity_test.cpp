// The pattern that the five background activities share: the members of every activity with their
// literal texts, and the lines that listings show about a drive's activity.
#include "commands/activity.h"

#include "commands/init.h"
#include "commands/migrate.h"
#include "commands/rebuild.h"
#include "commands/sync.h"
#include "tests/commands/logdrv_records.h"

// The lists. All texts are about drive 3 of controller 2, at 42 percent.

namespace {
struct ListRow {
    const char* name;
    int (*list)(int, char**);
    int bit;
    ProgressRead read;
    const char* inProgress;
    const char* paused;
    const char* noActivity;
    const char* noDrive;
    const char* noDriveZero; // drive 0 of controller 0
};

class ActivityLists : public Scripted, public testing::WithParamInterface<ListRow> {};

// What the tests are called by.
struct RowName {
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row>& info) const {
        return info.param.name;
    }
};
} // namespace

static const ListRow kLists[] = {
    {"Init", ListLogDrvInitStatus, 2, kInitRead,
     "0: Initialization is in progress 42% in logical drive with ID 3 on controller #2!\n",
     "0: Initialization is paused!\n", "0: No activity for initialization!\n",
     "5: No logical drive with ID 3 is existed!\n", "5: No logical drive with ID 0 is existed!\n"},
    {"Sync", ListLogDrvSyncStatus, 8, kSyncRead,
     "0: Synchronization is in progress 42% in logical drive with ID 3 on controller #2!\n",
     "0: synchronization is paused!\n", "0: No activity for synchronization!\n",
     "5: No logical drive with ID 3 is existed!\n", "5: No logical drive with ID 0 is existed!\n"},
    {"RedundancyCheck", ListLogDrvRCStatus, 4, kCheckRead,
     "0: Redundancy check is in progress 42% in logical drive with ID 3 on controller #2!\n",
     "0: Redundancy check is paused!\n", "0: No activity for redundancy check!\n",
     "5: No logical drive with ID 3 is existed!\n", "5: No logical drive with ID 0 is existed!\n"},
    {"RedundancyCheckOfASynchronizingDrive", ListLogDrvRCStatus, 8, kSyncRead,
     "0: Redundancy check is in progress 42% in logical drive with ID 3 on controller #2!\n",
     "0: Redundancy check is paused!\n", "0: No activity for redundancy check!\n",
     "5: No logical drive with ID 3 is existed!\n", "5: No logical drive with ID 0 is existed!\n"},
    {"Migrate", ListLogDrvMigrateStatus, 16, kMigrationRead,
     "0: Migration is in progress 42% on logical drive with ID 3 in controller #2!\n",
     "0: Migration is paused!\n", "0: No activity for migration!\n",
     "5: No logical drive with ID 3 in controller #2 is existed!\n",
     "5: No logical drive with ID 0 in controller #0 is existed!\n"},
    {"Rebuild", ListLogDrvRebuildStatus, 1, kRebuildRead,
     "0: Rebuild is in progress 42% in logical drive with ID 3 on controller #2!\n",
     "0: Rebuild is paused in logical drive with ID 3 on controller #2!\n", "0: No activity for rebuild!\n",
     "5: No logical drive with ID 3 is existed!\n", "5: No logical drive with ID 0 is existed!\n"},
};
INSTANTIATE_TEST_SUITE_P(Of, ActivityLists, testing::ValuesIn(kLists), RowName());

TEST_P(ActivityLists, SayHowFarTheActivityHasCome) {
    expectLookup(2, 3, driveDoing(GetParam().bit));
    expectProgress(GetParam().read, 2, 3, kRunning, 42);
    EXPECT_EQ(told(GetParam().list, "word -a list -l 3 -i 2"), GetParam().inProgress);
}

TEST_P(ActivityLists, SayThatItIsPaused) {
    expectLookup(2, 3, driveDoing(GetParam().bit));
    expectProgress(GetParam().read, 2, 3, kPaused, 42);
    EXPECT_EQ(told(GetParam().list, "word -i 2 -l 3"), GetParam().paused);
}

TEST_P(ActivityLists, TakeAnyStateButThreeForRunning) {
    for (const std::uint8_t state : {0, 2, 4, 255}) {
        expectLookup(2, 3, driveDoing(GetParam().bit));
        expectProgress(GetParam().read, 2, 3, state, 42);
        EXPECT_EQ(told(GetParam().list, "word -L 3 -I 2"), GetParam().inProgress) << int{state};
    }
}

TEST_P(ActivityLists, DoNotJudgeTheResultsOfReads) {
    for (const int result : {1, -1}) {
        expectLookup(2, 3, driveDoing(GetParam().bit), result);
        expectProgress(GetParam().read, 2, 3, kRunning, 42, result);
        EXPECT_EQ(told(GetParam().list, "word -l 3 -i 2"), GetParam().inProgress) << result;
    }
}

TEST_P(ActivityLists, FindNoActivityWhileAnotherOneRuns) {
    const bool ofCheck = GetParam().list == ListLogDrvRCStatus;
    expectLookup(2, 3, driveDoing(0xFF & ~(ofCheck ? 4 | 8 : GetParam().bit)));
    EXPECT_EQ(told(GetParam().list, "word -l 3 -i 2"), GetParam().noActivity);
    expectLookup(2, 3, driveDoing(0));
    EXPECT_EQ(told(GetParam().list, "word -l 3 -i 2"), GetParam().noActivity);
}

TEST_P(ActivityLists, MissADriveThatTheAdapterDoesNotKnow) {
    for (const std::size_t bytesUsed : {std::size_t{271}, std::size_t{64}, std::size_t{63}, std::size_t{0}}) {
        Bytes reply = listReply<LogDrvInfo>({driveDoing(GetParam().bit)});
        const ReplyHeader header = headerOf(bytesUsed);
        std::memcpy(reply.data(), &header, sizeof header);
        expectCall("q5_getLogDrvInfo", asks(2, LogDrvQuery{3, 1}, 272), reply);
        EXPECT_EQ(told(GetParam().list, "word -l 3 -i 2"), GetParam().noDrive) << bytesUsed;
    }
}

TEST_P(ActivityLists, BelieveByteCountsNoFurtherThanTheBufferReaches) {
    Bytes reply = listReply<LogDrvInfo>({driveDoing(GetParam().bit)});
    const ReplyHeader header = headerOf(0xFFFFFFFF);
    std::memcpy(reply.data(), &header, sizeof header);
    expectCall("q5_getLogDrvInfo", asks(2, LogDrvQuery{3, 1}, 272), reply);
    expectProgress(GetParam().read, 2, 3, kRunning, 42);
    EXPECT_EQ(told(GetParam().list, "word -l 3 -i 2"), GetParam().inProgress);
}

TEST_P(ActivityLists, AreAboutDriveZeroOfControllerZeroByDefault) {
    for (const char* line : {"word", "word -a list", "word -a -l", "word -a", ""}) {
        expectMissing(0, 0);
        EXPECT_EQ(told(GetParam().list, line), GetParam().noDriveZero) << line;
    }
    expectMissing(0, 0); // an empty line runs the last command again, over its stale words
    EXPECT_EQ(told(GetParam().list, "", {"word", "-l", "3"}), GetParam().noDriveZero);
}

TEST_P(ActivityLists, TakeTheLastOfEachOption) {
    expectMissing(2, 3);
    EXPECT_EQ(told(GetParam().list, "word -l 9 -i 9 -l 3 -i 2"), GetParam().noDrive);
}

TEST_P(ActivityLists, RefuseWordsThatAreNoOptions) {
    for (const char* line :
         {"word list", "word list -l 3", "word -a list -x 3", "word -a -l 3", "word -l 3 -p 1"})
        EXPECT_EQ(told(GetParam().list, line), kUnknownOptionTold) << line;
}

TEST_P(ActivityLists, RefuseIdsThatAreNoNumbers) {
    EXPECT_EQ(told(GetParam().list, "word -l x"), "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(told(GetParam().list, "word -l -3"), "6: Invalid logical drive ID '-3' specified\n");
    EXPECT_EQ(told(GetParam().list, "word -a list -l 3 -i 2x"), "6: Invalid controller ID '2x' specified\n");
}

TEST_P(ActivityLists, ReadAMissingValueFromTheNextSlot) {
    expectMissing(2, 3);
    EXPECT_EQ(told(GetParam().list, "word -i 2 -l", {"3"}), GetParam().noDrive);
    EXPECT_EQ(told(GetParam().list, "word -l"), "6: Invalid logical drive ID '' specified\n");
    EXPECT_EQ(told(GetParam().list, "word -i"), "6: Invalid controller ID '' specified\n");
}

TEST_P(ActivityLists, ReadNoValueBeyondTheTable) {
    EXPECT_EQ(told(GetParam().list, "word -a list -l 1 -l 1 -l 1 -l 1 -l 1 -l 1 -i"),
              "6: Invalid controller ID '' specified\n");
}

using ActivityListsOfOneKind = Scripted;

TEST_F(ActivityListsOfOneKind, ShowPercentagesAsTheyCome) {
    InitProgress init = {};
    init.percent = 255;
    expectLookup(0, 0, driveDoing(2, 0));
    expectCall("q5_getLogDrvInitProgress", asks(0, ActivityQuery{0, 0}, 524), bytesOf(init));
    EXPECT_EQ(told(ListLogDrvInitStatus, "init"),
              "0: Initialization is in progress 255% in logical drive with ID 0 on controller #0!\n");

    MigrationProgress migration = {};
    migration.percent = 65535;
    expectLookup(0, 0, driveDoing(16, 0));
    expectCall("q5_getMigrationProgress", asks(0, ActivityQuery{0, 1}, 208), bytesOf(migration));
    EXPECT_EQ(told(ListLogDrvMigrateStatus, "migrate"),
              "0: Migration is in progress 65535% on logical drive with ID 0 in controller #0!\n");
}

TEST_F(ActivityListsOfOneKind, ReadIdsAs32BitsAndShowThemSigned) {
    expectMissing(2, 4294967295);
    EXPECT_EQ(told(ListLogDrvInitStatus, "init -l 4294967295 -i 4294967298"),
              "5: No logical drive with ID -1 is existed!\n");
    expectMissing(65537, 4294967295); // only the address cuts it
    EXPECT_EQ(told(ListLogDrvMigrateStatus, "migrate -l 4294967295 -i 65537"),
              "5: No logical drive with ID -1 in controller #65537 is existed!\n");
}

TEST_F(ActivityListsOfOneKind, PreferARedundancyCheckToASynchronization) {
    expectLookup(0, 0, driveDoing(4 | 8, 0));
    expectProgress(kCheckRead, 0, 0, kPaused, 7);
    EXPECT_EQ(told(ListLogDrvRCStatus, "rc"), "0: Redundancy check is paused!\n");
}

// Pause, resume, stop and restart. All texts are about drive 3 of controller 2.

namespace {
enum class When { always, running, notPaused, paused };

struct ControlRow {
    const char* name;
    int (*control)(int, char**);
    int bit;
    ProgressRead read;
    When when;
    const char* operation;
    std::uint32_t kind; // the second number of the block handed over
    const char* count;
    const char* noDrive;
    const char* success;
    const char* failure;
};

class ActivityControls : public Scripted, public testing::WithParamInterface<ControlRow> {
protected:
    // The reads that come before the operation, for a drive on which it is done.
    void expectReads(int result = 0) const {
        const ControlRow& row = GetParam();
        expectLookup(2, 3, driveDoing(row.bit), result);
        if (row.when == When::paused || row.when == When::notPaused)
            expectProgress(row.read, 2, 3, row.when == When::paused ? kPaused : kRunning, 42, result);
    }
};
} // namespace

static constexpr const char* kNoneOnController =
    "5: No logical drive with ID 3 on controller #2 is existed!\n";
static constexpr const char* kNoneInController =
    "5: No logical drive with ID 3 in controller #2 is existed!\n";

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
     "2: Invalid number of parameters in command \"rc -a pause\"!\n", kNoneOnController,
     "0: Redundancy check paused on Array 3.\n", "8: Redundancy check is failed to pause on Array 3.\n"},
    {"RedundancyCheckResume", ResumeLogDrvRC, 4, kCheckRead, When::paused, "q5_resumeRedundancyCheck", 0,
     "2: Invalid number of parameters in command \"rc -a resume\"!\n", kNoneOnController,
     "0: Redundancy check resumed on Array 3.\n", "8: Redundancy check is failed to resume on Array 3.\n"},
    {"RedundancyCheckStop", StopLogDrvRC, 4, kCheckRead, When::running, "q5_stopRedundancyCheck", 0,
     "2: Invalid number of parameters in command \"rc -a stop\"!\n", kNoneOnController,
     "0: Redundancy check stopped on Array 3.\n", "8: Redundancy check is failed to stop on Array 3.\n"},
    {"MigratePause", PauseLogDrvMigrate, 16, kMigrationRead, When::notPaused, "q5_PauseMigration", 1,
     "2: Invalid numbers of parameter in command \"migrate -a pause\"!\n", kNoneInController,
     "0: Migration paused on Array 3.\n", "8: Migration is failed to pause on Array 3.\n"},
    {"MigrateResume", ResumeLogDrvMigrate, 16, kMigrationRead, When::paused, "q5_ResumeMigration", 1,
     "2: Invalid numbers of parameter in command \"migrate -a resume\"!\n", kNoneInController,
     "0: Migration resumed on Array 3.\n", "8: Migration is failed to resume on Array 3.\n"},
    {"RebuildPause", PauseLogDrvRebuild, 1, kRebuildRead, When::notPaused, "q5_pauseRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a pause\"!\n", kNoneOnController,
     "0: Rebuild paused on Array 3.\n", "8: Rebuild is failed to pause on Array 3.\n"},
    {"RebuildResume", ResumeLogDrvRebuild, 1, kRebuildRead, When::paused, "q5_resumeRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a resume\"!\n", kNoneOnController,
     "0: Rebuild resumed on Array 3.\n", "8: Rebuild is failed to resume on Array 3.\n"},
    {"RebuildRestart", RestartLogDrvRebuild, 1, kRebuildRead, When::always, "q5_restartRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a restart\"!\n", kNoneOnController,
     "0: Rebuild is restarted on Array 3.\n", "8: Rebuild is failed to restart on Array 3.\n"},
    {"RebuildStop", StopLogDrvRebuild, 1, kRebuildRead, When::running, "q5_stopRebuild", 0,
     "2: Invalid numbers of parameter in command \"rebuild -a stop\"!\n", kNoneOnController,
     "0: Rebuild aborted on Array 3.\n", "8: Rebuild is failed to abort on Array 3.\n"},
};
INSTANTIATE_TEST_SUITE_P(Of, ActivityControls, testing::ValuesIn(kControls), RowName());

TEST_P(ActivityControls, DoIt) {
    expectReads();
    expectControl(GetParam().operation, 2, 3, GetParam().kind);
    EXPECT_EQ(told(GetParam().control, "word -a action -l 3 -i 2"), GetParam().success);
}

TEST_P(ActivityControls, ReportARefusal) {
    for (const int result : {1, -1, 8}) {
        expectReads();
        expectControl(GetParam().operation, 2, 3, GetParam().kind, result);
        EXPECT_EQ(told(GetParam().control, "word -A action -I 2 -L 3"), GetParam().failure) << result;
    }
}

TEST_P(ActivityControls, DoNotJudgeTheResultsOfReads) {
    expectReads(-1);
    expectControl(GetParam().operation, 2, 3, GetParam().kind);
    EXPECT_EQ(told(GetParam().control, "word -a action -l 3 -i 2"), GetParam().success);
}

TEST_P(ActivityControls, LeaveOtherActivitiesAlone) {
    for (const int activities : {0, 0xFF & ~GetParam().bit}) {
        expectLookup(2, 3, driveDoing(activities));
        if (GetParam().when == When::always)
            expectControl(GetParam().operation, 2, 3, GetParam().kind);
        EXPECT_EQ(told(GetParam().control, "word -a action -l 3 -i 2"),
                  GetParam().when == When::always ? GetParam().success : kDoneSilently)
            << activities;
    }
}

TEST_P(ActivityControls, AreDoneInTheMidstOfAllActivities) {
    LogDrvInfo drive = driveDoing(0xFF);
    expectLookup(2, 3, drive);
    if (GetParam().when == When::paused || GetParam().when == When::notPaused)
        expectProgress(GetParam().read, 2, 3, GetParam().when == When::paused ? kPaused : kRunning, 42);
    expectControl(GetParam().operation, 2, 3, GetParam().kind);
    EXPECT_EQ(told(GetParam().control, "word -a action -l 3 -i 2"), GetParam().success);
}

TEST_P(ActivityControls, HaveNothingToDoInTheOtherState) {
    if (GetParam().when == When::paused || GetParam().when == When::notPaused) {
        const bool resumes = GetParam().when == When::paused;
        for (const std::uint8_t state : {0, 1, 2, 4, 255}) {
            expectLookup(2, 3, driveDoing(GetParam().bit));
            expectProgress(GetParam().read, 2, 3, resumes ? state : kPaused, 42);
            EXPECT_EQ(told(GetParam().control, "word -a action -l 3 -i 2"), kDoneSilently);
        }
    }
}

TEST_P(ActivityControls, TakeSevenWords) {
    for (const char* line :
         {"", "word", "word -a action", "word -a action -l 3", "word action -l 3 -i 2",
          "word -a action -l 3 -i 2 -l", "word -a action -l 3 -i 2 -l 3", "word -a action -q x"})
        EXPECT_EQ(told(GetParam().control, line), GetParam().count) << line;
}

TEST_P(ActivityControls, MissADriveThatTheAdapterDoesNotKnow) {
    expectMissing(2, 3);
    EXPECT_EQ(told(GetParam().control, "word -a action -l 3 -i 2"), GetParam().noDrive);
}

TEST_P(ActivityControls, TakeIdsNotGivenForZero) {
    expectMissing(0, 3);
    expectMissing(2, 0);
    told(GetParam().control, "word -a action -l 1 -l 3");
    told(GetParam().control, "word -a action -i 1 -i 2");
}

TEST_P(ActivityControls, RefuseWordsThatAreNoOptions) {
    for (const char* line :
         {"word -a action -l 3 -p 1", "word -a action l 3 -i 2", "word -a action -x y -l z"})
        EXPECT_EQ(told(GetParam().control, line), kUnknownOptionTold) << line;
}

TEST_P(ActivityControls, RefuseIdsThatAreNoNumbers) {
    EXPECT_EQ(told(GetParam().control, "word -a action -l 0x3 -i 2"),
              "6: Invalid logical drive ID '0x3' specified\n");
    EXPECT_EQ(told(GetParam().control, "word -a action -i +2 -x 3"),
              "6: Invalid controller ID '+2' specified\n");
}

// Starts. The requests' own bytes are tested with each command.

namespace {
struct StartRow {
    const char* name;
    int (*start)(int, char**);
    const char* line;      // drive 3 of controller 2
    const char* operation; // called with the reserved 0 and the request
    Bytes request;         // what follows them
    bool withRecord;       // after the request, the drive's own record
    const char* noDrive;
    const char* success;
    const char* failure;
};

class ActivityStarts : public Scripted, public testing::WithParamInterface<StartRow> {
protected:
    void expectStart(const LogDrvInfo& drive, int result) const {
        expectCall(GetParam().operation,
                   joined({bytesOf(at(2), std::uint32_t{0}), GetParam().request,
                           GetParam().withRecord ? bytesOf(drive) : Bytes()}),
                   {}, result);
    }
};
} // namespace

// Bytes followed by zeros, up to a size.
static Bytes padded(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

static const StartRow kStarts[] = {
    {"Init", StartLogDrvInit, "init -a start -l 3 -i 2", "q5_startLogDrvInit",
     joined({padded({3, 0, 0, 0, 4, 0, 0xFF, 0xFF, 0xFF, 0xFF}, 524), bytesOf(std::uint32_t{524})}), false,
     "5: No logical drive with ID 3 is existed!\n", "0: Initialization started on Array 3 Type 4\n",
     "8: Initialization is failed to start on Array 3 Type 4\n"},
    {"Sync",
     StartLogDrvSync,
     "sync -l 3 -i 2",
     "q5_startRedundancyCheck",
     {3, 0, 0, 0, 0, 0, 0, 0},
     false,
     kNoneOnController,
     "0: Synchronization started on Array 3!\n",
     "8: Synchronization failed to start on Array 3!\n"},
    {"RedundancyCheck",
     StartLogDrvRC,
     "rc -a start -l 3 -i 2",
     "q5_startRedundancyCheck",
     {3, 0, 0, 0, 0, 0, 0, 0},
     false,
     kNoneOnController,
     "0: Redundancy check started on Array 3!\n",
     "8: Redundancy check failed to start on Array 3!\n"},
    {"Migrate", StartLogDrvMigrate, "migrate -a start -l 3 -i 2 -s raid=raidmf,stripe=64,count=3",
     "q5_migrateHBAArray", padded({3, 0, 0, 0, 96, 0, 64, 0, 0, 3}, 144), false, kNoneInController,
     "0: Migration is started on Array 3.\n", "8: Migration is failed to start on Array 3.\n"},
    {"Rebuild",
     StartLogDrvRebuild,
     "rb -a start -l 3 -i 2 -p 5 -e 1",
     "q5_startHBARebuildExtent",
     {1, 3, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0},
     true,
     kNoneInController,
     "0: Rebuild is started on Array 3.\n",
     "8: Rebuild is failed to start on Array 3.\n"},
};
INSTANTIATE_TEST_SUITE_P(Of, ActivityStarts, testing::ValuesIn(kStarts), RowName());

TEST_P(ActivityStarts, DoIt) {
    expectLookup(2, 3, driveDoing(0));
    expectStart(driveDoing(0), 0);
    EXPECT_EQ(told(GetParam().start, GetParam().line), GetParam().success);
}

TEST_P(ActivityStarts, ReportARefusal) {
    for (const int result : {1, -1}) {
        expectLookup(2, 3, driveDoing(0));
        expectStart(driveDoing(0), result);
        EXPECT_EQ(told(GetParam().start, GetParam().line), GetParam().failure) << result;
    }
}

TEST_P(ActivityStarts, DoNotDisturbABusyDrive) {
    for (const int activities : {1, 2, 4, 8, 16, 31, 255}) {
        expectLookup(2, 3, driveDoing(activities));
        EXPECT_EQ(told(GetParam().start, GetParam().line), kDoneSilently) << activities;
    }
}

TEST_P(ActivityStarts, FindADriveIdleThatHasOnlyUnknownBits) {
    expectLookup(2, 3, driveDoing(0xE0), -1);
    expectStart(driveDoing(0xE0), 0);
    EXPECT_EQ(told(GetParam().start, GetParam().line), GetParam().success);
}

TEST_P(ActivityStarts, MissADriveThatTheAdapterDoesNotKnow) {
    expectMissing(2, 3);
    EXPECT_EQ(told(GetParam().start, GetParam().line), GetParam().noDrive);
}

TEST_P(ActivityStarts, RefuseWhatIsNoIdAndNoOption) {
    const std::string line = GetParam().line;
    std::string badDrive = line, badController = line, unknown = line;
    badDrive.replace(line.find("-l 3"), 4, "-L three");
    badController.replace(line.find("-i 2"), 4, "-I 2.");
    unknown.replace(line.find("-i 2"), 4, "-x 2");
    EXPECT_EQ(told(GetParam().start, badDrive), "6: Invalid logical drive ID 'three' specified\n");
    EXPECT_EQ(told(GetParam().start, badController), "6: Invalid controller ID '2.' specified\n");
    EXPECT_EQ(told(GetParam().start, unknown), kUnknownOptionTold);
}

// The lines about a drive's activity.

namespace {
struct ActivityLines {
    int bit;
    ProgressRead read;
    const char* running;
    const char* paused;
    const char* progress; // at 42 percent
};
} // namespace

// The first that runs gives the status line.
static const ActivityLines kByStatus[] = {
    {1, kRebuildRead, "Array activity status : Rebuilding\n", "Array activity status : Rebuild Paused\n",
     "Array rebuilding progress : 42 %\n"},
    {8, kSyncRead, "Array activity status : Synchronizing\n",
     "Array activity status : Synchronization Paused\n", "Array synchronization progress : 42 %\n"},
    {4, kCheckRead, "Array activity status : Redundancy Check In Progress\n",
     "Array activity status : Redundancy Check Paused\n", "Array redundancy check progress : 42 %\n"},
    {2, kInitRead, "Array activity status : Initializing\n",
     "Array activity status : Initialization Paused\n", "Array initialization progress : 42 %\n"},
    {16, kMigrationRead, "Array activity status : Migrating\n", "Array activity status : Migration Paused\n",
     "Array migration progress : 42 %\n"},
};

// The first that runs gives the progress line: initialization, rebuild, synchronization, check, migration.
static const ActivityLines* const kByProgress[] = {&kByStatus[3], &kByStatus[0], &kByStatus[1], &kByStatus[2],
                                                   &kByStatus[4]};

static std::string linesOf(const LogDrvInfo& drive) {
    return printed([&] { printActivity(2, drive); });
}

using ActivityLinesOfADrive = Scripted;

TEST_F(ActivityLinesOfADrive, FollowTheFirstActivityInTwoOrders) {
    for (int activities = 1; activities < 32; ++activities) {
        const ActivityLines* status = kByStatus;
        while ((status->bit & activities) == 0)
            ++status;
        const ActivityLines* const* progress = kByProgress;
        while (((*progress)->bit & activities) == 0)
            ++progress;
        for (const bool paused : {false, true}) {
            expectProgress(status->read, 2, 3, paused ? kPaused : kRunning, 13);
            expectProgress((*progress)->read, 2, 3, kRunning, 42);
            EXPECT_EQ(linesOf(driveDoing(activities)),
                      std::string(paused ? status->paused : status->running) + (*progress)->progress)
                << activities;
        }
    }
}

TEST_F(ActivityLinesOfADrive, AreOneWhenItIsIdle) {
    EXPECT_EQ(linesOf(driveDoing(0)), "Array activity status : Idle\n");
    EXPECT_EQ(linesOf(driveDoing(0xE0)), "Array activity status : Idle\n");
}

TEST_F(ActivityLinesOfADrive, AskByTheIdInItsRecord) {
    expectProgress(kMigrationRead, 2, 65535, kRunning, 0, 1);
    expectProgress(kMigrationRead, 2, 65535, kPaused, 42, -1);
    EXPECT_EQ(linesOf(driveDoing(16, 65535)),
              "Array activity status : Migrating\nArray migration progress : 42 %\n");
}
