// cli-status --syslog: the lines in the system log, with facility and priority. A recorder in place of the C
// library's functions receives them. The facility daemon is 24; critical 2, error 3, warning 4 and
// informational 6 are added to it.
#include "tests/status/history.h"

struct Syslog : Changes {
    const std::string record = session.path("syslog");

    void SetUp() override {
        Changes::SetUp();
        session.setVariable("LD_PRELOAD", SYSLOG_RECORDER);
        session.setVariable("SYSLOG_RECORD", record);
    }
    // What a run writes to the log; its output has the same lines unless it is quiet.
    std::string logOf(const std::vector<std::string>& words, int status, const std::string& output) {
        writeFile(record, "");
        EXPECT_EQ(session.run(words), (ProcessOutcome{status, output, ""}));
        return readFile(record);
    }
    std::string logOfChanges(int status, const std::string& output) {
        return logOf({"--syslog", "--changes", kept}, status, output);
    }
};

TEST_F(Syslog, HasAFailureItsRepairAndAnotherName) {
    session.useWorld(world.dump());
    EXPECT_EQ(logOfChanges(0, ""), "");
    controller()["drives"][1]["failed"] = true;
    session.useWorld(world.dump());
    EXPECT_EQ(logOfChanges(2, "critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
                              "info: rebuild of logical drive 0 Data of controller 0 started\n"),
              "<26>cli-status: critical: drive 2 of controller 0 lost; logical drive 0 Data is critical\n"
              "<30>cli-status: info: rebuild of logical drive 0 Data of controller 0 started\n");
    EXPECT_EQ(logOfChanges(2, ""), "");
    session.setClock(100000);
    EXPECT_EQ(logOfChanges(1, "info: logical drive 0 Data of controller 0 is online again\n"
                              "info: rebuild of logical drive 0 Data of controller 0 finished\n"
                              "info: logical drive 0 Data of controller 0: is on drives 1, 3; it was on "
                              "drives 1, 2\n"
                              "warning: drive 2 of controller 0: cannot be accessed, and no logical drive "
                              "uses it; channel 1, enclosure 0, serial S0002\n"
                              "info: logical drive 0 Data of controller 0: has no spare\n"),
              "<30>cli-status: info: logical drive 0 Data of controller 0 is online again\n"
              "<30>cli-status: info: rebuild of logical drive 0 Data of controller 0 finished\n"
              "<30>cli-status: info: logical drive 0 Data of controller 0: is on drives 1, 3; it was on "
              "drives 1, 2\n"
              "<28>cli-status: warning: drive 2 of controller 0: cannot be accessed, and no logical drive "
              "uses it; channel 1, enclosure 0, serial S0002\n"
              "<30>cli-status: info: logical drive 0 Data of controller 0: has no spare\n");
    Json repaired = Json::parse(session.worldText());
    repaired["controllers"][0]["drives"][1]["failed"] = false;
    repaired["controllers"][0]["drives"][1]["serial"] = "S0009";
    repaired["controllers"][0]["logicalDrives"][0]["name"] = "100% Mail";
    session.useWorld(repaired.dump());
    EXPECT_EQ(logOfChanges(0, "info: drive 2 of controller 0: was replaced; serial S0002 is now S0009\n"
                              "info: logical drive 0 100% Mail of controller 0: was named Data\n"
                              "info: no longer: drive 2 of controller 0: cannot be accessed, and no logical "
                              "drive uses it; channel 1, enclosure 0, serial S0002\n"),
              "<30>cli-status: info: drive 2 of controller 0: was replaced; serial S0002 is now S0009\n"
              "<30>cli-status: info: logical drive 0 100% Mail of controller 0: was named Data\n"
              "<30>cli-status: info: no longer: drive 2 of controller 0: cannot be accessed, and no logical "
              "drive uses it; channel 1, enclosure 0, serial S0002\n");
}

// Without --changes, and whatever the output is.
TEST_F(Syslog, HasAllFindingsOfTheState) {
    controller()["drives"].erase(2);
    refuse("q5_getBatteryInfo");
    session.useWorld(world.dump());
    const std::string lines =
        "<27>cli-status: unknown: controller 0: q5_getBatteryInfo failed with result 1\n"
        "<30>cli-status: info: logical drive 0 Data of controller 0: has no spare\n";
    EXPECT_EQ(logOf({"--syslog", "-q"}, 3, "unknown: controller 0: q5_getBatteryInfo failed with result 1\n"),
              lines);
    const std::string json = session.run({"--json"}).out;
    EXPECT_EQ(logOf({"--syslog", "--json"}, 3, json), lines);
    EXPECT_EQ(logOf({"-q"}, 3, "unknown: controller 0: q5_getBatteryInfo failed with result 1\n"), "");
}
