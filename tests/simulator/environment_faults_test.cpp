// Battery, SMART, sensors, enclosures, controllers and power.
#include <algorithm>

#include "adapter/battery.h"
#include "adapter/enclosure.h"
#include "tests/simulator/faulted_world.h"

using Environment = FaultedWorld;

static std::uint8_t batteryStatus() {
    BatteryInfo info = {};
    const BatteryQuery query = {};
    EXPECT_EQ(q5_getBatteryInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    return info.status;
}

class BatteryFaults : public FaultedWorld {
protected:
    void SetUp() override { open(""); }
    static std::string set(std::uint8_t state) {
        return inject([=](q5sim::Controller& c, std::int64_t at) { return q5sim::setBattery(c, state, at); });
    }
};

TEST_F(BatteryFaults, FailureTurnsWriteBackIntoWriteThrough) {
    EXPECT_EQ(arrayInfo(0, 0).writeCacheMode, kWriteBack);
    EXPECT_EQ(set(kBatteryFailed), "");
    EXPECT_EQ(arrayInfo(0, 0).writeCacheMode, 0u);
    EXPECT_EQ(lastEvents(3), "Battery has failed\n"
                             "Logical drive 0: write cache is write-through without a battery\n"
                             "Logical drive 1: write cache is write-through without a battery\n");
    EXPECT_EQ(set(kBatteryFailed), "the battery has failed already");
    EXPECT_EQ(set(kBatteryFull), "");
    EXPECT_EQ(arrayInfo(0, 0).writeCacheMode, kWriteBack);
    EXPECT_EQ(lastEvents(3), "Battery is fully charged\n"
                             "Logical drive 0: write cache is write-back again\n"
                             "Logical drive 1: write cache is write-back again\n");
}

TEST_F(BatteryFaults, RemovedBatteryIsReportedAsNone) {
    EXPECT_EQ(set(q5sim::kBatteryMissing), "");
    EXPECT_EQ(batteryStatus(), 0);
    EXPECT_EQ(arrayInfo(0, 0).writeCacheMode, 0u);
}

TEST_F(BatteryFaults, ChargingTakesFourHours) {
    EXPECT_EQ(set(kBatteryCharging), "");
    waitSeconds(4 * 3600 - 1);
    EXPECT_EQ(batteryStatus(), 0x80 | kBatteryCharging);
    waitSeconds(1);
    EXPECT_EQ(batteryStatus(), 0x80 | kBatteryFull);
    EXPECT_EQ(newestEvent(), "Battery is fully charged");
}

TEST_F(BatteryFaults, DischargedBatteryFails) {
    EXPECT_EQ(set(kBatteryDischarging), "");
    waitSeconds(2 * 3600);
    EXPECT_EQ(batteryStatus(), 0x80 | kBatteryFailed);
    EXPECT_EQ(arrayInfo(0, 0).writeCacheMode, 0u);
}

TEST_F(Environment, ControllerWithoutBatteryKeepsWriteBack) {
    open("bench");
    EXPECT_EQ(create(request(kRaid1, 400, {0, 1})), 0);
    EXPECT_EQ(arrayInfo(0, 0).writeCacheMode, kWriteBack);
}

TEST_F(Environment, SmartWarningIsLoggedOnce) {
    open("bench");
    const auto smart = [](bool failure) {
        return inject(
            [=](q5sim::Controller& c, std::int64_t) { return q5sim::setSmartFailure(c, 3, failure); });
    };
    EXPECT_EQ(smart(true), "");
    EXPECT_EQ(lastEvents(9), "Drive 4: SMART predicts a failure\n");
    EXPECT_NE(driveInfo(0, 3).extent[0].access & kExtentSmartFailed, 0);
    EXPECT_EQ(smart(true), "SMART of drive 4 predicts a failure already");
    EXPECT_EQ(smart(false), "");
    EXPECT_EQ(newestEvent(), "Drive 4: SMART no longer predicts a failure");
}

TEST_F(Environment, SensorsOutOfRangeAreLogged) {
    open("");
    const auto fan = [](std::int32_t reading) {
        return inject(
            [=](q5sim::Controller& c, std::int64_t) { return q5sim::setSensor(c, 0, kFanSensor, reading); });
    };
    EXPECT_EQ(fan(999), "");
    EXPECT_EQ(newestEvent(), "Enclosure 0: fan 999 is out of range");
    EXPECT_EQ(fan(1000), "");
    EXPECT_EQ(newestEvent(), "Enclosure 0: fan 1000 is back in range");
    EXPECT_EQ(
        inject([](q5sim::Controller& c, std::int64_t) { return q5sim::setSensor(c, 3, kFanSensor, 1); }),
        "there is no enclosure 3");
}

class Sensors : public FaultedWorld {
protected:
    // The readings over twenty minutes, after the first sensor of the type is set to this one.
    std::vector<std::int32_t> readings(std::int32_t reading, std::uint8_t type = kFanSensor) {
        const auto set = [=](q5sim::Controller& c, std::int64_t) {
            return q5sim::setSensor(c, 0, type, reading);
        };
        EXPECT_EQ(inject(set), "");
        const EnclosureQuery query = {0, 1};
        std::vector<std::int32_t> all;
        for (int minute = 0; minute < 20; minute++) {
            waitSeconds(60);
            EnclosureStatus status = {};
            EXPECT_EQ(q5_getEnclosureStatus(hbaAddress(0), 0, &query, &status, sizeof status), 0);
            const auto sensor = std::find_if(std::begin(status.sensor), std::end(status.sensor),
                                             [=](const EnclosureSensor& each) { return each.type == type; });
            all.push_back(static_cast<std::int32_t>(sensor->reading));
        }
        return all;
    }
};

// Its reading would otherwise be positive at times.
TEST_F(Sensors, OfAStoppedFanDoNotDrift) {
    open("");
    EXPECT_EQ(readings(0), std::vector<std::int32_t>(20, 0));
}

// The drift is up to 40 rpm.
TEST_F(Sensors, OfFansDoNotTurnBackward) {
    open("");
    const std::vector<std::int32_t> all = readings(30);
    EXPECT_EQ(*std::min_element(all.begin(), all.end()), 0);
    EXPECT_GT(*std::max_element(all.begin(), all.end()), 0);
}

// Voltages are reported without a sign.
TEST_F(Sensors, OfRailsAreNotNegative) {
    open("");
    const std::vector<std::int32_t> all = readings(0, kRail5VSensor);
    EXPECT_EQ(*std::min_element(all.begin(), all.end()), 0);
}

// All drives disappear at once: both arrays go offline and return unchanged.
TEST_F(Environment, EnclosureIsRemovedAndInsertedWithItsDrives) {
    open("");
    EXPECT_EQ(inject([](q5sim::Controller& c, std::int64_t at) { return q5sim::pullEnclosure(c, 0, at); }),
              "");
    EXPECT_TRUE(controller().drives.empty());
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, 0);
    EXPECT_EQ(insert(0), "enclosure 0 has been removed");
    EXPECT_EQ(inject([](q5sim::Controller& c, std::int64_t at) { return q5sim::insertEnclosure(c, 0, at); }),
              "");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(arrayInfo(0, 1).functionalStatus, kOnline);
    EXPECT_EQ(extentText(5, 0), "0 spare 476940");
    EXPECT_EQ(inject([](q5sim::Controller& c, std::int64_t at) { return q5sim::insertEnclosure(c, 0, at); }),
              "enclosure 0 is there already");
}

TEST_F(Environment, ReplacedControllerFindsItsArrays) {
    open("");
    EXPECT_EQ(inject([](q5sim::Controller& c, std::int64_t at) {
                  q5sim::swapController(c, at);
                  return q5sim::Reason();
              }),
              "");
    EXPECT_EQ(lastEvents(9), "Controller replaced, configuration read from the drives\n");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_FALSE(controller().autoRebuild); // a default
}

class PowerCut : public FaultedArray {
protected:
    static void cut() {
        EXPECT_EQ(q5sim::changeWorld([](q5sim::World& world, std::int64_t at) {
                      q5sim::cutPower(world, at);
                      return 0;
                  }),
                  0);
        EXPECT_EQ(q5sim::findViolations(*q5sim::currentWorld()), std::vector<std::string>());
    }
};

TEST_F(PowerCut, WrittenArraySynchronizesAndLosesItsCache) {
    cut();
    EXPECT_EQ(lastEvents(3), "Controller restarted after a power cut\n"
                             "Logical drive 0: cached writes lost\n"
                             "Logical drive 0: synchronization started\n");
    waitSeconds(50);
    EXPECT_EQ(newestEvent(), "Logical drive 0: synchronization ended");
    const RedundancyCheckRequest check = {};
    EXPECT_EQ(q5_startRedundancyCheck(hbaAddress(0), 0, &check), 0);
    waitSeconds(50);
    EXPECT_EQ(newestEvent(), "Logical drive 0: redundancy check found 8 inconsistencies, repaired");
}

TEST_F(PowerCut, IdleArrayIsUnaffected) {
    replaceInFile("\"idle\": false", "\"idle\": true");
    cut();
    EXPECT_EQ(newestEvent(), "Controller restarted after a power cut");
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
}

TEST_F(PowerCut, WriteThroughLosesNothing) {
    replaceInFile("\"cacheFlags\": 1", "\"cacheFlags\": 0");
    cut();
    EXPECT_EQ(lastEvents(2),
              "Controller restarted after a power cut\nLogical drive 0: synchronization started\n");
}

TEST_F(PowerCut, BatteryKeepsTheCache) {
    EXPECT_EQ(
        inject([](q5sim::Controller& c, std::int64_t at) { return q5sim::setBattery(c, kBatteryFull, at); }),
        "");
    cut();
    EXPECT_EQ(lastEvents(2),
              "Controller restarted after a power cut\nLogical drive 0: synchronization started\n");
}

// Members of 200,000 MB at rate 128: 1024 MB per second, a checkpoint each second.
TEST_F(Environment, RebuildResumesFromItsCheckpoint) {
    open("");
    EXPECT_EQ(fail(1), "");
    waitSeconds(98);
    const std::string before = lastEvents(1);
    EXPECT_EQ(before, "Logical drive 0: rebuild onto drive 6 started\n");
    q5sim::changeWorld([](q5sim::World& world, std::int64_t at) {
        q5sim::cutPower(world, at);
        return 0;
    });
    EXPECT_EQ(newestEvent(), "Logical drive 1: synchronization started");
    EXPECT_EQ(eventTexts(0, 2)[0], "Logical drive 0: rebuild resumed at 50 percent");
    waitSeconds(98);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kSynchronizing); // after the rebuild
}

// Members of 400 MB are smaller than the distance of checkpoints.
TEST_F(PowerCut, MigrationResumesFromItsCheckpoint) {
    MigrateRequest migrate = {};
    migrate.raidLevel = kRaid5;
    migrate.memberCount = 1;
    migrate.member[0].driveId = 3;
    EXPECT_EQ(q5_migrateHBAArray(hbaAddress(0), 0, &migrate), 0);
    waitSeconds(40);
    cut();
    EXPECT_EQ(newestEvent(), "Logical drive 0: migration resumed at 0 percent");
    waitSeconds(49);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kMigrating);
    waitSeconds(1);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 2 3");
}
