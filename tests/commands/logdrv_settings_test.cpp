// logdrv -a mod: its options and the settings text.
#include "commands/logdrv.h"

#include "tests/commands/logdrv_records.h"

using LogDrvMod = MockAdapterTest;
using Words = std::vector<std::string>;

static const std::string kCountOutcome = "2: Invalid number of parameters for \"logdrv -a mod\" defined\n";
static const std::string kBadTextOutcome = "1: Incorrect parameters!\n";
static const std::string kBadLookaheadOutcome = "1: Invalid parameters defined\n";

namespace {
// Settings as read and as written: a pattern except for the fields that a text changes.
struct Image {
    ReplyHeader header = patternFilled<ReplyHeader>();
    LogDrvSettings settings = patternFilled<LogDrvSettings>();
};
} // namespace
static_assert(sizeof(Image) == 180);

static void expectRead(std::uint32_t controller, std::uint32_t logDrvId, const Image& image, int result = 0) {
    expectCall("q5_getLogDrvSettings", queryFor(controller, LogDrvQuery{logDrvId, 1}, 180), bytesOf(image),
               result);
}

static void expectWritten(std::uint32_t controller, std::uint32_t logDrvId, const Image& image,
                          int result = 0) {
    expectCall("q5_setLogDrvSettings",
               bytesOf(hbaAddress(controller), std::uint32_t{0}, LogDrvQuery{logDrvId, 1}, image,
                       std::uint32_t{180}),
               {}, result);
}

static std::string outcomeOfText(const std::string& text) {
    return outcomeOf(SetLogDrvSettings, {"logdrv", "-a", "mod", "-l", "3", "-s", text});
}

// The text changes one image to the other.
static void expectChange(const std::string& text, const Image& before, const Image& after) {
    expectRead(0, 3, before);
    expectWritten(0, 3, after);
    EXPECT_EQ(outcomeOfText(text), kSilentSuccess) << text;
}

static Image named(const std::string& name) {
    Image image;
    std::memset(image.settings.name, 0, sizeof image.settings.name);
    std::memcpy(image.settings.name, name.data(), name.size());
    return image;
}

TEST_F(LogDrvMod, ChangesOnlyTheWritePolicy) {
    const struct {
        const char* text;
        std::uint8_t before, after;
    } rows[] = {
        {"writepolicy=writethru", 0xFF, 0xF2}, {"writepolicy=writeback", 0xFF, 0xF3},
        {"writepolicy=bypass", 0xFF, 0xF6},    {"writepolicy=auto", 0xFF, 0xFA},
        {"writepolicy=writethru", 0x00, 0x00}, {"writepolicy=writeback", 0x00, 0x01},
        {"writepolicy=bypass", 0x01, 0x04},    {"writepolicy=auto", 0x04, 0x08},
        {"WRITEPOLICY=WriteBack", 0x08, 0x01}, {" the writepolicy is bypass ", 0x22, 0x26},
        {"autowritepolicy", 0x01, 0x08},       {"writepolicy=bypass,writepolicy=writethru", 0x01, 0x00},
    };
    for (const auto& row : rows) {
        Image before, after;
        before.settings.cacheFlags = row.before;
        after.settings.cacheFlags = row.after;
        expectChange(row.text, before, after);
    }
}

TEST_F(LogDrvMod, ChangesTheLookahead) {
    const struct {
        const char* text;
        std::uint16_t after;
    } rows[] = {{"lookahead=0", 0},         {"lookahead=8", 8},
                {"LookAhead= 5 blocks", 5}, {"lookahead=-1", 65535},
                {"lookahead=-65535", 1},    {"lookahead=much", 0},
                {"lookahead=", 0},          {"my lookahead is=3=4", 3},
                {"lookahead=+7", 7},        {"lookahead=6,lookahead=2", 2}};
    for (const auto& row : rows) {
        Image after;
        after.settings.lookahead = row.after;
        expectChange(row.text, Image(), after);
    }
}

TEST_F(LogDrvMod, ChangesTheConsolidation) {
    const struct {
        const char* text;
        std::uint8_t after;
    } rows[] = {{"consolidation=enable", 1},
                {"consolidation=disable", 0},
                {"Consolidation=ENABLED", 1},
                {"disableconsolidation", 0},
                {"consolidation=enable,consolidation=disable", 0}};
    for (const auto& row : rows) {
        Image after;
        after.settings.consolidation = row.after;
        expectChange(row.text, Image(), after);
    }
}

TEST_F(LogDrvMod, ChangesTheName) {
    const std::string letters(100, 'L'), blanks(70, ' ');
    const struct {
        std::string text, stored;
    } rows[] = {
        {"name=data", "data"},
        {"Name=MyDisk", "MyDisk"},
        {"name=  a b  ", "a b"},
        {"name=", ""},
        {"name=   ", ""},
        {"name=a=b", "a=b"},
        {"rename it=x", "x"},
        {"name=" + letters.substr(0, 31), letters.substr(0, 31)},
        {"name=" + letters.substr(0, 32), letters.substr(0, 31)},
        {"name=" + letters, letters.substr(0, 31)},
        {"name=" + blanks + letters, letters.substr(0, 31)},
        {"name=a" + blanks + "b", "a" + blanks.substr(0, 30)},
        {"name=a" + std::string(125, ' ') + "b", "a" + blanks.substr(0, 30)},
        {"name=a" + std::string(126, ' ') + "b", "a"}, // truncation at 127 characters leaves blanks to trim
        {"name=long enough,name=x", "x"},
    };
    for (const auto& row : rows)
        expectChange(row.text, Image(), named(row.stored));
}

TEST_F(LogDrvMod, ChangesEverythingAtOnce) {
    Image after = named("New");
    after.settings.cacheFlags = (kFillPattern & 0xF2) | 1;
    after.settings.lookahead = 4;
    after.settings.consolidation = 1;
    expectChange(",writepolicy=writeback,,foo=1,lookahead=4,consolidation=enable, name=New,", Image(), after);
}

TEST_F(LogDrvMod, WritesUnchangedSettingsForUnknownKeys) {
    for (const char* text : {"foo=1", "", ",", "policy=auto", "look ahead=99"})
        expectChange(text, Image(), Image());
}

TEST_F(LogDrvMod, UsesTheFirstMatchingKey) {
    Image after;
    after.settings.lookahead = 5;
    expectChange("lookahead name=5", Image(), after);
    after.settings.lookahead = 0;
    expectChange("name=lookahead=9", Image(), after);
    after = Image();
    after.settings.cacheFlags = kFillPattern & 0xF2;
    expectChange("lookahead=9 writepolicy=writethru", Image(), after);
    after = Image();
    after.settings.consolidation = 1;
    expectChange("name=consolidation enable", Image(), after);
}

TEST_F(LogDrvMod, RejectsInvalidItemsAtTheEndAndWritesNothing) {
    for (const char* text : {"writepolicy", "writepolicy=on", "writepolicy=write back", "lookahead",
                             "lookahead 5", "consolidation", "consolidation=on", "name", "name x",
                             "name=writepolicy", "consolidation=on,name=x", "lookahead=3,name"}) {
        expectRead(0, 3, Image());
        EXPECT_EQ(outcomeOfText(text), kBadTextOutcome) << text;
    }
}

TEST_F(LogDrvMod, AbortsAtALookaheadAboveEight) {
    for (const char* text :
         {"lookahead=9", "lookahead=70000", "name=x,lookahead=9", "consolidation=on,lookahead=9",
          "lookahead=9,consolidation=on", "lookahead=65537"}) {
        expectRead(0, 3, Image());
        EXPECT_EQ(outcomeOfText(text), kBadLookaheadOutcome) << text;
    }
}

TEST_F(LogDrvMod, IgnoresTheResultOfWriting) {
    for (const int result : {1, -1}) {
        expectRead(0, 3, Image());
        expectWritten(0, 3, named("x"), result);
        EXPECT_EQ(outcomeOfText("name=x"), kSilentSuccess);
    }
}

TEST_F(LogDrvMod, ReportsMissingDriveIfSettingsCannotBeRead) {
    for (const int result : {1, -1}) {
        expectRead(2, 3, Image(), result);
        EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -l 3 -i 2 -s lookahead=9"),
                  "5: The logical drive with ID 3 in controller #2 is not existed!\n");
    }
    expectRead(0, 4294967295, Image(), 1);
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -l 4294967295 -s name"),
              "5: The logical drive with ID -1 in controller #0 is not existed!\n");
}

TEST_F(LogDrvMod, UsesTheLastWordAsTheText) {
    expectRead(0, 3, Image());
    expectWritten(0, 3, Image());
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -s name=x -l 3"), kSilentSuccess);
    expectRead(2, 3, Image());
    expectWritten(2, 3, named("x"));
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -I 2 -L 3 -S name=x"), kSilentSuccess);
    expectRead(0, 3, Image());
    expectWritten(0, 3, Image());
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -l 1 -l 3"), kSilentSuccess);
}

TEST_F(LogDrvMod, DefaultsToDriveZero) {
    Image after;
    after.settings.lookahead = 5;
    expectRead(0, 0, {});
    expectWritten(0, 0, after);
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, splitWords("logdrv -a mod -s - -s lookahead=5")), kSilentSuccess);
}

TEST_F(LogDrvMod, RejectsInvalidWords) {
    for (const char* line :
         {"", "logdrv -a mod", "logdrv -a mod -l 3", "logdrv -a mod -l 3 -s", "logdrv -a mod -l 3 -i 2",
          "logdrv -a mod -l 3 -i 2 -s", "logdrv -a mod -l 3 -s x -s x", "logdrv -a mod -l 3 -s -I",
          "logdrv mod -l 3 -s x", "logdrv -a mod -l 3 -i 2 -s x -s x"})
        EXPECT_EQ(outcomeOf(SetLogDrvSettings, line), kCountOutcome) << line;
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -l 3 -z x"), kUnknownOptionOutcome);
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -l x -z x"),
              "6: Invalid logical drive ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(SetLogDrvSettings, "logdrv -a mod -l 3 -i x -s x"),
              "6: Invalid controller ID 'x' specified\n");
}
