// The logdrv command: the table, locating and deletion. The verbose listing and the settings are
// in logdrv_verbose_test.cpp and logdrv_settings_test.cpp.
#include "commands/logdrv.h"

#include "tests/commands/logdrv_records.h"

using LogDrv = MockAdapterTest;

// A list reply with another byte count.
static Bytes listReplyOf(const Drives& drives, std::uint32_t bytesUsed) {
    Bytes reply = listReply(drives);
    const ReplyHeader header = replyHeader(bytesUsed);
    std::memcpy(reply.data(), &header, sizeof header);
    return reply;
}

static const std::string kHeader = "ID    RAID Disks Sectors   Size(MB)          DiskID Name\n";
static const std::string kRaid5Row = " 0   RAID5     3     128    1000.00         (1,2,8) data\n";

namespace {
struct ListingCase {
    const char* line;
    std::uint32_t controller, first, count;
    const char* outcome;
};
} // namespace

static const ListingCase kListingCases[] = {
    {"", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -a", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -a list", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -a -l", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -l 3", 0, 3, 1, "0: No array with ID 3 in controller #0 is existed\n"},
    {"logdrv -l 0", 0, 0, 1, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -i 2", 2, 0, 128, "0: No array with ID 0 in controller #2 is existed\n"},
    {"logdrv -v", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -V -I 2 -L 3 -C 4", 2, 3, 1, "0: No array with ID 3 in controller #2 is existed\n"},
    {"logdrv -a list -l 3 -i 2", 2, 3, 1, "0: No array with ID 3 in controller #2 is existed\n"},
    {"logdrv -a list -c 5 -v -i 2", 2, 0, 5, "0: No array with ID 0 in controller #2 is existed\n"},
    {"logdrv -c 1", 0, 0, 1, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 127", 0, 0, 127, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 128", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 0", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 500", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 4294967295", 0, 0, 128, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 5 -c 128", 0, 0, 5, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 5 -c 500", 0, 0, 5, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 5 -l 4294967295", 0, 4294967295, 1, "0: No array with ID -1 in controller #0 is existed\n"},
    {"logdrv -i 4294967297", 1, 0, 128, "0: No array with ID 0 in controller #1 is existed\n"},
};

TEST_F(LogDrv, QueriesAccordingToItsOptions) {
    for (const ListingCase& row : kListingCases) {
        expectListing(row.controller, row.first, row.count, bytesOf(replyHeader(64)));
        EXPECT_EQ(outcomeOf(ListLogDrvInfo, row.line), row.outcome) << row.line;
    }
    expectListing(0, 0, 128, {});
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "", {"logdrv", "-l", "3"}),
              "0: No array with ID 0 in controller #0 is existed\n");
}

TEST_F(LogDrv, ListRejectsUnknownOptions) {
    for (const char* line :
         {"logdrv list", "logdrv list -l 3", "logdrv -a list -s x", "logdrv -a list 3", "logdrv -l 3 3"})
        EXPECT_EQ(outcomeOf(ListLogDrvInfo, line), kUnknownOptionOutcome) << line;
}

TEST_F(LogDrv, ListRejectsInvalidNumbers) {
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -l x"), "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -i -1"), "6: Invalid controller ID '-1' specified\n");
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -c all"), "1: Invalid controller count 'all' specified\n");
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -l 1 -v -c"), "1: Invalid controller count '' specified\n");
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -v -v -v -v -v -v -v -v -v -v -v -v -v -v -l"),
              "6: Invalid logical drive ID '' specified\n");
}

TEST_F(LogDrv, ListReadsMissingValueFromTheNextSlot) {
    expectListing(0, 7, 1, {});
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -l", {"7"}),
              "0: No array with ID 7 in controller #0 is existed\n");
}

TEST_F(LogDrv, ListsATable) {
    LogDrvInfo jbod = raid5(12);
    jbod.raidLevel = 10;
    jbod.diskCount = 1;
    jbod.stripeBlocks = 4294967295;
    jbod.sectorCount = 3;
    jbod.memberIds[0] = 15;
    put(jbod.name, "");
    LogDrvInfo unknown = raid5(65535);
    unknown.raidLevel = 2;
    unknown.diskCount = 0;
    unknown.sectorCount = 4294967296;
    expectListing(0, 0, 128, listReply(Drives{raid5(), jbod, unknown}));
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv"),
              "0: " + kHeader + kRaid5Row +
                  "12    JBOD     1 4294967295       0.00            (16) \n"
                  "65535 Unknown raid mode     0     128 2097152.00              () data\n");
}

TEST_F(LogDrv, ListsEveryRecordOfTheReply) {
    expectListing(0, 5, 1, listReply(Drives{raid5(), raid5()}), 1);
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -l 5"), "0: " + kHeader + kRaid5Row + kRaid5Row);
}

TEST_F(LogDrv, ListLimitsByteCounts) {
    const std::string none = "0: No array with ID 0 in controller #0 is existed\n";
    for (const std::uint32_t bytesUsed : {0u, 63u, 64u, 271u}) {
        expectListing(0, 0, 128, listReplyOf({raid5()}, bytesUsed));
        EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv"), none) << bytesUsed;
    }
    expectListing(0, 0, 128, listReplyOf({raid5(), raid5()}, 64 + 208 + 207));
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv"), "0: " + kHeader + kRaid5Row);

    std::string rows;
    for (int i = 0; i < 128; ++i)
        rows += kRaid5Row;
    for (const std::uint32_t bytesUsed : {26688u, 26689u, 26896u, 4294967295u}) {
        expectListing(0, 0, 128, listReplyOf(Drives(129, raid5()), bytesUsed));
        EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv"), "0: " + kHeader + rows) << bytesUsed;
    }
}

TEST_F(LogDrv, ListLimitsNamesAndMemberCounts) {
    LogDrvInfo drive = raid5();
    std::memset(drive.name, 'n', sizeof drive.name);
    drive.diskCount = 65535;
    std::memset(drive.memberIds, 255, sizeof drive.memberIds);
    drive.parityCount = 255;
    std::string members = "(-";
    for (int i = 1; i < 32; ++i)
        members += ",-";
    expectListing(0, 0, 128, listReply(Drives{drive}));
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv"), "0: " + kHeader + " 0   RAID5 65535     128    1000.00 " +
                                                       members + ") " + std::string(88, 'n') + "\n");
}

TEST_F(LogDrv, ListComputesSizesModulo2To64) {
    LogDrvInfo drive = raid5();
    drive.sectorCount = (std::uint64_t{1} << 55) + 2048;
    expectListing(0, 0, 128, listReply(Drives{drive}));
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv"),
              "0: " + kHeader + " 0   RAID5     3     128       1.00         (1,2,8) data\n");
}

// Locating.

static const std::string kLocateCountOutcome = "2: Invalid number of parameters for \"logdrv\" defined\n";

TEST_F(LogDrv, LocateBlinksForADuration) {
    expectLookup(2, 3, driveWithActivities(0));
    expectCall("q5_locateLogDrv",
               bytesOf(hbaAddress(2), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{30}));
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -l 3 -i 2 -d 30"), kSilentSuccess);
    expectLookup(0, 65539, driveWithActivities(31), 1);
    expectCall("q5_locateLogDrv",
               bytesOf(hbaAddress(0), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{4294967295}));
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -D 4294967295 -L 65539"), kSilentSuccess);
}

TEST_F(LogDrv, LocateStopsAtZero) {
    for (const char* line : {"logdrv -a locate -l 3 -d 0", "logdrv -a locate -l 1 -l 3"}) {
        expectLookup(0, 3, driveWithActivities(0));
        expectCall("q5_stopLocateLogDrv", bytesOf(hbaAddress(0), std::uint32_t{0}, std::uint16_t{3}));
        EXPECT_EQ(outcomeOf(LocateLogDrv, line), kSilentSuccess) << line;
    }
}

TEST_F(LogDrv, LocateDefaultsToDriveZero) {
    expectLookup(0, 0, driveWithActivities(0, 0));
    expectCall("q5_locateLogDrv",
               bytesOf(hbaAddress(0), std::uint32_t{0}, std::uint16_t{0}, std::uint32_t{5}));
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -d 9 -d 5"), kSilentSuccess);
}

TEST_F(LogDrv, LocateReportsFailure) {
    for (const int result : {1, -1}) {
        expectLookup(2, 3, driveWithActivities(0));
        expectCall("q5_locateLogDrv",
                   bytesOf(hbaAddress(2), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{30}), {}, result);
        EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -i 2 -l 3 -d 30"),
                  "8: Failed to locate the logical drive with ID 3 in controller #2!\n");
        expectLookup(2, 3, driveWithActivities(0));
        expectCall("q5_stopLocateLogDrv", bytesOf(hbaAddress(2), std::uint32_t{0}, std::uint16_t{3}), {},
                   result);
        EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -i 2 -l 3 -d 0"),
                  "8: Failed to locate the logical drive with ID 3 in controller #2!\n");
    }
}

TEST_F(LogDrv, LocateRejectsInvalidWords) {
    for (const char* line : {"", "logdrv -a locate", "logdrv -a locate -l 3", "logdrv -a locate -l 3 -d",
                             "logdrv -a locate -l 3 -i 2", "logdrv -a locate -l 3 -I 2 -d",
                             "logdrv -a locate -l 3 -d 5 -d 6", "logdrv -a locate -l 3 -d -i"})
        EXPECT_EQ(outcomeOf(LocateLogDrv, line), kLocateCountOutcome) << line;
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -l 3 -s 5"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -l x -d y"),
              "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -l 3 -i x -d 5"),
              "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -l 3 -d 5s"), "1: Invalid duration '5s' specified\n");
}

TEST_F(LogDrv, LocateReportsMissingDrive) {
    expectMissing(2, 3);
    EXPECT_EQ(outcomeOf(LocateLogDrv, "logdrv -a locate -l 3 -i 2 -d 5"),
              "5: No array with ID 3 in controller #2 is existed\n");
}

// Deletion.

static void expectDeletion(std::uint32_t controller, std::uint32_t logDrvId, int result = 0) {
    expectCall("q5_delDiskArray", queryFor(controller, DeleteArrayRequest{1, logDrvId}, 8), {}, result);
}

TEST_F(LogDrv, DeletesWithoutLookup) {
    expectDeletion(0, 3);
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -l 3"), kSilentSuccess);
    expectDeletion(2, 4294967295);
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -I 2 -L 4294967295"), kSilentSuccess);
    expectDeletion(2, 0);
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -i 1 -i 2"), kSilentSuccess);
}

TEST_F(LogDrv, DeletionReportsFailure) {
    for (const int result : {1, -1}) {
        expectDeletion(2, 3, result);
        EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -l 3 -i 2"),
                  "8: Failed to delete an array with ID 3 specified\n");
    }
    expectDeletion(0, 4294967295, 1);
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -l 4294967295"),
              "8: Failed to delete an array with ID -1 specified\n");
}

TEST_F(LogDrv, DeletionRejectsInvalidWords) {
    for (const char* line : {"", "logdrv -a del", "logdrv -a del -l", "logdrv del -l 3", "logdrv -a del -i 2",
                             "logdrv -a del -l 3 -l 3", "logdrv -a del -l 3 -i", "logdrv -a del -l -i"})
        EXPECT_EQ(outcomeOf(DeleteLogDrv, line),
                  "2: Invalid number of parameters for \"logdrv -a del\" defined\n")
            << line;
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -p 3"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -l x"), "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(DeleteLogDrv, "logdrv -a del -l 3 -i x"), "6: Invalid controller ID 'x' specified\n");
}
