// The extent command: the table, the blocks, and the five changes.
#include "commands/extent.h"

#include "adapter/phydrv.h"
#include "tests/mock_adapter.h"

using ExtentList = MockAdapterTest;
using ExtentChange = MockAdapterTest;

static void expectList(std::uint32_t controller, std::uint32_t first, std::uint32_t count,
                       const Bytes& reply = {}, int result = 0) {
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{first, count, 255, {}}, 10688), reply,
               result);
}

namespace {
struct Bits {
    std::uint8_t assignment, maintenance, access, state;
};
} // namespace

// An extent filled with a pattern except for these fields.
static ExtentEntry extentOf(std::uint16_t index, std::uint16_t array, std::uint64_t startMb,
                            std::uint64_t sizeMb, Bits bits = {0, 0, 96, 1}) {
    ExtentEntry extent;
    std::memset(&extent, 0xA5, sizeof extent);
    extent.index = index;
    extent.assignment = bits.assignment;
    extent.maintenance = bits.maintenance;
    extent.access = bits.access;
    extent.state = bits.state;
    extent.arrayId = array;
    extent.start = startMb * 2048;
    extent.size = sizeMb * 2048;
    return extent;
}

// A drive filled with a pattern except for its ID and its extents.
static PhyDrvInfo driveOf(std::uint16_t id, const std::vector<ExtentEntry>& extents) {
    PhyDrvInfo drive;
    std::memset(&drive, 0xA5, sizeof drive);
    drive.driveId = id;
    drive.extentCount = static_cast<std::uint8_t>(extents.size());
    for (std::size_t i = 0; i < extents.size(); ++i)
        drive.extent[i] = extents[i];
    return drive;
}

static const std::string kHeader = "DiskID Index AryID Size     StartLBA\n";

namespace {
// A line, the query it makes, and the drive in the message for an empty reply.
struct ListingCase {
    const char* line;
    std::uint32_t controller, first, count;
    const char* named;
};
} // namespace

static const ListingCase kListingCases[] = {
    {"extent", 0, 0, 16, "0"},
    {"EXTENT -A LIST", 0, 0, 16, "0"},
    {"extent -a -e", 0, 0, 16, "0"},
    {"extent -a list -I 3 -V", 3, 0, 16, "0"},
    {"extent -i 65537", 1, 0, 16, "0"},
    {"extent -p 3", 0, 2, 1, "2"},
    {"extent -v -P 3 -i 1", 1, 2, 1, "2"},
    {"extent -p 0", 0, 0xFFFFFFFF, 1, "-1"},
    {"extent -C 1", 0, 0, 1, "0"},
    {"extent -c 16", 0, 0, 16, "0"},
    {"extent -c 20", 0, 0, 16, "0"},
    {"extent -c 0", 0, 0, 16, "0"},
    {"extent -p 2 -c 4", 0, 1, 4, "1"},
    {"extent -c 4 -p 2", 0, 1, 1, "1"},
    {"extent -p 2 -c 16", 0, 1, 16, "1"},
    {"extent -p 2 -c 20", 0, 1, 1, "1"},
};

TEST_F(ExtentList, QueriesAccordingToItsOptions) {
    for (const ListingCase& row : kListingCases) {
        expectList(row.controller, row.first, row.count);
        EXPECT_EQ(outcomeOf(ListExtentInfo, row.line),
                  std::string("5: Disk with ID ") + row.named + " is not existed!\n")
            << row.line;
    }
}

TEST_F(ExtentList, RejectsInvalidOptions) {
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -p x"), "6: Invalid physical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -p"), "6: Invalid physical drive ID '' specified\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -v -i 1x"), "6: Invalid controller ID '1x' specified\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -c -1"), "1: Invalid physical drive count '-1' specified\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -e 0"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent list"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -v 1"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -a list -z -p x"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -a list -p x -z"),
              "6: Invalid physical drive ID 'x' specified\n");
}

TEST_F(ExtentList, ReadsMissingValueFromAStaleSlotButNotPastTheTable) {
    expectList(4, 0, 16);
    EXPECT_EQ(run(ListExtentInfo, splitWords("extent -i"), {"4"}).result, 5);
    std::vector<std::string> words = splitWords("extent -a list");
    words.resize(15, "-v");
    words.push_back("-c");
    EXPECT_EQ(run(ListExtentInfo, words).output, "Invalid physical drive count '' specified\n");
}

TEST_F(ExtentList, ShowsTheIndexOfEachExtentInTheTable) {
    ExtentEntry huge = extentOf(65535, 65535, 0, 0);
    huge.start = 1;
    huge.size = 0xFFFFFFFFFFFFFFFF;
    expectList(0, 6, 1,
               listReply<PhyDrvInfo>({driveOf(6, {extentOf(5, 255, 0, 100), extentOf(3, 0, 100, 238375)}),
                                      driveOf(8, {}), driveOf(65535, {huge})}),
               -1);
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -p 7"),
              "0: " + kHeader +
                  "     7     5    -1   100.00     0.00\n"
                  "     7     3     0 238375.00   100.00\n"
                  " 65536 65535 65535 17592186044416.00     0.00\n");
}

TEST_F(ExtentList, ShowsHundredthsOfAMegabyteInTheTable) {
    ExtentEntry extent = extentOf(0, 254, 0, 0);
    extent.size = 2048 + 205; // 1.1000976...
    extent.start = 31;        // 0.0151367...
    expectList(0, 0, 16, listReply<PhyDrvInfo>({driveOf(0, {extent})}));
    EXPECT_EQ(run(ListExtentInfo, splitWords("extent")).output,
              kHeader + "     1     0   254     1.10     0.02\n");
}

TEST_F(ExtentList, ShowsOnlyHeadersForADriveWithoutExtents) {
    expectList(0, 0, 16, listReply<PhyDrvInfo>({driveOf(0, {})}));
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent"), "0: " + kHeader);
    expectList(0, 0, 16, listReply<PhyDrvInfo>({driveOf(0, {})}));
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -v"), "0: *********************************\nDisk ID : 1\n");
}

TEST_F(ExtentList, LimitsTheExtentCountOfADrive) {
    PhyDrvInfo drive = driveOf(0, std::vector<ExtentEntry>(16, extentOf(1, 255, 0, 1)));
    drive.extentCount = 255;
    std::string rows;
    for (int i = 0; i < 16; ++i)
        rows += "     1     1    -1     1.00     0.00\n";
    expectList(0, 0, 1, listReply<PhyDrvInfo>({drive}));
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -c 1"), "0: " + kHeader + rows);
}

TEST_F(ExtentList, ReadsOnlyCompleteEntriesWithinTheBuffer) {
    const PhyDrvInfo drive = driveOf(0, {extentOf(1, 255, 0, 1)});
    for (const std::size_t used : {0u, 63u, 64u, 64u + 663u}) {
        expectList(0, 0, 16, bytesOf(replyHeader(used), drive));
        EXPECT_EQ(outcomeOf(ListExtentInfo, "extent"), "5: Disk with ID 0 is not existed!\n");
    }
    expectList(0, 0, 16, bytesOf(replyHeader(0xFFFFFFFF), drive));
    std::string blocks = "*********************************\nDisk ID : 1\nExtent Index : 0\n"
                         "Extent's start LBA : 0.00\nExtent's size : 1.00 MB\n"
                         "Maintenance status : Idle\nFunctional status : Online\n"
                         "Assignment status : free\nSmart status : OK\n";
    for (int i = 1; i < 16; ++i)
        blocks += "*********************************\nDisk ID : 1\n";
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -v"), "0: " + blocks);
}

TEST_F(ExtentList, ShowsThePositionOfEachExtentInItsBlock) {
    const Bits member = {1, 0, 64, 1}, failing = {0, 0, 98, 0};
    expectList(0, 0, 16,
               listReply<PhyDrvInfo>(
                   {driveOf(6, {extentOf(9, 0, 0, 100, member), extentOf(4, 255, 100, 238375, failing)}),
                    driveOf(7, {})}));
    EXPECT_EQ(outcomeOf(ListExtentInfo, "extent -v"), "0: *********************************\n"
                                                      "Disk ID : 7\n"
                                                      "Extent Index : 0\n"
                                                      "Extent's array ID : 0\n"
                                                      "Extent's start LBA : 0.00\n"
                                                      "Extent's size : 100.00 MB\n"
                                                      "Maintenance status : Idle\n"
                                                      "Functional status : Online\n"
                                                      "Assignment status : assigned\n"
                                                      "Smart status : OK\n"
                                                      "Extent Index : 1\n"
                                                      "Extent's start LBA : 100.00\n"
                                                      "Extent's size : 238375.00 MB\n"
                                                      "Maintenance status : Idle\n"
                                                      "Functional status : Offline\n"
                                                      "Assignment status : free\n"
                                                      "Smart status : Failed\n"
                                                      "*********************************\n"
                                                      "Disk ID : 8\n");
}

namespace {
// Bits of an extent, and the four lines that show them.
struct StatusCase {
    Bits bits;
    const char* maintenance;
    const char* functional;
    const char* assignment;
    const char* smart;
};
} // namespace

static const StatusCase kStatusCases[] = {
    {{0, 0, 0, 0}, "Idle", "Offline", "no access", "OK"},
    {{0, 0, 0, 8}, "Rebuilding", "Offline", "no access", "OK"},
    {{0, 1, 0, 9}, "Rebuilding", "Online", "no access", "OK"},
    {{0, 0xFF, 0, 0xFF}, "Rebuilding", "Online", "no access", "OK"},
    {{0, 1, 0, 0xF7}, "Synchronizing", "Online", "no access", "OK"},
    {{0, 19, 0, 0}, "Synchronizing", "Offline", "no access", "OK"},
    {{0, 16, 0, 0}, "Migrating", "Offline", "no access", "OK"},
    {{0, 18, 0, 0}, "Migrating", "Offline", "no access", "OK"},
    {{0, 2, 0, 0}, "Initializing", "Offline", "no access", "OK"},
    {{0, 0xEC, 0, 0xF6}, "Idle", "Offline", "no access", "OK"},
    {{1, 0, 64, 0}, "Idle", "Offline", "assigned", "OK"},
    {{7, 0, 96, 0}, "Idle", "Offline", "assigned", "OK"},
    {{2, 0, 64, 0}, "Idle", "Offline", "global spare", "OK"},
    {{6, 0, 96, 0}, "Idle", "Offline", "global spare", "OK"},
    {{4, 0, 64, 0}, "Idle", "Offline", "dedicated spare", "OK"},
    {{4, 0, 96, 0}, "Idle", "Offline", "dedicated spare", "OK"},
    {{0, 0, 96, 0}, "Idle", "Offline", "free", "OK"},
    {{0xF8, 0, 96, 0}, "Idle", "Offline", "free", "OK"},
    {{0, 0, 64, 0}, "Idle", "Offline", "Unknown", "OK"},
    {{0xF8, 0, 0xDD, 0}, "Idle", "Offline", "Unknown", "OK"},
    {{7, 0, 0x9D, 0}, "Idle", "Offline", "no access", "OK"},
    {{7, 0, 32, 0}, "Idle", "Offline", "no access", "OK"},
    {{0, 0, 2, 0}, "Idle", "Offline", "no access", "Failed"},
    {{0, 0, 66, 1}, "Idle", "Online", "Unknown", "Failed"},
};

TEST_F(ExtentList, ShowsTheFirstMatchingStatusBit) {
    for (const StatusCase& shown : kStatusCases) {
        expectList(0, 0, 16, listReply<PhyDrvInfo>({driveOf(0, {extentOf(0, 255, 1, 2, shown.bits)})}));
        EXPECT_EQ(run(ListExtentInfo, splitWords("extent -v")).output,
                  std::string("*********************************\nDisk ID : 1\nExtent Index : 0\n"
                              "Extent's start LBA : 1.00\nExtent's size : 2.00 MB\n") +
                      "Maintenance status : " + shown.maintenance +
                      "\nFunctional status : " + shown.functional +
                      "\nAssignment status : " + shown.assignment + "\nSmart status : " + shown.smart + "\n");
    }
}

namespace {
// An action that changes an extent, and its options besides -p, -e and -i.
struct Action {
    const char* word;
    int (*function)(int, char**);
    const char* more;
    const char* operation;
    const char* failure; // of extent 4 on drive 2 of controller 1
};
} // namespace

static const Action kActions[] = {
    {"spare", SpareExtent, "", "q5_spareHBAExtent",
     "Failed to spare an extent #4 in disk with ID 2 on controller #1!\n"},
    {"free", FreeExtent, "", "q5_freeHBAExtent",
     "Failed to free an extent #4 in disk with ID 2 on controller #1!\n"},
    {"add", AddExtent, " -l 7", "q5_addHBAExtentToArray",
     "Failed to add extent #4 in physical drive with ID 2 on controller #1!\n"},
    {"split", SplitExtent, " -o 500", "q5_splitHBAExtent",
     "Failed to split extent #4 in physical drive with ID 2 on controller #1!\n"},
    {"delete", DeleteExtent, "", "q5_deleteHBAExtent",
     "Failed to delete an extent #4 in disk with ID 2 on controller #1!\n"},
};
static const Action& kSpare = kActions[0];
static const Action& kAdd = kActions[2];
static const Action& kSplit = kActions[3];

static std::string outcomeOf(const Action& action, const std::string& options) {
    return outcomeOf(action.function, std::string("extent -a ") + action.word + " " + options);
}

static Bytes placement(std::uint32_t controller, std::uint16_t extent, std::uint16_t drive,
                       std::uint16_t logDrv) {
    return bytesOf(hbaAddress(controller), std::uint32_t{0}, extent, drive, logDrv, std::uint16_t{0});
}

static Bytes reference(std::uint32_t controller, std::uint32_t extent, std::uint32_t drive) {
    return bytesOf(hbaAddress(controller), std::uint32_t{0}, extent, drive);
}

// The arguments of the action's call for extent 4 on drive 2 of controller 1.
static Bytes arguments(const Action& action) {
    if (&action == &kSpare || &action == &kAdd)
        return placement(1, 4, 2, &action == &kAdd ? 7 : 255);
    return concat({reference(1, 4, 2), &action == &kSplit ? bytesOf(std::uint32_t{500}) : Bytes{}});
}

TEST_F(ExtentChange, MakesOneCallSilently) {
    for (const Action& action : kActions)
        for (const char* options : {"-p 3 -e 4 -i 1", "-I 1 -E 4 -P 3"}) {
            expectCall(action.operation, arguments(action));
            EXPECT_EQ(outcomeOf(action, options + std::string(action.more)), "0: ");
        }
}

TEST_F(ExtentChange, ReportsFailureAndSucceeds) {
    for (const Action& action : kActions)
        for (const int result : {1, -1}) {
            expectCall(action.operation, arguments(action), {}, result);
            EXPECT_EQ(outcomeOf(action, std::string("-p 3 -e 4 -i 1") + action.more),
                      std::string("0: ") + action.failure);
        }
}

TEST_F(ExtentChange, ChecksTheWordCount) {
    for (const Action& action : kActions) {
        const std::string message =
            std::string("2: Invalid number of parameters for \"extent -a ") + action.word + "\" defined\n";
        EXPECT_EQ(outcomeOf(action, ""), message);
        EXPECT_EQ(outcomeOf(action, "-p x -e 4 -z"), message);
        if (&action != &kSpare) {
            EXPECT_EQ(outcomeOf(action, "-p x -e 4 -i 1 -l"), message);
            EXPECT_EQ(outcomeOf(action, "-p x -e 4 -i 1 -l 7 -o"), message);
            EXPECT_EQ(outcomeOf(action, "-p x -e 4 -i 1 -l 7 -o 5"), message);
        }
        EXPECT_EQ(outcomeOf(action, action.more[0] == '\0' ? "-p 3 -e 4 -i" : "-p 3 -e 4 -i 1"), message);
    }
}

TEST_F(ExtentChange, RejectsInvalidOptionsInOrderBeforeAnyCall) {
    for (const Action& action : kActions) {
        const std::string more = action.more;
        EXPECT_EQ(outcomeOf(action, "-p x -e y -i z" + more), "6: Invalid physical drive ID 'x' specified\n");
        EXPECT_EQ(outcomeOf(action, "-p 3 -e y -i z" + more), "6: Invalid extent ID 'y' specified\n");
        EXPECT_EQ(outcomeOf(action, "-p 3 -e 4 -i z" + more), "6: Invalid controller ID 'z' specified\n");
        EXPECT_EQ(outcomeOf(action, "-p 3 -e 4 -z z" + more), "1: Invalid parameters defined\n");
        EXPECT_EQ(outcomeOf(action, "-c 3 -e y -i z" + more), "1: Invalid parameters defined\n");
        const char* foreign = &action == &kSplit ? "-p 3 -e 4 -l 5" : "-p 3 -e 4 -o 5";
        EXPECT_EQ(outcomeOf(action, foreign + more), "1: Invalid parameters defined\n");
    }
    EXPECT_EQ(outcomeOf(kActions[1], "-p 3 -e 4 -l 5"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(kActions[4], "-p 3 -e 4 -l 5"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(kSpare, "-p 3 -e 4 -i 1 -l a"), "6: Invalid logical drive ID 'a' specified\n");
    EXPECT_EQ(outcomeOf(kAdd, "-p 3 -e 4 -i 1 -l -1"), "6: Invalid logical drive ID '-1' specified\n");
    EXPECT_EQ(outcomeOf(kSplit, "-p 3 -e 4 -i 1 -o 5M"), "6: Invalid offset '5M' specified\n");
}

TEST_F(ExtentChange, DefaultsMissingOptionsToZero) {
    const Bytes extentNone = reference(0, 0, 0);
    expectCall("q5_freeHBAExtent", extentNone);
    EXPECT_EQ(outcomeOf(kActions[1], "-i 0 -i 0 -i 0"), "0: ");
    expectCall("q5_deleteHBAExtent", reference(0, 0, 2));
    EXPECT_EQ(outcomeOf(kActions[4], "-p 8 -p 9 -p 3"), "0: ");
    expectCall("q5_spareHBAExtent", placement(1, 0, 0, 255));
    EXPECT_EQ(outcomeOf(kSpare, "-i 3 -i 2 -i 1"), "0: ");
    expectCall("q5_addHBAExtentToArray", placement(0, 0, 0, 0));
    EXPECT_EQ(outcomeOf(kAdd, "-l 3 -l 2 -l 1 -l 0"), "0: ");
    expectCall("q5_splitHBAExtent", concat({extentNone, bytesOf(std::uint32_t{1})}));
    EXPECT_EQ(outcomeOf(kSplit, "-o 4 -o 3 -o 2 -o 1"), "0: ");
}

TEST_F(ExtentChange, TruncatesIdsInAPlacementButNotInAReference) {
    expectCall("q5_spareHBAExtent", placement(0, 1, 0xFFFF, 255), {}, 1);
    EXPECT_EQ(outcomeOf(kSpare, "-p 0 -e 65537 -i 65536"),
              "0: Failed to spare an extent #65537 in disk with ID -1 on controller #65536!\n");
    expectCall("q5_freeHBAExtent", reference(0, 65537, 0xFFFFFFFF), {}, 1);
    EXPECT_EQ(outcomeOf(kActions[1], "-p 0 -e 65537 -i 0"),
              "0: Failed to free an extent #65537 in disk with ID -1 on controller #0!\n");
    expectCall("q5_splitHBAExtent",
               concat({reference(0, 0xFFFFFFFF, 65536), bytesOf(std::uint32_t{0xFFFFFFFF})}));
    EXPECT_EQ(outcomeOf(kSplit, "-p 65537 -e 4294967295 -i 0 -o 4294967295"), "0: ");
}

TEST_F(ExtentChange, KeepsTheLowByteOfALogicalDrive) {
    const std::pair<const char*, std::uint16_t> ids[] = {{"0", 0},   {"7", 7},    {"255", 255},
                                                         {"256", 0}, {"300", 44}, {"65535", 255}};
    for (const auto& [input, sent] : ids)
        for (const Action* action : {&kSpare, &kAdd}) {
            expectCall(action->operation, placement(1, 4, 2, sent));
            EXPECT_EQ(outcomeOf(*action, std::string("-p 3 -e 4 -i 1 -l ") + input), "0: ") << input;
        }
}

TEST_F(ExtentChange, AcceptsExtraWordsForASpare) {
    expectCall("q5_spareHBAExtent", placement(1, 4, 2, 9));
    EXPECT_EQ(outcomeOf(kSpare, "-p 3 -e 4 -i 1 -l 8 -l 9"), "0: ");
    expectCall("q5_spareHBAExtent", placement(1, 4, 2, 6));
    EXPECT_EQ(run(SpareExtent, splitWords("extent -a spare -p 3 -e 4 -i 1 -l"), {"6"}).output, "");
    EXPECT_EQ(outcomeOf(kSpare, "-p 3 -e 4 -i 1 -l"), "6: Invalid logical drive ID '' specified\n");
    EXPECT_EQ(outcomeOf(kSpare, "-p 3 -e 4 -i 1 -p 3 -e 4 -i 1 -l"),
              "6: Invalid logical drive ID '' specified\n"); // in the table's last slot
}

TEST_F(ExtentChange, RequiresALogicalDriveForAdd) {
    EXPECT_EQ(outcomeOf(kAdd, "-p 3 -e 4 -i 1 -i 1"), "6: Invalid logical drive ID defined!\n");
}

TEST_F(ExtentChange, RequiresAnOffsetForSplit) {
    EXPECT_EQ(outcomeOf(kSplit, "-p 3 -e 4 -i 1 -o 0"), "7: Incorrect offset 0 is defined!\n");
    EXPECT_EQ(outcomeOf(kSplit, "-p 3 -e 4 -i 1 -i 1"), "7: Incorrect offset 0 is defined!\n");
    EXPECT_EQ(outcomeOf(kSplit, "-p 3 -e 4 -i 1 -o 4294967296"), "7: Incorrect offset 0 is defined!\n");
}
