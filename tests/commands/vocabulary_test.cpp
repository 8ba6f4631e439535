// The keywords for the adapter's codes, and sector counts as megabytes.
#include "commands/vocabulary.h"

#include "tests/mock_adapter.h"

namespace {
struct Reading {
    const char* text;
    int code;
};
struct CodeText {
    int code;
    const char* text;
};
} // namespace

template <std::size_t Rows>
static void expectSilentReadings(int (*translate)(const char*), const Reading (&rows)[Rows]) {
    for (const Reading& row : rows)
        EXPECT_EQ(outputOf([&] { EXPECT_EQ(translate(row.text), row.code) << row.text; }), "");
}

template <std::size_t Rows>
static void expectTexts(const char* (*translate)(int), const CodeText (&rows)[Rows]) {
    for (const CodeText& row : rows)
        EXPECT_STREQ(translate(row.code), row.text) << row.code;
}

static void expectUnknown(int (*translate)(const char*), const char* text, int code, const char* message) {
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(translate(text), code); }), message);
}

TEST(TranslateRaidLevel, FindsEachLevelInAnyCase) {
    expectSilentReadings(TranslateRaidLevel, {
                                                 {"RAID0", 0},
                                                 {"raid1", 1},
                                                 {"Raid5", 5},
                                                 {"jbod", 10},
                                                 {"raid10", 16},
                                                 {"RAID50", 80},
                                                 {"RaidMF", 96},
                                             });
}

TEST(TranslateRaidLevel, FindsALevelAnywhereInTheText) {
    expectSilentReadings(TranslateRaidLevel, {{"myRAID5x", 5}, {" raid=jbod ", 10}, {"RAID15", 1}});
}

TEST(TranslateRaidLevel, TriesTheLevelsInAFixedOrder) {
    expectSilentReadings(TranslateRaidLevel, {
                                                 {"RAID0RAID5", 0},
                                                 {"RAID5RAID0", 0},
                                                 {"RAID1RAID10", 16},
                                                 {"RAID50RAID1", 1},
                                                 {"RAID5RAID50", 80},
                                                 {"RAIDMFRAID5", 5},
                                                 {"JBODRAIDMF", 96},
                                             });
}

TEST(TranslateRaidLevel, ReportsUnknownLevel) {
    expectUnknown(TranslateRaidLevel, "Raid 5", 255, "Unknown RAID level 'Raid 5' specified!\n");
    expectUnknown(TranslateRaidLevel, "", 255, "Unknown RAID level '' specified!\n");
}

TEST(TranslateRaidLevel2Str, ReturnsTheNameOfEachCode) {
    expectTexts(TranslateRaidLevel2Str, {
                                            {0, "RAID0"},
                                            {1, "RAID1"},
                                            {5, "RAID5"},
                                            {10, "JBOD"},
                                            {16, "RAID10"},
                                            {80, "RAID50"},
                                            {96, "RAIDMF"},
                                            {2, "Unknown raid mode"},
                                            {255, "Unknown raid mode"},
                                        });
}

TEST(TranslateRaidLevel2Str, UsesOnlyTheLowEightBits) {
    expectTexts(TranslateRaidLevel2Str, {{0x105, "RAID5"}, {0x100, "RAID0"}, {-1, "Unknown raid mode"}});
}

TEST(TranslateWriteMode, FindsEachModeInAnyCase) {
    expectSilentReadings(
        TranslateWriteMode,
        {{"auto", 8}, {"write back", 1}, {"Write Through", 0}, {"by pass", 4}, {"mode: WRITE BACK!", 1}});
}

TEST(TranslateWriteMode, PrefersAuto) {
    expectSilentReadings(TranslateWriteMode, {
                                                 {"Auto - Write Back", 8},
                                                 {"auto - write through", 8},
                                                 {"AUTO - BY PASS", 8},
                                                 {"write back, automatically", 8},
                                             });
}

TEST(TranslateWriteMode, TriesWriteBackBeforeWriteThroughBeforeByPass) {
    expectSilentReadings(TranslateWriteMode, {{"write through write back", 1}, {"by pass write through", 0}});
}

TEST(TranslateWriteMode, IsSilentAboutUnknownModes) {
    expectSilentReadings(TranslateWriteMode, {{"wb", -1}, {"writeback", -1}, {"bypass", -1}, {"", -1}});
}

TEST(TranslateWriteMode2Str, ShowsTheAutomaticAndTheWriteBackBit) {
    expectTexts(TranslateWriteMode2Str, {
                                            {0, "Write Through"},
                                            {1, "Write Back"},
                                            {4, "Write Through"},
                                            {5, "Write Back"},
                                            {8, "Auto - Write Through"},
                                            {9, "Auto - Write Back"},
                                            {12, "Auto - Write Through"},
                                            {0x100, "Write Through"},
                                        });
}

TEST(TranslateWriteMode2StrForImport, ReturnsTheKeywordOfSettingsTexts) {
    expectTexts(TranslateWriteMode2StrForImport, {
                                                     {0, "writethru"},
                                                     {1, "writeback"},
                                                     {4, "writethru"},
                                                     {5, "writeback"},
                                                     {8, "auto"},
                                                     {9, "auto"},
                                                 });
}

TEST(TranslateInitialization, FindsEachKeywordInAnyCase) {
    expectSilentReadings(TranslateInitialization,
                         {{"none", 0}, {"quick", 1}, {"BACK", 4}, {"Background", 4}, {"init=Quick", 1}});
}

TEST(TranslateInitialization, RejectsForegroundSilently) {
    expectSilentReadings(TranslateInitialization, {{"fore", -1}, {"Foreground", -1}, {"backfore", -1}});
}

TEST(TranslateInitialization, TriesTheKeywordsInAFixedOrder) {
    expectSilentReadings(TranslateInitialization, {{"quicknone", 0}, {"forequick", 1}});
}

TEST(TranslateInitialization, ReportsUnknownKeyword) {
    expectUnknown(TranslateInitialization, "xyz", -1, "Unknown initialization 'xyz' specified!\n");
}

TEST(TranslateLDInitOption2Str, ReturnsTheKeywordAndNoneForOtherCodes) {
    expectTexts(TranslateLDInitOption2Str, {
                                               {0, "NONE"},
                                               {1, "QUICK"},
                                               {2, "FORE"},
                                               {3, "NONE"},
                                               {4, "BACK"},
                                               {-1, "NONE"},
                                           });
}

TEST(TranslateInitialization2Str, ReturnsThePhraseOfEachCode) {
    expectTexts(TranslateInitialization2Str, {
                                                 {0, "None Initialization"},
                                                 {1, "Quick Initialization"},
                                                 {2, "Foreground Initialization"},
                                                 {3, "Unknown Initialization"},
                                                 {4, "Background Initialization"},
                                                 {-1, "Unknown Initialization"},
                                             });
}

TEST(TranslateRoundingScheme, Treats10GbbAsGbb) {
    expectSilentReadings(TranslateRoundingScheme, {
                                                      {"none", 0},
                                                      {"gbb", 1},
                                                      {"GBB", 1},
                                                      {"10GBB", 1},
                                                      {"rounding=10gbb", 1},
                                                      {"gbbnone", 0},
                                                  });
}

TEST(TranslateRoundingScheme, ReportsUnknownScheme) {
    expectUnknown(TranslateRoundingScheme, "10GB", 255, "Unknown rounding scheme '10GB' specified!\n");
}

TEST(SectorCount2MB, CountsMegabytesOf1048576Bytes) {
    EXPECT_EQ(SectorCount2MB(0), 0.0);
    EXPECT_EQ(SectorCount2MB(1), 0.00048828125);
    EXPECT_EQ(SectorCount2MB(2048), 1.0);
    EXPECT_EQ(SectorCount2MB(3072), 1.5);
}

TEST(SectorCount2MB, ReadsTheByteCountAsUnsigned) {
    EXPECT_EQ(SectorCount2MB(std::uint64_t{1} << 54), 8796093022208.0);
}

TEST(SectorCount2MB, WrapsAt64Bits) {
    EXPECT_EQ(SectorCount2MB(std::uint64_t{1} << 55), 0.0);
    EXPECT_EQ(SectorCount2MB((std::uint64_t{1} << 55) + 2048), 1.0);
}

TEST(SectorCount2MBBase1000, CountsMegabytesOf1000000Bytes) {
    EXPECT_EQ(SectorCount2MBBase1000(0), 0.0);
    EXPECT_EQ(SectorCount2MBBase1000(2048), 1.048576);
    EXPECT_EQ(SectorCount2MBBase1000(15625), 8.0);
    EXPECT_EQ(SectorCount2MBBase1000((std::uint64_t{1} << 55) + 15625), 8.0);
}
