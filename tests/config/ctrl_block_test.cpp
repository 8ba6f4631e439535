// The controller block of the configuration file: writing, reading and display.
#include "config/ctrl_block.h"

#include "config/block.h"
#include "tests/config/config_blocks.h"

static std::string blockOf(const ControllerSettings& settings, std::uint8_t buzzer, int spares) {
    char text[kBlockTextSize];
    std::memset(text, 'x', sizeof text);
    EXPECT_EQ(CtrlSettingsToBuffer(&settings, buzzer, spares, text), 0);
    return text;
}

static CtrlConfigRecord readCtrl(const std::string& text) {
    return readBack(GetControllerConfig, text);
}

TEST(CtrlBlock, WritesItsKeysInOrder) {
    EXPECT_EQ(blockOf(controllerSettings(), 1, 2), kCtrlLines);
}

TEST(CtrlBlock, WritesAClearedRecordAsZeroesAndDisabled) {
    EXPECT_EQ(blockOf({}, 0, 0),
              "<AutoRebuild> Disable\n<SyncRate> 0\n<InitRate> 0\n<MPRate> 0\n"
              "<MigrateRate> 0\n<RebuildRate> 0\n<SmartCEnable> Disable\n<SmartPollInt> 0\n"
              "<EncPollInt> 0\n<RebuildPolicy> 0\n<BuzzerEnable> Off\n<GlobalSpare> 0\n"
              "[End] \n");
}

TEST(CtrlBlock, WritesUnsignedBytesAndNonzeroFlagsAsSet) {
    ControllerSettings settings;
    std::memset(&settings, 0xFF, sizeof settings);
    EXPECT_EQ(blockOf(settings, 128, -1),
              "<AutoRebuild> Enable\n<SyncRate> 255\n<InitRate> 255\n<MPRate> 255\n<MigrateRate> 255\n"
              "<RebuildRate> 255\n<SmartCEnable> Enable\n<SmartPollInt> 255\n<EncPollInt> 255\n"
              "<RebuildPolicy> 255\n<BuzzerEnable> On\n<GlobalSpare> -1\n[End] \n");
}

TEST(CtrlBlock, ReadsEveryKeyBack) {
    const CtrlConfigRecord record = readCtrl(" 3\n" + kCtrlLines);
    EXPECT_EQ(record.setIndex, 3);
    EXPECT_EQ(record.autoRebuild, 1);
    EXPECT_EQ(record.syncRate, 10);
    EXPECT_EQ(record.initRate, 20);
    EXPECT_EQ(record.mpRate, 30);
    EXPECT_EQ(record.migrateRate, 40);
    EXPECT_EQ(record.rebuildRate, 50);
    EXPECT_EQ(record.smartCheck, 1);
    EXPECT_EQ(record.smartPollInterval, 60);
    EXPECT_EQ(record.encPollInterval, 7);
    EXPECT_EQ(record.rebuildPolicy, 1);
    EXPECT_EQ(record.globalSpareCount, 2);
}

TEST(CtrlBlock, ReadsAnExportedBuzzerAsOff) {
    EXPECT_EQ(readCtrl(" 0 <BuzzerEnable> On [End]").buzzer, 0);
    EXPECT_EQ(readCtrl(" 0 <BuzzerEnable> Off [End]").buzzer, 0);
    EXPECT_EQ(readCtrl(" 0 <BuzzerEnable> Enable [End]").buzzer, 1);
}

TEST(CtrlBlock, SetsFlagsForEnableInAnyCaseOnly) {
    for (const char* word : {"Enable", "enable", "ENABLE"})
        EXPECT_EQ(readCtrl(std::string(" 0 <AutoRebuild> ") + word + " [End]").autoRebuild, 1) << word;
    for (const char* word : {"Disable", "Enabled", "Enabl", "1", "[End]"})
        EXPECT_EQ(
            readCtrl(std::string(" 0 <SmartCEnable> Enable <SmartCEnable> ") + word + " [End]").smartCheck, 0)
            << word;
}

TEST(CtrlBlock, TruncatesTheRebuildPolicyToAByte) {
    EXPECT_EQ(readCtrl(" 0 <RebuildPolicy> 255 [End]").rebuildPolicy, 255);
    EXPECT_EQ(readCtrl(" 0 <RebuildPolicy> 256 [End]").rebuildPolicy, 0);
    EXPECT_EQ(readCtrl(" 0 <RebuildPolicy> 257 [End]").rebuildPolicy, 1);
    EXPECT_EQ(readCtrl(" 0 <RebuildPolicy> -1 [End]").rebuildPolicy, 255);
}

TEST(CtrlBlock, RejectsKeysInAnotherCase) {
    EXPECT_EQ(readCtrl(" 0 <syncrate> 5 [End]").syncRate, 0);
    EXPECT_EQ(readCtrl(" 0 <SyncRate> 5 [end] <InitRate> 6 [END] <MPRate> 7 [End]").mpRate, 7);
    EXPECT_EQ(readCtrl(" 0 SyncRate 5 [End]").syncRate, 0);
}

TEST(CtrlBlock, AcceptsKeysInAnyOrderAndUsesTheLast) {
    const CtrlConfigRecord record =
        readCtrl(" 0 <GlobalSpare> 9 <SyncRate> 1 <InitRate> 2 <SyncRate> 3 [End]");
    EXPECT_EQ(record.syncRate, 3);
    EXPECT_EQ(record.initRate, 2);
    EXPECT_EQ(record.globalSpareCount, 9);
}

TEST(CtrlBlock, SkipsUnknownKeysAndTheirValues) {
    const CtrlConfigRecord record =
        readCtrl(" 0\n<Color> 17\n<SyncRate> 5\n<PhyDrvID> 3\n[PhyDrvSetIndex] 4\n<InitRate> 6\n[End]");
    EXPECT_EQ(record.setIndex, 0);
    EXPECT_EQ(record.syncRate, 5);
    EXPECT_EQ(record.initRate, 6);
}

TEST(CtrlBlock, ReadsTheWordInPlaceOfANumberAsAKey) {
    const CtrlConfigRecord record =
        readCtrl(" 0 <SyncRate> <InitRate> 7 <MPRate> x9 <MigrateRate> 12y [End]");
    EXPECT_EQ(record.syncRate, 0);
    EXPECT_EQ(record.initRate, 7);
    EXPECT_EQ(record.mpRate, 0);
    EXPECT_EQ(record.migrateRate, 12);
}

TEST(CtrlBlock, ReadsTheNextWordAsAFlagEvenAKey) {
    const CtrlConfigRecord record = readCtrl(" 0 <AutoRebuild> <SyncRate> 7 <InitRate> 8 [End]");
    EXPECT_EQ(record.autoRebuild, 0);
    EXPECT_EQ(record.syncRate, 0);
    EXPECT_EQ(record.initRate, 8);
    EXPECT_EQ(readCtrl(" 0 <AutoRebuild> [End] <SyncRate> 7 [End]").syncRate, 7);
}

TEST(CtrlBlock, TreatsAMissingIndexAsZero) {
    const CtrlConfigRecord record = readCtrl(" <SyncRate> 5 [End]");
    EXPECT_EQ(record.setIndex, 0);
    EXPECT_EQ(record.syncRate, 5);
    EXPECT_EQ(readCtrl(" -2 [End]").setIndex, -2);
    EXPECT_EQ(readCtrl(" +2 [End]").setIndex, 2);
}

TEST(CtrlBlock, EndsTheBlockAtTheEndOfTheFile) {
    EXPECT_EQ(readCtrl(" 1 <SyncRate> 5").syncRate, 5);
    EXPECT_EQ(readCtrl(" 1 <SyncRate> 5 <InitRate>").initRate, 0);
    EXPECT_EQ(readCtrl(" 1 <SyncRate> 5 <AutoRebuild>").autoRebuild, 0);
    EXPECT_EQ(readCtrl(" 1 <SyncRate> 5 <AutoRebuild> Enable").autoRebuild, 1);
    EXPECT_EQ(readCtrl("").setIndex, 0);
}

TEST(CtrlBlock, TruncatesALongWord) {
    const std::string junk(127, 'A');
    EXPECT_EQ(readCtrl(" 0 " + junk + "[End] <SyncRate> 5 [End]").syncRate, 5);
    EXPECT_EQ(readCtrl(" 0 " + std::string(100000, '<') + " <SyncRate> 5 [End]").syncRate, 5);
    EXPECT_EQ(readCtrl(" 0 <AutoRebuild> " + std::string(5000, 'E') + " <SyncRate> 5 [End]").syncRate, 5);
}

TEST(CtrlBlock, AcceptsBytesOfAnyValue) {
    std::string every;
    for (int byte = 0; byte < 256; ++byte)
        every += static_cast<char>(byte);
    EXPECT_EQ(readCtrl(" 0 " + every + " <SyncRate> 5 [End]").syncRate, 5);
}

static CtrlConfigRecord shownRecord() {
    CtrlConfigRecord record = {};
    record.setIndex = 3;
    record.autoRebuild = 1;
    record.syncRate = 10;
    record.initRate = 20;
    record.mpRate = 30;
    record.migrateRate = 40;
    record.rebuildRate = 50;
    record.smartPollInterval = 60;
    record.encPollInterval = 7;
    record.buzzer = 1;
    record.rebuildPolicy = 1;
    record.globalSpareCount = 2;
    return record;
}

TEST(CtrlBlock, DisplaysARecordWithoutItsRebuildPolicy) {
    EXPECT_EQ(outputOf([] { DisplayControllerConfig(shownRecord()); }),
              kFrameLine +
                  "<<Controller setting #3>>\n"
                  "Auto Rebuild : Enable\n"
                  "Smart Check : Disable\n"
                  "Synchronization rate : 10\n"
                  "Initialization rate : 20\n"
                  "Media Patrol rate : 30\n"
                  "Migration rate : 40\n"
                  "Rebuild rate : 50\n"
                  "Smart check polling interval : 60\n"
                  "Enclosure polling interval : 7\n"
                  "Buzzer : On\n"
                  "Number of extent with Global Spare setting : 2\n" +
                  kFrameLine);
}

TEST(CtrlBlock, DisplaysAnEmptyRecord) {
    EXPECT_EQ(outputOf([] { DisplayControllerConfig({}); }),
              kFrameLine +
                  "<<Controller setting #0>>\n"
                  "Auto Rebuild : Disable\nSmart Check : Disable\nSynchronization rate : 0\n"
                  "Initialization rate : 0\nMedia Patrol rate : 0\nMigration rate : 0\n"
                  "Rebuild rate : 0\nSmart check polling interval : 0\n"
                  "Enclosure polling interval : 0\nBuzzer : Off\n"
                  "Number of extent with Global Spare setting : 0\n" +
                  kFrameLine);
}
