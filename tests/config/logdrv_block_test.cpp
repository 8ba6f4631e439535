// The logical drive block of the configuration file: writing, reading and display.
#include "config/logdrv_block.h"

#include "config/block.h"
#include "tests/config/config_blocks.h"

static std::string blockOf(const LogDrvInfo& drive, const LogDrvSettings& settings,
                           std::vector<std::uint8_t> extents) {
    extents.resize(kMaxArrayMembers, 255);
    char text[kBlockTextSize];
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(LDSettingsToBuffer(1, &drive, &settings, extents.data(), text), 0);
    return text;
}

static std::string blockOf(const LogDrvInfo& drive) {
    return blockOf(drive, raid5Settings(), {0, 0, 1});
}

static LogDrvConfigRecord readDrive(const std::string& text, std::string* messages = nullptr) {
    return readBack(GetLogDrvConfig, text, messages);
}

static std::vector<int> first(const int (&list)[kConfigMembers], int count) {
    return {list, list + count};
}

TEST(LogDrvBlock, WritesItsKeysInOrder) {
    EXPECT_EQ(blockOf(raid5Drive()), kLogDrvLines);
}

TEST(LogDrvBlock, WritesTheParityKeysOfRaidMfOnly) {
    LogDrvInfo drive = raid5Drive();
    drive.raidLevel = 96;
    EXPECT_EQ(blockOf(drive), with(with(kLogDrvLines, "RAID5", "RAIDMF"), "[End]",
                                   "<LogDrvParityCnt> 3\n<LogDrvSymmetric> 1\n<LogDrvShift> -2\n[End]"));
    drive.parityCount = 255;
    drive.symmetric = 255;
    drive.shift = -32768;
    EXPECT_EQ(blockOf(drive),
              with(with(kLogDrvLines, "RAID5", "RAIDMF"), "[End]",
                   "<LogDrvParityCnt> 255\n<LogDrvSymmetric> 255\n<LogDrvShift> -32768\n[End]"));
}

TEST(LogDrvBlock, WritesTheSubArraysOfRaid50Only) {
    LogDrvInfo drive = raid5Drive();
    drive.raidLevel = 80;
    EXPECT_EQ(blockOf(drive),
              with(with(kLogDrvLines, "RAID5", "RAID50"), "[End]", "<LogDrvSubArrayCount> 2\n[End]"));
}

TEST(LogDrvBlock, WritesEveryRaidLevel) {
    const struct {
        std::uint8_t code;
        const char* word;
    } levels[] = {{0, "RAID0"},
                  {1, "RAID1"},
                  {10, "JBOD"},
                  {16, "RAID10"},
                  {2, "Unknown raid mode"},
                  {255, "Unknown raid mode"}};
    for (const auto& level : levels) {
        LogDrvInfo drive = raid5Drive();
        drive.raidLevel = level.code;
        EXPECT_EQ(blockOf(drive), with(kLogDrvLines, "RAID5", level.word));
    }
}

TEST(LogDrvBlock, WritesEveryCacheMode) {
    const struct {
        std::uint32_t code;
        const char* words;
    } modes[] = {{0, "Write Through"},     {4, "Write Through"},  {8, "Auto - Write Through"},
                 {9, "Auto - Write Back"}, {0x101, "Write Back"}, {13, "Auto - Write Back"}};
    for (const auto& mode : modes) {
        LogDrvInfo drive = raid5Drive();
        drive.writeCacheMode = mode.code;
        EXPECT_EQ(blockOf(drive), with(kLogDrvLines, "Write Back", mode.words));
    }
}

TEST(LogDrvBlock, WritesTheSizeInMillionsOfBytesAndInSectors) {
    LogDrvInfo drive = raid5Drive();
    drive.sectorCount = 5859375000; // 3 TB
    EXPECT_EQ(blockOf(drive), with(with(kLogDrvLines, "1024.0000", "3000000.0000"), "2000000", "5859375000"));
    drive.sectorCount = 1;
    EXPECT_EQ(blockOf(drive), with(with(kLogDrvLines, "1024.0000", "0.0005"), "2000000", "1"));
    drive.sectorCount = ~std::uint64_t{0}; // the byte count wraps to 2^64 - 512
    EXPECT_EQ(blockOf(drive), with(with(kLogDrvLines, "1024.0000", "18446744073709.5508"), "2000000",
                                   "18446744073709551615"));
}

TEST(LogDrvBlock, WritesValuesOfTheSettingsRecord) {
    LogDrvSettings settings = {};
    EXPECT_EQ(
        blockOf(raid5Drive(), settings, {0, 0, 1}),
        with(with(kLogDrvLines, "Value> 8", "Value> 0"), "Consolidation> Enable", "Consolidation> Disable"));
    settings.lookahead = 65535;
    settings.consolidation = 2;
    EXPECT_EQ(blockOf(raid5Drive(), settings, {0, 0, 1}), with(kLogDrvLines, "Value> 8", "Value> 65535"));
}

TEST(LogDrvBlock, WritesMissingDrivesAndExtentsAsDashes) {
    LogDrvInfo drive = raid5Drive();
    drive.memberIds[1] = 255;
    EXPECT_EQ(blockOf(drive, raid5Settings(), {7, 255, 254}),
              with(with(kLogDrvLines, "(1,2,3)", "(1,-,3)"), "(0,0,1)", "(7,-,254)"));
}

TEST(LogDrvBlock, WritesADriveWithoutMembers) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 0;
    EXPECT_EQ(blockOf(drive),
              with(with(with(kLogDrvLines, "DiskNum> 3", "DiskNum> 0"), "(1,2,3)", "()"), "(0,0,1)", "()"));
}

TEST(LogDrvBlock, WritesTheIdsAsUnsigned) {
    LogDrvInfo drive = raid5Drive();
    drive.logDrvId = 65535;
    drive.sectorSize = 4096;
    EXPECT_EQ(blockOf(drive),
              with(with(kLogDrvLines, "DrvID> 4", "DrvID> 65535"), "Size> 512", "Size> 4096"));
}

TEST(LogDrvBlock, WritesANameThatFillsItsField) {
    LogDrvInfo drive = raid5Drive();
    std::memset(drive.name, 'N', sizeof drive.name);
    EXPECT_EQ(blockOf(drive), with(kLogDrvLines, "Data 1", std::string(88, 'N')));
}

TEST(LogDrvBlock, LimitsTheMembersToTheRecord) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 65535;
    const std::string text = blockOf(drive);
    EXPECT_NE(text.find("<LogDrvDiskMember> (1,2,3,1,1,1,"), std::string::npos) << text;
    EXPECT_EQ(text.substr(text.size() - 7), "[End] \n");
}

TEST(LogDrvBlock, ReadsEveryKeyBack) {
    const LogDrvConfigRecord record = readDrive(" 6\n" + kLogDrvLines);
    EXPECT_EQ(record.setIndex, 6);
    EXPECT_EQ(record.logDrvId, 4);
    EXPECT_EQ(record.controller, 1);
    EXPECT_EQ(record.sizeMB, 1024.0);
    EXPECT_EQ(record.sectorCount, 2000000u);
    EXPECT_EQ(record.sectorSize, 512);
    EXPECT_EQ(record.stripeSize, 64);
    EXPECT_EQ(record.raidLevel, 5);
    EXPECT_EQ(record.writeMode, 1);
    EXPECT_EQ(record.memberCount, 3);
    EXPECT_EQ(first(record.memberIds, 4), (std::vector<int>{1, 2, 3, 0}));
    EXPECT_EQ(first(record.extents, 4), (std::vector<int>{0, 0, 1, 0}));
    EXPECT_EQ(record.initMode, 0);
    EXPECT_EQ(record.lookahead, 8);
    EXPECT_EQ(record.consolidation, 1);
}

TEST(LogDrvBlock, ReadsLevelKeysForEveryLevel) {
    const LogDrvConfigRecord record = readDrive(" 0 <LogDrvParityCnt> 3 <LogDrvSymmetric> 1 <LogDrvShift> -2 "
                                                "<LogDrvSubArrayCount> 2 <LogDrvRaidMode> RAID1 [End]");
    EXPECT_EQ(record.raidLevel, 1);
    EXPECT_EQ(record.parityCount, 3);
    EXPECT_EQ(record.symmetric, 1);
    EXPECT_EQ(record.shift, -2);
    EXPECT_EQ(record.subArrayCount, 2);
}

TEST(LogDrvBlock, ReadsTheBlankAfterTheKeyIntoTheName) {
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName> Data 1\n[End] \n").name, " Data 1");
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName>Data\n[End] \n").name, "");
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName>  Data  \n[End] \n").name, "  Data  ");
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName> \n[End] \n").name, " ");
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName>\n[End] \n").name, "");
}

TEST(LogDrvBlock, EndsANameAtATabOrACarriageReturn) {
    const LogDrvConfigRecord tab = readDrive(" 0\n<LogDrvName> Da\tta\n<LogDrvID> 4\n[End] \n");
    EXPECT_STREQ(tab.name, " Da");
    EXPECT_EQ(tab.logDrvId, 4);
    EXPECT_STREQ(readDrive(" 0\r\n<LogDrvName> Data\r\n[End] \r\n").name, " Data");
}

TEST(LogDrvBlock, AcceptsANameThatLooksLikeAKeyOrAnEndMarker) {
    const LogDrvConfigRecord record =
        readDrive(" 0\n<LogDrvName> [End] <LogDrvID> 9\n<LogDrvID> 4\n[End] \n");
    EXPECT_STREQ(record.name, " [End] <LogDrvID> 9");
    EXPECT_EQ(record.logDrvId, 4);
}

TEST(LogDrvBlock, TruncatesALongNameTo127Characters) {
    const LogDrvConfigRecord record =
        readDrive(" 0\n<LogDrvName> " + std::string(500, 'N') + "\n<LogDrvID> 4\n[End] \n");
    EXPECT_EQ(record.name, " " + std::string(126, 'N'));
    EXPECT_EQ(record.logDrvId, 4);
}

TEST(LogDrvBlock, AppendsTheEndOfFileByteToAName) {
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName> Data").name, " Data\xff");
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName> Data\n").name, " Data");
}

TEST(LogDrvBlock, ReadsBothAutomaticCacheModesAsAutomatic) {
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> Auto - Write Back\n[End]").writeMode, 8);
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> Auto - Write Through\n[End]").writeMode, 8);
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> Write Back\n[End]").writeMode, 1);
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> Write Through\n[End]").writeMode, 0);
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> By Pass\n[End]").writeMode, 4);
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> sometimes\n[End]").writeMode, -1);
}

TEST(LogDrvBlock, IgnoresOtherKeysAtTheEndOfTheFile) {
    EXPECT_STREQ(readDrive(" 0\n<LogDrvName> Data\n<LogDrvName>").name, " Data");
    EXPECT_EQ(readDrive(" 0\n<LogDrvRaidMode> RAID5\n<LogDrvRaidMode>").raidLevel, kRaid5);
    EXPECT_EQ(readDrive(" 0\n<LogDrvInitMode> QUICK\n<LogDrvInitMode>").initMode, 1);
}

TEST(LogDrvBlock, IgnoresACacheModeKeyAtTheEndOfTheFile) {
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode>").writeMode, 0);
    EXPECT_EQ(readDrive(" 0\n<LogDrvCacheMode> Write Back\n<LogDrvCacheMode>").writeMode, 1);
}

TEST(LogDrvBlock, ReportsAnUnknownLevelAndContinues) {
    std::string messages;
    const LogDrvConfigRecord record = readDrive(" 0 <LogDrvRaidMode> RAID7 <LogDrvID> 4 [End]", &messages);
    EXPECT_EQ(messages, "Unknown RAID level 'RAID7' specified!\n");
    EXPECT_EQ(record.raidLevel, 255);
    EXPECT_EQ(record.logDrvId, 4);
    EXPECT_EQ(readDrive(" 0\n<LogDrvRaidMode> Unknown raid mode\n<LogDrvID> 4\n[End]", &messages).logDrvId,
              4);
    EXPECT_EQ(messages, "Unknown RAID level 'Unknown' specified!\n");
}

TEST(LogDrvBlock, ReadsInitializationsExceptForeground) {
    EXPECT_EQ(readDrive(" 0 <LogDrvInitMode> QUICK [End]").initMode, 1);
    EXPECT_EQ(readDrive(" 0 <LogDrvInitMode> back [End]").initMode, 4);
    EXPECT_EQ(readDrive(" 0 <LogDrvInitMode> FORE [End]").initMode, -1);
    std::string messages;
    EXPECT_EQ(readDrive(" 0 <LogDrvInitMode> SLOW [End]", &messages).initMode, -1);
    EXPECT_EQ(messages, "Unknown initialization 'SLOW' specified!\n");
}

TEST(LogDrvBlock, ReadsMissingDrivesAndExtentsAs255) {
    const LogDrvConfigRecord record =
        readDrive(" 0 <LogDrvDiskMember> (1,-,3) <LogDrvDiskExtentIndex> (-,7,-) [End]");
    EXPECT_EQ(first(record.memberIds, 4), (std::vector<int>{1, 255, 3, 0}));
    EXPECT_EQ(first(record.extents, 4), (std::vector<int>{255, 7, 255, 0}));
    EXPECT_EQ(record.memberCount, 0); // set by <LogDrvDiskNum> only
}

TEST(LogDrvBlock, ReportsAnInvalidListEntryAndKeepsTheEntriesBeforeIt) {
    std::string messages;
    const LogDrvConfigRecord record = readDrive(
        " 0 <LogDrvDiskMember> (1,x,3) <LogDrvDiskExtentIndex> 2,1-3 <LogDrvID> 4 [End]", &messages);
    EXPECT_EQ(messages, "Invalid block ID 'x' specified!\nInvalid block ID '1-3' specified!\n");
    EXPECT_EQ(first(record.memberIds, 3), (std::vector<int>{1, 0, 0}));
    EXPECT_EQ(first(record.extents, 3), (std::vector<int>{2, 0, 0}));
    EXPECT_EQ(record.logDrvId, 4);
}

TEST(LogDrvBlock, KeepsTheListBeforeAnInvalidOne) {
    std::string messages;
    const LogDrvConfigRecord record = readDrive(
        " 0 <LogDrvDiskMember> 5,6 <LogDrvDiskExtentIndex> 9,8 <LogDrvDiskMember> x [End]", &messages);
    EXPECT_EQ(messages, "Invalid block ID 'x' specified!\n");
    EXPECT_EQ(first(record.memberIds, 3), (std::vector<int>{5, 6, 0}));
}

// The character after an opening parenthesis always belongs to the first entry.
TEST(LogDrvBlock, ReportsTheEmptyListsOfADriveWithoutMembers) {
    std::string messages;
    const LogDrvConfigRecord record =
        readDrive(" 0\n<LogDrvDiskMember> ()\n<LogDrvDiskExtentIndex> ()\n<LogDrvID> 4\n[End]", &messages);
    EXPECT_EQ(messages, "Invalid block ID ')' specified!\nInvalid block ID ')' specified!\n");
    EXPECT_EQ(record.logDrvId, 4);
}

TEST(LogDrvBlock, LeavesAListEmptyAtTheEndOfTheFile) {
    std::string messages;
    EXPECT_EQ(first(readDrive(" 0\n<LogDrvDiskMember>", &messages).memberIds, 2), (std::vector<int>{0, 0}));
    EXPECT_EQ(first(readDrive(" 0\n<LogDrvDiskMember> (7", &messages).memberIds, 2),
              (std::vector<int>{7, 0}));
}

TEST(LogDrvBlock, ReadsSixteenListEntries) {
    const LogDrvConfigRecord record =
        readDrive(" 0 <LogDrvDiskMember> "
                  "(100,101,102,103,104,105,106,107,108,109,110,111,112,113,114,115,"
                  "116,117) [End]");
    EXPECT_EQ(record.memberIds[0], 100);
    EXPECT_EQ(record.memberIds[15], 115);
    EXPECT_EQ(record.memberIds[16], 0);
    EXPECT_EQ(record.memberIds[127], 0);
}

TEST(LogDrvBlock, TruncatesALongList) {
    EXPECT_EQ(readDrive(" 0 <LogDrvDiskMember> (" + std::string(2000, '1') + ") <LogDrvID> 4 [End]").logDrvId,
              4);
}

TEST(LogDrvBlock, Reads64BitSectorCounts) {
    EXPECT_EQ(readDrive(" 0 <LogDrvSectorCount> 5859375000 [End]").sectorCount, 5859375000u);
    EXPECT_EQ(readDrive(" 0 <LogDrvSectorCount> 18446744073709551615 [End]").sectorCount, ~std::uint64_t{0});
    EXPECT_EQ(readDrive(" 0 <LogDrvSectorCount> none <LogDrvID> 4 [End]").logDrvId, 4);
}

TEST(LogDrvBlock, ReadsAnInvalidSizeAsAKey) {
    const LogDrvConfigRecord record = readDrive(" 0 <LogDrvSize> <LogDrvID> 4 <LogDrvSize> 1.5e3 [End]");
    EXPECT_EQ(record.logDrvId, 4);
    EXPECT_EQ(record.sizeMB, 1500.0);
}

TEST(LogDrvBlock, ReadsAnEmptyBlockAsZeroes) {
    const LogDrvConfigRecord record = readDrive(" [End]");
    EXPECT_EQ(record.setIndex, 0);
    EXPECT_STREQ(record.name, "");
    EXPECT_EQ(record.sectorCount, 0u);
    EXPECT_EQ(record.sizeMB, 0.0);
    EXPECT_EQ(record.memberCount, 0);
    EXPECT_EQ(record.memberIds[0], 0);
    EXPECT_EQ(record.memberIds[127], 0);
    EXPECT_EQ(record.extents[127], 0);
    EXPECT_EQ(record.subArrayCount, 0);
}

static const std::string kShown = kFrameLine + R"(<<Logical drive setting #6>>
Name :  Data 1
Size : 1024.0000 MB
Stripe size : 64 KB
Sector size : 512 Byte
Raid mode : RAID5
Write cache mode : Write Back
Disk number : 3
)" +
                                  "Disk member ID list : 1 2 3 \n"
                                  "Extent member Index list corresponding to Disk member ID list : 0 0 1 \n" +
                                  R"(Initialization mode : None Initialization
Lookahead value : 8
Consolidataion : Enable
)" + kFrameLine;

static std::string shown(const LogDrvConfigRecord& record) {
    return outputOf([&] { DisplayLogDrvConfig(record); });
}

static LogDrvConfigRecord readRecord() {
    return readDrive(" 6\n" + kLogDrvLines);
}

TEST(LogDrvBlock, DisplaysARecord) {
    EXPECT_EQ(shown(readRecord()), kShown);
}

TEST(LogDrvBlock, DisplaysSubArraysForRaid50AndParityForRaidMfOnly) {
    LogDrvConfigRecord record = readRecord();
    record.parityCount = 3;
    record.symmetric = 1;
    record.shift = -2;
    record.subArrayCount = 2;
    EXPECT_EQ(shown(record), kShown);
    const std::string body = kShown.substr(0, kShown.size() - kFrameLine.size());
    record.raidLevel = 80;
    EXPECT_EQ(shown(record), with(body, "RAID5", "RAID50") + "SubArrayCount : 2\n" + kFrameLine);
    record.raidLevel = 96;
    EXPECT_EQ(shown(record),
              with(body, "RAID5", "RAIDMF") + "ParityCount : 3\nSymmetric : 1\nShift : -2\n" + kFrameLine);
}

TEST(LogDrvBlock, DisplaysUnknownCodes) {
    LogDrvConfigRecord record = readRecord();
    record.raidLevel = 255;
    EXPECT_EQ(shown(record), with(kShown, "RAID5", "Unknown raid mode"));
    record.raidLevel = 0x105; // only the low byte is used
    record.writeMode = 8;
    EXPECT_EQ(shown(record), with(kShown, "Write Back", "Auto - Write Through"));
    record.writeMode = -1;
    EXPECT_EQ(shown(record), with(kShown, "Write Back", "Auto - Write Back"));
    record.writeMode = 1;
    record.initMode = -1;
    EXPECT_EQ(shown(record), with(kShown, "None Init", "Unknown Init"));
    record.initMode = 4;
    EXPECT_EQ(shown(record), with(kShown, "None Init", "Background Init"));
}

TEST(LogDrvBlock, LimitsTheDisplayedMembers) {
    LogDrvConfigRecord record = readRecord();
    record.memberCount = 1;
    EXPECT_EQ(shown(record),
              with(with(with(kShown, "number : 3", "number : 1"), ": 1 2 3 ", ": 1 "), ": 0 0 1 ", ": 0 "));
    record.memberCount = -5;
    EXPECT_EQ(shown(record),
              with(with(with(kShown, "number : 3", "number : -5"), ": 1 2 3 ", ": "), ": 0 0 1 ", ": "));
    record.memberCount = 65535;
    std::string zeroes;
    for (int i = 3; i < 128; ++i)
        zeroes += "0 ";
    EXPECT_EQ(shown(record),
              with(with(with(kShown, "number : 3", "number : 65535"), "1 2 3 ", "1 2 3 " + zeroes), "0 0 1 ",
                   "0 0 1 " + zeroes));
}
