// cli-status --changes: controllers that disappear and come back, all of them or some, in runs that read all
// of them or one.
#include <filesystem>

#include "tests/status/history.h"

static const std::string kNone = "this host: no controller is found\n";
static const std::string kNoneAnymore = "info: no longer: " + kNone;
static const std::string kMissing0 = "critical: controller 0: is missing\n";
static const std::string kMissing1 = "critical: controller 1: is missing\n";
static const std::string kFound0 = "info: no longer: controller 0: is missing\n";
static const std::string kFound1 = "info: no longer: controller 1: is missing\n";
static const std::string kBack0 = "info: controller 0: is back\n";
static const std::string kBack1 = "info: controller 1: is back\n";

// Two controllers, which are in the baseline.
struct ChangesOfControllers : Changes {
    Json both;

    void SetUp() override {
        Changes::SetUp();
        world["controllers"].push_back(controller());
        both = world["controllers"];
        saveBaseline();
    }
    void removeAll() { world["controllers"] = Json::array(); }
    void restoreAll() { world["controllers"] = both; }
    // With the baseline.
    void expectAgainst(int status, const std::string& output) {
        expect({"--changes", kept, "--baseline", before}, status, output);
    }
    void expectAgainst(const std::string& chosen, int status, const std::string& output) {
        expect({"-i", chosen, "--changes", kept, "--baseline", before}, status, output);
    }
    void expectOf(const std::string& chosen, int status, const std::string& output) {
        expect({"-i", chosen, "--changes", kept}, status, output);
    }
};

// With a baseline.

TEST_F(ChangesOfControllers, ReportOnceThatAllAreMissing) {
    expectAgainst(0, "");
    removeAll();
    expectAgainst(2, kMissing0 + kMissing1 + "unknown: " + kNone);
    expectAgainst(2, "");
    expectAgainst("0", 2, "");
    expectAgainst("1", 2, "");
    expectAgainst(2, "");
    restoreAll();
    expectAgainst(0, kBack0 + kBack1 + kFound0 + kFound1 + kNoneAnymore);
    expectAgainst(0, "");
}

TEST_F(ChangesOfControllers, ReportOnceThatOneIsMissing) {
    expectAgainst(0, "");
    world["controllers"].erase(1);
    expectAgainst(2, kMissing1);
    expectAgainst("0", 0, "");
    expectAgainst("1", 2, "");
    expectAgainst(2, "");
    restoreAll();
    expectAgainst(0, kBack1 + kFound1);
    expectAgainst(0, "");
}

// Each by the run that chooses it.
TEST_F(ChangesOfControllers, ReportMissingOnesOneByOne) {
    expectAgainst(0, "");
    removeAll();
    expectAgainst("0", 2, kMissing0 + "unknown: " + kNone);
    expectAgainst("0", 2, "");
    expectAgainst("1", 2, kMissing1);
    expectAgainst(2, "");
    restoreAll();
    expectAgainst("1", 0, kBack1 + kFound1 + kNoneAnymore);
    expectAgainst("1", 0, "");
    expectAgainst("0", 0, kBack0 + kFound0);
    expectAgainst(0, "");
}

// A run that chose the first one has not reported the second one as missing.
TEST_F(ChangesOfControllers, ReportTheOtherOneThatIsMissing) {
    expectAgainst(0, "");
    removeAll();
    expectAgainst("0", 2, kMissing0 + "unknown: " + kNone);
    expectAgainst(2, kMissing1);
    expectAgainst(2, "");
}

TEST_F(ChangesOfControllers, StayMissingWhileTheLibraryFails) {
    const std::string fault = "this host: q5_getNumberOfHBA failed with result 1\n";
    expectAgainst(0, "");
    removeAll();
    expectAgainst(2, kMissing0 + kMissing1 + "unknown: " + kNone);
    refuse("q5_getNumberOfHBA");
    expectAgainst(3, "unknown: " + fault + kNoneAnymore);
    expectAgainst(3, "");
    refuseNothing();
    expectAgainst(2, "unknown: " + kNone + "info: no longer: " + fault);
    expectAgainst(2, "");
    restoreAll();
    expectAgainst(0, kBack0 + kBack1 + kFound0 + kFound1 + kNoneAnymore);
}

// Whether a controller is missing does not depend on its drives.
TEST_F(ChangesOfControllers, AreFoundThoughTheirDrivesCannotBeListed) {
    const std::string fault = "controller 0: q5_getPhyDrvInfo failed with result 1\n";
    world["controllers"].erase(1);
    saveBaseline();
    expectAgainst(0, "");
    const Json present = world["controllers"];
    removeAll();
    expectAgainst(2, kMissing0 + "unknown: " + kNone);
    world["controllers"] = present;
    refuse("q5_getPhyDrvInfo");
    expectAgainst(3, kBack0 + "unknown: " + fault + kFound0 + kNoneAnymore);
    refuseNothing();
    expectAgainst(0, "info: no longer: " + fault);
}

// Without a baseline.

TEST_F(ChangesOfControllers, AreBackOnceInRunsOfOne) {
    const std::pair<std::string, std::string> runs[] = {{"0", "1"}, {"1", "0"}};
    for (const auto& [chosen, other] : runs) {
        SCOPED_TRACE(chosen);
        std::filesystem::remove(kept);
        expectChanges(0, "");
        removeAll();
        expectChanges(2, kMissing0 + kMissing1 + "unknown: " + kNone);
        restoreAll();
        expectOf(chosen, 0, "info: controller " + chosen + ": is back\n" + kNoneAnymore);
        expectOf(chosen, 0, "");
        expectOf(chosen, 0, "");
        expectChanges(0, "info: controller " + other + ": is back\n");
        expectChanges(0, "");
    }
}

// They are compared with their last state when a run reads them.
TEST_F(ChangesOfControllers, AreComparedAlthoughAnotherOneWasReadFirst) {
    expectChanges(0, "");
    removeAll();
    expectChanges(2, kMissing0 + kMissing1 + "unknown: " + kNone);
    restoreAll();
    controller()["drives"][0]["smartFailure"] = true;
    expectOf("1", 0, kBack1 + kNoneAnymore);
    expectOf("0", 1,
             kBack0 +
                 "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, enclosure 0, "
                 "serial S0001\n");
    expectChanges(1, "");
}

TEST_F(ChangesOfControllers, AreNotMissingAgainWhenOnlyOneIsBack) {
    expectChanges(0, "");
    removeAll();
    expectChanges(2, kMissing0 + kMissing1 + "unknown: " + kNone);
    restoreAll();
    world["controllers"].erase(1);
    expectOf("0", 0, kBack0 + kNoneAnymore);
    expectChanges(0, "");
    restoreAll();
    expectChanges(0, kBack1);
    expectChanges(0, "");
}

// None of them shows another version.
TEST_F(ChangesOfControllers, KeepTheirVersionsWhileNoneIsFound) {
    both[1]["firmwareVersion"] = {2, 3, 1, 8};
    restoreAll();
    expectChanges(0, "");
    removeAll();
    expectChanges(2, kMissing0 + kMissing1 + "unknown: " + kNone);
    restoreAll();
    expectChanges(0, kBack0 + kBack1 + kNoneAnymore);
    expectChanges(0, "");
}

TEST_F(ChangesOfControllers, AreNewOnceIfTheFirstStateHasNone) {
    removeAll();
    expectChanges(3, "unknown: " + kNone);
    restoreAll();
    expectOf("1", 0, "info: controller 1: is new\n" + kNoneAnymore);
    expectOf("1", 0, "");
    expectChanges(0, "info: controller 0: is new\n");
    expectChanges(0, "");
}

// The library failed at first, which shows nothing of the controllers.
TEST_F(ChangesOfControllers, AreNotNewIfTheyCouldNotBeCounted) {
    const std::string fault = "this host: q5_getNumberOfHBA failed with result 1\n";
    refuse("q5_getNumberOfHBA");
    expectChanges(3, "unknown: " + fault);
    refuseNothing();
    expectOf("0", 0, "info: no longer: " + fault);
    expectOf("0", 0, "");
    expectChanges(0, "");
}
