// The bga command: its option parser and its two lines about one drive.
#include "commands/bga.h"

#include "tests/commands/logdrv_records.h"

using Bga = MockAdapterTest;

static const std::string kIdleOutcome = "0: Array activity status : Idle\n";

namespace {
struct OptionCase {
    const char* line;
    std::vector<std::string> stale;
    std::uint32_t logDrvId, controller;
};
} // namespace

TEST_F(Bga, RequiresDriveBeforeController) {
    const OptionCase cases[] = {
        {"bga", {}, 0, 0},
        {"bga -a list", {}, 0, 0},
        {"bga -a -l", {}, 0, 0},
        {"bga -a", {}, 0, 0},
        {"bga -A list", {}, 0, 0},
        {"bga -l 2", {}, 2, 0},
        {"bga -L 2 -I 1", {}, 2, 1},
        {"bga -l 2 -i 1", {}, 2, 1},
        {"bga -l 2 -i 9 -i 1", {}, 2, 1},
        {"bga -a list -l 2", {}, 2, 0},
        {"bga -a list -l 2 -i 1", {}, 2, 1},
        {"bga -a -i 1", {}, 0, 1},
        {"bga -a -i 1 x -l 2", {}, 2, 1},
        {"bga -l 2 x -l 3", {}, 3, 0},
        {"bga -l 2 -i 1 x -l 3 -i 4", {}, 3, 4},
        {"bga -l", {"5"}, 5, 0},
        {"bga -l 2 -i", {"6"}, 2, 6},
        {"bga -l 2 x", {"-l", "7"}, 7, 0},
        {"", {}, 0, 0},
        {"", {"bga", "-l", "2"}, 0, 0},
        {"", {"bga", "-a", "list", "-l", "2"}, 0, 0},
    };
    for (const OptionCase& row : cases) {
        expectLookup(row.controller, row.logDrvId,
                     driveWithActivities(0, static_cast<std::uint16_t>(row.logDrvId)));
        EXPECT_EQ(outcomeOf(ListBGAInfo, row.line, row.stale), kIdleOutcome) << row.line;
    }
}

TEST_F(Bga, RejectsOptionsInAnotherOrder) {
    for (const char* line :
         {"bga -i 1 -l 2", "bga -i 1", "bga -l 2 -l 3", "bga list", "bga list -l 2", "bga -v",
          "bga -a list -i 1", "bga -a list -i 1 -l 2", "bga -l 2 3", "bga -l 2 3 4"})
        EXPECT_EQ(outcomeOf(ListBGAInfo, line), kUnknownOptionOutcome) << line;
}

TEST_F(Bga, RejectsInvalidIds) {
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l two"), "6: Invalid logical drive ID 'two' specified\n");
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 -i one"), "6: Invalid controller ID 'one' specified\n");
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 -i -l"), "6: Invalid controller ID '-l' specified\n");
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l"), "6: Invalid logical drive ID '' specified\n");
}

TEST_F(Bga, ReadsNoWordPastTheTable) {
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 -i 1 -i 1 -i 1 -i 1 -i 1 -i 1 -i"),
              "6: Invalid controller ID '' specified\n");
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 -i 1 -i 1 -i 1 -i 1 -i 1 -i 1 x"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 x -l 2 x -l 2 x -l 2 -i 1 x -l"),
              "6: Invalid logical drive ID '' specified\n");
}

TEST_F(Bga, ReportsMissingDrive) {
    expectMissing(1, 2);
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 -i 1"), "5: No array with ID 2 in controller #1 is existed\n");
    expectMissing(0, 0);
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga"), "5: No array with ID 0 in controller #0 is existed\n");
}

TEST_F(Bga, ShowsRebuildStatusWithInitializationProgress) {
    for (const bool paused : {false, true}) {
        expectLookup(1, 2, driveWithActivities(1 | 2, 2));
        expectProgress(kRebuildRead, 1, 2, paused ? kPaused : kRunning, 10);
        expectProgress(kInitRead, 1, 2, kRunning, 20);
        EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -l 2 -i 1"),
                  std::string(paused ? "0: Array activity status : Rebuild Paused\n"
                                     : "0: Array activity status : Rebuilding\n") +
                      "Array initialization progress : 20 %\n");
    }
}

TEST_F(Bga, ShowsSynchronizationAndItsProgress) {
    expectLookup(0, 2, driveWithActivities(8, 2), 1);
    expectProgress(kSyncRead, 0, 2, kRunning, 98);
    expectProgress(kSyncRead, 0, 2, kRunning, 100);
    EXPECT_EQ(outcomeOf(ListBGAInfo, "bga -a list -l 2"),
              "0: Array activity status : Synchronizing\nArray synchronization progress : 100 %\n");
}
