// cli-status --changes: problems of the same kind, activities, and lines that belong together.
#include <filesystem>

#include "tests/status/history.h"

// Problems of the same kind.

TEST_F(Changes, ReportEverySensorOnce) {
    Json& sensors = controller()["enclosures"][0]["sensors"];
    expectChanges(0, "");
    sensors[2]["reading"] = 4705;
    expectChanges(1, "warning: enclosure 0 of controller 0: 5 V rail is at 4.700 V\n");
    sensors[2]["reading"] = 4715;
    expectChanges(1, "");
    sensors[3]["reading"] = 11215;
    expectChanges(1, "warning: enclosure 0 of controller 0: 12 V rail is at 11.200 V\n");
    sensors[2]["reading"] = 5000;
    expectChanges(1, "info: no longer: enclosure 0 of controller 0: 5 V rail is at 4.710 V\n");
}

TEST_F(Changes, ReportEveryFan) {
    Json& sensors = controller()["enclosures"][0]["sensors"];
    sensors.push_back(sensors[0]);
    expectChanges(0, "");
    sensors[0]["reading"] = 0;
    expectChanges(2, "critical: enclosure 0 of controller 0: fan 1 has stopped (0 rpm)\n");
    sensors[4]["reading"] = 0;
    expectChanges(2, "critical: enclosure 0 of controller 0: fan 2 has stopped (0 rpm)\n");
}

TEST_F(Changes, DoNotCallAReadingThatGotWorseResolved) {
    Json& voltage = controller()["enclosures"][0]["sensors"][2]["reading"];
    expectChanges(0, "");
    voltage = 4705;
    expectChanges(1, "warning: enclosure 0 of controller 0: 5 V rail is at 4.700 V\n");
    voltage = 4405;
    expectChanges(2, "critical: enclosure 0 of controller 0: 5 V rail is at 4.400 V\n");
    voltage = 4705;
    expectChanges(1, "warning: enclosure 0 of controller 0: 5 V rail is at 4.700 V\n"
                     "info: no longer: enclosure 0 of controller 0: 5 V rail is at 4.400 V\n");
}

// A reading is back when it has left its limit by more than a margin.

TEST_F(Changes, DoNotFollowATemperatureAroundItsLimit) {
    Json& temperature = controller()["battery"]["temperatureTenths"];
    temperature = 460;
    expectChanges(1, "warning: battery of controller 0: is at 46.0 degrees Celsius\n");
    temperature = 445;
    expectChanges(0, "");
    temperature = 451;
    expectChanges(1, "");
    temperature = 430;
    expectChanges(0, "");
    expectChanges(0, "");
    temperature = 429;
    expectChanges(0, "info: no longer: battery of controller 0: is at 45.1 degrees Celsius\n");
    temperature = 450;
    expectChanges(1, "warning: battery of controller 0: is at 45.0 degrees Celsius\n");
}

TEST_F(Changes, DoNotFollowATemperatureAroundItsHigherLimit) {
    Json& temperature = controller()["battery"]["temperatureTenths"];
    temperature = 600;
    expectChanges(2, "critical: battery of controller 0: is at 60.0 degrees Celsius\n");
    temperature = 590;
    expectChanges(1, "");
    temperature = 601;
    expectChanges(2, "");
    temperature = 580;
    expectChanges(1, "");
    temperature = 579;
    expectChanges(1, "warning: battery of controller 0: is at 57.9 degrees Celsius\n"
                     "info: no longer: battery of controller 0: is at 60.1 degrees Celsius\n");
}

TEST_F(Changes, DoNotFollowAVoltageAroundItsLimit) {
    Json& voltage = controller()["enclosures"][0]["sensors"][2]["reading"];
    voltage = 4705;
    expectChanges(1, "warning: enclosure 0 of controller 0: 5 V rail is at 4.700 V\n");
    voltage = 4805; // 4.800 V: 4 percent
    expectChanges(0, "");
    voltage = 4755;
    expectChanges(1, "");
    voltage = 4806;
    expectChanges(0, "info: no longer: enclosure 0 of controller 0: 5 V rail is at 4.750 V\n");
}

TEST_F(Changes, DoNotFollowAFanAroundItsLimit) {
    const std::string limits = session.path("limits");
    writeFile(limits, "fan-stopped = 1000\n");
    const std::vector<std::string> words = {"--changes", kept, "--limits", limits};
    Json& speed = controller()["enclosures"][0]["sensors"][0]["reading"];
    speed = 1040;
    expect(words, 2, "critical: enclosure 0 of controller 0: fan 1 has stopped (1000 rpm)\n");
    speed = 1140;
    expect(words, 0, "");
    speed = 1141;
    expect(words, 0, "info: no longer: enclosure 0 of controller 0: fan 1 has stopped (1000 rpm)\n");
}

TEST_F(Changes, ReportEveryOperationThatFails) {
    const Json battery = {{"kind", "refuse"}, {"operation", "q5_getBatteryInfo"}};
    const Json list = {{"kind", "refuse"}, {"operation", "q5_getLogDrvInfo"}};
    expectChanges(0, "");
    world["rules"] = {battery};
    expectChanges(3, "unknown: controller 0: q5_getBatteryInfo failed with result 1\n");
    world["rules"] = {battery, list};
    expectChanges(3, "unknown: controller 0: q5_getBatteryInfo failed with result 1, and 1 more fault\n");
    world["rules"] = {list};
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, "info: no longer: controller 0: q5_getLogDrvInfo failed with result 1\n");
}

TEST_F(Changes, DoNotTakeAnotherNameForAnotherObject) {
    controller()["drives"].erase(2);
    expectChanges(0, "");
    controller()["logicalDrives"][0]["name"] = "Mail";
    expectChanges(0, "info: logical drive 0 Mail of controller 0: was named Data\n");
}

// Activities.

TEST_F(Changes, DoNotSayThatAStoppedActivityFinished) {
    for (const auto& [kind, name] :
         {std::pair("redundancyCheck", "redundancy check"), std::pair("synchronization", "synchronization"),
          std::pair("initialization", "initialization")}) {
        SCOPED_TRACE(kind);
        std::filesystem::remove(kept);
        Json& activity = controller()["logicalDrives"][0]["activity"];
        activity = {{"kind", kind}, {"doneMb", 170}, {"totalMb", 500}};
        expectChanges(0, "");
        activity = nullptr;
        expectChanges(0, std::string("info: ") + name + " of logical drive 0 Data of controller 0 ended\n");
    }
}

TEST_F(Changes, SayThatAMigrationFinishedIfItChangedTheLogicalDrive) {
    Json& array = controller()["logicalDrives"][0];
    const Json migration = {{"kind", "migration"},
                            {"doneMb", 170},
                            {"totalMb", 500},
                            {"goal", {{"level", "RAID0"}, {"stripe", 128}, {"members", {0, 1}}}}};
    array["activity"] = migration;
    expectChanges(0, "");
    array["activity"] = nullptr;
    expectChanges(0, "info: migration of logical drive 0 Data of controller 0 ended\n");
    array["activity"] = migration;
    expectChanges(0, "info: migration of logical drive 0 Data of controller 0 started\n");
    array["activity"] = nullptr;
    array["level"] = "RAID0";
    array["sectors"] = 2048000;
    expectChanges(0, "info: migration of logical drive 0 Data of controller 0 finished\n"
                     "info: logical drive 0 Data of controller 0: is RAID0 of 1000 MB; it was RAID1 of 500 "
                     "MB\n");
}

TEST_F(Changes, DoNotSayThatAnActivityStartedWhoseProgressCanBeReadAgain) {
    controller()["logicalDrives"][0]["activity"] = {
        {"kind", "redundancyCheck"}, {"doneMb", 170}, {"totalMb", 500}};
    const std::string fault =
        "logical drive 0 Data of controller 0: q5_getRedundancyCheckProgress failed with result 1\n";
    for (const bool first : {false, true}) {
        std::filesystem::remove(kept);
        refuseNothing();
        if (!first)
            expectChanges(0, "");
        refuse("q5_getRedundancyCheckProgress");
        expectChanges(3, "unknown: " + fault);
        refuseNothing();
        expectChanges(0, "info: no longer: " + fault);
    }
}

// Lines that belong together.

TEST_F(Changes, DoNotCallALogicalDriveResolvedThatGotWorse) {
    controller()["drives"].erase(2);
    expectChanges(0, "");
    controller()["drives"][1]["failed"] = true;
    expectChanges(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
                     "warning: logical drive 0 Data of controller 0: no replacement is coming: there is no "
                     "suitable spare\n");
    controller()["drives"][0]["failed"] = true;
    expectChanges(2, "critical: drive 1 of controller 0 lost; logical drive 0 Data is offline\n");
}

TEST_F(Changes, DoNotCallTheProblemsOfAMissingControllerResolved) {
    world["controllers"].push_back(controller());
    expectChanges(0, "");
    world["controllers"][1]["drives"][0]["smartFailure"] = true;
    expectChanges(1, "warning: drive 1 of controller 1: predicts its failure (SMART); channel 0, enclosure "
                     "0, serial S0001\n");
    world["controllers"].erase(1);
    expectChanges(2, "critical: controller 1: is missing\n");
}

TEST_F(Changes, ReportThatNoReplacementComesForAMemberThatCannotBeIdentified) {
    controller()["drives"].erase(2);
    expectChanges(0, "");
    controller()["drives"][1]["failed"] = true;
    refuse("q5_getAryLostDisk");
    const std::string array = "logical drive 0 Data of controller 0";
    expectChanges(2,
                  "critical: " + array +
                      " is critical\n"
                      "unknown: " +
                      array +
                      ": q5_getAryLostDisk failed with result 1\n"
                      "warning: " +
                      array +
                      ": no replacement is coming: there is no suitable spare\n"
                      "warning: drive 2 of controller 0: cannot be accessed, but belongs to logical drive 0 "
                      "Data; channel 1, enclosure 0, serial S0002\n");
}

// An online logical drive has no lost members that could not be read.
TEST_F(Changes, ReportOtherMembersWhileTheLostOnesCannotBeRead) {
    const std::string fault =
        "logical drive 0 Data of controller 0: q5_getAryLostDisk failed with result 1\n";
    expectChanges(0, "");
    std::swap(controller()["drives"][1]["extents"], controller()["drives"][2]["extents"]);
    controller()["logicalDrives"][0]["members"] = {0, 2};
    refuse("q5_getAryLostDisk");
    expectChanges(3, "info: controller 0: has a spare on drive 2; it was on drive 3\n"
                     "info: logical drive 0 Data of controller 0: is on drives 1, 3; it was on drives 1, 2\n"
                     "unknown: " +
                         fault);
    refuseNothing();
    expectChanges(0, "info: no longer: " + fault);
}

TEST_F(Changes, DoNotReportALostMemberTwice) {
    expectChanges(0, "");
    controller()["autoRebuild"] = false;
    controller()["drives"][1]["failed"] = true;
    expectChanges(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
                     "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic "
                     "rebuild is off\n");
    const std::string fault =
        "logical drive 0 Data of controller 0: q5_getAryLostDisk failed with result 1\n";
    refuse("q5_getAryLostDisk");
    expectChanges(2, "unknown: " + fault);
    refuseNothing();
    expectChanges(2, "info: no longer: " + fault);
}

// Objects that disappeared or moved: their problems are not solved.

TEST_F(Changes, DoNotCallTheProblemsOfADriveThatDisappearedResolved) {
    controller()["drives"][2]["smartFailure"] = true;
    controller()["drives"][2]["mediaPatrol"] = {{"state", "stopped"}, {"errors", 7}};
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"--changes", kept}).status, 1);
    controller()["drives"].erase(2);
    expectChanges(1, "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S0003\n"
                     "warning: controller 0: has 0 spares; it had 1\n"
                     "info: logical drive 0 Data of controller 0: has no spare\n");
}

// The problem moves with the drive.
TEST_F(Changes, DoNotCallTheProblemsOfADriveThatMovedResolved) {
    Json& drive = controller()["drives"][2];
    drive["smartFailure"] = true;
    const std::string smart = "of controller 0: predicts its failure (SMART); channel 2, enclosure 0, serial "
                              "S0003\n";
    expectChanges(1, "warning: drive 3 " + smart);
    drive["id"] = 7;
    expectChanges(1, "info: drive 3 of controller 0: has moved to drive 8 of controller 0; channel 2, "
                     "enclosure 0, serial S0003\n"
                     "warning: drive 8 " +
                         smart);
}

// Another drive has taken its place.
TEST_F(Changes, DoNotCallTheProblemsOfADriveResolvedWhosePlaceIsTaken) {
    controller()["drives"][2]["smartFailure"] = true;
    Json unused = controller()["drives"][2];
    unused["id"] = 7;
    unused["serial"] = "S0008";
    unused["extents"][0]["use"] = "free";
    unused["smartFailure"] = false;
    controller()["drives"].push_back(unused);
    expectChanges(1,
                  "warning: drive 3 of controller 0: predicts its failure (SMART); channel 2, enclosure 0, "
                  "serial S0003\n");
    controller()["drives"].erase(2);
    controller()["drives"][2]["id"] = 2;
    controller()["drives"][2]["extents"][0]["use"] = "globalSpare";
    expectChanges(1, "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S0003\n"
                     "info: drive 8 of controller 0: has moved to drive 3 of controller 0; channel 2, "
                     "enclosure 0, serial S0008\n");
}

TEST_F(Changes, DoNotCallTheProblemsOfABatteryThatDisappearedResolved) {
    controller()["battery"]["temperatureTenths"] = 600;
    controller()["logicalDrives"][0]["cacheFlags"] = 0;
    expectChanges(2, "critical: battery of controller 0: is at 60.0 degrees Celsius\n");
    controller()["battery"] = nullptr;
    expectChanges(1, "warning: battery of controller 0: is missing\n");
}

TEST_F(Changes, DoNotCallTheProblemsOfAnEnclosureThatDisappearedResolved) {
    controller()["enclosures"][0]["sensors"][0]["reading"] = 0;
    expectChanges(2, "critical: enclosure 0 of controller 0: fan 1 has stopped (0 rpm)\n");
    controller()["enclosures"] = Json::array();
    expectChanges(1, "warning: enclosure 0 of controller 0: is missing\n");
}

TEST_F(Changes, DoNotCallTheProblemsOfALogicalDriveThatDisappearedResolved) {
    controller()["battery"] = nullptr;
    expectChanges(1, "warning: logical drive 0 Data of controller 0: set to write back, but the controller "
                     "has no battery\n");
    controller()["logicalDrives"] = Json::array();
    for (const std::size_t drive : {0u, 1u})
        controller()["drives"][drive]["extents"] = {{{"use", "free"}, {"start", 0}, {"size", 2048000}}};
    expectChanges(2, "critical: logical drive 0 Data of controller 0: is missing; it was RAID1 of 500 MB\n");
}
