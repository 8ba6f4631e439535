// cli-status --changes: sensors that an enclosure does not list for a while.
#include "tests/status/history.h"

struct SensorChanges : ShortLists {
    const std::string of = "enclosure 0 of controller 0: ";
    const std::string stopped = of + "fan 1 has stopped (0 rpm)\n";

    Json& enclosure() { return controller()["enclosures"][0]; }
    Json& sensor(std::size_t number) { return enclosure()["sensors"][number]; }
    void expectNothing(int status) {
        expectChanges(status, "");
        expectChanges(status, "");
    }
};

// The healthy world lists a fan, a temperature, the 5 V rail and the 12 V rail.
TEST_F(SensorChanges, KeepTheProblemsOfUnlistedSensors) {
    sensor(0)["reading"] = 0;
    sensor(1)["reading"] = 62;
    sensor(2)["reading"] = 4705;
    sensor(3)["reading"] = 8015;
    expectChanges(2, "critical: " + stopped + //
                         "critical: " + of +
                         "temperature 1 is at 63 degrees Celsius\n" //
                         "critical: " +
                         of +
                         "12 V rail is at 8.000 V\n"
                         "warning: " +
                         of + "5 V rail is at 4.700 V\n");
    zero("q5_getEnclosureStatus");
    expectNothing(0);
    refuseNothing();
    expectNothing(2);
}

// The reply ends within the third sensor.
TEST_F(SensorChanges, KeepTheProblemsOfSensorsThatAShortReplyLacks) {
    const std::string low = of + "12 V rail is at 8.000 V\n";
    sensor(3)["reading"] = 8015;
    expectChanges(2, "critical: " + low);
    shorten("q5_getEnclosureStatus");
    sensor(0)["reading"] = 0;
    expectChanges(2, "critical: " + stopped);
    refuseNothing();
    sensor(3)["reading"] = 12000;
    expectChanges(2, "info: no longer: " + low);
}

TEST_F(SensorChanges, ReportWhatChangedWhileASensorWasUnlisted) {
    sensor(0)["reading"] = 0;
    expectChanges(2, "critical: " + stopped);
    zero("q5_getEnclosureStatus");
    expectNothing(0);
    sensor(0)["reading"] = 2700;
    sensor(3)["reading"] = 8015;
    refuseNothing();
    expectChanges(2, "critical: " + of + "12 V rail is at 8.000 V\ninfo: no longer: " + stopped);
    expectChanges(2, "");
}

// A place without a sensor does not renumber those after it.
TEST_F(SensorChanges, KeepTheNumbersOfTheOthers) {
    const Json fan = sensor(0);
    enclosure()["sensors"].push_back(fan);
    sensor(0)["reading"] = 0;
    expectChanges(2, "critical: " + stopped);
    sensor(0)["type"] = "none";
    expectNothing(0);
    sensor(4)["reading"] = 0;
    expectChanges(2, "critical: " + of + "fan 2 has stopped (0 rpm)\n");
    sensor(0) = fan;
    expectChanges(2, "info: no longer: " + stopped);
}

// The sensors after the one that is unlisted move up.
TEST_F(SensorChanges, RecognizeTheSensorsInOtherPlaces) {
    const Json all = enclosure()["sensors"];
    sensor(0)["reading"] = 0;
    expectChanges(2, "critical: " + stopped);
    enclosure()["sensors"].erase(0);
    expectNothing(0);
    sensor(2)["reading"] = 8020;
    expectChanges(2, "critical: " + of + "12 V rail is at 8.000 V\n");
    enclosure()["sensors"] = all;
    expectChanges(0, "info: no longer: " + stopped + "info: no longer: " + of + "12 V rail is at 8.000 V\n");
}

TEST_F(SensorChanges, KeepTheLastOfTheFansThatMoveUp) {
    enclosure()["sensors"] = {sensor(0), sensor(0), sensor(0), sensor(3)};
    sensor(1)["reading"] = sensor(2)["reading"] = 0;
    const std::string others[] = {of + "fan 2 has stopped (0 rpm)\n", of + "fan 3 has stopped (0 rpm)\n"};
    expectChanges(2, "critical: " + others[0] + "critical: " + others[1]);
    const Json all = enclosure()["sensors"];
    enclosure()["sensors"] = {all[0], all[3]};
    expectNothing(0);
    enclosure()["sensors"] = all;
    expectNothing(2);
    sensor(2)["reading"] = 2700;
    expectChanges(2, "info: no longer: " + others[1]);
}

// Only a baseline shows that a sensor is not unlisted for a while.
TEST_F(SensorChanges, ReportOnceThatTheBaselineHasMoreSensors) {
    const std::string fewer = of + "reports fewer sensors: fan (0 of 1)\n";
    const std::string fault = of + "q5_getEnclosureStatus failed with result 1\n";
    const std::vector<std::string> words = {"--changes", kept, "--baseline", before};
    const Json all = enclosure()["sensors"];
    expect(words, 0, "");
    enclosure()["sensors"].erase(0);
    expect(words, 1, "warning: " + fewer);
    expect(words, 1, "");
    expectNothing(0);
    refuse("q5_getEnclosureStatus");
    expectChanges(3, "unknown: " + fault);
    expect(words, 3, "");
    refuseNothing();
    expect(words, 1, "info: no longer: " + fault);
    enclosure()["sensors"] = all;
    expect(words, 0, "info: no longer: " + fewer);
    expect(words, 0, "");
}

// Another enclosure has sensors of its own.
TEST_F(SensorChanges, DoNotKeepTheSensorsOfAnEnclosureThatWasReplaced) {
    sensor(0)["reading"] = 0;
    expectChanges(2, "critical: " + stopped);
    enclosure()["type"] = "Traybox 100";
    enclosure()["sensors"].erase(0);
    expectChanges(0,
                  "info: " + of + "is now Traybox 100; it was Traybox 400\n" + "info: no longer: " + stopped);
    expectChanges(0, "");
}
