// Rules about batteries and enclosures.
#include <cstdlib>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

template <typename Apply>
static void forEachBattery(Evaluation* evaluation, Apply apply) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (hasBattery(controller))
            apply(controller, *controller.battery);
}

static void findBatteriesIn(Evaluation* evaluation, std::uint8_t state, const char* text) {
    forEachBattery(evaluation, [&](const Controller& controller, const BatteryInfo&) {
        if (batteryState(controller) == state)
            addFinding(evaluation, batteryOf(controller), text);
    });
}

void findFailedBatteries(Evaluation* evaluation) {
    findBatteriesIn(evaluation, kBatteryFailed, "does not work");
}

void findDischargingBatteries(Evaluation* evaluation) {
    findBatteriesIn(evaluation, kBatteryDischarging, "is discharging");
}

void findReconditioningBatteries(Evaluation* evaluation) {
    findBatteriesIn(evaluation, kBatteryReconditioning, "is being reconditioned");
}

// Temperatures in degrees, from <= reading < below. A reading of 0 kelvin is not a temperature.
static void findBatteriesBetween(Evaluation* evaluation, int from, int below) {
    forEachBattery(evaluation, [&](const Controller& controller, const BatteryInfo& battery) {
        const std::int32_t tenths = batteryTenthsCelsius(battery);
        if (battery.temperature != 0 && tenths >= 10 * from && tenths < 10 * below)
            addFindingOf(evaluation, batteryOf(controller), {"temperature"},
                         "is at " + decimal(tenths, 1) + " degrees Celsius");
    });
}

static constexpr int kMaxCelsius = 10000; // above any possible reading

void findHotBatteries(Evaluation* evaluation) {
    findBatteriesBetween(evaluation, evaluation->limits.batteryHotCelsius, kMaxCelsius);
}

void findWarmBatteries(Evaluation* evaluation) {
    findBatteriesBetween(evaluation, evaluation->limits.batteryWarmCelsius,
                         evaluation->limits.batteryHotCelsius);
}

// apply(object, reading, number): number counts the sensors of this type in the enclosure from 1.
template <typename Apply>
static void forEachSensor(Evaluation* evaluation, std::uint8_t type, Apply apply) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const Enclosure& enclosure : controller.enclosures) {
            int number = 0;
            if (enclosure.status)
                for (const EnclosureSensor& sensor : enclosure.status->sensor)
                    if (sensor.type == type)
                        apply(objectOf(controller, enclosure), sensor.reading, ++number);
        }
}

void findStoppedFans(Evaluation* evaluation) {
    forEachSensor(evaluation, kFanSensor, [&](const Object& object, std::uint32_t reading, int number) {
        const auto speed = static_cast<std::int32_t>(reading);
        const std::string fan = "fan " + std::to_string(number);
        if (speed <= evaluation->limits.fanStoppedRpm)
            addFindingOf(evaluation, object, {fan}, fan + " has stopped (" + std::to_string(speed) + " rpm)");
    });
}

static void findEnclosuresBetween(Evaluation* evaluation, int from, int below) {
    forEachSensor(evaluation, kTemperatureSensor,
                  [&](const Object& object, std::uint32_t reading, int number) {
                      const auto celsius = static_cast<std::int32_t>(reading);
                      const std::string sensor = "temperature " + std::to_string(number);
                      if (celsius >= from && celsius < below)
                          addFindingOf(evaluation, object, {sensor},
                                       sensor + " is at " + std::to_string(celsius) + " degrees Celsius");
                  });
}

void findHotEnclosures(Evaluation* evaluation) {
    findEnclosuresBetween(evaluation, evaluation->limits.enclosureHotCelsius, INT32_MAX);
}

void findWarmEnclosures(Evaluation* evaluation) {
    findEnclosuresBetween(evaluation, evaluation->limits.enclosureWarmCelsius,
                          evaluation->limits.enclosureHotCelsius);
}

struct Rail {
    std::uint8_t type;
    std::int64_t millivolts;
};
static constexpr Rail kRails[] = {{kRail5VSensor, 5000}, {kRail12VSensor, 12000}};

// Deviations in percent, from <= deviation < below.
static void findVoltagesBetween(Evaluation* evaluation, int from, int below) {
    for (const Rail& rail : kRails)
        forEachSensor(evaluation, rail.type, [&](const Object& object, std::uint32_t reading, int number) {
            const std::int64_t off = (static_cast<std::int64_t>(reading) - rail.millivolts) * 100;
            if (std::abs(off) >= from * rail.millivolts && std::abs(off) < below * rail.millivolts)
                addFindingOf(evaluation, object,
                             {std::string(sensorTypeText(rail.type)) + " " + std::to_string(number)},
                             std::string(sensorTypeText(rail.type)) + " is at " + decimal(reading, 3) + " V");
        });
}

void findVoltagesFarOff(Evaluation* evaluation) {
    findVoltagesBetween(evaluation, evaluation->limits.voltageCriticalPercent, INT32_MAX);
}

void findVoltagesOff(Evaluation* evaluation) {
    findVoltagesBetween(evaluation, evaluation->limits.voltageWarningPercent,
                        evaluation->limits.voltageCriticalPercent);
}
