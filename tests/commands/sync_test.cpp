// Behavior specific to the sync and rc commands: their starts.
#include "commands/sync.h"

#include "tests/commands/logdrv_records.h"

using Sync = MockAdapterTest;
using RedundancyCheck = MockAdapterTest;

// Expects a successful start on this idle drive.
static void expectStart(std::uint32_t controller, std::uint32_t logDrvId, std::uint8_t noFix) {
    expectLookup(controller, logDrvId, driveWithActivities(0));
    expectCall("q5_startRedundancyCheck", bytesOf(hbaAddress(controller), std::uint32_t{0}, logDrvId, noFix,
                                                  std::uint8_t{0}, std::uint16_t{0}));
}

TEST_F(Sync, StartRequiresFiveWords) {
    for (const char* line : {"", "sync", "sync -l 1", "sync -l 1 -i"})
        EXPECT_EQ(outcomeOf(StartLogDrvSync, line), "2: Invalid number of parameters in command \"sync \"!\n")
            << line;
}

TEST_F(Sync, StartReadsOptionsFromTheSecondWord) {
    for (const char* line : {"sync -l 1 -i 4", "sync -i 4 -l 1", "sync -L 9 -I 9 -i 4 -l 1"}) {
        expectStart(4, 1, 0);
        EXPECT_EQ(outcomeOf(StartLogDrvSync, line), "0: Synchronization started on Array 1!\n") << line;
    }
    expectStart(0, 1, 0);
    EXPECT_EQ(outcomeOf(StartLogDrvSync, "sync -l 2 -l 1"), "0: Synchronization started on Array 1!\n");
}

TEST_F(Sync, StartRejectsOtherOptions) {
    for (const char* line : {"sync -a start -l 1 -i 4", "sync -l 1 -n -i 4", "sync -l 1 -i 4 -n"})
        EXPECT_EQ(outcomeOf(StartLogDrvSync, line), kUnknownOptionOutcome) << line;
}

TEST_F(Sync, StartReadsMissingValueFromTheNextSlot) {
    expectStart(4, 1, 0);
    EXPECT_EQ(outcomeOf(StartLogDrvSync, "sync -l 2 -i 4 -l", {"1"}),
              "0: Synchronization started on Array 1!\n");
    EXPECT_EQ(outcomeOf(StartLogDrvSync, "sync -l 2 -i 4 -l"), "6: Invalid logical drive ID '' specified\n");
}

TEST_F(RedundancyCheck, StartRequiresSevenWords) {
    for (const char* line :
         {"", "rc", "rc -a start", "rc -a start -l 1", "rc -a start -l 1 -n", "rc start -l 1 -i 4"})
        EXPECT_EQ(outcomeOf(StartLogDrvRC, line),
                  "2: Invalid number of parameters in command \"rc -a start\"!\n")
            << line;
}

TEST_F(RedundancyCheck, StartFixesByDefault) {
    for (const char* line : {"rc -a start -l 1 -i 4 -n", "rc -a start -l 1 -n -i 4",
                             "rc -a start -N -i 4 -l 1", "rc start x -n -n -l 1 -i 4"}) {
        expectStart(4, 1, 1);
        EXPECT_EQ(outcomeOf(StartLogDrvRC, line), "0: Redundancy check started on Array 1!\n") << line;
    }
    expectStart(4, 1, 0);
    EXPECT_EQ(outcomeOf(StartLogDrvRC, "rc -a start -i 4 -l 1"), "0: Redundancy check started on Array 1!\n");
    expectStart(0, 1, 1);
    EXPECT_EQ(outcomeOf(StartLogDrvRC, "rc -a start -n -l 1 -n"),
              "0: Redundancy check started on Array 1!\n");
}

TEST_F(RedundancyCheck, StartIgnoresTheThirdWord) {
    expectStart(4, 1, 0);
    EXPECT_EQ(outcomeOf(StartLogDrvRC, "rc start -n -l 1 -i 4"), "0: Redundancy check started on Array 1!\n");
}

TEST_F(RedundancyCheck, StartReadsMissingValueFromTheNextSlot) {
    expectStart(4, 1, 1);
    EXPECT_EQ(outcomeOf(StartLogDrvRC, "rc -a start -l 1 -n -i", {"4"}),
              "0: Redundancy check started on Array 1!\n");
}

TEST_F(RedundancyCheck, ControlsIgnoreASynchronization) {
    for (int (*control)(int, char**) : {PauseLogDrvRC, ResumeLogDrvRC, StopLogDrvRC}) {
        expectLookup(4, 1, driveWithActivities(8, 1));
        EXPECT_EQ(outcomeOf(control, "rc -a action -l 1 -i 4"), kSilentSuccess);
    }
}
