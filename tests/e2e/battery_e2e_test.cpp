// The battery command on controllers with and without a battery.
#include <gtest/gtest.h>

#include "tests/e2e/harness.h"

static std::string battery(const std::string& readings) {
    return "{\"controllers\": [{\"battery\": {" + readings + "}}]}";
}

TEST(Battery, ShowsTemperatureVoltageAndState) {
    Session s;
    s.useWorld(fixtureWorld("drives_and_boxes"));
    const std::string shown = "Battery Information of controller with ID 0:\n"
                              "  Battery Temperature - 40.099998 C\n"
                              "  Battery Voltage - 5.005000 V\n"
                              "  Battery Status - Discharging\n\n";
    EXPECT_EQ(s.run({"battery"}), (ProcessOutcome{0, shown, ""}));
    EXPECT_EQ(s.prompt("BATTERY\nexit\n"), (ProcessOutcome{0, "cli>" + shown + "cli>", ""}));
}

TEST(Battery, ShowsOutOfRangeReadings) {
    Session s;
    const std::string head = "Battery Information of controller with ID 0:\n";
    s.useWorld(battery("\"temperatureTenths\": 99, \"millivolts\": -1, \"state\": \"failed\""));
    EXPECT_EQ(s.run({"battery"}), (ProcessOutcome{0,
                                                  head + "  Battery Temperature out of range.\n"
                                                         "  Can not get Voltage.\n"
                                                         "  Battery Status - Not functioning\n\n",
                                                  ""}));
    s.useWorld(battery("\"temperatureTenths\": 600, \"millivolts\": 12600, \"state\": \"charging\""));
    EXPECT_EQ(s.run({"battery"}), (ProcessOutcome{0,
                                                  head + "  Battery Temperature - 60.000000 C\n"
                                                         "  Battery Voltage - 12.600000 V\n"
                                                         "  Battery Status - Charging\n\n",
                                                  ""}));
}

TEST(Battery, ReportsNoBattery) {
    Session s;
    s.useWorld("{\"controllers\": [{}]}");
    const std::string none = "No battery exists in controller with ID 0!\n";
    EXPECT_EQ(s.run({"battery"}), (ProcessOutcome{5, none, ""}));
    EXPECT_EQ(s.prompt("battery\nexit\n"), (ProcessOutcome{5, "cli>" + none + "cli>", ""}));
}

TEST(Battery, RejectsOptions) {
    Session s;
    EXPECT_EQ(s.run({"battery", "-i", "0"}), (ProcessOutcome{1, "Invalid subcommand - 'battery'\n", ""}));
    EXPECT_EQ(s.run({"battery", "-I"}), (ProcessOutcome{1, "Invalid subcommand - 'battery'\n", ""}));
    EXPECT_EQ(s.run({"battery", "-a", "list"}), (ProcessOutcome{9, "Invalid command for \"battery\"\n", ""}));
}

// An empty line runs the command again with no words; the stale option still leads to its function.
TEST(Battery, EmptyLineAfterRefusalShowsBattery) {
    Session s;
    s.useWorld("{\"controllers\": [{}]}");
    EXPECT_EQ(s.prompt("battery -i 3\n\nexit\n"),
              (ProcessOutcome{5,
                              "cli>Invalid subcommand - 'battery'\n"
                              "cli>No battery exists in controller with ID 0!\ncli>",
                              ""}));
}
