// cli-status --changes: controllers that disappeared and come back, perhaps under another number, are
// compared with their last known state.
#include <filesystem>

#include "tests/status/three_controllers.h"

static std::string isMissing(int number) {
    return "critical: controller " + std::to_string(number) + ": is missing\n";
}
static std::string isNew(int number) {
    return "info: controller " + std::to_string(number) + ": is new\n";
}
static std::string driveMissing(int controller, const std::string& serial) {
    return "warning: drive 3 of controller " + std::to_string(controller) +
           ": is missing; it was on channel 2, enclosure 0, serial " + serial + "\n";
}
static std::string fewerSpares(int controller) {
    return "warning: controller " + std::to_string(controller) + ": has 0 spares; it had 1\n";
}
static std::string noSpare(int controller, const std::string& name) {
    return "info: logical drive 0 " + name + " of controller " + std::to_string(controller) +
           ": has no spare\n";
}
static std::string smart(int controller) {
    return "drive 1 of controller " + std::to_string(controller) +
           ": predicts its failure (SMART); channel 0, enclosure 0, serial ";
}
static const std::string kFirstIsMissing = isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2);
static const std::string kFirstIsBack = wasNumber(1, 0) + wasNumber(2, 1) + isBack(0);

struct Returned : ThreeControllers {
    void expectOf(const std::string& chosen, int status, const std::string& output) {
        expect({"-i", chosen, "--changes", kept}, status, output);
    }
    void loseSpare(std::size_t number) { three[number]["drives"].erase(2); }
    Json savedState() { return Json::parse(readFile(kept)); }
};

TEST_F(Returned, LostADriveMeanwhile) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    expectChanges(0, "");
    loseSpare(0);
    restore();
    expectChanges(1, kFirstIsBack + driveMissing(0, "S0003") + fewerSpares(0) + noSpare(0, "Data"));
    expectChanges(0, "");
}

// No other controller has had its number.
TEST_F(Returned, LogicalDriveIsCritical) {
    place({0, 1});
    expectChanges(2, isMissing(2));
    three[2]["autoRebuild"] = false;
    three[2]["drives"][1]["failed"] = true;
    restore();
    expectChanges(2, isBack(2) + "critical: drive 2 of controller 2 lost; logical drive 0 Third is critical\n"
                                 "warning: logical drive 0 Third of controller 2: no replacement is coming: "
                                 "automatic rebuild is off\n");
    expectChanges(2, "");
}

TEST_F(Returned, HasAnotherNumber) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    loseSpare(0);
    place({1, 2, 0});
    expectChanges(1, wasNumber(2, 0) + isBack(2) + driveMissing(2, "S0003") + fewerSpares(2) +
                         noSpare(2, "Data"));
    expectChanges(0, "");
}

// What stayed is neither new nor resolved.
TEST_F(Returned, ProblemPersists) {
    three[0]["drives"][0]["smartFailure"] = true;
    restore();
    expectChanges(1, "warning: " + smart(0) + "S0001\n");
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    expectChanges(0, "");
    place({1, 2, 0});
    expectChanges(1, wasNumber(2, 0) + isBack(2));
    expectChanges(1, "");
}

TEST_F(Returned, ProblemIsResolved) {
    three[2]["drives"][0]["smartFailure"] = true;
    restore();
    expectChanges(1, "warning: " + smart(2) + "U1\n");
    place({0, 1});
    expectChanges(2, isMissing(2));
    expectChanges(0, "");
    three[2]["drives"][0]["smartFailure"] = false;
    restore();
    expectChanges(0, isBack(2) + "info: no longer: " + smart(2) + "U1\n");
}

struct ReturnedPair : Returned {
    void SetUp() override {
        Returned::SetUp();
        place({2});
        expectChanges(2, isMissing(0, "Data") + wasNumber(0, 2) + isMissing(1));
        expectChanges(0, "");
        loseSpare(0);
        loseSpare(1);
    }
};

TEST_F(ReturnedPair, AtOnce) {
    restore();
    expectChanges(1, wasNumber(2, 0) + isBack(0) + isBack(1) + driveMissing(0, "S0003") +
                         driveMissing(1, "T3") + fewerSpares(0) + fewerSpares(1) + noSpare(0, "Data") +
                         noSpare(1, "Second"));
    expectChanges(0, "");
}

TEST_F(ReturnedPair, OneAfterTheOther) {
    place({1, 2});
    expectChanges(1, wasNumber(1, 0) + wasNumber(0, 1) + isBack(0) + driveMissing(0, "T3") + fewerSpares(0) +
                         noSpare(0, "Second"));
    expectChanges(0, "");
    restore();
    expectChanges(1, wasNumber(1, 0) + wasNumber(2, 1) + isBack(0) + driveMissing(0, "S0003") +
                         fewerSpares(0) + noSpare(0, "Data"));
    expectChanges(0, "");
}

// One is back and another one, which was controller 0 last, is gone: as many as before.
TEST_F(Returned, InPlaceOfAnother) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    loseSpare(0);
    place({0, 2});
    expectChanges(2, isMissing(0, "Second") + isBack(0) + driveMissing(0, "S0003") + fewerSpares(0) +
                         noSpare(0, "Data"));
    expectChanges(0, "");
    loseSpare(1);
    restore();
    expectChanges(1, wasNumber(2, 1) + wasNumber(1, 0) + isBack(1) + driveMissing(1, "T3") + fewerSpares(1) +
                         noSpare(1, "Second"));
    expectChanges(0, "");
}

TEST_F(Returned, TwiceInARow) {
    for (int time = 0; time < 2; ++time) {
        place({1, 2});
        expectChanges(2, kFirstIsMissing);
        restore();
        expectChanges(0, kFirstIsBack);
        EXPECT_FALSE(savedState().contains("formerControllers"));
    }
}

// Drives that were moved do not make a controller the one that is missing.
TEST_F(Returned, NotByADriveThatWasMoved) {
    place({0, 1});
    expectChanges(2, isMissing(2));
    Json moved = three[2]["drives"][2];
    moved["id"] = moved["channel"] = 3;
    moved["extents"][0]["use"] = "free";
    controller()["drives"].push_back(moved);
    expectChanges(0, "info: drive 4 of controller 0: is new; channel 3, enclosure 0, serial U3\n");
    expectChanges(0, "");
}

// Replaced for good.

TEST_F(Returned, ReplacementIsNew) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    add("V", "Fourth");
    const Json replacement = world["controllers"][2];
    world["controllers"] = {replacement, three[1], three[2]};
    expectChanges(0, wasNumber(1, 0) + wasNumber(2, 1) + isNew(0));
    expectChanges(0, "");
    world["controllers"].push_back(three[0]);
    expectChanges(0, wasNumber(3, 0) + isBack(3));
}

// The last to disappear are kept: as many as there can be controllers.
TEST_F(Returned, FormerControllersAreBounded) {
    place({0, 1});
    expectChanges(2, isMissing(2));
    Json state = savedState();
    const Json third = state["formerControllers"][0];
    while (state["formerControllers"].size() < 64)
        state["formerControllers"].push_back(third);
    state["formerControllers"][63]["controllers"][0]["id"] = 63;
    writeFile(kept, state.dump());
    place({0});
    expectChanges(2, isMissing(1));
    state = savedState()["formerControllers"];
    EXPECT_EQ(state.size(), 64u);
    EXPECT_EQ(state[0]["controllers"][0]["id"], 1);
    EXPECT_EQ(state[63]["controllers"][0]["id"], 2);
}

// The file of the state.

// An earlier version has not kept the controller.
TEST_F(Returned, StateOfAnEarlierVersion) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    Json state = savedState();
    state.erase("formerControllers");
    writeFile(kept, state.dump(2));
    expectChanges(0, "");
    restore();
    expectChanges(0, wasNumber(1, 0) + wasNumber(2, 1) + isNew(0));
}

TEST_F(Returned, DamagedFormerController) {
    const std::pair<Json, std::string> values[] = {
        {"x", "\"formerControllers\" is not a list"},
        {{"x"}, "\"controllerCount\" is missing"},
        {{{{"controllerCount", 0}, {"faults", Json::array()}, {"controllers", Json::array()}}},
         "\"formerControllers\" is not a list of controllers"},
    };
    for (const auto& [value, problem] : values) {
        SCOPED_TRACE(problem);
        Json state = savedState();
        state["formerControllers"] = value;
        writeFile(kept, state.dump(2));
        std::filesystem::remove(kept + ".damaged");
        EXPECT_EQ(session.run({"--changes", kept}),
                  (ProcessOutcome{
                      3, "", "cli-status: " + kept + ": " + problem + "; saved as " + kept + ".damaged\n"}));
        expectChanges(0, "");
    }
}

// A run that was killed before it saved its state: the next one reports the same.
TEST_F(Returned, RunWasKilled) {
    place({1, 2});
    const std::string first = readFile(kept);
    expectChanges(2, kFirstIsMissing);
    writeFile(kept, first);
    expectChanges(2, kFirstIsMissing);
    const std::string second = readFile(kept);
    loseSpare(0);
    restore();
    const std::string lines = kFirstIsBack + driveMissing(0, "S0003") + fewerSpares(0) + noSpare(0, "Data");
    expectChanges(1, lines);
    writeFile(kept, second);
    expectChanges(1, lines);
    expectChanges(0, "");
}

// Runs that read one controller.

TEST_F(Returned, ChosenControllerIsBack) {
    place({0, 1});
    expectOf("2", 2, isMissing(2));
    expectOf("2", 3, "");
    loseSpare(2);
    restore();
    expectOf("0", 0, "");
    expectOf("2", 1, isBack(2) + driveMissing(2, "U3") + fewerSpares(2) + noSpare(2, "Third"));
    expectOf("2", 0, "");
    expectChanges(0, "");
}

// The number was that of another one meanwhile.
TEST_F(Returned, ChosenControllerHasItsNumberAgain) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    loseSpare(0);
    restore();
    expectOf("0", 1, isBack(0) + driveMissing(0, "S0003") + fewerSpares(0) + noSpare(0, "Data"));
    expectOf("0", 0, "");
    expectChanges(0, wasNumber(2, 1) + wasNumber(1, 0));
    expectChanges(0, "");
}

TEST_F(Returned, AnotherControllerWasChosenMeanwhile) {
    place({0, 1});
    expectChanges(2, isMissing(2));
    expectOf("0", 0, "");
    expectOf("1", 0, "");
    loseSpare(2);
    restore();
    expectOf("1", 0, "");
    expectChanges(1, isBack(2) + driveMissing(2, "U3") + fewerSpares(2) + noSpare(2, "Third"));
    expectChanges(0, "");
}

// With a baseline.

TEST_F(Returned, IsComparedWithTheBaselineAsWell) {
    const std::vector<std::string> words = {"--changes", kept, "--baseline", before};
    loseSpare(2);
    restore();
    const std::string lost = driveMissing(2, "U3") + fewerSpares(2);
    expect(words, 1, lost + noSpare(2, "Third"));
    place({0, 1});
    expect(words, 2, isMissing(2));
    restore();
    expect(words, 1, isBack(2) + "info: no longer: controller 2: is missing\n");
    expect(words, 1, "");
}

// As many as before, but the one that stayed has another number.
TEST_F(Returned, OneIsBackAndAnotherDisappears) {
    place({0, 1});
    expectChanges(2, isMissing(2));
    three[1]["drives"][0]["smartFailure"] = true;
    place({1, 2});
    expectChanges(2, isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2) + isBack(1) +
                         "warning: " + smart(0) + "T1\n");
    expectChanges(1, "");
}

// As many as before, in another order.
TEST_F(Returned, NumbersAreSwapped) {
    three[1]["drives"][0]["smartFailure"] = true;
    restore();
    expectChanges(1, "warning: " + smart(1) + "T1\n");
    three[1]["drives"][0]["smartFailure"] = false;
    three[2]["drives"][0]["smartFailure"] = true;
    place({0, 2, 1});
    expectChanges(1, wasNumber(2, 1) + wasNumber(1, 2) + "warning: " + smart(1) + "U1\n" +
                         "info: no longer: " + smart(2) + "T1\n");
    expectChanges(1, "");
}
