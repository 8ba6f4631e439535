// The text of the world file: what is refused, and the line that the message names.
#include <cstdlib>
#include <filesystem>

#include "simulator/engine/advance.h"
#include "simulator/file/world_json.h"
#include "simulator/world/invariants.h"
#include "tests/simulator/simulated_world.h"

using q5sim::ValidationError;
using q5sim::World;

// The name of each invalid file contains the line of its error.
TEST(WorldText, ReportsLineOfEachInvalidFile) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(WORLDS)) {
        const std::string name = entry.path().stem().string();
        if (name.rfind("invalid-", 0) != 0)
            continue;
        files++;
        World world;
        ValidationError error;
        EXPECT_FALSE(q5sim::worldFromJson(readText(entry.path().string()), world, error)) << name;
        EXPECT_EQ(error.line, std::atoi(name.c_str() + name.rfind('-') + 1)) << name << ": " << error.reason;
        EXPECT_TRUE(world.controllers.empty()) << name;
    }
    EXPECT_EQ(files, 13);
}

static std::string reasonFor(const std::string& text) {
    World world;
    ValidationError error;
    return q5sim::worldFromJson(text, world, error) ? "taken" : error.reason;
}

TEST(WorldText, ReasonsNameTheKey) {
    EXPECT_EQ(reasonFor("{}"), "the key \"controllers\" is missing");
    EXPECT_EQ(reasonFor("{\"controllers\": {}}"), "controllers: a list of at most 16 is expected");
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"buzzer\": 1}]}"),
              "controllers[0].buzzer: true or false is expected");
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"rates\": {\"rebuild\": 256}}]}"),
              "controllers[0].rates.rebuild: a whole number from 1 to 255 is expected");
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"bozzer\": true}]}"),
              "controllers[0].bozzer: the key \"bozzer\" has no meaning here");
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"drives\": [{\"id\": 32, \"sectors\": 4096}]}]}"),
              "controllers[0].drives[0].id: a whole number from 0 to 31 is expected");
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"drives\": [{\"id\": 0, \"sectors\": 4096, "
                        "\"model\": \"1234567890123456789012\"}]}]}"),
              "controllers[0].drives[0].model: a text of at most 21 bytes is expected");
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"battery\": {\"state\": \"flat\"}}]}"),
              "controllers[0].battery.state: one of \"charging\", \"discharging\", \"full\", \"failed\", "
              "\"reconditioning\", \"missing\" is expected");
    EXPECT_EQ(reasonFor("not json"), "this is not valid JSON");
}

TEST(WorldText, ChecksActivities) {
    const std::string start = "{\"controllers\": [{\"logicalDrives\": [{\"arrayId\": 0, \"logDrvId\": 0, "
                              "\"level\": \"RAID0\", \"sectors\": 8, \"memberSectors\": 8, \"members\": [0], "
                              "\"activity\": ";
    EXPECT_EQ(reasonFor(start + "null}]}]}"), "taken");
    EXPECT_EQ(reasonFor(start + "{\"kind\": 3, \"totalMb\": 1}}]}]}"),
              "controllers[0].logicalDrives[0].activity.kind: this activity is unknown");
    EXPECT_EQ(reasonFor(start + "{\"kind\": \"rebuild\", \"totalMb\": 0}}]}]}"),
              "controllers[0].logicalDrives[0].activity.totalMb: a whole number from 1 to 1099511627776 is "
              "expected");
    EXPECT_EQ(reasonFor(start + "{\"kind\": \"rebuild\", \"totalMb\": 1, "
                                "\"targets\": [{\"drive\": 1, \"position\": 1}]}}]}]}"),
              "controllers[0].logicalDrives[0].activity.targets[0]: the rebuild's targets do not fit the "
              "members");
    EXPECT_EQ(
        reasonFor(start + "{\"kind\": \"migration\", \"totalMb\": 1}}]}]}"),
        "controllers[0].logicalDrives[0].activity.goal: no array can have this level, stripe and members");
    EXPECT_EQ(reasonFor(start + "{\"kind\": \"rebuild\", \"totalMb\": 1}}]}]}"),
              "taken"); // of a captured world
    EXPECT_EQ(reasonFor(start + "{\"kind\": \"initialization\", \"totalMb\": 1, "
                                "\"targets\": [{\"drive\": 1, \"position\": 0}]}}]}]}"),
              "controllers[0].logicalDrives[0].activity.targets: only a rebuild has targets");
    EXPECT_EQ(reasonFor(start + "{\"kind\": \"initialization\", \"totalMb\": 7, \"doneMb\": 8}}]}]}"),
              "controllers[0].logicalDrives[0].activity.doneMb: more is done than there is to do");
}

TEST(WorldText, ChecksEvents) {
    const std::string events = "{\"controllers\": [{\"events\": [{\"id\": 4}, {\"id\": ";
    EXPECT_EQ(reasonFor(events + "5}]}]}"), "taken");
    EXPECT_EQ(reasonFor(events + "1}]}]}"), "taken"); // after the last possible ID
    EXPECT_EQ(reasonFor(events + "4}]}]}"), "controllers[0].events[1].id: the IDs of events must count up");
}

// Truncated text and deep nesting are refused.
TEST(WorldText, RejectsMalformedText) {
    const std::string whole = readText(std::string(WORLDS) + "/settings.json");
    ASSERT_EQ(reasonFor(whole), "taken");
    const std::size_t end = whole.rfind('}');
    for (std::size_t length = 0; length < end; length++)
        EXPECT_NE(reasonFor(whole.substr(0, length)), "taken") << length;
    EXPECT_EQ(reasonFor("{\"controllers\": [{\"a\\u0000b\": 1}]}").empty(), false);
    EXPECT_EQ(reasonFor(std::string("{\"controllers\": [{\"enclosures\": \"\xff\"}]}")),
              "this is not valid JSON");
}

static std::string nested(std::size_t levels) {
    return std::string(levels, '[') + std::string(levels, ']');
}

// The largest file that is read, of brackets alone, is refused at its 33rd.
TEST(WorldText, LimitsNesting) {
    EXPECT_EQ(reasonFor(nested(32)), "an object in braces is expected");
    EXPECT_EQ(reasonFor(nested(33)), "this is nested too deeply");
    EXPECT_EQ(reasonFor(std::string(15000000, '[')), "this is nested too deeply");
    std::string objects;
    for (int level = 0; level < 33; level++)
        objects += "{\"\":\n";
    World world;
    ValidationError error;
    EXPECT_FALSE(q5sim::worldFromJson(objects, world, error));
    EXPECT_EQ(error.reason, "this is nested too deeply");
    EXPECT_EQ(error.line, 33);
}

// Neither brackets in a text nor those of adjacent lists count.
TEST(WorldText, NestingIsThatOfOpenBrackets) {
    const std::string brackets = "\\\"" + std::string(60, '[');
    const std::string key = "\"" + std::string(60, '[');
    EXPECT_EQ(reasonFor("{\"controllers\": [], \"" + brackets + "\": 1}"),
              key + ": the key \"" + key + "\" has no meaning here");
    std::string adjacent = "{\"controllers\": [";
    for (int i = 0; i < 40; i++)
        adjacent += "[],";
    EXPECT_EQ(reasonFor(adjacent + "[]]}"), "controllers: a list of at most 16 is expected");
}

static std::string repeated(const std::string& piece, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; i++)
        text += piece;
    return text;
}

// The parser's memory grows with the number of values: 15 MB of empty objects would take 570 MB.
TEST(WorldText, LimitsValues) {
    EXPECT_EQ(reasonFor("[0" + repeated(",0", 999998) + "]"), "an object in braces is expected");
    EXPECT_EQ(reasonFor("[0" + repeated(",0", 999999) + "]"), "this has too many values");
    EXPECT_EQ(reasonFor("[" + repeated("{},", 5000000) + "{}]"), "this has too many values");
    EXPECT_EQ(reasonFor("[" + repeated("[],", 5000000) + "[]]"), "this has too many values");
    EXPECT_EQ(reasonFor("{\"controllers\": [], \"" + repeated(",", 1000000) + "\": 1}").substr(0, 3), ",,,");
    World world;
    ValidationError error;
    EXPECT_FALSE(q5sim::worldFromJson("[" + repeated("{},\n", 600000) + "{}]", world, error));
    EXPECT_EQ(error.line, 500000); // two of each line's count, and the list
}

static q5sim::Drive driveWithExtents(std::uint16_t id, std::uint8_t extents) {
    q5sim::Drive drive;
    drive.id = id;
    drive.sectors = 1000000000;
    for (std::uint8_t i = 0; i < extents; i++)
        drive.extents.push_back({.start = i * std::uint64_t{4096}, .size = 4096});
    return drive;
}

// 64 drives with 16 extents, half of them pulled, and 128 logical drives of 16 members.
static q5sim::Controller largestController() {
    q5sim::Controller controller;
    for (std::uint16_t id = 0; id <= q5sim::kMaxDriveId; id++) {
        controller.drives.push_back(driveWithExtents(id, 16));
        controller.pulledDrives.push_back(driveWithExtents(id, 16));
    }
    for (std::uint8_t id = 0; id < 128; id++) {
        q5sim::LogicalDrive drive;
        drive.arrayId = drive.logDrvId = id;
        drive.members.resize(16);
        drive.activity.kind = kInitializing;
        controller.logicalDrives.push_back(drive);
    }
    controller.events.resize(q5sim::kMaxEventsKept);
    return controller;
}

// A third of the limit is enough for the largest configuration.
TEST(WorldText, LargestConfigurationHasFewerValues) {
    World world;
    world.controllers.assign(q5sim::kMaxControllers, largestController());
    const std::string text = q5sim::worldToJson(world);
    EXPECT_EQ(q5sim::findExcessValue(text, 333333), std::string::npos);
    EXPECT_LT(text.size(), 16000000u);
    EXPECT_NE(reasonFor(text), "this has too many values");
}

// A NUL does not end the text: what follows it would be lost when the file is written again.
TEST(WorldText, RejectsNulBytesWithLine) {
    World world;
    ValidationError error;
    EXPECT_FALSE(q5sim::worldFromJson(std::string("{\"controllers\": []}\n\0 []}", 25), world, error));
    EXPECT_EQ(error.line, 2);
    EXPECT_EQ(error.reason, "this is not valid JSON");
    EXPECT_EQ(reasonFor(std::string("\"kind\"\0@, ild []}", 17)), "this is not valid JSON");
}

TEST(WorldText, RejectsWideObjectsQuickly) {
    std::string text = "{\"controllers\": []";
    for (int i = 0; i < 200000; i++)
        text += ", \"k" + std::to_string(i) + "\": 1";
    EXPECT_EQ(reasonFor(text + "}"), "k0: the key \"k0\" has no meaning here");
}

// Random byte changes give either an error or a world that keeps the invariants.
TEST(WorldText, DamagedFilesDoNotCrash) {
    const std::string whole = readText(std::string(WORLDS) + "/degraded.json");
    unsigned random = 12345;
    for (int round = 0; round < 3000; round++) {
        std::string text = whole;
        for (int change = 0; change < 3; change++) {
            random = random * 1103515245 + 12345;
            text[(random >> 8) % text.size()] = "0123456789,[]{}\":-ea"[random % 20];
        }
        World world;
        ValidationError error;
        if (!q5sim::worldFromJson(text, world, error)) {
            EXPECT_GE(error.line, 1);
            continue;
        }
        for (q5sim::Controller& controller : world.controllers) // two of a kind are no error in a file
            for (q5sim::Drive& drive : controller.drives)
                drive.serial.clear();
        q5sim::advanceTo(world, kStart);
        EXPECT_EQ(q5sim::findViolations(world), std::vector<std::string>()) << text;
    }
}

TEST(WorldText, WriteAndReadGiveSameWorld) {
    const World world = q5sim::builtinWorld(kStart);
    const std::string text = q5sim::worldToJson(world);
    World read;
    ValidationError error;
    ASSERT_TRUE(q5sim::worldFromJson(text, read, error)) << error.line << error.reason;
    EXPECT_EQ(read, world);
    EXPECT_EQ(q5sim::worldToJson(read), text);
}

// Brackets, quotes and backslashes in names are not structure.
TEST(WorldText, NamesMayContainAnyCharacter) {
    World world = q5sim::builtinWorld(kStart);
    world.controllers[0].logicalDrives[0].name = "a]b}\"c\\\"[{\\,d\n\te";
    world.controllers[0].speedOptions = {{"x}\"", "\\", 1}, {"]", "\"", 0}};
    World read;
    ValidationError error;
    ASSERT_TRUE(q5sim::worldFromJson(q5sim::worldToJson(world), read, error)) << error.line << error.reason;
    EXPECT_EQ(read, world);
}

TEST(WorldText, WritesSmallRecordsOnOneLine) {
    const std::string text = q5sim::worldToJson(q5sim::builtinWorld(kStart));
    EXPECT_NE(text.find("\n      \"biosVersion\": [2, 3, 0, 12],\n"), std::string::npos);
    EXPECT_NE(
        text.find("\n            {\"use\": \"array\", \"array\": 0, \"start\": 0, \"size\": 409600000},\n"),
        std::string::npos);
}
