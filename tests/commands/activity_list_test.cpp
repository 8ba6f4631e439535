// The lists of the five background activities with their exact texts, for drive 3 of controller 2 at
// 42 percent.
#include "commands/init.h"
#include "commands/migrate.h"
#include "commands/rebuild.h"
#include "commands/sync.h"
#include "tests/commands/logdrv_records.h"

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

class ActivityLists : public MockAdapterTest, public testing::WithParamInterface<ListRow> {};
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

TEST_P(ActivityLists, ShowProgress) {
    expectLookup(2, 3, driveWithActivities(GetParam().bit));
    expectProgress(GetParam().read, 2, 3, kRunning, 42);
    EXPECT_EQ(outcomeOf(GetParam().list, "word -a list -l 3 -i 2"), GetParam().inProgress);
}

TEST_P(ActivityLists, ShowPausedActivity) {
    expectLookup(2, 3, driveWithActivities(GetParam().bit));
    expectProgress(GetParam().read, 2, 3, kPaused, 42);
    EXPECT_EQ(outcomeOf(GetParam().list, "word -i 2 -l 3"), GetParam().paused);
}

TEST_P(ActivityLists, ShowAnyOtherStateAsRunning) {
    for (const std::uint8_t state : kUnpausedStates) {
        expectLookup(2, 3, driveWithActivities(GetParam().bit));
        expectProgress(GetParam().read, 2, 3, state, 42);
        EXPECT_EQ(outcomeOf(GetParam().list, "word -L 3 -I 2"), GetParam().inProgress) << int{state};
    }
}

TEST_P(ActivityLists, IgnoreTheResultsOfReads) {
    for (const int result : {1, -1}) {
        expectLookup(2, 3, driveWithActivities(GetParam().bit), result);
        expectProgress(GetParam().read, 2, 3, kRunning, 42, result);
        EXPECT_EQ(outcomeOf(GetParam().list, "word -l 3 -i 2"), GetParam().inProgress) << result;
    }
}

TEST_P(ActivityLists, IgnoreOtherActivities) {
    const bool ofCheck = GetParam().list == ListLogDrvRCStatus;
    expectLookup(2, 3, driveWithActivities(0xFF & ~(ofCheck ? 4 | 8 : GetParam().bit)));
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l 3 -i 2"), GetParam().noActivity);
    expectLookup(2, 3, driveWithActivities(0));
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l 3 -i 2"), GetParam().noActivity);
}

TEST_P(ActivityLists, ReportMissingDrive) {
    for (const std::size_t bytesUsed : {std::size_t{271}, std::size_t{64}, std::size_t{63}, std::size_t{0}}) {
        Bytes reply = listReply<LogDrvInfo>({driveWithActivities(GetParam().bit)});
        const ReplyHeader header = replyHeader(bytesUsed);
        std::memcpy(reply.data(), &header, sizeof header);
        expectCall("q5_getLogDrvInfo", queryFor(2, LogDrvQuery{3, 1}, 272), reply);
        EXPECT_EQ(outcomeOf(GetParam().list, "word -l 3 -i 2"), GetParam().noDrive) << bytesUsed;
    }
}

TEST_P(ActivityLists, LimitByteCounts) {
    Bytes reply = listReply<LogDrvInfo>({driveWithActivities(GetParam().bit)});
    const ReplyHeader header = replyHeader(0xFFFFFFFF);
    std::memcpy(reply.data(), &header, sizeof header);
    expectCall("q5_getLogDrvInfo", queryFor(2, LogDrvQuery{3, 1}, 272), reply);
    expectProgress(GetParam().read, 2, 3, kRunning, 42);
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l 3 -i 2"), GetParam().inProgress);
}

TEST_P(ActivityLists, DefaultToDriveZeroOfControllerZero) {
    for (const char* line : {"word", "word -a list", "word -a -l", "word -a", ""}) {
        expectMissing(0, 0);
        EXPECT_EQ(outcomeOf(GetParam().list, line), GetParam().noDriveZero) << line;
    }
    expectMissing(0, 0); // an empty line repeats the last command with its stale words
    EXPECT_EQ(outcomeOf(GetParam().list, "", {"word", "-l", "3"}), GetParam().noDriveZero);
}

TEST_P(ActivityLists, UseTheLastOfRepeatedOptions) {
    expectMissing(2, 3);
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l 9 -i 9 -l 3 -i 2"), GetParam().noDrive);
}

TEST_P(ActivityLists, RejectUnknownOptions) {
    for (const char* line :
         {"word list", "word list -l 3", "word -a list -x 3", "word -a -l 3", "word -l 3 -p 1"})
        EXPECT_EQ(outcomeOf(GetParam().list, line), kUnknownOptionOutcome) << line;
}

TEST_P(ActivityLists, RejectInvalidIds) {
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l x"), "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l -3"), "6: Invalid logical drive ID '-3' specified\n");
    EXPECT_EQ(outcomeOf(GetParam().list, "word -a list -l 3 -i 2x"),
              "6: Invalid controller ID '2x' specified\n");
}

TEST_P(ActivityLists, ReadMissingValueFromTheNextSlot) {
    expectMissing(2, 3);
    EXPECT_EQ(outcomeOf(GetParam().list, "word -i 2 -l", {"3"}), GetParam().noDrive);
    EXPECT_EQ(outcomeOf(GetParam().list, "word -l"), "6: Invalid logical drive ID '' specified\n");
    EXPECT_EQ(outcomeOf(GetParam().list, "word -i"), "6: Invalid controller ID '' specified\n");
}

TEST_P(ActivityLists, ReadNoValuePastTheTable) {
    EXPECT_EQ(outcomeOf(GetParam().list, "word -a list -l 1 -l 1 -l 1 -l 1 -l 1 -l 1 -i"),
              "6: Invalid controller ID '' specified\n");
}

using ActivityListDetails = MockAdapterTest;

TEST_F(ActivityListDetails, ShowOutOfRangePercentagesUnchanged) {
    InitProgress initProgress = {};
    initProgress.percent = 255;
    expectLookup(0, 0, driveWithActivities(2, 0));
    expectCall("q5_getLogDrvInitProgress", queryFor(0, ActivityQuery{0, 0}, 524), bytesOf(initProgress));
    EXPECT_EQ(outcomeOf(ListLogDrvInitStatus, "init"),
              "0: Initialization is in progress 255% in logical drive with ID 0 on controller #0!\n");

    MigrationProgress migrationProgress = {};
    migrationProgress.percent = 65535;
    expectLookup(0, 0, driveWithActivities(16, 0));
    expectCall("q5_getMigrationProgress", queryFor(0, ActivityQuery{0, 1}, 208), bytesOf(migrationProgress));
    EXPECT_EQ(outcomeOf(ListLogDrvMigrateStatus, "migrate"),
              "0: Migration is in progress 65535% on logical drive with ID 0 in controller #0!\n");
}

TEST_F(ActivityListDetails, ReadIdsAs32BitsAndShowThemSigned) {
    expectMissing(2, 4294967295);
    EXPECT_EQ(outcomeOf(ListLogDrvInitStatus, "init -l 4294967295 -i 4294967298"),
              "5: No logical drive with ID -1 is existed!\n");
    expectMissing(65537, 4294967295); // only the address is truncated
    EXPECT_EQ(outcomeOf(ListLogDrvMigrateStatus, "migrate -l 4294967295 -i 65537"),
              "5: No logical drive with ID -1 in controller #65537 is existed!\n");
}

TEST_F(ActivityListDetails, PreferARedundancyCheckToASynchronization) {
    expectLookup(0, 0, driveWithActivities(4 | 8, 0));
    expectProgress(kCheckRead, 0, 0, kPaused, 7);
    EXPECT_EQ(outcomeOf(ListLogDrvRCStatus, "rc"), "0: Redundancy check is paused!\n");
}
