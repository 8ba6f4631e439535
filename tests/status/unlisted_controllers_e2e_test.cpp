// cli-status --changes: the number of controllers changes while their drives, which identify them, cannot be
// listed.
#include <filesystem>

#include "tests/status/three_controllers.h"

static std::string hasNow(int now, int before) {
    return std::string(now < before ? "critical" : "info") + ": this host: has " + std::to_string(now) +
           (now == 1 ? " controller" : " controllers") + "; it had " + std::to_string(before) +
           "; which of them is unknown until all drives can be listed\n";
}
static std::string refused(int number) {
    return "controller " + std::to_string(number) + ": q5_getPhyDrvInfo failed with result 1\n";
}
static const std::string kAllRefused = "unknown: " + refused(0) + "unknown: " + refused(1);
static const std::string kNoneRefused = "info: no longer: " + refused(0) + "info: no longer: " + refused(1);
static const std::string kFirstIsMissing = isMissing(0, "Data") + wasNumber(0, 1) + wasNumber(1, 2);

struct UnlistedControllers : ThreeControllers {
    void refuseDrives() { refuse("q5_getPhyDrvInfo"); }
    // Those of the first controller.
    void refuseFirstList() {
        world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getPhyDrvInfo"}, {"times", 1}}};
    }
    // The drives of the first controllers are listed, a call for each.
    void refuseDrivesAfter(int calls) {
        world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getPhyDrvInfo"}, {"after", calls}}};
    }
};

TEST_F(UnlistedControllers, FirstIsMissing) {
    place({1, 2});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused);
    expectChanges(3, "");
    refuseNothing();
    expectChanges(2, kFirstIsMissing + kNoneRefused);
    expectChanges(0, "");
    restore();
    expectChanges(0, wasNumber(1, 0) + wasNumber(2, 1) + isBack(0));
}

TEST_F(UnlistedControllers, LastIsMissing) {
    place({0, 1});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused);
    refuseNothing();
    expectChanges(2, isMissing(2, "Third") + kNoneRefused);
    expectChanges(0, "");
}

// Each is compared with its own state as soon as its drives are listed.
TEST_F(UnlistedControllers, LostADriveMeanwhile) {
    place({1, 2});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused);
    three[1]["drives"].erase(2);
    three[2]["drives"][0]["smartFailure"] = true;
    place({1, 2});
    refuseNothing();
    expectChanges(2, kFirstIsMissing +
                         "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, "
                         "serial T3\n"
                         "warning: controller 0: has 0 spares; it had 1\n"
                         "warning: drive 1 of controller 1: predicts its failure (SMART); channel 0, "
                         "enclosure 0, serial U1\n"
                         "info: logical drive 0 Second of controller 0: has no spare\n" +
                         kNoneRefused);
    expectChanges(1, "");
}

// The problem is reported under the present number, whichever controller it is.
TEST_F(UnlistedControllers, ProblemsAreReportedMeanwhile) {
    place({1, 2});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused);
    world["controllers"][1]["battery"]["temperatureTenths"] = 620;
    expectChanges(2, "critical: battery of controller 1: is at 62.0 degrees Celsius\n");
    expectChanges(2, "");
    refuseNothing();
    expectChanges(2, kFirstIsMissing + kNoneRefused);
    expectChanges(2, "");
}

// A controller whose drives are listed is known; the other one may be either of those that are left.
TEST_F(UnlistedControllers, OneIsRecognized) {
    place({1, 2});
    refuseDrivesAfter(1);
    world["controllers"][0]["drives"][0]["smartFailure"] = true;
    expectChanges(2, hasNow(2, 3) + wasNumber(0, 1) + "unknown: " + refused(1) +
                         "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, "
                         "enclosure 0, serial T1\n");
    expectChanges(3, "");
    refuseNothing();
    expectChanges(2, isMissing(0, "Data") + wasNumber(1, 2) + "info: no longer: " + refused(1));
    expectChanges(1, "");
}

// A short list identifies its controller as well.
TEST_F(UnlistedControllers, ShortListsAreEnough) {
    place({1, 2});
    shorten("q5_getPhyDrvInfo");
    session.useWorld(world.dump());
    const ProcessOutcome outcome = session.run({"--changes", kept});
    EXPECT_EQ(outcome.out.substr(0, kFirstIsMissing.size()), kFirstIsMissing);
    EXPECT_EQ(outcome.out.find("it had"), std::string::npos) << outcome.out;
    refuseNothing();
    expect({"-q", "--changes", kept}, 0, "");
}

// The missing one comes back before any drives are listed again.
TEST_F(UnlistedControllers, AllAreBack) {
    place({1, 2});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused);
    three[0]["drives"].erase(2);
    restore();
    expectChanges(3, hasNow(3, 2) + "unknown: " + refused(2));
    refuseNothing();
    expectChanges(1, "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
                     "S0003\n"
                     "warning: controller 0: has 0 spares; it had 1\n"
                     "info: logical drive 0 Data of controller 0: has no spare\n" +
                         kNoneRefused + "info: no longer: " + refused(2));
    expectChanges(0, "");
}

// It is back, and all drives are listed again, in the same run. What was found of the one whose drives were
// not listed is not taken for a problem of another one that has its number now.
TEST_F(UnlistedControllers, AllAreBackAndListed) {
    const auto predicts = [](int number, const std::string& serial) {
        return "drive 1 of controller " + std::to_string(number) +
               ": predicts its failure (SMART); channel 0, enclosure 0, serial " + serial + "\n";
    };
    three[2]["drives"][0]["smartFailure"] = true;
    place({1, 2});
    refuseFirstList();
    expectChanges(2, hasNow(2, 3) + wasNumber(1, 2) + "unknown: " + refused(0) +
                         "warning: " + predicts(1, "U1"));
    expectChanges(3, "");
    three[1]["drives"][0]["smartFailure"] = true;
    three[2]["drives"][0]["smartFailure"] = false;
    restore();
    refuseNothing();
    expectChanges(1, "info: this host: has 3 controllers; it had 2\n" + wasNumber(2, 1) +
                         "warning: " + predicts(1, "T1") + "info: no longer: " + refused(0) +
                         "info: no longer: " + predicts(2, "U1"));
    expectChanges(1, "");
}

TEST_F(UnlistedControllers, OneIsRepairedWhileAnotherIsNotListed) {
    three[1]["drives"][0]["smartFailure"] = true;
    restore();
    const std::string problem =
        "drive 1 of controller 1: predicts its failure (SMART); channel 0, enclosure 0, serial T1\n";
    expectChanges(1, "warning: " + problem);
    place({0});
    expectChanges(2, "critical: controller 1: is missing\ncritical: controller 2: is missing\n");
    place({0, 2});
    refuseFirstList();
    expectChanges(3, hasNow(2, 1) + wasNumber(1, 2) + isBack(1) + "unknown: " + refused(0));
    three[1]["drives"][0]["smartFailure"] = false;
    restore();
    refuseNothing();
    expectChanges(0, "info: this host: has 3 controllers; it had 2\n" + isBack(1) + wasNumber(2, 1) +
                         "info: no longer: " + refused(0) + "info: no longer: " + problem);
    expectChanges(0, "");
}

// One that was missing comes back while no drives are listed.
TEST_F(UnlistedControllers, MissingOneIsBack) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    restore();
    refuseDrives();
    expectChanges(3, hasNow(3, 2) + kAllRefused + "unknown: " + refused(2));
    refuseNothing();
    expectChanges(0, isBack(0) + wasNumber(1, 0) + wasNumber(2, 1) + kNoneRefused +
                         "info: no longer: " + refused(2));
    expectChanges(0, "");
}

// It is listed, but not the last of those that were there.
TEST_F(UnlistedControllers, MissingOneIsBackAndListed) {
    place({1, 2});
    expectChanges(2, kFirstIsMissing);
    restore();
    refuseDrivesAfter(2);
    expectChanges(3, hasNow(3, 2) + isBack(0) + wasNumber(1, 0) + "unknown: " + refused(2));
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, wasNumber(2, 1) + "info: no longer: " + refused(2));
    expectChanges(0, "");
}

// All others are listed, but it may be a new one.
TEST_F(UnlistedControllers, OnlyTheMissingOneIsNotListed) {
    place({0, 1});
    expectChanges(2, "critical: controller 2: is missing\n");
    restore();
    refuseDrivesAfter(2);
    expectChanges(3, hasNow(3, 2) + "unknown: " + refused(2));
    refuseNothing();
    expectChanges(0, isBack(2) + "info: no longer: " + refused(2));
    expectChanges(0, "");
}

// All that were there before are recognized.
TEST_F(UnlistedControllers, NewOneIsNew) {
    add("V", "Fourth");
    refuseDrivesAfter(3);
    expectChanges(3, "info: controller 3: is new\nunknown: " + refused(3));
    refuseNothing();
    expectChanges(0, "info: no longer: " + refused(3));
    expectChanges(0, "");
}

// As many as before: they keep their numbers.
TEST_F(UnlistedControllers, NoneIsMissing) {
    refuseDrives();
    expectChanges(3, kAllRefused + "unknown: " + refused(2));
    refuseNothing();
    expectChanges(0, kNoneRefused + "info: no longer: " + refused(2));
}

// There is nothing to compare them with.
TEST_F(UnlistedControllers, NoRunHasListedTheDrives) {
    std::filesystem::remove(kept);
    place({1, 2});
    refuseDrives();
    expectChanges(3, kAllRefused);
    restore();
    expectChanges(3, hasNow(3, 2) + "unknown: " + refused(2));
    expectChanges(3, "");
    refuseNothing();
    expectChanges(0, kNoneRefused + "info: no longer: " + refused(2));
    expectChanges(0, "");
}

// The library finds none, then all but one.
TEST_F(UnlistedControllers, NoControllerWasFoundMeanwhile) {
    const std::string none = "this host: no controller is found\n";
    place({});
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"--changes", kept}).status, 2);
    place({1, 2});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused + "info: no longer: " + none);
    refuseNothing();
    expectChanges(0, wasNumber(0, 1) + isBack(0) + wasNumber(1, 2) + isBack(1) + kNoneRefused);
    restore();
    expectChanges(0, wasNumber(1, 0) + wasNumber(2, 1) + isBack(0));
}

// It has been there, so that choosing it is no error.
TEST_F(UnlistedControllers, ChosenOneIsGone) {
    place({0, 1});
    refuseDrives();
    expectChanges(2, hasNow(2, 3) + kAllRefused);
    expect({"-i", "2", "--changes", kept}, 3, "");
}
