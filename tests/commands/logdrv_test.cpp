// The logdrv command: listing in both forms, locating and deletion. Settings have a file of their own.
#include "commands/logdrv.h"

#include "tests/commands/logdrv_records.h"

using LogDrv = Scripted;
using Drives = std::vector<LogDrvInfo>;

// The reply that a listing asks for.
static void expectListing(std::uint32_t controller, std::uint32_t first, std::uint32_t count,
                          const Bytes& reply, int result = 0) {
    expectCall("q5_getLogDrvInfo", asks(controller, LogDrvQuery{first, count}, 26688), reply, result);
}

template <std::size_t Size>
static void put(char (&field)[Size], const std::string& text) {
    std::memcpy(field, text.c_str(), text.size() + 1);
}

// A RAID5 of 1000 MB on the drives that users call 1, 2 and 8; noise where a listing does not look.
static LogDrvInfo raid5(std::uint16_t id = 0) {
    LogDrvInfo drive = driveDoing(0, id);
    drive.raidLevel = 5;
    drive.functionalStatus = 1;
    drive.writeCacheMode = 1;
    drive.sectorCount = 2048000;
    drive.diskCount = 3;
    drive.stripeBlocks = 128;
    put(drive.name, "data");
    drive.memberIds[0] = 0;
    drive.memberIds[1] = 1;
    drive.memberIds[2] = 7;
    drive.sectorSize = 512;
    return drive;
}

// A list's reply whose header says otherwise.
static Bytes listReplyOf(const Drives& drives, std::uint32_t bytesUsed) {
    Bytes reply = listReply(drives);
    const ReplyHeader header = headerOf(bytesUsed);
    std::memcpy(reply.data(), &header, sizeof header);
    return reply;
}

static const std::string kHead = "ID    RAID Disks Sectors   Size(MB)          DiskID Name\n";
static const std::string kRaid5Row = " 0   RAID5     3     128    1000.00         (1,2,8) data\n";

namespace {
struct Asked {
    const char* line;
    std::uint32_t controller, first, count;
    const char* told;
};
} // namespace

static const Asked kAsked[] = {
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
    {"logdrv -c 5 -c 500", 0, 0, 5, "0: No array with ID 0 in controller #0 is existed\n"},
    {"logdrv -c 5 -l 4294967295", 0, 4294967295, 1, "0: No array with ID -1 in controller #0 is existed\n"},
    {"logdrv -i 4294967297", 1, 0, 128, "0: No array with ID 0 in controller #1 is existed\n"},
};

TEST_F(LogDrv, ListsWhatItsOptionsName) {
    for (const Asked& asked : kAsked) {
        expectListing(asked.controller, asked.first, asked.count, bytesOf(headerOf(64)));
        EXPECT_EQ(told(ListLogDrvInfo, asked.line), asked.told) << asked.line;
    }
    expectListing(0, 0, 128, {});
    EXPECT_EQ(told(ListLogDrvInfo, "", {"logdrv", "-l", "3"}),
              "0: No array with ID 0 in controller #0 is existed\n");
}

TEST_F(LogDrv, ListRefusesWordsThatAreNoOptions) {
    for (const char* line :
         {"logdrv list", "logdrv list -l 3", "logdrv -a list -s x", "logdrv -a list 3", "logdrv -l 3 3"})
        EXPECT_EQ(told(ListLogDrvInfo, line), kUnknownOptionTold) << line;
}

TEST_F(LogDrv, ListRefusesWhatIsNoNumber) {
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -l x"), "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -i -1"), "6: Invalid controller ID '-1' specified\n");
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -c all"), "1: Invalid controller count 'all' specified\n");
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -l 1 -v -c"), "1: Invalid controller count '' specified\n");
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -v -v -v -v -v -v -v -v -v -v -v -v -v -v -l"),
              "6: Invalid logical drive ID '' specified\n");
}

TEST_F(LogDrv, ListReadsAMissingValueFromTheNextSlot) {
    expectListing(0, 7, 1, {});
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -l", {"7"}),
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
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv"),
              "0: " + kHead + kRaid5Row +
                  "12    JBOD     1 4294967295       0.00            (16) \n"
                  "65535 Unknown raid mode     0     128 2097152.00              () data\n");
}

TEST_F(LogDrv, ListsEveryRecordOfTheReplyWhateverWasAsked) {
    expectListing(0, 5, 1, listReply(Drives{raid5(), raid5()}), 1);
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -l 5"), "0: " + kHead + kRaid5Row + kRaid5Row);
}

TEST_F(LogDrv, ListDistrustsByteCounts) {
    const std::string none = "0: No array with ID 0 in controller #0 is existed\n";
    for (const std::uint32_t bytesUsed : {0u, 63u, 64u, 271u}) {
        expectListing(0, 0, 128, listReplyOf({raid5()}, bytesUsed));
        EXPECT_EQ(told(ListLogDrvInfo, "logdrv"), none) << bytesUsed;
    }
    expectListing(0, 0, 128, listReplyOf({raid5(), raid5()}, 64 + 208 + 207));
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv"), "0: " + kHead + kRaid5Row);

    std::string rows;
    for (int i = 0; i < 128; ++i)
        rows += kRaid5Row;
    for (const std::uint32_t bytesUsed : {26688u, 26689u, 26896u, 4294967295u}) {
        expectListing(0, 0, 128, listReplyOf(Drives(129, raid5()), bytesUsed));
        EXPECT_EQ(told(ListLogDrvInfo, "logdrv"), "0: " + kHead + rows) << bytesUsed;
    }
}

TEST_F(LogDrv, ListDistrustsNamesAndMemberCounts) {
    LogDrvInfo drive = raid5();
    std::memset(drive.name, 'n', sizeof drive.name);
    drive.diskCount = 65535;
    std::memset(drive.memberIds, 255, sizeof drive.memberIds);
    drive.parityCount = 255;
    std::string members = "(-";
    for (int i = 1; i < 32; ++i)
        members += ",-";
    expectListing(0, 0, 128, listReply(Drives{drive}));
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv"), "0: " + kHead + " 0   RAID5 65535     128    1000.00 " +
                                                  members + ") " + std::string(88, 'n') + "\n");
}

TEST_F(LogDrv, ListCountsSizesAsWrappingBytes) {
    LogDrvInfo drive = raid5();
    drive.sectorCount = (std::uint64_t{1} << 55) + 2048;
    expectListing(0, 0, 128, listReply(Drives{drive}));
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv"),
              "0: " + kHead + " 0   RAID5     3     128       1.00         (1,2,8) data\n");
}

// The verbose form.

// Settings whose reply header is not looked at.
static Bytes settingsReply(std::uint8_t cacheFlags, std::uint16_t lookahead, std::uint8_t consolidation) {
    LogDrvSettings settings = noisy<LogDrvSettings>();
    settings.cacheFlags = cacheFlags;
    settings.lookahead = lookahead;
    settings.consolidation = consolidation;
    return bytesOf(headerOf(0), settings);
}

static void expectLost(std::uint32_t controller, std::uint8_t logDrvId, std::uint32_t mask, int result = 0) {
    expectCall("q5_getAryLostDisk", bytesOf(at(controller), std::uint32_t{0}, logDrvId), bytesOf(mask),
               result);
}

static void expectSettings(std::uint32_t controller, std::uint32_t position, const Bytes& reply,
                           int result = 0) {
    expectCall("q5_getLogDrvSettings", asks(controller, LogDrvQuery{position, 1}, 180), reply, result);
}

static const std::string kStars = "*******************************\n";
static const std::string kRaid5Block = kStars + "Array ID : 0\n"
                                                "Array name : data\n"
                                                "Array size : 1000.00 MB\n"
                                                "Array stripe size in number of blocks : 128\n"
                                                "Array sector size : 512\n"
                                                "Array raid mode : RAID5\n"
                                                "Array write cache mode : Write Back\n"
                                                "Number of disks in array : 3\n"
                                                "Disk members with ID in array : (1,2,8)\n";
static const std::string kIdleOnline = "Array activity status : Idle\n"
                                       "Array functional status : Online\n";
static const std::string kDriverLines = "Driver Cache Mode: Write Back\n"
                                        "Driver Lookahead threshold: 4\n"
                                        "Driver Consolidation: enabled\n";

// Lists one drive verbosely whose members are all there.
static std::string toldBlock(const LogDrvInfo& drive, const Bytes& settings = settingsReply(0, 4, 1)) {
    expectListing(0, 0, 128, listReply(Drives{drive}));
    expectLost(0, static_cast<std::uint8_t>(drive.logDrvId), 0);
    expectSettings(0, 0, settings);
    return told(ListLogDrvInfo, "logdrv -v");
}

TEST_F(LogDrv, VerboseListShowsABlock) {
    EXPECT_EQ(toldBlock(raid5()), "0: " + kRaid5Block + kIdleOnline + kDriverLines);
}

TEST_F(LogDrv, VerboseListShowsNumbersSignedAndTextsBounded) {
    LogDrvInfo drive = raid5(65535);
    std::memset(drive.name, 'n', sizeof drive.name);
    drive.sectorCount = 1;
    drive.stripeBlocks = drive.sectorSize = 4294967295;
    drive.raidLevel = 3;
    drive.writeCacheMode = 0;
    drive.diskCount = 65535;
    std::memset(drive.memberIds, 0, sizeof drive.memberIds);
    std::string members = "(1";
    for (int i = 1; i < 32; ++i)
        members += ",1";
    EXPECT_EQ(toldBlock(drive, settingsReply(0, 65535, 255)),
              "0: " + kStars + "Array ID : 65535\nArray name : " + std::string(88, 'n') +
                  "\nArray size : 0.00 MB\n"
                  "Array stripe size in number of blocks : -1\n"
                  "Array sector size : -1\n"
                  "Array raid mode : Unknown raid mode\n"
                  "Array write cache mode : Write Through\n"
                  "Number of disks in array : 65535\n"
                  "Disk members with ID in array : " +
                  members + ")\n" + kIdleOnline +
                  "Driver Cache Mode: Write Thru\n"
                  "Driver Lookahead threshold: 65535\n"
                  "Driver Consolidation: enabled\n");
}

// A line of the block, by how it begins.
static std::string lineOf(const std::string& block, const std::string& beginning) {
    const std::size_t start = block.find("\n" + beginning);
    return start == std::string::npos ? "(none)"
                                      : block.substr(start + 1, block.find('\n', start + 1) - start - 1);
}

TEST_F(LogDrv, VerboseListNamesTheFunctionalState) {
    const struct {
        int status;
        const char* line;
    } rows[] = {
        {1, "Array functional status : Online"},     {2, "Array functional status : Critical"},
        {3, "Array functional status : Critical"},   {4, "Array functional status : Degrade"},
        {5, "Array functional status : Online"},     {6, "Array functional status : Critical"},
        {7, "Array functional status : Critical"},   {0, "Array functional status : Offline"},
        {0xF8, "Array functional status : Offline"},
    };
    for (const auto& row : rows) {
        LogDrvInfo drive = raid5();
        drive.functionalStatus = static_cast<std::uint8_t>(row.status);
        EXPECT_EQ(lineOf(toldBlock(drive), "Array functional"), row.line) << row.status;
    }
}

TEST_F(LogDrv, VerboseListNamesTheCacheModes) {
    const struct {
        std::uint32_t mode;
        std::uint8_t flags;
        const char* array;
        const char* driver;
    } rows[] = {
        {0, 0, "Array write cache mode : Write Through", "Driver Cache Mode: Write Thru"},
        {1, 0, "Array write cache mode : Write Back", "Driver Cache Mode: Write Back"},
        {4, 0, "Array write cache mode : Write Through", "Driver Cache Mode: By Pass"},
        {5, 0, "Array write cache mode : Write Back", "Driver Cache Mode: Write Back"},
        {8, 0, "Array write cache mode : Auto - Write Through", "Driver Cache Mode: Write Thru"},
        {9, 8, "Array write cache mode : Auto - Write Back", "Driver Cache Mode: Auto - Write Back"},
        {4, 0xFF, "Array write cache mode : Write Through", "Driver Cache Mode: Auto - By Pass"},
        {0, 8, "Array write cache mode : Write Through", "Driver Cache Mode: Auto - Write Thru"},
        {0, 0xF7, "Array write cache mode : Write Through", "Driver Cache Mode: Write Thru"},
        {0x0500, 0, "Array write cache mode : Write Through", "Driver Cache Mode: Write Thru"},
    };
    for (const auto& row : rows) {
        LogDrvInfo drive = raid5();
        drive.writeCacheMode = row.mode;
        const std::string block = toldBlock(drive, settingsReply(row.flags, 0, 0));
        EXPECT_EQ(lineOf(block, "Array write"), row.array) << row.mode;
        EXPECT_EQ(lineOf(block, "Driver Cache"), row.driver) << row.mode;
        EXPECT_EQ(lineOf(block, "Driver Look"), "Driver Lookahead threshold: 0");
        EXPECT_EQ(lineOf(block, "Driver Cons"), "Driver Consolidation: disabled");
    }
}

TEST_F(LogDrv, VerboseListEndsWithWhatALevelHasOfItsOwn) {
    LogDrvInfo drive = raid5();
    drive.raidLevel = 80;
    drive.subArrayCount = 255;
    EXPECT_TRUE(toldBlock(drive).ends_with(kDriverLines + "Array sub array count:255\n"));
    drive.raidLevel = 96;
    drive.parityCount = 3;
    drive.symmetric = 1;
    drive.shift = -2;
    EXPECT_TRUE(toldBlock(drive).ends_with(kDriverLines +
                                           "Array parity count:3\nArray Symmetric:1\nArray Shift:-2\n"));
    for (const std::uint8_t level : {0, 1, 10, 16}) {
        drive.raidLevel = level;
        EXPECT_TRUE(toldBlock(drive).ends_with(kDriverLines)) << int{level};
    }
}

TEST_F(LogDrv, VerboseListShowsTheActivityBetweenMembersAndState) {
    LogDrvInfo drive = raid5(258);
    drive.activityStatus = 1 | 2;
    expectListing(2, 258, 1, listReply(Drives{drive}), 1);
    expectLost(2, 2, 0x8005, 1);
    expectProgress(kRebuildRead, 2, 258, kPaused, 10, 1);
    expectProgress(kInitRead, 2, 258, kRunning, 20, 1);
    expectSettings(2, 0, settingsReply(0, 4, 1), 1);
    std::string block = kRaid5Block;
    block.replace(block.find("ID : 0"), 6, "ID : 258");
    EXPECT_EQ(told(ListLogDrvInfo, "logdrv -v -l 258 -i 2"),
              "0: " + block +
                  "Set down disk members with ID in array : 15,2,0\n"
                  "Array activity status : Rebuild Paused\n"
                  "Array initialization progress : 20 %\n"
                  "Array functional status : Online\n" +
                  kDriverLines);
}

// A verbose listing of as many drives as there are masks; its lines about lost members.
static std::string lostLines(const std::vector<std::uint32_t>& masks) {
    Drives drives;
    for (std::size_t i = 0; i < masks.size(); ++i)
        drives.push_back(raid5(static_cast<std::uint16_t>(10 - i)));
    expectListing(0, 0, 128, listReply(drives));
    for (std::uint32_t i = 0; i < masks.size(); ++i) {
        expectLost(0, static_cast<std::uint8_t>(10 - i), masks[i]);
        expectSettings(0, i, settingsReply(0, 4, 1)); // by position, whatever the drive's ID
    }
    std::string lines, text = told(ListLogDrvInfo, "logdrv -v");
    for (std::size_t start; (start = text.find("Set down")) != std::string::npos;) {
        const std::size_t end = text.find('\n', start) + 1;
        lines += text.substr(start, end - start);
        text.erase(0, end);
    }
    return lines;
}

TEST_F(LogDrv, VerboseListNamesLostMembers) {
    const std::string label = "Set down disk members with ID in array : ";
    EXPECT_EQ(lostLines({0}), "");
    EXPECT_EQ(lostLines({1}), label + "0\n");
    EXPECT_EQ(lostLines({0xFFFF}), label + "15,14,13,12,11,10,9,8,7,6,5,4,3,2,1,0\n");
    EXPECT_EQ(lostLines({0x10000}), label + "\n");
    EXPECT_EQ(lostLines({0xFFFF0004}), label + "2\n");
}

TEST_F(LogDrv, VerboseListGoesOnWithACommaOnTheNextDrive) {
    const std::string label = "Set down disk members with ID in array : ";
    EXPECT_EQ(lostLines({0x0002, 0x0008}), label + "1\n" + label + ",3\n");
    EXPECT_EQ(lostLines({0, 0x0008, 0, 0x0003}), label + "3\n" + label + ",1,0\n");
    EXPECT_EQ(lostLines({0x10000, 0x0003, 0x10000, 4}),
              label + "\n" + label + "1,0\n" + label + "\n" + label + ",2\n");
}

// Locating.

static const std::string kLocateCountTold = "2: Invalid number of parameters for \"logdrv\" defined\n";

TEST_F(LogDrv, LocateBlinksForItsDuration) {
    expectLookup(2, 3, driveDoing(0));
    expectCall("q5_locateLogDrv", bytesOf(at(2), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{30}));
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -l 3 -i 2 -d 30"), kDoneSilently);
    expectLookup(0, 65539, driveDoing(31), 1);
    expectCall("q5_locateLogDrv",
               bytesOf(at(0), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{4294967295}));
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -D 4294967295 -L 65539"), kDoneSilently);
}

TEST_F(LogDrv, LocateForNoTimeStopsTheBlinking) {
    for (const char* line : {"logdrv -a locate -l 3 -d 0", "logdrv -a locate -l 1 -l 3"}) {
        expectLookup(0, 3, driveDoing(0));
        expectCall("q5_stopLocateLogDrv", bytesOf(at(0), std::uint32_t{0}, std::uint16_t{3}));
        EXPECT_EQ(told(LocateLogDrv, line), kDoneSilently) << line;
    }
}

TEST_F(LogDrv, LocateReportsARefusal) {
    for (const int result : {1, -1}) {
        expectLookup(2, 3, driveDoing(0));
        expectCall("q5_locateLogDrv", bytesOf(at(2), std::uint32_t{0}, std::uint16_t{3}, std::uint32_t{30}),
                   {}, result);
        EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -i 2 -l 3 -d 30"),
                  "8: Failed to locate the logical drive with ID 3 in controller #2!\n");
        expectLookup(2, 3, driveDoing(0));
        expectCall("q5_stopLocateLogDrv", bytesOf(at(2), std::uint32_t{0}, std::uint16_t{3}), {}, result);
        EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -i 2 -l 3 -d 0"),
                  "8: Failed to locate the logical drive with ID 3 in controller #2!\n");
    }
}

TEST_F(LogDrv, LocateChecksItsWords) {
    for (const char* line : {"", "logdrv -a locate", "logdrv -a locate -l 3", "logdrv -a locate -l 3 -d",
                             "logdrv -a locate -l 3 -i 2", "logdrv -a locate -l 3 -I 2 -d",
                             "logdrv -a locate -l 3 -d 5 -d 6", "logdrv -a locate -l 3 -d -i"})
        EXPECT_EQ(told(LocateLogDrv, line), kLocateCountTold) << line;
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -l 3 -s 5"), kUnknownOptionTold);
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -l x -d y"),
              "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -l 3 -i x -d 5"),
              "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -l 3 -d 5s"), "1: Invalid duration '5s' specified\n");
}

TEST_F(LogDrv, LocateMissesADriveThatTheAdapterDoesNotKnow) {
    expectMissing(2, 3);
    EXPECT_EQ(told(LocateLogDrv, "logdrv -a locate -l 3 -i 2 -d 5"),
              "5: No array with ID 3 in controller #2 is existed\n");
}

// Deletion.

static void expectDeletion(std::uint32_t controller, std::uint32_t logDrvId, int result = 0) {
    expectCall("q5_delDiskArray", asks(controller, DeleteArrayRequest{1, logDrvId}, 8), {}, result);
}

TEST_F(LogDrv, DeletesWithoutLookingTheDriveUp) {
    expectDeletion(0, 3);
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -l 3"), kDoneSilently);
    expectDeletion(2, 4294967295);
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -I 2 -L 4294967295"), kDoneSilently);
    expectDeletion(2, 0);
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -i 1 -i 2"), kDoneSilently);
}

TEST_F(LogDrv, DeletionReportsARefusal) {
    for (const int result : {1, -1}) {
        expectDeletion(2, 3, result);
        EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -l 3 -i 2"),
                  "8: Failed to delete an array with ID 3 specified\n");
    }
    expectDeletion(0, 4294967295, 1);
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -l 4294967295"),
              "8: Failed to delete an array with ID -1 specified\n");
}

TEST_F(LogDrv, DeletionChecksItsWords) {
    for (const char* line : {"", "logdrv -a del", "logdrv -a del -l", "logdrv del -l 3", "logdrv -a del -i 2",
                             "logdrv -a del -l 3 -l 3", "logdrv -a del -l 3 -i", "logdrv -a del -l -i"})
        EXPECT_EQ(told(DeleteLogDrv, line), "2: Invalid number of parameters for \"logdrv -a del\" defined\n")
            << line;
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -p 3"), kUnknownOptionTold);
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -l x"), "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(told(DeleteLogDrv, "logdrv -a del -l 3 -i x"), "6: Invalid controller ID 'x' specified\n");
}
