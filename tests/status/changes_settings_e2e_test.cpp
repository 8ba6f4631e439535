// cli-status --changes: runs with other limits, another baseline or other controllers than the run before.
#include <filesystem>

#include "tests/status/history.h"

static const std::string kSpareGone =
    "warning: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial S0003\n"
    "warning: controller 0: has 0 spares; it had 1\n";
static const std::string kSpareBack =
    "info: no longer: drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial S0003\n"
    "info: no longer: controller 0: has 0 spares; it had 1\n";
static const std::string kNone = "this host: no controller is found\n";
static const std::string kMissing1 = "critical: controller 1: is missing\n";
static const std::string kBack1 = "info: controller 1: is back\n";

static std::string warmth(int controllerId) {
    return "enclosure 0 of controller " + std::to_string(controllerId) +
           ": temperature 1 is at 32 degrees Celsius\n";
}

// The temperature of the healthy world is 32 degrees.
struct ChangesOfSettings : Changes {
    std::string limits = session.path("limits");

    void SetUp() override {
        Changes::SetUp();
        writeFile(limits, "enclosure-warm = 32\n");
    }
    // It has drives of its own.
    void addController() {
        world["controllers"].push_back(controller());
        for (Json& drive : world["controllers"].back()["drives"])
            drive["serial"] = "T" + drive["serial"].get<std::string>();
    }
    void expectLimited(int status, const std::string& output) {
        expect({"--changes", kept, "--limits", limits}, status, output);
    }
    void expectAgainst(const std::string& baseline, int status, const std::string& output) {
        expect({"--changes", kept, "--baseline", baseline}, status, output);
    }
    void expectOf(const std::string& chosen, int status, const std::string& output) {
        expect({"-i", chosen, "--changes", kept}, status, output);
    }
    void expectProblem(const std::vector<std::string>& words, int status, const std::string& output,
                       const std::string& problem) {
        session.useWorld(world.dump());
        EXPECT_EQ(session.run(words), (ProcessOutcome{status, output, "cli-status: " + problem + "\n"}));
    }
};

// Limits.

TEST_F(ChangesOfSettings, ReportWhatALimitMakesAProblem) {
    expectChanges(0, "");
    expectLimited(1, "warning: " + warmth(0));
    expectLimited(1, "");
    expectChanges(0, "info: no longer: " + warmth(0));
    expectChanges(0, "");
    expectLimited(1, "warning: " + warmth(0));
}

TEST_F(ChangesOfSettings, RememberTheProblemsOfControllersThatAreNotRead) {
    addController();
    expectLimited(1, "warning: " + warmth(0) + "warning: " + warmth(1));
    expectOf("0", 0, "info: no longer: " + warmth(0));
    expectLimited(1, "warning: " + warmth(0));
    expectLimited(1, "");
}

TEST_F(ChangesOfSettings, RememberTheProblemsOfWhatCannotBeRead) {
    const std::string fault = "enclosure 0 of controller 0: q5_getEnclosureStatus failed with result 1\n";
    const std::string failure = "this host: q5_initialize failed with result 1\n";
    expectLimited(1, "warning: " + warmth(0));
    refuse("q5_getEnclosureStatus");
    expectLimited(3, "unknown: " + fault);
    refuse("q5_initialize");
    expectLimited(3, "unknown: " + failure);
    expectLimited(3, "");
    refuseNothing();
    expectLimited(1, "info: no longer: " + failure + "info: no longer: " + fault);
    expectLimited(1, "");
}

// The file says which sensor it is, so that the reading may change.
TEST_F(ChangesOfSettings, RecognizeAProblemWithAnotherReading) {
    expectLimited(1, "warning: " + warmth(0));
    EXPECT_EQ(Json::parse(readFile(kept))["findings"][0]["parts"], Json({"temperature 1"}));
    controller()["enclosures"][0]["sensors"][1]["reading"] = 34;
    expectLimited(1, "");
}

// Baselines.

TEST_F(ChangesOfSettings, ReportTheDifferencesFromAnAddedBaseline) {
    controller()["drives"].erase(2);
    expectChanges(0, "");
    expectAgainst(before, 1, kSpareGone);
    expectAgainst(before, 1, "");
}

TEST_F(ChangesOfSettings, RememberTheDifferencesInRunsWithoutABaseline) {
    controller()["drives"].erase(2);
    expectAgainst(before, 1, kSpareGone);
    expectChanges(0, "");
    expectChanges(0, "");
    expectAgainst(before, 1, "");
}

TEST_F(ChangesOfSettings, ReportWhatANewBaselineResolves) {
    const std::string first = session.path("first.json");
    std::filesystem::rename(before, first);
    controller()["drives"].erase(2);
    saveBaseline();
    expectAgainst(first, 1, kSpareGone);
    expectAgainst(before, 0, kSpareBack);
    expectAgainst(before, 0, "");
    expectAgainst(first, 1, kSpareGone);
}

// What is hidden stays known: the list is short.
TEST_F(ChangesOfSettings, RememberDifferencesThatCannotBeChecked) {
    const std::string count = "controller 0: counts 3 drives, but lists 2\n";
    const std::string unchecked =
        "controller 0: drive 3 of the baseline cannot be checked: not all drives could be read\n";
    const Json all = controller()["drives"];
    controller()["drives"].erase(2);
    expectAgainst(before, 1, kSpareGone);
    controller()["drives"] = all;
    shorten("q5_getPhyDrvInfo");
    expectAgainst(before, 3, "unknown: " + count + "unknown: " + unchecked);
    expectAgainst(before, 3, "");
    controller()["drives"].erase(2);
    refuseNothing();
    expectAgainst(before, 1, "info: no longer: " + count + "info: no longer: " + unchecked);
    expectAgainst(before, 1, "");
}

// Controllers.

TEST_F(ChangesOfSettings, ReportAMissingControllerThatWasNotChosenBefore) {
    addController();
    saveBaseline();
    world["controllers"].erase(1);
    expect({"-i", "0", "--changes", kept, "--baseline", before}, 0, "");
    expectAgainst(before, 2, kMissing1);
    expectAgainst(before, 2, "");
}

TEST_F(ChangesOfSettings, ReportOnceThatTheChosenControllerIsGone) {
    addController();
    expectOf("1", 0, "");
    world["controllers"].erase(1);
    expectOf("1", 2, kMissing1);
    expectOf("1", 3, "");
    expectChanges(0, "");
    expectOf("1", 3, "");
    addController();
    expectOf("1", 0, kBack1);
    expectOf("1", 0, "");
}

TEST_F(ChangesOfSettings, ReportOnceInRunsOfAllThatAControllerIsGone) {
    addController();
    expectChanges(0, "");
    world["controllers"].erase(1);
    expectChanges(2, kMissing1);
    expectOf("1", 3, "");
    addController();
    expectChanges(0, kBack1);
    expectOf("1", 0, "");
}

TEST_F(ChangesOfSettings, ReportOnceThatTheOnlyControllerIsGone) {
    const Json present = world["controllers"];
    expectOf("0", 0, "");
    world["controllers"] = Json::array();
    expectOf("0", 2, "critical: controller 0: is missing\nunknown: " + kNone);
    expectOf("0", 3, "");
    world["controllers"] = present;
    expectOf("0", 0, "info: controller 0: is back\ninfo: no longer: " + kNone);
    expectOf("0", 0, "");
}

TEST_F(ChangesOfSettings, RefuseAControllerThatWasNeverThere) {
    const std::vector<std::string> words = {"-i", "1", "--changes", kept};
    expectProblem(words, 3, "", "there is no controller 1");
    EXPECT_FALSE(std::filesystem::exists(kept));
    expectChanges(0, "");
    const std::string saved = readFile(kept);
    expectProblem(words, 3, "", "there is no controller 1");
    EXPECT_EQ(readFile(kept), saved);
}

// What no earlier run has read is reported as in a first run: its problems only.

TEST_F(ChangesOfSettings, AreProblemsOnlyIfNothingWasReadBefore) {
    const std::string failure = "this host: q5_initialize failed with result 1\n";
    addController();
    controller()["firmwareVersion"] = {2, 3, 1, 8};
    controller()["drives"].erase(2);
    controller()["drives"][0]["smartFailure"] = true;
    refuse("q5_initialize");
    expectChanges(3, "unknown: " + failure);
    refuseNothing();
    expectChanges(1,
                  "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, enclosure 0, "
                  "serial S0001\n"
                  "info: no longer: " +
                      failure);
    expectChanges(1, "");
}

TEST_F(ChangesOfSettings, AreProblemsOnlyOfWhatWasNotReadBefore) {
    const std::string fault = "controller 0: q5_getPhyDrvInfo failed with result 1\n";
    controller()["drives"].erase(2);
    refuse("q5_getPhyDrvInfo");
    expectChanges(3, "unknown: " + fault);
    refuseNothing();
    expectChanges(0, "info: no longer: " + fault);
    expectChanges(0, "");
}

TEST_F(ChangesOfSettings, AreProblemsOnlyOfAControllerThatWasNotChosenBefore) {
    addController();
    controller()["drives"].erase(2);
    controller()["firmwareVersion"] = {2, 3, 1, 8};
    expectOf("1", 0, "");
    expectChanges(0, "");
    expectChanges(0, "");
}

// A file that is not a state.

TEST_F(ChangesOfSettings, ReportTheProblemsAlthoughTheFileIsAnotherOne) {
    writeFile(kept, "precious");
    controller()["drives"][0]["failed"] = true;
    controller()["autoRebuild"] = false;
    const std::string problems =
        "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
        "warning: drive 1 of controller 0: lost by logical drive 0 Data; channel 0, enclosure 0, serial "
        "S0001\n"
        "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic rebuild is off\n";
    for (int run = 0; run < 2; ++run)
        expectProblem({"--changes", kept}, 2, problems, kept + ": it is not JSON that --json printed");
    EXPECT_EQ(readFile(kept), "precious");
    EXPECT_FALSE(std::filesystem::exists(kept + ".damaged"));
}

TEST_F(ChangesOfSettings, KeepADamagedStateUnderAnotherName) {
    const std::string damage = kept + ": it is not JSON that --json printed; ";
    const std::string smart = "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, "
                              "enclosure 0, serial S0001\n";
    controller()["drives"][0]["smartFailure"] = true;
    expectChanges(1, smart);
    const std::string half = readFile(kept).substr(0, 1000);
    writeFile(kept, half);
    expectProblem({"--changes", kept}, 3, smart, damage + "saved as " + kept + ".damaged");
    EXPECT_EQ(readFile(kept + ".damaged"), half);
    expectChanges(1, "");
    writeFile(kept, "");
    expectProblem({"--changes", kept}, 3, smart, damage + "cannot write " + kept + ".damaged: File exists");
    EXPECT_EQ(readFile(kept), "");
    EXPECT_EQ(readFile(kept + ".damaged"), half);
    std::filesystem::remove(kept + ".damaged");
    expectProblem({"--changes", kept}, 3, smart, damage + "saved as " + kept + ".damaged");
    expectChanges(1, "");
}
