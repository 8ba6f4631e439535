// cli-status: controllers that have another number than before, because one before them is gone or is new.
#include "tests/status/three_controllers.h"

static const std::string kOneProblem = "1 problem, critical\n";

struct Renumbered : ThreeControllers {
    // Without the lines of the controllers.
    void expectReport(int status, const std::string& output) {
        session.useWorld(world.dump());
        const ProcessOutcome outcome = session.run({"--baseline", before});
        const std::string line = ": 3 drives, 1 logical drive, 1 enclosure, battery fully charged\n";
        std::string expected;
        for (std::size_t i = 0; i < world["controllers"].size(); ++i)
            expected += "controller " + std::to_string(i) + line;
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.out, expected + output);
    }
};

TEST_F(Renumbered, FirstControllerIsMissing) {
    remove(0);
    expectFindings(2, isMissing(0, "Data"));
    expectReport(2, isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2) + kOneProblem);
    expectChanges(2, isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2));
    expectChanges(0, "");
}

TEST_F(Renumbered, MiddleControllerIsMissing) {
    remove(1);
    expectReport(2, isMissing(1, "Second") + wasNumber(1, 2) + kOneProblem);
    expectChanges(2, isMissing(1, "Second") + wasNumber(1, 2));
    expectChanges(0, "");
}

// No other has its number.
TEST_F(Renumbered, LastControllerIsMissing) {
    remove(2);
    expectReport(2, "critical: controller 2: is missing\n" + kOneProblem);
    expectChanges(2, "critical: controller 2: is missing\n");
    expectChanges(0, "");
}

// A problem of a controller that has another number is neither new nor resolved.
TEST_F(Renumbered, FindingsFollow) {
    world["controllers"][2]["drives"][2]["smartFailure"] = true;
    three = world["controllers"];
    expectChanges(1, "warning: drive 3 of controller 2: predicts its failure (SMART); channel 2, enclosure "
                     "0, serial U3\n");
    remove(0);
    expectChanges(2, isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2));
    restore();
    expectChanges(1, wasNumber(1, 0) + wasNumber(2, 1) + isBack(0));
}

TEST_F(Renumbered, ControllerIsBack) {
    remove(0);
    expect({"--changes", kept, "--baseline", before}, 2,
           isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2));
    expect({"--changes", kept, "--baseline", before}, 2, "");
    restore();
    expect({"--changes", kept, "--baseline", before}, 0,
           wasNumber(1, 0) + wasNumber(2, 1) + isBack(0) +
               "info: no longer: this host: the former controller 0 is missing, with 3 drives, logical "
               "drive 0 Data\n" +
               "info: no longer: controller 0: has another number; it was controller 1\n" +
               "info: no longer: controller 1: has another number; it was controller 2\n");
    expect({"--changes", kept, "--baseline", before}, 0, "");
}

TEST_F(Renumbered, NewControllerIsFirst) {
    Json all = world["controllers"];
    add("V", "Fourth");
    Json added = world["controllers"][3];
    world["controllers"] = all;
    world["controllers"].insert(world["controllers"].begin(), added);
    expectReport(0, wasNumber(1, 0) + wasNumber(2, 1) + wasNumber(3, 2) + "info: controller 0: is new\n" +
                        "all well: 4 controllers, 12 drives, 4 logical drives\n");
}

// A replaced drive, or one that was moved, does not hide which controller it is.
TEST_F(Renumbered, MostDrivesDecide) {
    remove(0);
    world["controllers"][0]["drives"][0]["serial"] = "X1";
    expectReport(2, isMissing(0, "Data") +
                        "info: drive 1 of controller 0: was replaced; serial T1 is now X1\n" +
                        wasNumber(0, 1) + wasNumber(1, 2) + kOneProblem);
}

// Drives without a serial, or a list that is short, identify nothing.
TEST_F(Renumbered, UnknownDrivesAreNotFollowed) {
    for (Json& each : three)
        for (Json& drive : each["drives"])
            drive["serial"] = "";
    restore();
    saveBaseline();
    remove(0);
    expectFindings(2, "critical: controller 2: is missing\n");
}

// The library fails, or finds no controller, while one of them does.
TEST_F(Renumbered, LibraryFailedMeanwhile) {
    refuse("q5_initialize");
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"--changes", kept}).status, 3);
    refuseNothing();
    remove(0);
    session.useWorld(world.dump());
    const std::string out = session.run({"--changes", kept}).out;
    EXPECT_EQ(out.substr(0, out.find("info: no longer")),
              isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2));
    expectChanges(0, "");
}

TEST_F(Renumbered, NoControllerWasFoundMeanwhile) {
    world["controllers"] = Json::array();
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"--changes", kept}).status, 2);
    restore();
    remove(0);
    expectChanges(2, isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2) + isBack(0) + isBack(1) +
                         "info: no longer: this host: no controller is found\n");
    expectChanges(0, "");
    restore();
    expectChanges(0, wasNumber(1, 0) + wasNumber(2, 1) + isBack(0));
    expectChanges(0, "");
}

// The drive of that number on another controller, which is healthy, is not the lost one. Only if all
// controllers are read is it known which one is which.
TEST_F(Renumbered, LostMembersAreNotIdentifiedByAnotherController) {
    remove(2);
    saveBaseline();
    std::swap(world["controllers"][0], world["controllers"][1]);
    world["controllers"][0]["drives"].erase(1);
    const std::string lost = "warning: drive 2 of controller 0: lost by logical drive 0 Second; it is no "
                             "longer listed";
    session.useWorld(world.dump());
    const std::string all = session.run({"-q", "--baseline", before}).out;
    EXPECT_NE(all.find(lost + ", last seen on channel 1, enclosure 0, serial T2\n"), std::string::npos)
        << all;
    const std::string one = session.run({"-q", "--baseline", before, "-i", "0"}).out;
    EXPECT_NE(one.find(lost + "\n"), std::string::npos) << one;
}

// The library finds them in another order.
TEST_F(Renumbered, ControllersHaveSwappedNumbers) {
    world["controllers"][0]["drives"][0]["smartFailure"] = true;
    saveBaseline();
    std::swap(world["controllers"][0], world["controllers"][2]);
    session.useWorld(world.dump());
    const ProcessOutcome outcome = session.run({"--baseline", before});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find(wasNumber(0, 2)), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(wasNumber(2, 0)), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find("moved"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find("was named"), std::string::npos) << outcome.out;
}

// A drive that is moved does not make its controller another one.
TEST_F(Renumbered, MovedDrives) {
    saveBaseline();
    std::swap(world["controllers"][0]["drives"][2], world["controllers"][1]["drives"][2]);
    session.useWorld(world.dump());
    const std::string out = session.run({"--baseline", before}).out;
    EXPECT_EQ(out.find("another number"), std::string::npos) << out;
    EXPECT_NE(out.find("drive 3 of controller 0: has moved to drive 3 of controller 1"), std::string::npos)
        << out;
}
