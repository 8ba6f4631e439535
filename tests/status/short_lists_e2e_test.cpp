// cli-status over lists with fewer objects than the controller counts: what is not listed may still be there.
#include "tests/status/history.h"

// Without an earlier state.

TEST_F(ShortLists, DoNotShowThatThereIsNoSpare) {
    shorten("q5_getPhyDrvInfo");
    expect({}, 3,
           "controller 0: 2 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
           "unknown: " +
               kTwoOfThree + "1 problem, unknown\n");
}

TEST_F(ShortLists, ShowThatAutomaticRebuildIsOff) {
    controller()["drives"][1]["failed"] = true;
    controller()["autoRebuild"] = false;
    shorten("q5_getPhyDrvInfo");
    expect(
        {"-q"}, 2,
        "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
        "unknown: " +
            kTwoOfThree +
            "warning: drive 2 of controller 0: lost by logical drive 0 Data; channel 1, enclosure 0, serial "
            "S0002\n"
            "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic rebuild is "
            "off\n");
}

// Which drive was lost is known only by its number.
TEST_F(ShortLists, DoNotShowThatALostMemberIsGone) {
    controller()["drives"][1]["failed"] = true;
    controller()["autoRebuild"] = false;
    const std::string critical =
        "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n";
    const std::string lost = "warning: drive 2 of controller 0: lost by logical drive 0 Data; it cannot be "
                             "identified, because not all drives could be read";
    const std::string off = "warning: logical drive 0 Data of controller 0: no replacement is coming: "
                            "automatic rebuild is off\n";
    zero("q5_getPhyDrvInfo");
    expect({"-q"}, 2, critical + "unknown: controller 0: counts 3 drives, but lists 0\n" + lost + "\n" + off);
    refuse("q5_getPhyDrvInfo");
    const std::string refused = "unknown: controller 0: q5_getPhyDrvInfo failed with result 1\n";
    expect({"-q"}, 2, critical + refused + lost + "\n" + off);
    expect({"-q", "--baseline", before}, 2,
           critical + refused +
               "unknown: controller 0: drives 1, 2, 3 of the baseline cannot be checked: not all drives "
               "could be read\n" +
               lost + ", last seen on channel 1, enclosure 0, serial S0002\n" + off);
}

// Compared with a baseline.

TEST_F(ShortLists, LeaveDrivesOfTheBaselineUnchecked) {
    shorten("q5_getPhyDrvInfo");
    expectFindings(3, "unknown: " + kTwoOfThree +
                          "unknown: controller 0: drive 3 of the baseline cannot be checked: not all drives "
                          "could be read\n");
    zero("q5_getPhyDrvInfo");
    expectFindings(3, "unknown: controller 0: counts 3 drives, but lists 0\n"
                      "unknown: controller 0: drives 1, 2, 3 of the baseline cannot be checked: not all "
                      "drives could be read\n");
}

TEST_F(ShortLists, LeaveLogicalDrivesOfTheBaselineUnchecked) {
    addArray();
    saveBaseline();
    shorten("q5_getLogDrvInfo");
    expectFindings(3, "unknown: controller 0: counts 2 logical drives, but lists 1\n"
                      "unknown: controller 0: logical drive 1 of the baseline cannot be checked: not all "
                      "logical drives could be read\n");
    zero("q5_getLogDrvInfo");
    expectFindings(3, "unknown: controller 0: counts 2 logical drives, but lists 0\n"
                      "unknown: controller 0: logical drives 0, 1 of the baseline cannot be checked: not all "
                      "logical drives could be read\n");
}

TEST_F(ShortLists, LeaveTheBaselineUncheckedIfTheyAreRefused) {
    const std::pair<std::string, std::string> lists[] = {
        {"q5_getPhyDrvInfo failed with result 1",
         "drives 1, 2, 3 of the baseline cannot be checked: not all drives"},
        {"q5_getLogDrvInfo failed with result 1",
         "logical drive 0 of the baseline cannot be checked: not all logical drives"},
        {"q5_getEnclosureInfo failed with result 1, and 15 more faults",
         "enclosure 0 of the baseline cannot be checked: not all enclosures"},
    };
    for (const auto& [fault, unchecked] : lists) {
        refuse(fault.substr(0, fault.find(' ')));
        expectFindings(3, "unknown: controller 0: " + fault + "\nunknown: controller 0: " + unchecked +
                              " could be read\n");
    }
}

// Without the count, nothing shows that a list is complete, and no second page of it is requested.
TEST_F(ShortLists, LeaveTheBaselineUncheckedWithoutACount) {
    const Json uncounted = {{"kind", "refuse"}, {"operation", "q5_getControllerInfo"}};
    const std::string fault =
        "unknown: controller 0: q5_getControllerInfo failed with result 1, and 1 more fault\n";
    world["rules"] = {uncounted, {{"kind", "short"}, {"operation", "q5_getPhyDrvInfo"}}};
    expectFindings(3, fault + "unknown: controller 0: drives 2, 3 of the baseline cannot be checked: not all "
                              "drives could be read\n");
    world["rules"] = {uncounted, {{"kind", "zero"}, {"operation", "q5_getLogDrvInfo"}}};
    expectFindings(3, fault + "unknown: controller 0: logical drive 0 of the baseline cannot be checked: not "
                              "all logical drives could be read\n");
    world["rules"] = {uncounted};
    expectFindings(3, fault);
    controller()["drives"][1]["failed"] = true;
    world["rules"] = {uncounted, {{"kind", "zero"}, {"operation", "q5_getPhyDrvInfo"}}};
    expectFindings(
        2,
        "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n" + fault +
            "unknown: controller 0: drives 1, 2, 3 of the baseline cannot be checked: not all drives could "
            "be read\n"
            "warning: drive 2 of controller 0: lost by logical drive 0 Data; it cannot be identified, "
            "because not all drives could be read, last seen on channel 1, enclosure 0, serial S0002\n");
}

// The count of the library is used even if it reports a failure, but proves nothing then.
TEST_F(ShortLists, LeaveControllersOfTheBaselineUnchecked) {
    world["controllers"].push_back(controller());
    saveBaseline();
    zero("q5_getNumberOfHBA");
    expectFindings(2, "critical: controller 0: is missing\n"
                      "critical: controller 1: is missing\n"
                      "unknown: this host: no controller is found\n");
    refuse("q5_getNumberOfHBA");
    expectFindings(3, "unknown: this host: q5_getNumberOfHBA failed with result 1\n"
                      "unknown: this host: controllers 0, 1 of the baseline cannot be checked: not all "
                      "controllers could be read\n");
}

// A drive that is listed in another place, or a complete list, is compared as usual.
TEST_F(ShortLists, AreComparedAsFarAsTheyReach) {
    controller()["drives"][1]["serial"] = "S9999";
    shorten("q5_getPhyDrvInfo");
    expect({"--baseline", before}, 3,
           "controller 0: 2 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
           "unknown: " +
               kTwoOfThree +
               "unknown: controller 0: drive 3 of the baseline cannot be checked: not all drives could be "
               "read\n"
               "info: drive 2 of controller 0: was replaced; serial S0002 is now S9999\n"
               "2 problems, 2 of them unknown\n");
}

// The drive whose place another one has taken may be in the part that is not listed.
TEST_F(ShortLists, DoNotShowThatADriveIsGoneWhosePlaceIsTaken) {
    std::swap(controller()["drives"][1]["serial"], controller()["drives"][2]["serial"]);
    shorten("q5_getPhyDrvInfo");
    expectAll(3,
              "unknown: " + kTwoOfThree +
                  "unknown: controller 0: drive 2 of the baseline cannot be checked: not all drives could "
                  "be read\n"
                  "info: drive 3 of controller 0: has moved to drive 2 of controller 0; channel 1, enclosure "
                  "0, serial S0003\n"
                  "2 problems, 2 of them unknown\n");
}
