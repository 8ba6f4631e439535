// The battery command.
#include "commands/battery.h"

#include "adapter/battery.h"
#include "tests/mock_adapter.h"

using BatteryCommand = MockAdapterTest;

static std::string outcomeOf(const std::string& line) {
    const CommandOutcome outcome = run(ListBatteryInfo, splitWords(line));
    return std::to_string(outcome.result) + ": " + outcome.output;
}

// A battery's readings; the rest of the record is filled with a pattern.
static Bytes batteryOf(std::uint16_t temperature, std::uint16_t voltage, std::uint8_t status) {
    BatteryInfo info;
    std::memset(&info, 0xA5, sizeof info);
    info.temperature = temperature;
    info.voltage = voltage;
    info.status = status;
    return bytesOf(info);
}

static void expectQuery(std::uint32_t controller, const Bytes& reply, int result = 0) {
    expectCall("q5_getBatteryInfo", queryFor(controller, BatteryQuery{0, 0}, 112), reply, result);
}

static const std::string kHeader = "0: Battery Information of controller with ID 0:\n";
static const std::string kTemperatureLine = "  Battery Temperature - 40.099998 C\n";
static const std::string kVoltageLine = "  Battery Voltage - 12.600000 V\n";

TEST_F(BatteryCommand, ShowsTheBatteryOfTheFirstController) {
    for (const int result : {0, -1}) {
        expectQuery(0, batteryOf(3132, 12600, 0x82), result);
        EXPECT_EQ(outcomeOf("battery"),
                  kHeader + kTemperatureLine + kVoltageLine + "  Battery Status - Fully charged\n\n");
    }
}

TEST_F(BatteryCommand, ShowsTheStateInTheLowSevenBits) {
    const std::pair<std::uint8_t, const char*> states[] = {
        {0x80, "  Battery Status - Charging\n"},
        {0x81, "  Battery Status - Discharging\n"},
        {0x01, "  Battery Status - Discharging\n"},
        {0x02, "  Battery Status - Fully charged\n"},
        {0x83, "  Battery Status - Not functioning\n"},
        {0x84, "  Battery Status - Reconditioning\n"},
        {0x04, "  Battery Status - Reconditioning\n"},
        {0x85, ""},
        {0x05, ""},
        {0xFF, ""},
        {0xC0, ""},
    };
    for (const auto& [status, line] : states) {
        expectQuery(0, batteryOf(3132, 12600, status));
        EXPECT_EQ(outcomeOf("battery"), kHeader + kTemperatureLine + kVoltageLine + line + "\n")
            << int{status};
    }
}

TEST_F(BatteryCommand, ShowsTemperatureOnlyWithinItsRange) {
    const std::string out = "  Battery Temperature out of range.\n";
    const std::pair<std::uint16_t, std::string> temperatures[] = {
        {0, out},
        {2830, out},
        {2831, "  Battery Temperature - 10.000000 C\n"},
        {2832, "  Battery Temperature - 10.100000 C\n"},
        {2981, "  Battery Temperature - 25.000000 C\n"},
        {3330, "  Battery Temperature - 59.900002 C\n"},
        {3331, "  Battery Temperature - 60.000000 C\n"},
        {3332, out},
        {65535, out},
    };
    for (const auto& [temperature, line] : temperatures) {
        expectQuery(0, batteryOf(temperature, 12600, 0x85));
        EXPECT_EQ(outcomeOf("battery"), kHeader + line + kVoltageLine + "\n") << temperature;
    }
}

TEST_F(BatteryCommand, ShowsVoltageUnlessThereIsNoReading) {
    const std::pair<std::uint16_t, const char*> voltages[] = {
        {0, "  Battery Voltage - 0.000000 V\n"},      {1, "  Battery Voltage - 0.001000 V\n"},
        {4100, "  Battery Voltage - 4.100000 V\n"},   {52427, "  Battery Voltage - 52.426998 V\n"},
        {0xCCCC, "  Can not get Voltage.\n"},         {52429, "  Battery Voltage - 52.429001 V\n"},
        {65535, "  Battery Voltage - 65.535004 V\n"},
    };
    for (const auto& [voltage, line] : voltages) {
        expectQuery(0, batteryOf(3132, voltage, 0x85));
        EXPECT_EQ(outcomeOf("battery"), kHeader + kTemperatureLine + line + "\n") << voltage;
    }
}

TEST_F(BatteryCommand, ReportsNoBattery) {
    expectQuery(0, batteryOf(3132, 12600, 0));
    EXPECT_EQ(outcomeOf("battery"), "5: No battery exists in controller with ID 0!\n");
    expectQuery(0, {}, 1);
    EXPECT_EQ(outcomeOf("battery"), "5: No battery exists in controller with ID 0!\n");
}

TEST_F(BatteryCommand, RejectsOptionI) {
    EXPECT_EQ(outcomeOf("battery -i 0"), "1: Invalid subcommand - 'battery'\n");
    EXPECT_EQ(outcomeOf("BATTERY -I"), "1: Invalid subcommand - 'battery'\n");
    EXPECT_EQ(outcomeOf("battery -x 1 -i 0"), "1: Invalid subcommand - 'battery'\n");
    EXPECT_EQ(outcomeOf("battery -i x"), "1: Invalid subcommand - 'battery'\n");
}

TEST_F(BatteryCommand, AcceptsAnyOtherOptionAsControllerId) {
    expectQuery(2, batteryOf(0, 0xCCCC, 0x80));
    EXPECT_EQ(outcomeOf("battery -x 2"), "0: Battery Information of controller with ID 2:\n"
                                         "  Battery Temperature out of range.\n  Can not get Voltage.\n"
                                         "  Battery Status - Charging\n\n");
    expectQuery(3, {});
    EXPECT_EQ(outcomeOf("battery a 1 b 3"), "5: No battery exists in controller with ID 3!\n");
    expectQuery(0, {});
    EXPECT_EQ(outcomeOf("battery -c 65536"), "5: No battery exists in controller with ID 65536!\n");
    EXPECT_EQ(outcomeOf("battery list x"), "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(outcomeOf("battery list x -i 0"), "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(outcomeOf("battery list"), "6: Invalid controller ID '' specified\n");
}

TEST_F(BatteryCommand, ReadsMissingValueFromAStaleSlotButNotPastTheTable) {
    expectQuery(4, {});
    EXPECT_EQ(run(ListBatteryInfo, splitWords("battery list"), {"4"}).result, 5);
    std::vector<std::string> words(16, "1");
    EXPECT_EQ(run(ListBatteryInfo, words).output, "Invalid controller ID '' specified\n");
}

TEST_F(BatteryCommand, ShowsTheFirstControllersBatteryWithoutWords) {
    expectQuery(0, {});
    EXPECT_EQ(run(ListBatteryInfo, {}, {"battery", "-i", "1"}).result, 5);
}
