// Behavior specific to the rb command: its start and the list of extents in the request.
#include "commands/rebuild.h"

#include "tests/commands/logdrv_records.h"

using Rebuild = MockAdapterTest;
using Words = std::vector<std::string>;

// Starts a rebuild of drive 3 of controller 2 onto these drives and extents.
static std::string outcomeOfStart(const std::string& drives, const std::string& extents) {
    return outcomeOf(StartLogDrvRebuild,
                     {"rb", "-a", "start", "-l", "3", "-i", "2", "-p", drives, "-e", extents});
}

static void expectStart(std::uint32_t controller, std::uint32_t logDrvId,
                        const std::vector<RebuildEntry>& entries, int result = 0) {
    const LogDrvInfo drive = driveWithActivities(0);
    expectLookup(controller, logDrvId, drive);
    Bytes entryBytes;
    for (const RebuildEntry& entry : entries)
        appendBytes(&entryBytes, &entry, sizeof entry);
    expectCall(
        "q5_startHBARebuildExtent",
        concat({bytesOf(hbaAddress(controller), std::uint32_t{0}, static_cast<std::uint8_t>(entries.size())),
                entryBytes, bytesOf(drive)}),
        {}, result);
}

static const std::string kStartedOutcome = "0: Rebuild is started on Array 3.\n";

TEST_F(Rebuild, StartRequiresElevenWords) {
    for (const char* line : {"", "rb", "rb -a start", "rb -a start -l 3 -i 2",
                             "rb -a start -l 3 -i 2 -p 5 -e", "rb start -l 3 -i 2 -p 5 -e 0",
                             "rb -a start -l 3 -i 2 -p 5 -e 0 -l", "rb -a start -l 3 -i 2 -p 5 -e 0 -l 3"})
        EXPECT_EQ(outcomeOf(StartLogDrvRebuild, line),
                  "2: Invalid numbers of parameter in command \"rebuild -a start\"!\n")
            << line;
}

TEST_F(Rebuild, StartSendsDrivesAndExtents) {
    expectStart(2, 3, {{3, 4, 1, {}}});
    EXPECT_EQ(outcomeOfStart("5", "1"), kStartedOutcome);
    expectStart(2, 3, {{3, 0, 7, {}}, {3, 8, 0, {}}, {3, 2, 6, {}}});
    EXPECT_EQ(outcomeOfStart("1 9,3", "7;0 6"), kStartedOutcome);
    expectStart(2, 3, {{3, 0xFFFFFFFF, 0, {}}});
    EXPECT_EQ(outcomeOfStart("0", "x"), kStartedOutcome);
    expectStart(2, 3, {});
    EXPECT_EQ(outcomeOfStart("", ""), kStartedOutcome);
}

TEST_F(Rebuild, StartAcceptsSixteenEntries) {
    std::vector<RebuildEntry> entries;
    for (std::uint32_t i = 0; i < 16; ++i)
        entries.push_back({3, i, i + 1, {}});
    expectStart(2, 3, entries);
    EXPECT_EQ(outcomeOfStart("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17",
                             "1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18"),
              kStartedOutcome);
}

TEST_F(Rebuild, StartAcceptsOptionsInAnyOrder) {
    expectStart(2, 3, {{3, 4, 1, {}}});
    EXPECT_EQ(outcomeOf(StartLogDrvRebuild, "rb -a start -E 1 -P 5 -I 2 -L 3"), kStartedOutcome);
    expectStart(0, 3, {{3, 4, 1, {}}});
    EXPECT_EQ(outcomeOf(StartLogDrvRebuild, "rb -a start -l 9 -p 5 -e 1 -l 3"), kStartedOutcome);
    expectStart(2, 0, {{0, 4, 1, {}}}, 1);
    EXPECT_EQ(outcomeOf(StartLogDrvRebuild, "rb -a start -p 1 -i 2 -p 5 -e 1"),
              "8: Rebuild is failed to start on Array 0.\n");
}

TEST_F(Rebuild, StartSendsNoEntriesWithoutLists) {
    expectStart(2, 3, {});
    EXPECT_EQ(outcomeOf(StartLogDrvRebuild, "rb -a start -l 3 -i 2 -l 3 -i 2"), kStartedOutcome);
}

TEST_F(Rebuild, StartRejectsListsOfDifferentLengths) {
    EXPECT_EQ(outcomeOfStart("1 2", "0"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOfStart("1", "0 1"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOfStart("1", ""), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOfStart("", "0"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(StartLogDrvRebuild, "rb -a start -l 3 -i 2 -p 5 -p 5"), kUnknownOptionOutcome);
}

TEST_F(Rebuild, StartShowsIdsSigned) {
    expectMissing(4294967295, 4294967295);
    EXPECT_EQ(outcomeOf(StartLogDrvRebuild, "rb -a start -l 4294967295 -i 4294967295 -p 1 -e 0"),
              "5: No logical drive with ID -1 in controller #-1 is existed!\n");
}
