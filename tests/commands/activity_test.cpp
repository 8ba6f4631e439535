// Starting the five background activities, and the lines that listings show about a drive's activity.
// Lists and controls are in activity_list_test.cpp and activity_control_test.cpp.
#include "commands/activity.h"

#include "commands/init.h"
#include "commands/migrate.h"
#include "commands/rebuild.h"
#include "commands/sync.h"
#include "tests/commands/logdrv_records.h"

// Starts. The contents of the requests are tested with each command.

namespace {
struct StartRow {
    const char* name;
    int (*start)(int, char**);
    const char* line;      // drive 3 of controller 2
    const char* operation; // called with the reserved 0 and the request
    Bytes request;         // the arguments after these
    bool withRecord;       // the drive's record follows the request
    const char* noDrive;
    const char* success;
    const char* failure;
};

class ActivityStarts : public MockAdapterTest, public testing::WithParamInterface<StartRow> {
protected:
    void expectStart(const LogDrvInfo& drive, int result) const {
        expectCall(GetParam().operation,
                   concat({bytesOf(hbaAddress(2), std::uint32_t{0}), GetParam().request,
                           GetParam().withRecord ? bytesOf(drive) : Bytes()}),
                   {}, result);
    }
};
} // namespace

// Pads bytes with zeros to a size.
static Bytes padded(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

static const StartRow kStarts[] = {
    {"Init", StartLogDrvInit, "init -a start -l 3 -i 2", "q5_startLogDrvInit",
     concat({padded({3, 0, 0, 0, 4, 0, 0xFF, 0xFF, 0xFF, 0xFF}, 524), bytesOf(std::uint32_t{524})}), false,
     "5: No logical drive with ID 3 is existed!\n", "0: Initialization started on Array 3 Type 4\n",
     "8: Initialization is failed to start on Array 3 Type 4\n"},
    {"Sync",
     StartLogDrvSync,
     "sync -l 3 -i 2",
     "q5_startRedundancyCheck",
     {3, 0, 0, 0, 0, 0, 0, 0},
     false,
     kNoDriveOnController,
     "0: Synchronization started on Array 3!\n",
     "8: Synchronization failed to start on Array 3!\n"},
    {"RedundancyCheck",
     StartLogDrvRC,
     "rc -a start -l 3 -i 2",
     "q5_startRedundancyCheck",
     {3, 0, 0, 0, 0, 0, 0, 0},
     false,
     kNoDriveOnController,
     "0: Redundancy check started on Array 3!\n",
     "8: Redundancy check failed to start on Array 3!\n"},
    {"Migrate", StartLogDrvMigrate, "migrate -a start -l 3 -i 2 -s raid=raidmf,stripe=64,count=3",
     "q5_migrateHBAArray", padded({3, 0, 0, 0, 96, 0, 64, 0, 0, 3}, 144), false, kNoDriveInController,
     "0: Migration is started on Array 3.\n", "8: Migration is failed to start on Array 3.\n"},
    {"Rebuild",
     StartLogDrvRebuild,
     "rb -a start -l 3 -i 2 -p 5 -e 1",
     "q5_startHBARebuildExtent",
     {1, 3, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0},
     true,
     kNoDriveInController,
     "0: Rebuild is started on Array 3.\n",
     "8: Rebuild is failed to start on Array 3.\n"},
};
INSTANTIATE_TEST_SUITE_P(Of, ActivityStarts, testing::ValuesIn(kStarts), RowName());

TEST_P(ActivityStarts, Succeed) {
    expectLookup(2, 3, driveWithActivities(0));
    expectStart(driveWithActivities(0), 0);
    EXPECT_EQ(outcomeOf(GetParam().start, GetParam().line), GetParam().success);
}

TEST_P(ActivityStarts, ReportFailure) {
    for (const int result : {1, -1}) {
        expectLookup(2, 3, driveWithActivities(0));
        expectStart(driveWithActivities(0), result);
        EXPECT_EQ(outcomeOf(GetParam().start, GetParam().line), GetParam().failure) << result;
    }
}

TEST_P(ActivityStarts, DoNothingOnABusyDrive) {
    for (const int activities : {1, 2, 4, 8, 16, 31, 255}) {
        expectLookup(2, 3, driveWithActivities(activities));
        EXPECT_EQ(outcomeOf(GetParam().start, GetParam().line), kSilentSuccess) << activities;
    }
}

TEST_P(ActivityStarts, IgnoreUnknownActivityBits) {
    expectLookup(2, 3, driveWithActivities(0xE0), -1);
    expectStart(driveWithActivities(0xE0), 0);
    EXPECT_EQ(outcomeOf(GetParam().start, GetParam().line), GetParam().success);
}

TEST_P(ActivityStarts, ReportMissingDrive) {
    expectMissing(2, 3);
    EXPECT_EQ(outcomeOf(GetParam().start, GetParam().line), GetParam().noDrive);
}

TEST_P(ActivityStarts, RejectInvalidIdsAndUnknownOptions) {
    const std::string line = GetParam().line;
    std::string badDrive = line, badController = line, unknown = line;
    badDrive.replace(line.find("-l 3"), 4, "-L three");
    badController.replace(line.find("-i 2"), 4, "-I 2.");
    unknown.replace(line.find("-i 2"), 4, "-x 2");
    EXPECT_EQ(outcomeOf(GetParam().start, badDrive), "6: Invalid logical drive ID 'three' specified\n");
    EXPECT_EQ(outcomeOf(GetParam().start, badController), "6: Invalid controller ID '2.' specified\n");
    EXPECT_EQ(outcomeOf(GetParam().start, unknown), kUnknownOptionOutcome);
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

// The first running activity determines the status line.
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

// The first running activity determines the progress line: initialization, rebuild, synchronization,
// check, migration.
static const ActivityLines* const kByProgress[] = {&kByStatus[3], &kByStatus[0], &kByStatus[1], &kByStatus[2],
                                                   &kByStatus[4]};

static std::string linesOf(const LogDrvInfo& drive) {
    return outputOf([&] { printActivity(2, drive); });
}

using ActivityStatusLines = MockAdapterTest;

TEST_F(ActivityStatusLines, ShowTheFirstActivityInTwoOrders) {
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
            EXPECT_EQ(linesOf(driveWithActivities(activities)),
                      std::string(paused ? status->paused : status->running) + (*progress)->progress)
                << activities;
        }
    }
}

TEST_F(ActivityStatusLines, ShowOneLineWhenIdle) {
    EXPECT_EQ(linesOf(driveWithActivities(0)), "Array activity status : Idle\n");
    EXPECT_EQ(linesOf(driveWithActivities(0xE0)), "Array activity status : Idle\n");
}

TEST_F(ActivityStatusLines, QueryTheIdInTheRecord) {
    expectProgress(kMigrationRead, 2, 65535, kRunning, 0, 1);
    expectProgress(kMigrationRead, 2, 65535, kPaused, 42, -1);
    EXPECT_EQ(linesOf(driveWithActivities(16, 65535)),
              "Array activity status : Migrating\nArray migration progress : 42 %\n");
}
