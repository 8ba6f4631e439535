// Session, controllers, battery, buzzer, enclosures and events.
#include <cstring>
#include <memory>
#include <set>

#include "adapter/battery.h"
#include "adapter/enclosure.h"
#include "tests/simulator/simulated_world.h"

class Controllers : public SimulatedWorld {};

TEST_F(Controllers, SessionChecksInitRecord) {
    ApiInitRecord record = {};
    EXPECT_NE(q5_initialize(nullptr), 0);
    EXPECT_NE(q5_initialize(&record), 0);
    record.signature = kApiSignature;
    EXPECT_NE(q5_initialize(&record), 0);
    EXPECT_NE(q5_discover(1), 0);
    EXPECT_NE(q5_finalize(), 0);
    open("bench");
    EXPECT_EQ(q5_discover(1), 0);
    EXPECT_NE(q5_discover(0), 0);
    std::uint32_t count = 0;
    EXPECT_EQ(q5_getNumberOfHBA(&count), 0);
    EXPECT_EQ(count, 1u);
    EXPECT_NE(q5_getNumberOfHBA(nullptr), 0);
    EXPECT_EQ(q5_finalize(), 0);
    EXPECT_NE(q5_getNumberOfHBA(&count), 0);
    EXPECT_EQ(count, 0u);
}

TEST_F(Controllers, BuiltinWorldHasTwoControllers) {
    open("");
    std::uint32_t count = 0;
    EXPECT_EQ(q5_getNumberOfHBA(&count), 0);
    EXPECT_EQ(count, 2u);
    ControllerInfo info = {};
    ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.memoryType, 1);
    EXPECT_EQ(info.diskCount, 8);
    EXPECT_EQ(info.arrayCount, 2);
    EXPECT_EQ(info.autoRebuild, 1);
    query.controllerId = 1;
    EXPECT_EQ(q5_getControllerInfo(hbaAddress(1), 0, &query, &info, sizeof info), 0);
    EXPECT_NE(info.memoryType, 1);
    EXPECT_EQ(info.diskCount, 4);
    EXPECT_EQ(info.arrayCount, 1);
    EXPECT_EQ(arrayInfo(0, 0).raidLevel, kRaid5);
    EXPECT_EQ(arrayInfo(0, 1).raidLevel, kRaid1);
    EXPECT_EQ(arrayInfo(1, 0).raidLevel, kRaid10);
    EXPECT_EQ(extentText(5, 0), "0 spare 476940");
    EXPECT_EQ(driveInfo(0, 0).enclosureId, 0);
    EXPECT_EQ(driveInfo(1, 0).enclosureId, 255);
    EXPECT_EQ(eventTexts(0, 51).size(), 3u);
}

TEST_F(Controllers, ReturnsVersionRecord) {
    open("");
    ControllerVersionInfo info = {};
    const ControllerQuery query = {0, 1, kVersionInfo, {}};
    EXPECT_EQ(q5_getControllerInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.firmwareVersion.major, 2);
    EXPECT_EQ(info.firmwareVersion.fourth, 7);
    DriverInfo driver = {};
    EXPECT_EQ(q5_getDriverInfo(hbaAddress(1), 0, &driver), 0);
    EXPECT_EQ(driver.driverVersion.minor, 8);
    DiscoverPathInfo path = {};
    EXPECT_EQ(q5_getDiscoverPath(hbaAddress(0), &path, sizeof path), 0);
    EXPECT_EQ(path.irq, 16);
    EXPECT_EQ(path.baseAddressSdram, 0xD0000000u);
}

TEST_F(Controllers, RepliesWriteNothingAfterRecord) {
    open("");
    std::uint8_t buffer[500];
    std::memset(buffer, 0xAA, sizeof buffer);
    const ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerInfo(hbaAddress(0), 0, &query, buffer, 432), 0);
    EXPECT_EQ(buffer[431], 0);
    EXPECT_EQ(buffer[432], 0xAA);
}

TEST_F(Controllers, StoresSettings) {
    open("bench");
    ControllerSettings settings = {};
    const ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    EXPECT_EQ(settings.rebuildRate, 1);
    EXPECT_EQ(settings.smartPollInterval, 10);
    EXPECT_EQ(settings.smartCheck, 1);
    settings.rebuildRate = 255;
    settings.smartPollInterval = 7;
    settings.smartCheck = 0;
    settings.rebuildPolicy = 1;
    EXPECT_EQ(q5_setControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    ControllerInfo info = {};
    EXPECT_EQ(q5_getControllerInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.rebuildRate, 255);
    EXPECT_EQ(info.smartPollInterval, 7);
    EXPECT_EQ(info.smartCheck, 0);
    EXPECT_EQ(newestEvent(), "Controller settings changed");
}

TEST_F(Controllers, RejectsInvalidSettings) {
    open("bench");
    ControllerSettings settings = {};
    const ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    const std::string before = stateText();
    for (std::uint8_t* field :
         {&settings.rebuildRate, &settings.smartPollInterval, &settings.encPollInterval}) {
        ControllerSettings kept = settings;
        *field = 0;
        EXPECT_NE(q5_setControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
        settings = kept;
    }
    settings.autoRebuild = 2;
    EXPECT_NE(q5_setControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    EXPECT_EQ(stateText(), before);
}

TEST_F(Controllers, ReportsBatteryTemperatureInTenthsOfKelvin) {
    open("");
    BatteryInfo info = {};
    const BatteryQuery query = {};
    EXPECT_EQ(q5_getBatteryInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.temperature, 2731 + 312);
    EXPECT_EQ(info.voltage, 4105);
    EXPECT_EQ(info.status, 0x82);
    EXPECT_EQ(q5_getBatteryInfo(hbaAddress(1), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.status, 0);
    EXPECT_EQ(info.temperature, 0);
}

TEST_F(Controllers, ReportsBatteryWithoutVoltage) {
    open("settings");
    BatteryInfo info = {};
    const BatteryQuery query = {};
    EXPECT_EQ(q5_getBatteryInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.temperature, 2726);
    EXPECT_EQ(info.voltage, 0xCCCC);
    EXPECT_EQ(info.status, 0x80);
}

TEST_F(Controllers, EachControllerHasItsOwnBuzzer) {
    open("");
    std::uint8_t first = 9, second = 9;
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_EQ(q5_turnOnBuzzer(hbaAddress(1), 0, 0), 0);
    EXPECT_EQ(q5_getBuzzerStatus(hbaAddress(0), 0, &first, 1), 0);
    EXPECT_EQ(q5_getBuzzerStatus(hbaAddress(1), 0, &second, 1), 0);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(newestEvent(0), "Buzzer disabled");
    EXPECT_EQ(newestEvent(1), "Buzzer enabled");
    EXPECT_NE(q5_turnOnBuzzer(hbaAddress(2), 0, 0), 0);
}

TEST_F(Controllers, ReportsEachEnclosureType) {
    open("enclosures");
    const std::uint8_t types[] = {1, 2, 3, 4, 5, 6, 9, 0, 0};
    for (std::uint16_t id = 0; id < 9; id++) {
        Reply<EnclosureEntry, 16> reply = {};
        const EnclosureQuery query = {id, 1};
        EXPECT_EQ(q5_getEnclosureInfo(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
        EXPECT_EQ(reply.record[0].type, types[id]) << id;
        EXPECT_EQ(reply.record[1].type, 0);
        EXPECT_EQ(reply.header.bytesUsed, 80u);
    }
    Reply<EnclosureEntry, 16> all = {};
    const EnclosureQuery query = {2, 16};
    EXPECT_EQ(q5_getEnclosureInfo(hbaAddress(0), 0, &query, &all, sizeof all), 0);
    EXPECT_EQ(all.header.bytesUsed, 64u + 14 * 16);
    EXPECT_EQ(all.record[0].type, 3);
    EXPECT_EQ(all.record[4].type, 9);
}

TEST_F(Controllers, SensorsDriftReproducibly) {
    open("enclosures");
    const EnclosureQuery query = {0, 1};
    std::set<std::uint32_t> fans;
    for (int minute = 0; minute < 20; minute++) {
        waitSeconds(60);
        EnclosureStatus one = {}, two = {};
        EXPECT_EQ(q5_getEnclosureStatus(hbaAddress(0), 0, &query, &one, sizeof one), 0);
        EXPECT_EQ(q5_getEnclosureStatus(hbaAddress(0), 0, &query, &two, sizeof two), 0);
        EXPECT_EQ(std::memcmp(&one, &two, sizeof one), 0);
        fans.insert(one.sensor[0].reading);
        EXPECT_EQ(one.sensor[0].type, kFanSensor);
        EXPECT_NEAR(static_cast<double>(one.sensor[0].reading), 3000, 40);
        EXPECT_NEAR(static_cast<double>(one.sensor[1].reading), 30, 1);
        EXPECT_NEAR(static_cast<double>(one.sensor[3].reading), 5020, 15);
        EXPECT_NEAR(static_cast<double>(one.sensor[4].reading), 12000, 30);
    }
    EXPECT_GT(fans.size(), 5u);
}

TEST_F(Controllers, ReturnsNewestEventsOldestFirst) {
    open("bench");
    q5_turnOffBuzzer(hbaAddress(0), 0, 0);
    q5_turnOnBuzzer(hbaAddress(0), 0, 0);
    const ExtentRef extent = {0, 0};
    q5_splitHBAExtent(hbaAddress(0), 0, &extent, 1);
    EXPECT_EQ(eventTexts(0, 2),
              (std::vector<std::string>{"Buzzer enabled", "Drive 1: extent 0 split at 1 MB"}));
    EXPECT_EQ(eventTexts(0, 2).size(), 2u); // reading does not remove them
    EXPECT_EQ(eventTexts(0, 100).size(), 3u);
    EXPECT_EQ(eventTexts(0, 0).size(), 0u);
    Reply<HBAEvent, 51> reply = {};
    EventQuery query = {-1, 1};
    EXPECT_EQ(q5_getHBAEvents(hbaAddress(0), 0, &query, &reply, 20872), 0);
    EXPECT_EQ(reply.record[0].eventId, 3u);
}

// A caller may request a hundred events with a buffer for fifty-one.
TEST_F(Controllers, EventsStayWithinBufferSize) {
    open("bench");
    for (int i = 0; i < 30; i++) {
        q5_turnOffBuzzer(hbaAddress(0), 0, 0);
        q5_turnOnBuzzer(hbaAddress(0), 0, 0);
    }
    const auto reply = std::make_unique<Reply<HBAEvent, 100>>();
    std::memset(static_cast<void*>(reply.get()), 0xAA, sizeof *reply);
    EventQuery query = {-1, 100};
    EXPECT_EQ(q5_getHBAEvents(hbaAddress(0), 0, &query, reply.get(), 20872), 0);
    EXPECT_EQ(query.count, 51u);
    EXPECT_EQ(reply->record[0].eventId, 10u);
    EXPECT_EQ(reply->record[50].eventId, 60u);
    EXPECT_EQ(reply->record[51].reserved0[0], 0xAA);
    query = {3, 5};
    EXPECT_NE(q5_getHBAEvents(hbaAddress(0), 0, &query, reply.get(), 20872), 0);
    EXPECT_EQ(query.count, 0u);
    EXPECT_EQ(reply->record[0].eventId, 0u);
}

TEST_F(Controllers, DropsOldEvents) {
    open("bench");
    for (int i = 0; i < 150; i++) {
        q5_turnOffBuzzer(hbaAddress(0), 0, 0);
        q5_turnOnBuzzer(hbaAddress(0), 0, 0);
    }
    EXPECT_EQ(fileText().find("{\"id\": 44,"), std::string::npos); // 300 events, 256 kept
    EXPECT_NE(fileText().find("{\"id\": 45,"), std::string::npos);
}
