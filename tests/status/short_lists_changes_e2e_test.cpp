// cli-status --changes over lists with fewer objects than the controller counts, from one run to the next.
#include <filesystem>

#include "tests/status/history.h"

TEST_F(ShortLists, ChangeNothingThatTheyDoNotContain) {
    expectChanges(0, "");
    shorten("q5_getPhyDrvInfo");
    expectChanges(3, "unknown: " + kTwoOfThree);
    expectChanges(3, "");
    zero("q5_getPhyDrvInfo");
    expectChanges(3, "unknown: controller 0: counts 3 drives, but lists 0\n");
    refuseNothing();
    expectChanges(0, "info: no longer: controller 0: counts 3 drives, but lists 0\n");
    expectChanges(0, "");
}

TEST_F(ShortLists, ChangeNothingWithoutACountEither) {
    const std::string fault = "controller 0: q5_getControllerInfo failed with result 1, and 1 more fault\n";
    for (const std::string list : {"q5_getPhyDrvInfo", "q5_getLogDrvInfo"})
        for (const std::string kind : {"short", "zero"})
            for (const bool first : {true, false}) {
                SCOPED_TRACE(kind + " " + list);
                std::filesystem::remove(kept);
                refuseNothing();
                if (!first)
                    expectChanges(0, "");
                world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getControllerInfo"}},
                                  {{"kind", kind}, {"operation", list}}};
                expectChanges(3, "unknown: " + fault);
                expectChanges(3, "");
                refuseNothing();
                expectChanges(0, "info: no longer: " + fault);
            }
}

TEST_F(ShortLists, OfLogicalDrivesChangeNothingEither) {
    addArray();
    expectChanges(0, "");
    shorten("q5_getLogDrvInfo");
    expectChanges(3, "unknown: controller 0: counts 2 logical drives, but lists 1\n");
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, "info: no longer: controller 0: counts 2 logical drives, but lists 1\n");
    expectChanges(0, "");
}

TEST_F(ShortLists, KeepTheProblemsOfTheirObjects) {
    controller()["drives"][2]["smartFailure"] = true;
    controller()["battery"]["temperatureTenths"] = 460;
    const std::string smart = "drive 3 of controller 0: predicts its failure (SMART); channel 2, enclosure "
                              "0, serial S0003\n";
    const std::string warm = "battery of controller 0: is at 46.0 degrees Celsius\n";
    expectChanges(1, "warning: " + smart + "warning: " + warm);
    shorten("q5_getPhyDrvInfo");
    controller()["battery"]["temperatureTenths"] = 250;
    expectChanges(3, "unknown: " + kTwoOfThree + "info: no longer: " + warm);
    refuseNothing();
    expectChanges(1, "info: no longer: " + kTwoOfThree);
    controller()["drives"][2]["smartFailure"] = false;
    expectChanges(0, "info: no longer: " + smart);
}

// The next complete list is compared with the last state of each object.
TEST_F(ShortLists, AreFollowedByWhatChangedMeanwhile) {
    addArray();
    expectChanges(0, "");
    world["rules"] = {{{"kind", "short"}, {"operation", "q5_getPhyDrvInfo"}},
                      {{"kind", "zero"}, {"operation", "q5_getLogDrvInfo"}}};
    expectChanges(3, "unknown: " + kTwoOfThree +
                         "unknown: controller 0: counts 2 logical drives, but lists 0\n");
    refuseNothing();
    controller()["drives"].erase(2);
    controller()["logicalDrives"].erase(1);
    for (const std::size_t drive : {0u, 1u})
        controller()["drives"][drive]["extents"][1] = {
            {"use", "free"}, {"start", 1024000}, {"size", 1024000}};
    expectChanges(2, "critical: logical drive 1 Mail of controller 0: is missing; it was RAID1 of 500 MB\n"
                     "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S0003\n"
                     "warning: controller 0: has 0 spares; it had 1\n"
                     "info: logical drive 0 Data of controller 0: has no spare\n"
                     "info: no longer: " +
                         kTwoOfThree +
                         "info: no longer: controller 0: counts 2 logical drives, but lists 0\n");
    expectChanges(0, "");
}

// What is in the list has changed for certain.
TEST_F(ShortLists, ShowChangesOfWhatTheyContain) {
    expectChanges(0, "");
    controller()["autoRebuild"] = false;
    controller()["drives"][0]["failed"] = true;
    shorten("q5_getPhyDrvInfo");
    expectChanges(2, "critical: drive 1 of controller 0 lost; logical drive 0 Data is critical\n"
                     "unknown: " +
                         kTwoOfThree +
                         "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic "
                         "rebuild is off\n");
}

// Why a lost member is not replaced depends on the drives.
TEST_F(ShortLists, DoNotChangeWhyNoReplacementIsComing) {
    const std::string refused = "controller 0: q5_getPhyDrvInfo failed with result 1\n";
    const std::string counted = "controller 0: counts 2 drives, but lists 1\n";
    controller()["autoRebuild"] = false;
    controller()["drives"].erase(1);
    controller()["drives"][1]["extents"][0]["use"] = "free";
    const std::string lost =
        "warning: drive 2 of controller 0: lost by logical drive 0 Data; it is no longer listed\n";
    const std::string none = "warning: logical drive 0 Data of controller 0: no replacement is coming: there "
                             "is no suitable spare\n";
    expectChanges(2, "critical: logical drive 0 Data of controller 0: critical: no redundancy is left "
                     "(RAID1)\n" +
                         lost + none);
    shorten("q5_getPhyDrvInfo");
    expectChanges(2, "unknown: " + counted);
    expectChanges(2, "");
    refuse("q5_getPhyDrvInfo");
    expectChanges(2, "unknown: " + refused);
    expectChanges(2, "");
    refuseNothing();
    expectChanges(2, "info: no longer: " + counted + "info: no longer: " + refused);
    expectChanges(2, "");
    controller()["drives"][1]["extents"][0]["use"] = "globalSpare";
    expectChanges(2, "info: controller 0: has 1 spare; it had 0\n"
                     "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic "
                     "rebuild is off\n");
}

// The first state that is saved lacks an object, which is not new later.
TEST_F(ShortLists, DoNotMakeObjectsNew) {
    shorten("q5_getPhyDrvInfo");
    expectChanges(3, "unknown: " + kTwoOfThree);
    refuseNothing();
    expectChanges(0, "info: no longer: " + kTwoOfThree);
    std::filesystem::remove(kept);
    zero("q5_getLogDrvInfo");
    expectChanges(3, "unknown: " + kNoneOfOne);
    refuseNothing();
    expectChanges(0, "info: no longer: " + kNoneOfOne);
}

// A run that reads another controller, or cannot read the list, says nothing about the count.
TEST_F(ShortLists, AreRememberedUntilTheyAreComplete) {
    world["controllers"].push_back(controller());
    shorten("q5_getLogDrvInfo");
    expectChanges(3,
                  "unknown: " + kNoneOfOne + "unknown: controller 1: counts 1 logical drive, but lists 0\n");
    expect({"-i", "1", "--changes", kept}, 3, "");
    refuse("q5_getLogDrvInfo");
    expectChanges(3, "unknown: controller 0: q5_getLogDrvInfo failed with result 1\n"
                     "unknown: controller 1: q5_getLogDrvInfo failed with result 1\n");
    shorten("q5_getLogDrvInfo");
    expectChanges(3, "info: no longer: controller 0: q5_getLogDrvInfo failed with result 1\n"
                     "info: no longer: controller 1: q5_getLogDrvInfo failed with result 1\n");
    refuseNothing();
    expectChanges(0, "info: no longer: " + kNoneOfOne +
                         "info: no longer: controller 1: counts 1 logical drive, but lists 0\n");
}

// A difference from the baseline may still be there.
TEST_F(ShortLists, DoNotResolveDifferencesFromTheBaseline) {
    const std::vector<std::string> words = {"--changes", kept, "--baseline", before};
    const Json spare = controller()["drives"][2];
    const std::string missing = "drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, "
                                "serial S0003\n";
    controller()["drives"].erase(2);
    expect(words, 1, "warning: " + missing + "warning: controller 0: has 0 spares; it had 1\n");
    controller()["drives"].push_back(spare);
    shorten("q5_getPhyDrvInfo");
    expect(words, 3,
           "unknown: " + kTwoOfThree +
               "unknown: controller 0: drive 3 of the baseline cannot be checked: not all drives could be "
               "read\n");
}

// A drive that was reported as missing is reported when it is listed again, also if it came back while the
// list was short.
TEST_F(ShortLists, DoNotHideThatADriveIsBack) {
    const Json spare = controller()["drives"][2];
    const std::string missing =
        "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial S0003\n"
        "warning: controller 0: has 0 spares; it had 1\n";
    const std::string back = "info: drive 3 of controller 0: is new; channel 2, enclosure 0, serial S0003\n"
                             "info: controller 0: has 1 spare; it had 0\n";
    expectChanges(0, "");
    controller()["drives"].erase(2);
    expectChanges(1, missing + "info: logical drive 0 Data of controller 0: has no spare\n");
    controller()["drives"].push_back(spare);
    shorten("q5_getPhyDrvInfo");
    expectChanges(3, "unknown: " + kTwoOfThree);
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, back + "info: no longer: " + kTwoOfThree +
                         "info: no longer: logical drive 0 Data of controller 0: has no spare\n");
    expectChanges(0, "");
}

TEST_F(ShortLists, DoNotHideThatALogicalDriveIsBack) {
    addArray();
    const Json both = controller()["logicalDrives"];
    const Json drives = controller()["drives"];
    expectChanges(0, "");
    controller()["logicalDrives"].erase(1);
    for (const std::size_t drive : {0u, 1u})
        controller()["drives"][drive]["extents"][1] = {
            {"use", "free"}, {"start", 1024000}, {"size", 1024000}};
    expectChanges(2, "critical: logical drive 1 Mail of controller 0: is missing; it was RAID1 of 500 MB\n");
    controller()["logicalDrives"] = both;
    controller()["drives"] = drives;
    shorten("q5_getLogDrvInfo");
    const std::string count = "controller 0: counts 2 logical drives, but lists 1\n";
    expectChanges(3, "unknown: " + count);
    refuseNothing();
    expectChanges(0, "info: logical drive 1 Mail of controller 0: is new; it is RAID1 of 500 MB\n"
                     "info: no longer: " +
                         count);
}

// With a baseline as well, what is listed again is no longer missing, whatever else is not listed.
TEST_F(ShortLists, ResolveDifferencesFromTheBaselineThatTheyShow) {
    Json fourth = controller()["drives"][2];
    fourth["id"] = 3;
    fourth["serial"] = "S0004";
    controller()["drives"].push_back(fourth);
    saveBaseline();
    const Json all = controller()["drives"];
    const std::vector<std::string> words = {"--changes", kept, "--baseline", before, "-q"};
    const std::string missing =
        "warning: drive 2 of controller 0: is missing; it was on channel 1, enclosure "
        "0, serial S0002\n";
    controller()["drives"] = {all[0], all[2]};
    controller()["autoRebuild"] = false;
    session.useWorld(world.dump());
    EXPECT_EQ(session.run(words).status, 2);
    controller()["drives"] = all;
    controller()["drives"][1]["failed"] = false;
    shorten("q5_getPhyDrvInfo");
    session.useWorld(world.dump());
    const std::string changes = session.run({"--changes", kept, "--baseline", before}).out;
    EXPECT_NE(changes.find("info: no longer: " + missing.substr(9)), std::string::npos) << changes;
    EXPECT_EQ(changes.find("info: no longer: drive 4"), std::string::npos) << changes;
    refuseNothing();
    session.useWorld(world.dump());
    const std::string rest = session.run({"--changes", kept, "--baseline", before}).out;
    EXPECT_EQ(rest.find("drive 2 of"), std::string::npos) << rest;
    EXPECT_NE(rest.find("info: no longer: drive 4 of controller 0: is missing;"), std::string::npos) << rest;
}

// All drives of the last state are known, so that another one stays missing.
TEST_F(ShortLists, DoNotHideDrivesThatWereMissingBefore) {
    const std::vector<std::string> words = {"--changes", kept, "--baseline", before};
    const Json all = controller()["drives"];
    Json fourth = all[2];
    fourth["id"] = 3;
    fourth["serial"] = "S0004";
    fourth["extents"][0]["use"] = "free";
    controller()["drives"].push_back(fourth);
    saveBaseline();
    controller()["drives"] = all;
    const std::string missing =
        "drive 4 of controller 0: is missing; it was on channel 2, enclosure 0, serial S0004\n";
    expect(words, 1, "warning: " + missing);
    shorten("q5_getPhyDrvInfo");
    expect(words, 3, "unknown: " + kTwoOfThree);
    expect(words, 3, "");
    refuseNothing();
    expect(words, 1, "info: no longer: " + kTwoOfThree);
    controller()["drives"].push_back(fourth);
    shorten("q5_getPhyDrvInfo");
    const std::string count = "controller 0: counts 4 drives, but lists 3\n";
    const std::string unchecked =
        "controller 0: drive 4 of the baseline cannot be checked: not all drives could "
        "be read\n";
    expect(words, 3, "unknown: " + count + "unknown: " + unchecked);
    expect(words, 3, "");
    refuseNothing();
    expect(words, 0,
           "info: drive 4 of controller 0: is new; channel 2, enclosure 0, serial S0004\n"
           "info: no longer: " +
               count + "info: no longer: " + unchecked + "info: no longer: " + missing);
    expect(words, 0, "");
}

// The file is not trusted: what no run can have written has no effect, and no control byte is printed.
TEST_F(ShortLists, DoNotTrustTheFindingsInTheFile) {
    expectChanges(0, "");
    const Json object = {{"kind", "controller"}, {"controller", 0}, {"number", 0}};
    Json saved = Json::parse(readFile(kept));
    saved["findings"] = {
        5,
        "text",
        Json::array(),
        {{"rule", 5}, {"object", object}, {"text", 5}},
        {{"rule", "drive-count"}, {"object", 5}, {"text", "controller 0: a"}},
        {{"rule", "drive-count"}, {"object", {{"number", -1}}}, {"text", "controller 0: b"}},
        {{"rule", "nonsense"}, {"object", object}, {"text", "controller 0: c"}},
        {{"rule", "drive-count"}, {"object", object}, {"text", "controller 1: d"}},
        {{"rule", "unreadable"}, {"object", {{"kind", "host"}}}, {"text", "controller 0: f"}},
        {{"rule", "unreadable"}, {"object", {{"kind", 5}}}, {"text", "this host: g"}},
        {{"rule", "array-count"}, {"object", object}, {"text", "controller 0: e\x1b"}},
        {{"rule", "fan-stopped"},
         {"object", {{"kind", "enclosure"}, {"controller", 0}, {"number", 7}}},
         {"text", "enclosure 7 of controller 0: h"},
         {"parts", {5, "fan 1"}}},
        {{"rule", "fan-stopped"},
         {"object", {{"kind", "enclosure"}, {"controller", 0}, {"number", 8}}},
         {"text", "enclosure 8 of controller 0: i"},
         {"parts", "fan"}}};
    writeFile(kept, saved.dump());
    expectChanges(0, "info: no longer: enclosure 7 of controller 0: h\n"
                     "info: no longer: enclosure 8 of controller 0: i\n"
                     "info: no longer: controller 0: e\\x1b\n");
    saved["findings"] = 5;
    writeFile(kept, saved.dump());
    expectChanges(0, "");
}

// What is kept about logical drives is recognized whatever their names are.
TEST_F(ShortLists, RecognizeFindingsOfLogicalDrivesWithAnyName) {
    for (const std::string name : {"", "a\\b", "x: y", " of controller 0: z"}) {
        SCOPED_TRACE(name);
        std::filesystem::remove(kept);
        refuseNothing();
        controller()["drives"][2]["extents"][0]["use"] = "globalSpare";
        controller()["logicalDrives"][0]["name"] = name;
        expectChanges(0, "");
        controller()["drives"][2]["extents"][0]["use"] = "free";
        const std::string shown = name == "a\\b" ? " a\\\\b" : name.empty() ? "" : " " + name;
        const std::string none = "logical drive 0" + shown + " of controller 0: has no spare\n";
        expectChanges(1, "warning: controller 0: has 0 spares; it had 1\ninfo: " + none);
        expectChanges(0, "");
        refuse("q5_getPhyDrvInfo");
        expectChanges(3, "unknown: controller 0: q5_getPhyDrvInfo failed with result 1\n");
        refuseNothing();
        controller()["drives"][2]["extents"][0]["use"] = "globalSpare";
        expectChanges(0, "info: controller 0: has 1 spare; it had 0\n"
                         "info: no longer: controller 0: q5_getPhyDrvInfo failed with result 1\n"
                         "info: no longer: " +
                             none);
    }
}
