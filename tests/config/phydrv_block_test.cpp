// The physical drive block of the configuration file: writing, reading and display.
#include "config/phydrv_block.h"

#include "config/block.h"
#include "tests/config/config_blocks.h"

static std::string blockOf(int controller, const PhyDrvSettings& settings) {
    char text[kBlockTextSize];
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(PDSettingsToBuffer(controller, &settings, text), 0);
    return text;
}

static PhyDrvConfigRecord readDrive(const std::string& text) {
    return readBack(GetPhyDrvConfig, text);
}

TEST(PhyDrvBlock, WritesItsKeysInOrderAndDriveIdsFromOne) {
    EXPECT_EQ(blockOf(1, driveSettings(6)), driveLines(1, 7));
    EXPECT_EQ(blockOf(0, driveSettings(65535)), driveLines(0, 65536));
}

TEST(PhyDrvBlock, WritesUnsupportedQueuing) {
    PhyDrvSettings settings = {};
    settings.tcqEnabled = 1;
    settings.ncqEnabled = 1;
    EXPECT_EQ(blockOf(0, settings),
              "<PhyDrvCtrlID> 0\n<PhyDrvID> 1\n<WriteCache> Disable\n<TCQEnable> not supported\n"
              "<NCQEnable> not supported\n[End] \n");
}

TEST(PhyDrvBlock, WritesNonzeroFlagsAsSet) {
    PhyDrvSettings settings;
    std::memset(&settings, 0x80, sizeof settings);
    settings.pdId = 0;
    EXPECT_EQ(blockOf(0, settings),
              "<PhyDrvCtrlID> 0\n<PhyDrvID> 1\n<WriteCache> Enable\n<TCQEnable> Enable\n"
              "<NCQEnable> Enable\n[End] \n");
}

TEST(PhyDrvBlock, ReadsEveryKeyBack) {
    const PhyDrvConfigRecord record = readDrive(" 5\n" + driveLines(1, 7));
    EXPECT_EQ(record.setIndex, 5);
    EXPECT_EQ(record.controller, 1);
    EXPECT_EQ(record.driveId, 7);
    EXPECT_EQ(record.writeCache, 1u);
    EXPECT_EQ(record.tcq, 0);
    EXPECT_EQ(record.ncq, 1);
}

TEST(PhyDrvBlock, ReadsUnsupportedQueuingAsDisabled) {
    const PhyDrvConfigRecord record = readDrive(" 0\n<TCQEnable> Enable\n<TCQEnable> not supported\n"
                                                "<NCQEnable> Enable\n<NCQEnable> not supported\n"
                                                "<PhyDrvID> 9\n[End] \n");
    EXPECT_EQ(record.tcq, 0);
    EXPECT_EQ(record.ncq, 0);
    EXPECT_EQ(record.driveId, 9);
}

TEST(PhyDrvBlock, ReadsAnEmptyBlockAsZeroes) {
    const PhyDrvConfigRecord record = readDrive(" [End]");
    EXPECT_EQ(record.setIndex, 0);
    EXPECT_EQ(record.controller, 0);
    EXPECT_EQ(record.driveId, 0);
    EXPECT_EQ(record.writeCache, 0u);
    EXPECT_EQ(record.tcq, 0);
    EXPECT_EQ(record.ncq, 0);
}

TEST(PhyDrvBlock, DisplaysNcqBeforeTcqAndNoController) {
    PhyDrvConfigRecord record = {};
    record.setIndex = 5;
    record.controller = 1;
    record.driveId = 7;
    record.tcq = 1;
    EXPECT_EQ(outputOf([&] { DisplayPhyDrvConfig(record); }),
              kFrameLine +
                  "<<Physical drive setting #5>>\nPhysical drive ID : 7\nWrite cache mode : Disable\n"
                  "NCQ Enable : Disable\nTCQ Enable : Enable\n" +
                  kFrameLine);
    record = {};
    record.writeCache = 256;
    record.ncq = 1;
    EXPECT_EQ(outputOf([&] { DisplayPhyDrvConfig(record); }),
              kFrameLine +
                  "<<Physical drive setting #0>>\nPhysical drive ID : 0\nWrite cache mode : Enable\n"
                  "NCQ Enable : Enable\nTCQ Enable : Disable\n" +
                  kFrameLine);
}
