// cli-status --changes: logical drives that the saved state does not contain, and what cannot be read for a
// while, up to all of it.
#include <filesystem>

#include "tests/status/history.h"

static const std::string kSmart =
    "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, "
    "enclosure 0, serial S0001\n";
static const std::string kSpareGone =
    "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial S0003\n"
    "warning: controller 0: has 0 spares; it had 1\n";

// Logical drives that the saved state does not contain.

static const std::string kOffline =
    "critical: drive 1 of controller 0 lost; drive 2 of controller 0 lost; logical drive 0 Data is offline\n";

// It goes offline while the logical drives cannot be listed.
struct RefusedListing : Changes {
    void expectOfflineAfterwards() {
        const std::string fault = "controller 0: q5_getLogDrvInfo failed with result 1\n";
        refuse("q5_getLogDrvInfo");
        expectChanges(3, "unknown: " + fault);
        refuseNothing();
        controller()["drives"][0]["failed"] = true;
        controller()["drives"][1]["failed"] = true;
        expectChanges(2, kOffline + "info: no longer: " + fault);
        expectChanges(2, "");
    }
};

TEST_F(RefusedListing, DoesNotHideThatALogicalDriveWentOffline) {
    expectChanges(0, "");
    expectOfflineAfterwards();
}

TEST_F(RefusedListing, DoesNotHideAnOfflineLogicalDriveThatWasNeverListed) {
    expectOfflineAfterwards();
}

TEST_F(Changes, ReportTheLogicalDrivesOfAControllerThatWasNotChosenBefore) {
    world["controllers"].push_back(controller());
    expect({"-i", "0", "--changes", kept}, 0, "");
    world["controllers"][1]["drives"][0]["failed"] = true;
    world["controllers"][1]["drives"][1]["failed"] = true;
    expectChanges(2, "critical: drive 1 of controller 1 lost; drive 2 of controller 1 lost; logical drive 0 "
                     "Data is offline\n");
}

TEST_F(Changes, ReportTheLogicalDrivesOfANewController) {
    expectChanges(0, "");
    world["controllers"].push_back(controller());
    Json& added = world["controllers"][1];
    added["autoRebuild"] = false;
    added["drives"][1]["failed"] = true;
    expectChanges(2, "critical: drive 2 of controller 1 lost; logical drive 0 Data is critical\n"
                     "info: controller 1: is new\n"
                     "warning: logical drive 0 Data of controller 1: no replacement is coming: automatic "
                     "rebuild is off\n");
}

TEST_F(Changes, ReportAPausedActivityOfANewController) {
    expectChanges(0, "");
    world["controllers"].push_back(controller());
    world["controllers"][1]["logicalDrives"][0]["activity"] = {
        {"kind", "redundancyCheck"}, {"paused", true}, {"doneMb", 170}, {"totalMb", 500}};
    expectChanges(1, "warning: redundancy check of logical drive 0 Data of controller 1 paused at 34%\n"
                     "info: controller 1: is new\n");
}

// Lists that cannot be read for a while.

TEST_F(Changes, ReportADriveThatWasPulledWhileTheDrivesCouldNotBeListed) {
    expectChanges(0, "");
    refuse("q5_getPhyDrvInfo");
    expectChanges(3, "unknown: controller 0: q5_getPhyDrvInfo failed with result 1\n");
    expectChanges(3, "");
    refuseNothing();
    controller()["drives"].erase(2);
    expectChanges(1, "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S0003\n"
                     "warning: controller 0: has 0 spares; it had 1\n"
                     "info: logical drive 0 Data of controller 0: has no spare\n"
                     "info: no longer: controller 0: q5_getPhyDrvInfo failed with result 1\n");
}

// Each list, on the first run or on a later one.
TEST_F(Changes, ReportNothingAsMissingOrNewThatCouldNotBeListed) {
    const std::pair<std::string, std::string> lists[] = {
        {"q5_getPhyDrvInfo", "q5_getPhyDrvInfo failed with result 1"},
        {"q5_getLogDrvInfo", "q5_getLogDrvInfo failed with result 1"},
        {"q5_getEnclosureInfo", "q5_getEnclosureInfo failed with result 1, and 15 more faults"},
        {"q5_getBatteryInfo", "q5_getBatteryInfo failed with result 1"},
    };
    for (const bool first : {true, false})
        for (const auto& [operation, fault] : lists) {
            SCOPED_TRACE(operation);
            std::filesystem::remove(kept);
            refuseNothing();
            if (!first)
                expectChanges(0, "");
            refuse(operation);
            expectChanges(3, "unknown: controller 0: " + fault + "\n");
            refuseNothing();
            expectChanges(0, "info: no longer: controller 0: " + fault + "\n");
            expectChanges(0, "");
        }
}

TEST_F(Changes, ReportWhatDisappearedWhileItCouldNotBeRead) {
    expectChanges(0, "");
    refuse("q5_get*Info");
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"--changes", kept}).status, 3);
    refuseNothing();
    controller()["logicalDrives"] = Json::array();
    controller()["enclosures"] = Json::array();
    controller()["battery"] = nullptr;
    for (Json& drive : controller()["drives"])
        drive["extents"] = {{{"use", "free"}, {"start", 0}, {"size", 2048000}}};
    expect({"-q", "--changes", kept}, 2,
           "critical: logical drive 0 Data of controller 0: is missing; it was RAID1 of 500 MB\n"
           "warning: controller 0: has 0 spares; it had 1\n"
           "warning: enclosure 0 of controller 0: is missing\n"
           "warning: battery of controller 0: is missing\n");
}

TEST_F(Changes, KeepTheControllersThatARunDoesNotRead) {
    world["controllers"].push_back(controller());
    for (Json& drive : world["controllers"][1]["drives"])
        drive["serial"] = "T" + drive["serial"].get<std::string>();
    expectChanges(0, "");
    expect({"-i", "1", "--changes", kept}, 0, "");
    controller()["drives"].erase(2);
    expect({"-i", "1", "--changes", kept}, 0, "");
    world["controllers"][1]["drives"][2]["smartFailure"] = true;
    expectChanges(1, "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S0003\n"
                     "warning: controller 0: has 0 spares; it had 1\n"
                     "warning: drive 3 of controller 1: predicts its failure (SMART); channel 2, enclosure "
                     "0, serial TS0003\n"
                     "info: logical drive 0 Data of controller 0: has no spare\n");
}

TEST_F(Changes, ReportAControllerThatDisappearedBetweenRunsThatDoNotReadIt) {
    world["controllers"].push_back(controller());
    expectChanges(0, "");
    world["controllers"].erase(1);
    expect({"-i", "0", "--changes", kept}, 0, "");
    expectChanges(2, "critical: controller 1: is missing\n");
    expectChanges(0, "");
}

// The second page of the list is refused; the first one shows that a drive was pulled.
TEST_F(Changes, CompareThePagesThatCouldBeListed) {
    for (int id = 3; id < 20; ++id) {
        Json drive = controller()["drives"][2];
        drive["id"] = id;
        drive["serial"] = "S1" + std::to_string(100 + id);
        drive["extents"][0]["use"] = "free";
        controller()["drives"].push_back(drive);
    }
    expectChanges(0, "");
    world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getPhyDrvInfo"}, {"after", 1}}};
    controller()["drives"].erase(4);
    expectChanges(3, "warning: drive 5 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S1104\n"
                     "unknown: controller 0: q5_getPhyDrvInfo failed with result 1\n");
    refuseNothing();
    controller()["drives"].erase(18);
    expectChanges(1, "warning: drive 20 of controller 0: is missing; it was on channel 2, enclosure 0, "
                     "serial S1119\n"
                     "info: no longer: controller 0: q5_getPhyDrvInfo failed with result 1\n");
}

// Retained facts are not combined with present ones.

TEST_F(Changes, DoNotJudgeTheLastKnownLogicalDrivesWithPresentDrives) {
    const std::string fault = "controller 0: q5_getLogDrvInfo failed with result 1\n";
    const std::string none = "info: logical drive 0 Data of controller 0: has no spare\n";
    const Json spare = controller()["drives"][2];
    expectChanges(0, "");
    refuse("q5_getLogDrvInfo");
    controller()["drives"].erase(2);
    expectChanges(3, kSpareGone + "unknown: " + fault);
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, none + "info: no longer: " + fault);
    expectChanges(0, "");
    refuse("q5_getLogDrvInfo");
    controller()["drives"].push_back(spare);
    expectChanges(3, "info: drive 3 of controller 0: is new; channel 2, enclosure 0, serial S0003\n"
                     "info: controller 0: has 1 spare; it had 0\n"
                     "unknown: " +
                         fault);
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, "info: no longer: " + fault + "info: no longer: " + none.substr(6));
    expectChanges(0, "");
}

TEST_F(Changes, DoNotJudgeTheLastKnownBatteryWithPresentLogicalDrives) {
    controller()["battery"] = nullptr;
    controller()["logicalDrives"][0]["cacheFlags"] = 0;
    expectChanges(0, "");
    const std::string fault = "controller 0: q5_getBatteryInfo failed with result 1\n";
    const std::string unprotected = "logical drive 0 Data of controller 0: set to write back, but the "
                                    "controller has no battery\n";
    refuse("q5_getBatteryInfo");
    controller()["logicalDrives"][0].erase("cacheFlags");
    expectChanges(3, "unknown: " + fault);
    expectChanges(3, "");
    refuseNothing();
    expectChanges(1, "warning: " + unprotected + "info: no longer: " + fault);
    expectChanges(1, "");
}

// It cannot be accessed because it is lost, which shows only later.
TEST_F(Changes, DoNotCallADriveAccessibleThatIsReportedAsLost) {
    const std::string fault = "controller 0: q5_getLogDrvInfo failed with result 1\n";
    expectChanges(0, "");
    controller()["autoRebuild"] = false;
    controller()["drives"][1]["failed"] = true;
    refuse("q5_getLogDrvInfo");
    expectChanges(
        3, "unknown: " + fault +
               "warning: drive 2 of controller 0: cannot be accessed, but belongs to logical drive 0 Data; "
               "channel 1, enclosure 0, serial S0002\n");
    refuseNothing();
    expectChanges(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
                     "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic "
                     "rebuild is off\n"
                     "info: no longer: " +
                         fault);
}

TEST_F(Changes, DoNotCompareTheLastKnownVersionWithPresentOnes) {
    world["controllers"].push_back(controller());
    expectChanges(0, "");
    for (Json& each : world["controllers"])
        each["driverVersion"] = {1, 9, 0, 0};
    world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getDriverInfo"}, {"after", 1}}};
    const std::string fault = "controller 1: q5_getDriverInfo failed with result 1\n";
    expectChanges(0, "info: " + fault);
    expectChanges(0, "");
    refuseNothing();
    expectChanges(0, "info: no longer: " + fault);
}

// Nothing can be read.

TEST_F(Changes, ReportOnceThatTheLibraryFails) {
    for (const std::string operation : {"q5_initialize", "q5_discover", "q5_getNumberOfHBA"})
        for (const bool first : {true, false}) {
            SCOPED_TRACE(operation);
            std::filesystem::remove(kept);
            controller()["drives"][0]["smartFailure"] = false;
            refuseNothing();
            if (!first)
                expectChanges(0, "");
            refuse(operation);
            const std::string fault = "this host: " + operation + " failed with result 1\n";
            expectChanges(3, "unknown: " + fault);
            expectChanges(3, "");
            expect({"-i", "0", "--changes", kept}, 3, "");
            refuseNothing();
            controller()["drives"][0]["smartFailure"] = true;
            expectChanges(1, kSmart + "info: no longer: " + fault);
            expectChanges(1, "");
        }
}

// They are compared with their last state when they are back.
TEST_F(Changes, ReportOnceThatThereIsNoController) {
    const Json present = world["controllers"];
    const std::string none = "this host: no controller is found\n";
    expectChanges(0, "");
    world["controllers"] = Json::array();
    expectChanges(2, "critical: controller 0: is missing\nunknown: " + none);
    expectChanges(3, "");
    world["controllers"] = present;
    controller()["drives"].erase(2);
    expectChanges(1, kSpareGone +
                         "info: controller 0: is back\n"
                         "info: logical drive 0 Data of controller 0: has no spare\n"
                         "info: no longer: " +
                         none);
    expectChanges(0, "");
}

TEST_F(Changes, ReportTheFirstController) {
    const Json present = world["controllers"];
    const std::string none = "this host: no controller is found\n";
    world["controllers"] = Json::array();
    expectChanges(3, "unknown: " + none);
    expectChanges(3, "");
    world["controllers"] = present;
    expectChanges(0, "info: controller 0: is new\ninfo: no longer: " + none);
}

// The library finds no controller, then it fails: that shows no controller.
TEST_F(Changes, DoNotReportControllersAsNewThatCannotBeRead) {
    expectChanges(0, "");
    const Json present = world["controllers"];
    world["controllers"] = Json::array();
    expectChanges(2, "critical: controller 0: is missing\nunknown: this host: no controller is found\n");
    refuse("q5_initialize");
    expectChanges(3, "unknown: this host: q5_initialize failed with result 1\n"
                     "info: no longer: this host: no controller is found\n");
    refuseNothing();
    world["controllers"] = present;
    expectChanges(0, "info: controller 0: is back\n"
                     "info: no longer: this host: q5_initialize failed with result 1\n");
}

TEST_F(Changes, ReportOnceThatTheChosenControllerIsMissing) {
    world["controllers"].push_back(controller());
    saveBaseline();
    const std::vector<std::string> words = {"-i", "1", "--changes", kept, "--baseline", before};
    expectChanges(0, "");
    world["controllers"].erase(1);
    expect(words, 2, "critical: controller 1: is missing\n");
    expect(words, 2, "");
    expectChanges(0, "");
}
