// A snapshot as JSON and back.
#include "snapshot/json.h"

#include <gtest/gtest.h>

#include <cstring>

static Snapshot smallSnapshot() {
    Snapshot snapshot;
    snapshot.controllerCount = 1;
    Controller controller;
    controller.driver = DriverInfo{{1, -2, 3, 4}};
    Drive drive;
    drive.number = 1;
    drive.info.capacity = 0xFFFFFFFFFFFFFFFF;
    std::memcpy(drive.info.serial, "A\xff\"\n", 4);
    drive.speed3Gb = -7;
    drive.faults = {{"q5_getPhyDrvSettings", FaultKind::refused, -1}};
    controller.drives.push_back(drive);
    LogicalDrive array;
    array.info.diskCount = 1;
    array.info.shift = -3;
    array.lostMask = 1;
    array.activities.push_back({kMigrating, kActivityPaused, 40});
    resolveMembers(controller, &array);
    controller.logicalDrives.push_back(array);
    snapshot.controllers.push_back(controller);
    return snapshot;
}

static Json document() {
    Json json = {{"format", 1}};
    json.update(snapshotToJson(smallSnapshot()));
    return json;
}

TEST(SnapshotJson, KeepsEveryBitOfANumber) {
    const Json json = document();
    EXPECT_EQ(json["controllers"][0]["drives"][0]["info"]["capacity"], 0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(json["controllers"][0]["driver"]["driverVersion"]["minor"], -2);
    EXPECT_EQ(json["controllers"][0]["logicalDrives"][0]["info"]["shift"], -3);
}

TEST(SnapshotJson, AddsTheBytesOfATextThatIsNotUtf8) {
    const Json drive = document()["controllers"][0]["drives"][0]["info"];
    EXPECT_EQ(drive["serial"], "A\ufffd\"\n");
    EXPECT_EQ(drive["serialBytes"], "41ff220a");
    EXPECT_FALSE(drive.contains("modelBytes"));
}

TEST(SnapshotJson, IsReadBackCompletely) {
    const std::string text = document().dump();
    Snapshot snapshot;
    ASSERT_EQ(snapshotFromText(text, &snapshot), "");
    Json again = {{"format", 1}};
    again.update(snapshotToJson(snapshot));
    EXPECT_EQ(again.dump(), text);
    EXPECT_EQ(snapshot.controllers[0].drives[0].info.capacity, 0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(fieldText(snapshot.controllers[0].drives[0].info.serial), "A\xff\"\n");
    EXPECT_EQ(snapshot.controllers[0].logicalDrives[0].members.size(), 1u);
}

static std::string problemAfter(const std::string& pointer, const Json& value) {
    Json json = document();
    json[Json::json_pointer(pointer)] = value;
    Snapshot snapshot;
    return snapshotFromText(json.dump(), &snapshot);
}

TEST(SnapshotJson, RefusesWhatTheRecordsCannotHold) {
    const std::string drive = "/controllers/0/drives/0";
    const std::string number = " is not a number that the field can hold";
    EXPECT_EQ(problemAfter(drive + "/info/channel", 65536), "\"channel\"" + number);
    EXPECT_EQ(problemAfter(drive + "/info/channel", -1), "\"channel\"" + number);
    EXPECT_EQ(problemAfter(drive + "/info/channel", 1.5), "\"channel\"" + number);
    EXPECT_EQ(problemAfter(drive + "/info/channel", "1"), "\"channel\"" + number);
    EXPECT_EQ(problemAfter(drive + "/info/cylinders", 2147483648), "\"cylinders\"" + number);
    EXPECT_EQ(problemAfter(drive + "/info/cylinders", -2147483649), "\"cylinders\"" + number);
    EXPECT_EQ(problemAfter(drive + "/info/model", 7), "\"model\" is not a text");
    EXPECT_EQ(problemAfter(drive + "/info/serialBytes", "4"), "\"serial\" is not a text");
    EXPECT_EQ(problemAfter(drive + "/info/serialBytes", "4x"), "\"serial\" is not a text");
    EXPECT_EQ(problemAfter(drive + "/info/extent", Json(std::vector<int>(17))),
              "\"extent\" is not a list that the field can hold");
    EXPECT_EQ(problemAfter(drive + "/info", 3), "\"driveId\" is missing");
    EXPECT_EQ(problemAfter(drive + "/number", nullptr), "\"number\" is not a number");
    EXPECT_EQ(problemAfter("/controllers/0/drives", 3), "\"drives\" is not a list");
    EXPECT_EQ(problemAfter(drive + "/faults/0/kind", 5), "\"kind\" is unknown");
    EXPECT_EQ(problemAfter("/controllers", nullptr), "\"controllers\" is not a list");
    EXPECT_EQ(problemAfter(drive + "/info/channel", 65535), "");
    EXPECT_EQ(problemAfter(drive + "/info/cylinders", -2147483648), "");
}
