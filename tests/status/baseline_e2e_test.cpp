// cli-status --baseline: what is different from an earlier state.
#include <filesystem>

#include "tests/status/history.h"

using Baseline = History;

TEST_F(Baseline, IsSilentWhenNothingChanged) {
    expectAll(0, "all well: 1 controller, 3 drives, 1 logical drive\n");
}

// Only the baseline has what was there.
TEST_F(Baseline, ReportsTheSerialOfADriveThatDisappeared) {
    controller()["drives"].erase(1);
    controller()["drives"][1]["extents"][0]["use"] = "free";
    expectFindings(
        2, "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
           "warning: drive 2 of controller 0: lost by logical drive 0 Data; it is no longer listed, last "
           "seen on channel 1, enclosure 0, serial S0002\n"
           "warning: logical drive 0 Data of controller 0: no replacement is coming: there is no suitable "
           "spare\n"
           "warning: drive 2 of controller 0: is missing; it was on channel 1, enclosure 0, serial S0002\n"
           "warning: controller 0: has 0 spares; it had 1\n");
}

TEST_F(Baseline, ReportsASpareThatDisappearedSilently) {
    controller()["drives"].erase(2);
    expectAll(1, "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                 "S0003\n"
                 "warning: controller 0: has 0 spares; it had 1\n"
                 "info: logical drive 0 Data of controller 0: has no spare\n"
                 "2 problems\n");
}

TEST_F(Baseline, ReportsASpareOnAnotherDrive) {
    Json other = controller()["drives"][2];
    other["id"] = 5;
    other["serial"] = "S0006";
    other["extents"][0]["use"] = "free";
    controller()["drives"].push_back(other);
    saveBaseline();
    controller()["drives"][2]["extents"][0]["use"] = "free";
    controller()["drives"][3]["extents"][0]["use"] = "globalSpare";
    expectAll(0, "info: controller 0: has a spare on drive 6; it was on drive 3\n"
                 "all well: 1 controller, 4 drives, 1 logical drive\n");
}

TEST_F(Baseline, ReportsAReplacedDrive) {
    controller()["drives"][2]["serial"] = "S9999";
    expectAll(0, "info: drive 3 of controller 0: was replaced; serial S0003 is now S9999\n"
                 "all well: 1 controller, 3 drives, 1 logical drive\n");
}

TEST_F(Baseline, ReportsTheSerialThatWasReplaced) {
    controller()["drives"][1]["serial"] = "S9999";
    controller()["drives"][1]["extents"] = {{{"use", "free"}, {"start", 0}, {"size", 2048000}}};
    controller()["autoRebuild"] = false;
    expectFindings(
        2, "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
           "warning: drive 2 of controller 0: lost by logical drive 0 Data; the drive there now (channel 1, "
           "enclosure 0, serial S9999) holds nothing of it, last seen on channel 1, enclosure 0, serial "
           "S0002\n"
           "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic rebuild is "
           "off\n");
}

// The drive to pull is not the one at its place, which is the replacement.
TEST_F(Baseline, ReportsAReplacementThatIsBeingRebuilt) {
    controller()["drives"][1]["serial"] = "S9999";
    controller()["logicalDrives"][0]["activity"] = {{"kind", "rebuild"},
                                                    {"since", 0},
                                                    {"doneMb", 170},
                                                    {"totalMb", 500},
                                                    {"targets", {{{"drive", 1}, {"position", 1}}}}};
    expectFindings(
        2, "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
           "warning: drive 2 of controller 0: lost by logical drive 0 Data; the drive there now (channel 1, "
           "enclosure 0, serial S9999) is being rebuilt as its member, last seen on channel 1, enclosure 0, "
           "serial S0002\n");
}

TEST_F(Baseline, ReportsAMovedAndANewDrive) {
    controller()["drives"][2]["id"] = 7;
    controller()["drives"][2]["channel"] = 6;
    Json added = controller()["drives"][2];
    added["id"] = 9;
    added["serial"] = "S0009";
    added["extents"][0]["use"] = "free";
    controller()["drives"].push_back(added);
    expectAll(0, "info: drive 3 of controller 0: has moved to drive 8 of controller 0; channel 6, enclosure "
                 "0, serial S0003\n"
                 "info: drive 10 of controller 0: is new; channel 6, enclosure 0, serial S0009\n"
                 "all well: 1 controller, 4 drives, 1 logical drive\n");
}

// Another drive with the serial is still where it was.
TEST_F(Baseline, ADriveIsNotAnotherOneWithItsSerial) {
    Json other = controller()["drives"][2];
    other["id"] = 5;
    other["channel"] = 5;
    other["extents"][0]["use"] = "free";
    controller()["drives"].push_back(other);
    expectAll(0, "info: drive 6 of controller 0: is new; channel 5, enclosure 0, serial S0003\n"
                 "all well: 1 controller, 4 drives, 1 logical drive\n");
    saveBaseline();
    controller()["drives"].erase(3);
    expectAll(1,
              "warning: drive 6 of controller 0: is missing; it was on channel 5, enclosure 0, serial S0003\n"
              "1 problem\n");
}

// What it lacks could be missing without being noticed.
TEST_F(Baseline, ReportsThatTheBaselineIsIncomplete) {
    const auto incomplete = [](const char* words) {
        return std::string("controller 0: the baseline may lack ") + words +
               ": not all could be read when it was saved\n";
    };
    const auto saveRefused = [&](const char* operation) {
        world["rules"] = {{{"kind", "refuse"}, {"operation", operation}}};
        saveBaseline();
        world["rules"] = Json::array();
    };
    saveRefused("q5_getPhyDrvInfo");
    expectFindings(3, "unknown: " + incomplete("drives"));
    saveRefused("q5_getLogDrvInfo");
    expectFindings(3, "unknown: " + incomplete("logical drives"));
    saveRefused("q5_getEnclosureInfo");
    expectFindings(3, "unknown: " + incomplete("enclosures"));
    saveRefused("q5_getNumberOfHBA");
    expectFindings(3, "unknown: this host: the baseline may lack controllers: not all could be read when it "
                      "was saved\n");
    world["rules"] = {{{"kind", "zero"}, {"operation", "q5_getNumberOfHBA"}}};
    saveBaseline();
    world["rules"] = Json::array();
    expectFindings(3, "unknown: this host: the baseline may lack controllers: not all could be read when it "
                      "was saved\n");
}

TEST_F(Baseline, ReportsALogicalDriveThatIsMissing) {
    controller()["logicalDrives"] = Json::array();
    for (Json& drive : controller()["drives"])
        drive["extents"] = {{{"use", "free"}, {"start", 0}, {"size", 2048000}}};
    expectFindings(2, "critical: logical drive 0 Data of controller 0: is missing; it was RAID1 of 500 MB\n"
                      "warning: controller 0: has 0 spares; it had 1\n");
}

TEST_F(Baseline, ReportsALogicalDriveOnOtherDrives) {
    controller()["logicalDrives"][0]["members"] = {0, 2};
    std::swap(controller()["drives"][1]["extents"], controller()["drives"][2]["extents"]);
    expectAll(0, "info: controller 0: has a spare on drive 2; it was on drive 3\n"
                 "info: logical drive 0 Data of controller 0: is on drives 1, 3; it was on drives 1, 2\n"
                 "all well: 1 controller, 3 drives, 1 logical drive\n");
}

// One that was deleted and created again, for example.
TEST_F(Baseline, ReportsALogicalDriveOfAnotherNameAndLevel) {
    controller()["logicalDrives"][0]["name"] = "Mail";
    expectAll(0, "info: logical drive 0 Mail of controller 0: was named Data\n"
                 "all well: 1 controller, 3 drives, 1 logical drive\n");
    controller()["logicalDrives"][0]["level"] = "RAID0";
    controller()["logicalDrives"][0]["sectors"] = 2048000;
    expectAll(0, "info: logical drive 0 Mail of controller 0: is RAID0 of 1000 MB; it was RAID1 of 500 MB\n"
                 "info: logical drive 0 Mail of controller 0: was named Data\n"
                 "all well: 1 controller, 3 drives, 1 logical drive\n");
}

TEST_F(Baseline, ReportsAnEnclosureOfAnotherType) {
    controller()["enclosures"][0]["type"] = "OEM-A";
    expectAll(0, "info: enclosure 0 of controller 0: is now OEM-A; it was Traybox 400\n"
                 "all well: 1 controller, 3 drives, 1 logical drive\n");
}

TEST_F(Baseline, ReportsSensorsThatDisappeared) {
    const std::string fewer = "warning: enclosure 0 of controller 0: reports fewer sensors: ";
    Json& sensors = controller()["enclosures"][0]["sensors"];
    sensors.push_back(sensors[0]); // two fans
    saveBaseline();
    sensors.push_back(sensors[0]);
    expectFindings(0, "");
    sensors = {sensors[0], sensors[1], sensors[3]};
    expectFindings(1, fewer + "fan (1 of 2), 5 V rail (0 of 1)\n");
    sensors = Json::array();
    expectFindings(1, fewer + "fan (0 of 2), 5 V rail (0 of 1), 12 V rail (0 of 1), temperature (0 of 1)\n");
}

// Another enclosure has sensors of its own; those that cannot be read are not missing.
TEST_F(Baseline, ComparesTheSensorsOfTheSameEnclosureOnly) {
    world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getEnclosureStatus"}}};
    expectFindings(3, "unknown: enclosure 0 of controller 0: q5_getEnclosureStatus failed with result 1\n");
    world["rules"] = Json::array();
    controller()["enclosures"][0]["type"] = "OEM-A";
    controller()["enclosures"][0]["sensors"].erase(0);
    expectFindings(0, "");
}

TEST_F(Baseline, ReportsMissingEnclosureAndBattery) {
    controller()["enclosures"] = Json::array();
    controller()["battery"] = nullptr;
    controller()["logicalDrives"][0]["cacheFlags"] = 0;
    expectFindings(1, "warning: enclosure 0 of controller 0: is missing\n"
                      "warning: battery of controller 0: is missing\n");
}

TEST_F(Baseline, ReportsNewObjects) {
    const Json healthy = controller();
    controller()["enclosures"] = Json::array();
    controller()["battery"] = nullptr;
    controller()["logicalDrives"] = Json::array();
    for (Json& drive : controller()["drives"])
        drive["extents"] = {{{"use", "free"}, {"start", 0}, {"size", 2048000}}};
    saveBaseline();
    controller() = healthy;
    expectAll(0, "info: controller 0: has 1 spare; it had 0\n"
                 "info: logical drive 0 Data of controller 0: is new; it is RAID1 of 500 MB\n"
                 "info: enclosure 0 of controller 0: is new\n"
                 "info: battery of controller 0: is new\n"
                 "all well: 1 controller, 3 drives, 1 logical drive\n");
}

TEST_F(Baseline, ReportsAMissingController) {
    Json second = controller();
    world["controllers"].push_back(second);
    saveBaseline();
    world["controllers"].erase(1);
    expectFindings(2, "critical: controller 1: is missing\n");
}

// Also if it is the one that is chosen, or the only one.
TEST_F(Baseline, ReportsAChosenControllerThatIsMissing) {
    world["controllers"].push_back(controller());
    saveBaseline();
    world["controllers"].erase(1);
    expect({"-i", "1", "--baseline", before}, 2, "critical: controller 1: is missing\n1 problem, critical\n");
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"-i", "2", "--baseline", before}),
              (ProcessOutcome{3, "", "cli-status: there is no controller 2\n"}));
    world["controllers"].erase(0);
    expectFindings(2, "critical: controller 0: is missing\n"
                      "critical: controller 1: is missing\n"
                      "unknown: this host: no controller is found\n");
    session.useWorld("{"); // the library cannot be opened
    EXPECT_EQ(session.run({"-q", "-i", "1", "--baseline", before}).out,
              "unknown: this host: q5_initialize failed with result 1\n"
              "unknown: this host: controller 1 of the baseline cannot be checked: not all controllers could "
              "be read\n");
}

TEST_F(Baseline, ReportsANewController) {
    world["controllers"].push_back(controller());
    expectAll(0, "controller 1: 3 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
                 "info: controller 1: is new\n"
                 "all well: 2 controllers, 6 drives, 2 logical drives\n");
}

TEST_F(Baseline, IsLimitedToTheChosenController) {
    world["controllers"].push_back(controller());
    saveBaseline();
    controller()["battery"] = nullptr;
    controller()["logicalDrives"][0]["cacheFlags"] = 0;
    expect({"-q", "-i", "1", "--baseline", before}, 0, "");
    expect({"-q", "-i", "0", "--baseline", before}, 1, "warning: battery of controller 0: is missing\n");
}

TEST_F(Baseline, RefusesWhatIsNotAState) {
    const std::pair<std::string, std::string> files[] = {
        {"", "it is not JSON that --json printed"},
        {"[]", "it is not JSON that --json printed"},
        {"{}", "it is not of format 1"},
        {"{\"format\": 2}", "it is not of format 1"},
        {"{\"format\": 1}", "\"controllerCount\" is missing"},
        {"{\"format\": 1, \"controllerCount\": -1}", "\"controllerCount\" is not a number that it can hold"},
    };
    for (const auto& [text, problem] : files) {
        writeFile(before, text);
        EXPECT_EQ(session.run({"--baseline", before}),
                  (ProcessOutcome{3, "", "cli-status: " + before + ": " + problem + "\n"}));
    }
    std::filesystem::remove(before);
    EXPECT_EQ(session.run({"--baseline", before}),
              (ProcessOutcome{3, "", "cli-status: cannot read " + before + ": No such file or directory\n"}));
}
