// The listing of phydrv: the table and the blocks. Actions are in phydrv_actions_test.cpp, the 3 Gb/s
// option in phydrv_speed_test.cpp.
#include "commands/phydrv.h"

#include "adapter/enclosure.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"
#include "tests/mock_adapter.h"

using PhyDrv = MockAdapterTest;
using Lines = std::vector<std::string>;

static Bytes drivesQuery(std::uint32_t controller, std::uint32_t first, std::uint32_t count) {
    return queryFor(controller, PhyDrvQuery{first, count, 255, {}}, 10688);
}

template <std::size_t Size>
static void put(char (&field)[Size], const std::string& text) {
    std::memcpy(field, text.c_str(), text.size() < Size ? text.size() + 1 : Size);
}

// A drive entry filled with a pattern except for the fields a listing shows.
static PhyDrvInfo entryOf(std::uint16_t id) {
    PhyDrvInfo entry;
    std::memset(&entry, 0xA5, sizeof entry);
    entry.driveId = id;
    entry.channel = 5;
    entry.enclosureId = 255;
    entry.capacity = 488397168;
    entry.cylinders = 16383;
    entry.heads = 16;
    entry.sectorsPerTrack = 63;
    put(entry.model, "Model-M");
    put(entry.serial, "S-" + std::to_string(id));
    put(entry.firmware, "3.AAH");
    entry.dmaMode = 6;
    entry.extentCount = 2;
    return entry;
}

static const std::string kHeader =
    "ID CH         Size                  Model                Serial        F/W\n";
static const std::string kDrive7Row =
    " 7  5  238475.18MB                Model-M                   S-6      3.AAH\n";

namespace {
// A line, the query it makes, and the drive in the message for an empty reply.
struct ListingCase {
    const char* line;
    std::uint32_t controller, first, count;
    const char* named;
};
} // namespace

static const ListingCase kListingCases[] = {
    {"phydrv", 0, 0, 16, "0 in controller #0"},
    {"phydrv -a list", 0, 0, 16, "0 in controller #0"},
    {"phydrv -a -p", 0, 0, 16, "0 in controller #0"},
    {"PHYDRV -A LIST -I 3", 3, 0, 16, "0 in controller #3"},
    {"phydrv -i 65537", 1, 0, 16, "0 in controller #65537"},
    {"phydrv -p 3", 0, 2, 1, "2 in controller #0"},
    {"phydrv -V -P 3 -I 1", 1, 2, 1, "2 in controller #1"},
    {"phydrv -p 0", 0, 0xFFFFFFFF, 1, "-1 in controller #0"},
    {"phydrv -c 1", 0, 0, 1, "0 in controller #0"},
    {"phydrv -c 16", 0, 0, 16, "0 in controller #0"},
    {"phydrv -c 17", 0, 0, 16, "0 in controller #0"},
    {"phydrv -c 0 -v", 0, 0, 16, "0 in controller #0"},
    {"phydrv -c 5 -c 0", 0, 0, 5, "0 in controller #0"},
    {"phydrv -a list -p 2 -c 4", 0, 1, 4, "1 in controller #0"},
    {"phydrv -a list -c 4 -p 2", 0, 1, 1, "1 in controller #0"},
    {"phydrv -p 2 -c 16", 0, 1, 16, "1 in controller #0"},
    {"phydrv -p 2 -c 17", 0, 1, 1, "1 in controller #0"},
};

TEST_F(PhyDrv, QueriesAccordingToItsOptions) {
    for (const ListingCase& row : kListingCases) {
        expectCall("q5_getPhyDrvInfo", drivesQuery(row.controller, row.first, row.count));
        EXPECT_EQ(outcomeOf(ListPhyDrvInfo, row.line),
                  std::string("5: Disk with ID ") + row.named + " is not existed\n")
            << row.line;
    }
}

TEST_F(PhyDrv, PassesTheQueryByteForByte) {
    expectCall("q5_getPhyDrvInfo",
               {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 255, 0, 0, 0, 0xC0, 0x29, 0, 0});
    run(ListPhyDrvInfo, splitWords("phydrv -i 1 -p 3 -c 3"));
}

TEST_F(PhyDrv, RejectsInvalidOptionsBeforeAnyCall) {
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -p x"), "6: Invalid physical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -p -1"), "6: Invalid physical drive ID '-1' specified\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -p"), "6: Invalid physical drive ID '' specified\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -v -i 1x"), "6: Invalid controller ID '1x' specified\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -c 1.0"),
              "1: Invalid physical drive count '1.0' specified\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -z"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv list"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -v 1"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -p 1 -a list"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -a list -z -p x"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -a list -p x -z"),
              "6: Invalid physical drive ID 'x' specified\n");
}

TEST_F(PhyDrv, ReadsMissingValueFromAStaleSlotButNotPastTheTable) {
    expectCall("q5_getPhyDrvInfo", drivesQuery(0, 3, 1));
    EXPECT_EQ(run(ListPhyDrvInfo, splitWords("phydrv -p"), {"4"}).result, 5);
    Lines words = splitWords("phydrv -a list");
    words.resize(15, "-v");
    words.push_back("-p");
    EXPECT_EQ(run(ListPhyDrvInfo, words).output, "Invalid physical drive ID '' specified\n");
}

TEST_F(PhyDrv, ListsEveryRecordOfTheReply) {
    PhyDrvInfo large = entryOf(9);
    large.channel = 65535;
    large.capacity = 0xFFFFFFFFFFFFFFFF;
    expectCall("q5_getPhyDrvInfo", drivesQuery(0, 6, 1), listReply<PhyDrvInfo>({entryOf(6), large}), -1);
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -p 7"),
              "0: " + kHeader + kDrive7Row +
                  "10 65535 17592186044416.00MB                Model-M                   S-9      3.AAH\n");
}

TEST_F(PhyDrv, TruncatesUnterminatedTexts) {
    PhyDrvInfo entry = entryOf(6);
    put(entry.model, std::string(22, 'M'));
    put(entry.serial, std::string(24, 'S'));
    put(entry.firmware, std::string(38, 'F'));
    entry.dmaMode = 'X';
    expectCall("q5_getPhyDrvInfo", drivesQuery(0, 0, 16), listReply<PhyDrvInfo>({entry}));
    EXPECT_EQ(run(ListPhyDrvInfo, splitWords("phydrv")).output,
              kHeader + " 7  5  238475.18MB " + std::string(22, 'M') + " " + std::string(24, 'S') + " " +
                  std::string(38, 'F') + "\n");
}

TEST_F(PhyDrv, LimitsByteCounts) {
    for (const std::size_t used : {0u, 63u, 64u, 64u + 663u}) {
        expectCall("q5_getPhyDrvInfo", drivesQuery(0, 0, 16), bytesOf(replyHeader(used), entryOf(6)));
        EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv"), "5: Disk with ID 0 in controller #0 is not existed\n");
    }
    const std::string nothing = " 1  0       0.00MB" + std::string(56, ' ') + "\n";
    for (const std::size_t used : {64 + 17 * 664ul, 0xFFFFFFFFul}) {
        expectCall("q5_getPhyDrvInfo", drivesQuery(0, 0, 16), bytesOf(replyHeader(used), entryOf(6)));
        std::string rows = kDrive7Row;
        for (int i = 1; i < 16; ++i)
            rows += nothing;
        EXPECT_EQ(run(ListPhyDrvInfo, splitWords("phydrv")).output, kHeader + rows);
    }
}

namespace {
// The adapter's replies about drive 6 and the lines of its verbose block.
struct Verbose {
    PhyDrvInfo entry = entryOf(6);
    PhyDrvSettings settings = {{}, 6, {}, 1, 0, 0, 1, 1, 1, {}};
    std::uint16_t patrolState = 0;
    std::uint8_t enclosureType = 0; // queried only in an enclosure
    std::uint8_t lit = 0;
    std::string patrol = "Media patrol status : idle\n";
    std::string enclosure = "Enclosure existed : No\n";
    std::string cacheAndQueues = "Disk write cache mode : enabled\nSmart check : disabled\n"
                                 "NCQ is enabled\nTCQ feature is not supported\n";
    std::string locate = "Current Locate Status : Off\n";
};
} // namespace

// Expects the queries about one drive. The last one fails unless locateSucceeds.
static void expectQueries(const Verbose& drive, std::uint32_t controller, bool locateSucceeds = true) {
    const std::uint32_t id = drive.entry.driveId;
    MediaPatrolProgress patrol;
    std::memset(&patrol, 0xA5, sizeof patrol);
    patrol.state = drive.patrolState;
    patrol.loopCount = 65535;
    patrol.errorCount = 3;
    patrol.progress = 42;
    expectCall("q5_getPhyDrvSettings", queryFor(controller, PhyDrvSelector{id, 1, 1, {}}, 80),
               bytesOf(replyHeader(80), drive.settings));
    expectCall("q5_getHBAMediaPatrolProgress", queryFor(controller, DriveSelector{id, 1}, 124),
               bytesOf(patrol));
    if (drive.entry.enclosureId != 255)
        expectCall("q5_getEnclosureInfo",
                   queryFor(controller, EnclosureQuery{drive.entry.enclosureId, 1}, 80),
                   listReply<EnclosureEntry>({{{}, drive.enclosureType, 0}}));
    expectCall("q5_getPhyDrvLocateStatus",
               bytesOf(hbaAddress(controller), std::uint32_t{0}, static_cast<std::uint16_t>(id)),
               locateSucceeds ? Bytes{drive.lit} : Bytes{}, locateSucceeds ? 0 : 1);
}

static const std::string kIdentity = "****************************\nDisk ID : 7\nChannel# : 5\n"
                                     "Disk name : Model-M\nFirmware version : 3.AAH\n"
                                     "Disk size : 238475.18 MB\nNumber of cylinders : 16383\n"
                                     "Number of heads : 16\nNumber of sectors : 63\nDMA mode : 6\n";

static std::string block(const Verbose& drive) {
    return kIdentity + drive.patrol + "Media patrol loop count : 65535\nMedia patrol error count : 3\n" +
           drive.enclosure + "Number of extents : 2\n" + drive.cacheAndQueues + drive.locate;
}

static void expectBlock(const Verbose& drive) {
    expectCall("q5_getPhyDrvInfo", drivesQuery(1, 6, 1), listReply<PhyDrvInfo>({drive.entry}));
    expectQueries(drive, 1);
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -v -p 7 -i 1"), "0: " + block(drive));
}

TEST_F(PhyDrv, ShowsADrive) {
    expectBlock({});
}

TEST_F(PhyDrv, ShowsUnknownLocateStateAsOff) {
    expectCall("q5_getPhyDrvInfo", drivesQuery(1, 6, 1), listReply<PhyDrvInfo>({entryOf(6)}));
    expectQueries({}, 1, false);
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -v -p 7 -i 1"), "0: " + block({}));
}

TEST_F(PhyDrv, QueriesEachDriveInTurn) {
    Verbose second;
    second.entry.driveId = 6 + 256;
    second.settings.pdId = 6 + 256;
    second.lit = 0x80;
    expectCall("q5_getPhyDrvInfo", drivesQuery(0, 0, 16), listReply<PhyDrvInfo>({entryOf(6), second.entry}));
    expectQueries({}, 0);
    expectQueries(second, 0);
    second.locate = "Current Locate Status : On\n";
    std::string secondBlock = block(second);
    secondBlock.replace(secondBlock.find("ID : 7"), 6, "ID : 263");
    EXPECT_EQ(outcomeOf(ListPhyDrvInfo, "phydrv -a list -v"), "0: " + block({}) + secondBlock);
}

TEST_F(PhyDrv, ShowsTheMediaPatrolState) {
    const Lines states = {"idle", "Running\nMedia patrol progress : 42", "aborted", "paused", "stopped",
                          "idle"};
    for (std::uint16_t state = 0; state < states.size(); ++state) {
        Verbose drive;
        drive.patrolState = state;
        drive.patrol = "Media patrol status : " + states[state] + "\n";
        expectBlock(drive);
    }
    Verbose drive;
    drive.patrolState = 0x0101; // not 1
    expectBlock(drive);
}

TEST_F(PhyDrv, ShowsTheEnclosureType) {
    const Lines types = {"Traybox 400", "Traybox 100", "OEM-A", "OEM-B", "OEM-C", "Traybox 400R"};
    Verbose drive;
    drive.entry.enclosureId = 4;
    for (std::uint8_t type = 1; type <= types.size(); ++type) {
        drive.enclosureType = type;
        drive.enclosure = "Enclosure existed : Yes\nEnclosure type : " + types[type - 1u] + "\n";
        expectBlock(drive);
    }
    drive.enclosure = "Enclosure existed : No\n";
    for (const std::uint8_t type : Bytes{0, 7, 255}) {
        drive.enclosureType = type;
        expectBlock(drive);
    }
}

TEST_F(PhyDrv, ShowsEachSetting) {
    Verbose drive;
    drive.settings = {{}, 6, {}, 0, 1, 1, 0, 0, 1, {}};
    drive.cacheAndQueues = "Disk write cache mode : disabled\nSmart check : enabled\n"
                           "NCQ feature is not supported\nTCQ is disabled\n";
    expectBlock(drive);
    drive.settings = {{}, 6, {}, 1, 1, 0x80, 2, 1, 0, {}};
    drive.cacheAndQueues = "Disk write cache mode : enabled\nSmart check : enabled\n"
                           "NCQ is disabled\nTCQ is enabled\n";
    expectBlock(drive);
}

TEST_F(PhyDrv, OmitsSettingsOfAnotherDrive) {
    Verbose drive;
    drive.settings.pdId = 7;
    drive.cacheAndQueues = "";
    drive.lit = 1;
    drive.locate = "Current Locate Status : On\n";
    expectBlock(drive);
}

TEST_F(PhyDrv, ShowsSignedAndUnsignedNumbers) {
    PhyDrvInfo entry = entryOf(65535);
    entry.cylinders = -1;
    entry.heads = 65535;
    entry.sectorsPerTrack = 65534;
    entry.dmaMode = 255;
    expectCall("q5_getPhyDrvInfo", drivesQuery(0, 6, 1), listReply<PhyDrvInfo>({entry}));
    expectQueries({entry}, 0);
    const std::string shown = run(ListPhyDrvInfo, splitWords("phydrv -p 7 -v")).output;
    EXPECT_NE(shown.find("Disk ID : 65536\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Number of cylinders : -1\nNumber of heads : 65535\n"
                         "Number of sectors : 65534\nDMA mode : 255\n"),
              std::string::npos)
        << shown;
}
