// The verbose listing of logical drives. The lines about a drive's activity are tested in
// activity_test.cpp.
#include "commands/logdrv.h"

#include "tests/commands/logdrv_records.h"

using LogDrvBlocks = MockAdapterTest;

// A settings reply, whose header is ignored.
static Bytes settingsReply(std::uint8_t cacheFlags, std::uint16_t lookahead, std::uint8_t consolidation) {
    LogDrvSettings settings = patternFilled<LogDrvSettings>();
    settings.cacheFlags = cacheFlags;
    settings.lookahead = lookahead;
    settings.consolidation = consolidation;
    return bytesOf(replyHeader(0), settings);
}

static void expectLost(std::uint32_t controller, std::uint8_t logDrvId, std::uint32_t mask, int result = 0) {
    expectCall("q5_getAryLostDisk", bytesOf(hbaAddress(controller), std::uint32_t{0}, logDrvId),
               bytesOf(mask), result);
}

static void expectSettings(std::uint32_t controller, std::uint32_t position, const Bytes& reply,
                           int result = 0) {
    expectCall("q5_getLogDrvSettings", queryFor(controller, LogDrvQuery{position, 1}, 180), reply, result);
}

static const std::string kSeparator = "*******************************\n";
static const std::string kRaid5Block = kSeparator + "Array ID : 0\n"
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

// Lists one drive verbosely, with no lost members.
static std::string outcomeOfBlock(const LogDrvInfo& drive, const Bytes& settings = settingsReply(0, 4, 1)) {
    expectListing(0, 0, 128, listReply(Drives{drive}));
    expectLost(0, static_cast<std::uint8_t>(drive.logDrvId), 0);
    expectSettings(0, 0, settings);
    return outcomeOf(ListLogDrvInfo, "logdrv -v");
}

TEST_F(LogDrvBlocks, ShowADrive) {
    EXPECT_EQ(outcomeOfBlock(raid5()), "0: " + kRaid5Block + kIdleOnline + kDriverLines);
}

TEST_F(LogDrvBlocks, ShowNumbersSignedAndTextsBounded) {
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
    EXPECT_EQ(outcomeOfBlock(drive, settingsReply(0, 65535, 255)),
              "0: " + kSeparator + "Array ID : 65535\nArray name : " + std::string(88, 'n') +
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

// The line of the block that starts with this label.
static std::string lineOf(const std::string& block, const std::string& label) {
    const std::size_t start = block.find("\n" + label);
    return start == std::string::npos ? "(none)"
                                      : block.substr(start + 1, block.find('\n', start + 1) - start - 1);
}

TEST_F(LogDrvBlocks, NameTheFunctionalState) {
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
        EXPECT_EQ(lineOf(outcomeOfBlock(drive), "Array functional"), row.line) << row.status;
    }
}

TEST_F(LogDrvBlocks, NameTheCacheModes) {
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
        const std::string block = outcomeOfBlock(drive, settingsReply(row.flags, 0, 0));
        EXPECT_EQ(lineOf(block, "Array write"), row.array) << row.mode;
        EXPECT_EQ(lineOf(block, "Driver Cache"), row.driver) << row.mode;
        EXPECT_EQ(lineOf(block, "Driver Look"), "Driver Lookahead threshold: 0");
        EXPECT_EQ(lineOf(block, "Driver Cons"), "Driver Consolidation: disabled");
    }
}

TEST_F(LogDrvBlocks, EndWithTheFieldsOfTheLevel) {
    LogDrvInfo drive = raid5();
    drive.raidLevel = 80;
    drive.subArrayCount = 255;
    EXPECT_TRUE(outcomeOfBlock(drive).ends_with(kDriverLines + "Array sub array count:255\n"));
    drive.raidLevel = 96;
    drive.parityCount = 3;
    drive.symmetric = 1;
    drive.shift = -2;
    EXPECT_TRUE(outcomeOfBlock(drive).ends_with(kDriverLines +
                                                "Array parity count:3\nArray Symmetric:1\nArray Shift:-2\n"));
    for (const RaidLevel level : {kRaid0, kRaid1, kJbod, kRaid10}) {
        drive.raidLevel = level;
        EXPECT_TRUE(outcomeOfBlock(drive).ends_with(kDriverLines)) << int{level};
    }
}

TEST_F(LogDrvBlocks, ShowTheActivityBetweenMembersAndState) {
    LogDrvInfo drive = raid5(258);
    drive.activityStatus = 1 | 2;
    expectListing(2, 258, 1, listReply(Drives{drive}), 1);
    expectLost(2, 2, 0x8005, 1);
    expectProgress(kRebuildRead, 2, 258, kPaused, 10, 1);
    expectProgress(kInitRead, 2, 258, kRunning, 20, 1);
    expectSettings(2, 0, settingsReply(0, 4, 1), 1);
    std::string block = kRaid5Block;
    block.replace(block.find("ID : 0"), 6, "ID : 258");
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -v -l 258 -i 2"),
              "0: " + block +
                  "Set down disk members with ID in array : 15,2,0\n"
                  "Array activity status : Rebuild Paused\n"
                  "Array initialization progress : 20 %\n"
                  "Array functional status : Online\n" +
                  kDriverLines);
}

// The lines about lost members in a verbose listing of one drive for each mask.
static std::string lostLines(const std::vector<std::uint32_t>& masks) {
    Drives drives;
    for (std::size_t i = 0; i < masks.size(); ++i)
        drives.push_back(raid5(static_cast<std::uint16_t>(10 - i)));
    expectListing(0, 0, 128, listReply(drives));
    for (std::uint32_t i = 0; i < masks.size(); ++i) {
        expectLost(0, static_cast<std::uint8_t>(10 - i), masks[i]);
        expectSettings(0, i, settingsReply(0, 4, 1)); // by position, whatever the drive's ID
    }
    std::string lines, text = outcomeOf(ListLogDrvInfo, "logdrv -v");
    for (std::size_t start; (start = text.find("Set down")) != std::string::npos;) {
        const std::size_t end = text.find('\n', start) + 1;
        lines += text.substr(start, end - start);
        text.erase(0, end);
    }
    return lines;
}

TEST_F(LogDrvBlocks, OmitLostMembersWhenThereAreNone) {
    expectListing(0, 0, 128, listReply(Drives{raid5()}));
    expectCall("q5_getAryLostDisk", bytesOf(hbaAddress(0), std::uint32_t{0}, std::uint8_t{0}), {}, 1);
    expectSettings(0, 0, settingsReply(0, 4, 1));
    EXPECT_EQ(outcomeOf(ListLogDrvInfo, "logdrv -v"), "0: " + kRaid5Block + kIdleOnline + kDriverLines);
}

TEST_F(LogDrvBlocks, ShowLostMembers) {
    const std::string label = "Set down disk members with ID in array : ";
    EXPECT_EQ(lostLines({0}), "");
    EXPECT_EQ(lostLines({1}), label + "0\n");
    EXPECT_EQ(lostLines({0xFFFF}), label + "15,14,13,12,11,10,9,8,7,6,5,4,3,2,1,0\n");
    EXPECT_EQ(lostLines({0x10000}), label + "\n");
    EXPECT_EQ(lostLines({0xFFFF0004}), label + "2\n");
}

TEST_F(LogDrvBlocks, BeginTheNextListOfLostMembersWithAComma) {
    const std::string label = "Set down disk members with ID in array : ";
    EXPECT_EQ(lostLines({0x0002, 0x0008}), label + "1\n" + label + ",3\n");
    EXPECT_EQ(lostLines({0, 0x0008, 0, 0x0003}), label + "3\n" + label + ",1,0\n");
    EXPECT_EQ(lostLines({0x10000, 0x0003, 0x10000, 4}),
              label + "\n" + label + "1,0\n" + label + "\n" + label + ",2\n");
}
