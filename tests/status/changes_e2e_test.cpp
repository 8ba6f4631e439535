// cli-status --changes: what begins and what ends, and the file that keeps the state.
#include <filesystem>

#include "tests/status/history.h"

TEST_F(Changes, StartWithThePresentProblems) {
    controller()["battery"] = nullptr;
    expectChanges(1, "warning: logical drive 0 Data of controller 0: set to write back, but the controller "
                     "has no battery\n");
    expectChanges(1, "");
}

TEST_F(Changes, ReportAFailedDriveUntilItIsRebuilt) {
    expectChanges(0, "");
    controller()["drives"][1]["failed"] = true;
    session.useWorld(world.dump());
    const auto next = [&](int status, const std::string& output) {
        EXPECT_EQ(session.run({"--changes", kept}), (ProcessOutcome{status, output, ""}));
    };
    next(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
            "info: rebuild of logical drive 0 Data of controller 0 started\n");
    next(2, "");
    session.setClock(100000);
    const std::string unused = "drive 2 of controller 0: cannot be accessed, and no logical drive uses it; "
                               "channel 1, enclosure 0, serial S0002\n";
    next(1, "info: logical drive 0 Data of controller 0 is online again\n"
            "info: rebuild of logical drive 0 Data of controller 0 finished\n"
            "info: logical drive 0 Data of controller 0: is on drives 1, 3; it was on drives 1, 2\n"
            "warning: " +
                unused + "info: logical drive 0 Data of controller 0: has no spare\n");
    next(1, "");
    EXPECT_EQ(session.run({"-q"}), (ProcessOutcome{1, "warning: " + unused, ""}));
    Json rebuilt = Json::parse(session.worldText());
    Json& failed = rebuilt["controllers"][0]["drives"][1];
    failed["failed"] = false;
    failed["serial"] = "S0009";
    session.useWorld(rebuilt.dump());
    next(0, "info: drive 2 of controller 0: was replaced; serial S0002 is now S0009\n"
            "info: no longer: " +
                unused);
}

// Pulled, not replaced.
TEST_F(Changes, ReportAFailedDriveThatIsPulledWhenItIsRebuilt) {
    controller()["drives"][1]["failed"] = true;
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"-q"}).status, 2);
    session.setClock(100000);
    EXPECT_EQ(
        session.run({"--changes", kept}),
        (ProcessOutcome{1,
                        "warning: drive 2 of controller 0: cannot be accessed, and no logical drive uses "
                        "it; channel 1, enclosure 0, serial S0002\n",
                        ""}));
    Json rebuilt = Json::parse(session.worldText());
    rebuilt["controllers"][0]["drives"].erase(1);
    session.useWorld(rebuilt.dump());
    EXPECT_EQ(
        session.run({"--changes", kept}),
        (ProcessOutcome{1,
                        "warning: drive 2 of controller 0: is missing; it was on channel 1, enclosure 0, "
                        "serial S0002\n",
                        ""}));
    EXPECT_EQ(session.run({"-q"}), (ProcessOutcome{0, "", ""}));
}

// The drive that failed first is still in its place; the one that is lost now is another one.
TEST_F(Changes, ReportADriveThatIsPulledAfterARebuildOntoASpare) {
    expectChanges(0, "");
    controller()["drives"][1]["failed"] = true;
    session.useWorld(world.dump());
    const auto next = [&](int status, const std::string& output) {
        EXPECT_EQ(session.run({"--changes", kept}), (ProcessOutcome{status, output, ""}));
    };
    const auto now = [&](int status, const std::string& output) {
        EXPECT_EQ(session.run({}), (ProcessOutcome{status, output, ""}));
    };
    const std::string unused = "warning: drive 2 of controller 0: cannot be accessed, and no logical drive "
                               "uses it; channel 1, enclosure 0, serial S0002\n";
    next(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
            "info: rebuild of logical drive 0 Data of controller 0 started\n");
    now(2, "controller 0: 3 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
           "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
           "warning: drive 2 of controller 0: lost by logical drive 0 Data; channel 1, enclosure 0, serial "
           "S0002\n"
           "info: logical drive 0 Data of controller 0: rebuild running, 0%\n"
           "2 problems, 1 of them critical\n");
    session.setClock(100000);
    next(1, "info: logical drive 0 Data of controller 0 is online again\n"
            "info: rebuild of logical drive 0 Data of controller 0 finished\n"
            "info: logical drive 0 Data of controller 0: is on drives 1, 3; it was on drives 1, 2\n" +
                unused + "info: logical drive 0 Data of controller 0: has no spare\n");
    now(1, "controller 0: 3 drives, 1 logical drive, 1 enclosure, battery fully charged\n" + unused +
               "info: logical drive 0 Data of controller 0: has no spare\n"
               "1 problem\n");
    Json pulled = Json::parse(session.worldText());
    pulled["controllers"][0]["drives"].erase(0);
    session.useWorld(pulled.dump());
    next(2, "critical: drive 1 of controller 0 lost; logical drive 0 Data is critical\n"
            "warning: drive 1 of controller 0: is missing; it was on channel 0, enclosure 0, serial S0001\n"
            "warning: logical drive 0 Data of controller 0: no replacement is coming: there is no suitable "
            "spare\n");
    next(2, "");
    now(2, "controller 0: 2 drives, 1 logical drive, 1 enclosure, battery fully charged\n"
           "critical: logical drive 0 Data of controller 0: critical: no redundancy is left (RAID1)\n"
           "warning: drive 1 of controller 0: lost by logical drive 0 Data; it is no longer listed\n"
           "warning: logical drive 0 Data of controller 0: no replacement is coming: there is no suitable "
           "spare\n" +
               unused + "4 problems, 1 of them critical\n");
}

TEST_F(Changes, ReportPauseAndResumption) {
    expectChanges(0, "");
    Json& activity = controller()["logicalDrives"][0]["activity"];
    activity = {{"kind", "redundancyCheck"}, {"paused", true}, {"doneMb", 170}, {"totalMb", 500}};
    expectChanges(1, "warning: redundancy check of logical drive 0 Data of controller 0 paused at 34%\n");
    activity["paused"] = false;
    expectChanges(0, "info: redundancy check of logical drive 0 Data of controller 0 resumed at 34%\n");
    activity = nullptr;
    expectChanges(0, "info: redundancy check of logical drive 0 Data of controller 0 ended\n");
}

TEST_F(Changes, ReportWhatIsResolved) {
    controller()["drives"][0]["smartFailure"] = true;
    expectChanges(1,
                  "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, enclosure 0, "
                  "serial S0001\n");
    controller()["drives"][0]["smartFailure"] = false;
    expectChanges(0, "info: no longer: drive 1 of controller 0: predicts its failure (SMART); channel 0, "
                     "enclosure 0, serial S0001\n");
}

TEST_F(Changes, ReportEveryNewError) {
    controller()["drives"][2]["mediaPatrol"] = {{"state", "stopped"}, {"errors", 7}};
    expectChanges(1, "warning: drive 3 of controller 0: media patrol found 7 errors; channel 2, enclosure 0, "
                     "serial S0003\n");
    controller()["drives"][2]["mediaPatrol"]["errors"] = 8;
    expectChanges(1, "warning: drive 3 of controller 0: media patrol found 8 errors; channel 2, enclosure 0, "
                     "serial S0003\n");
}

TEST_F(Changes, DoNotFollowEveryReading) {
    controller()["battery"]["temperatureTenths"] = 460;
    expectChanges(1, "warning: battery of controller 0: is at 46.0 degrees Celsius\n");
    controller()["battery"]["temperatureTenths"] = 470;
    expectChanges(1, "");
}

// What cannot be read at the moment may still be there.
TEST_F(Changes, DoNotReportAsResolvedWhatCannotBeRead) {
    controller()["battery"] = nullptr;
    const std::string unprotected = "logical drive 0 Data of controller 0: set to write back, but the "
                                    "controller has no battery\n";
    expectChanges(1, "warning: " + unprotected);
    world["rules"] = {{{"kind", "refuse"}, {"operation", "q5_getBatteryInfo"}}};
    expectChanges(3, "unknown: controller 0: q5_getBatteryInfo failed with result 1\n");
    world["rules"] = Json::array();
    controller()["logicalDrives"][0]["cacheFlags"] = 0;
    expectChanges(0, "info: no longer: controller 0: q5_getBatteryInfo failed with result 1\n"
                     "info: no longer: " +
                         unprotected);
}

// What can be read is resolved, whatever else of the controller cannot be read.
TEST_F(Changes, ReportAsResolvedWhatCanBeReadWhileSomethingElseCannot) {
    controller()["battery"]["temperatureTenths"] = 600;
    controller()["drives"][0]["smartFailure"] = true;
    const std::string hot = "battery of controller 0: is at 60.0 degrees Celsius\n";
    const std::string smart =
        "drive 1 of controller 0: predicts its failure (SMART); channel 0, enclosure 0, "
        "serial S0001\n";
    const std::string fault = "controller 0: q5_getLogDrvInfo failed with result 1\n";
    expectChanges(2, "critical: " + hot + "warning: " + smart);
    refuse("q5_getLogDrvInfo");
    expectChanges(2, "unknown: " + fault);
    controller()["battery"]["temperatureTenths"] = 250;
    controller()["drives"][0]["smartFailure"] = false;
    expectChanges(3, "info: no longer: " + hot + "info: no longer: " + smart);
    refuseNothing();
    expectChanges(0, "info: no longer: " + fault);
}

TEST_F(Changes, AreOnlyProblemsWhenQuiet) {
    expectChanges(0, "");
    controller()["drives"][0]["smartFailure"] = true;
    controller()["drives"][2]["serial"] = "S9999";
    expect({"-q", "--changes", kept}, 1,
           "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, enclosure 0, serial "
           "S0001\n");
    controller()["drives"][0]["smartFailure"] = false;
    expect({"-q", "--changes", kept}, 0, "");
}

// A difference from the baseline is reported once, until it is resolved.
TEST_F(Changes, IncludeThoseOfTheBaseline) {
    const std::vector<std::string> words = {"--changes", kept, "--baseline", before};
    const Json spare = controller()["drives"][2];
    controller()["drives"].erase(2);
    const std::string missing =
        "drive 3 of controller 0: is missing; it was on channel 2, enclosure 0, serial "
        "S0003\n";
    expect(words, 1, "warning: " + missing + "warning: controller 0: has 0 spares; it had 1\n");
    expect(words, 1, "");
    controller()["drives"].push_back(spare);
    expect(words, 0,
           "info: drive 3 of controller 0: is new; channel 2, enclosure 0, serial S0003\n"
           "info: controller 0: has 1 spare; it had 0\n"
           "info: no longer: " +
               missing +
               "info: no longer: controller 0: has 0 spares; it had 1\n"
               "info: no longer: logical drive 0 Data of controller 0: has no spare\n");
    controller()["drives"].erase(2);
    expect(words, 1,
           "warning: " + missing +
               "warning: controller 0: has 0 spares; it had 1\n"
               "info: logical drive 0 Data of controller 0: has no spare\n");
}

TEST_F(Changes, KeepTheStateOfTheLastRunThatCouldRead) {
    expectChanges(0, "");
    session.useWorld("{");
    const std::string fault = "this host: q5_initialize failed with result 1\n";
    EXPECT_EQ(session.run({"--changes", kept}).out, "unknown: " + fault);
    controller()["drives"].erase(1);
    controller()["autoRebuild"] = false;
    expectChanges(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
                     "warning: drive 2 of controller 0: is missing; it was on channel 1, enclosure 0, serial "
                     "S0002\n"
                     "warning: logical drive 0 Data of controller 0: no replacement is coming: automatic "
                     "rebuild is off\n"
                     "info: no longer: " +
                         fault);
}

TEST_F(Changes, DoNotOverwriteAnotherFile) {
    writeFile(kept, "precious");
    EXPECT_EQ(session.run({"--changes", kept}),
              (ProcessOutcome{3, "", "cli-status: " + kept + ": it is not JSON that --json printed\n"}));
    EXPECT_EQ(readFile(kept), "precious");
}

TEST_F(Changes, ReplaceTheFileAtomically) {
    expectChanges(0, "");
    EXPECT_EQ(readFile(kept), session.run({"--json"}).out);
    for (const auto& entry : std::filesystem::directory_iterator(session.directory))
        EXPECT_NE(entry.path().filename().string().substr(0, 5), ".kept");
}

TEST_F(Changes, ReportAFileThatCannotBeWritten) {
    const std::string nowhere = session.path("none/kept");
    EXPECT_EQ(
        session.run({"--changes", nowhere}),
        (ProcessOutcome{3, "", "cli-status: cannot write " + nowhere + ": No such file or directory\n"}));
}
