// Metrics of controllers, their batteries and enclosures.
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/metrics.h"

template <typename Apply>
static void forEachController(const Report& report, Apply apply) {
    for (const Controller& controller : report.snapshot.controllers)
        apply(controller);
}

static void addControllerInfo(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        Labels labels = controllerLabels(controller);
        labels.emplace_back("bios", controller.info ? versionText(controller.info->biosVersion) : "");
        labels.emplace_back("firmware",
                            controller.version ? versionText(controller.version->firmwareVersion) : "");
        labels.emplace_back("driver", controller.driver ? versionText(controller.driver->driverVersion) : "");
        addSeries(series, labels, "1");
    });
}

static void addMemory(const Report& report, Series* series) {
    static constexpr std::int64_t bytesPerMb = 1048576;
    forEachController(report, [&](const Controller& controller) {
        if (controller.info)
            addSeries(series, controllerLabels(controller),
                      std::to_string(controller.info->memorySize * bytesPerMb));
    });
}

static void addAutoRebuild(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        if (controller.info)
            addSeries(series, controllerLabels(controller), yesNo(controller.info->autoRebuild != 0));
    });
}

static std::size_t countFaults(const Controller& controller) {
    std::size_t count = controller.faults.size();
    for (const Enclosure& enclosure : controller.enclosures)
        count += enclosure.faults.size();
    for (const Drive& drive : controller.drives)
        count += drive.faults.size();
    for (const LogicalDrive& drive : controller.logicalDrives)
        count += drive.faults.size();
    return count;
}

static void addFaultCounts(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        addSeries(series, controllerLabels(controller), std::to_string(countFaults(controller)));
    });
}

static void addBatteryPresent(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        if (controller.battery)
            addSeries(series, controllerLabels(controller), yesNo(hasBattery(controller)));
    });
}

static void addBatteryState(const Report& report, Series* series) {
    static constexpr const char* states[] = {"charging", "discharging", "full", "failed", "reconditioning"};
    forEachController(report, [&](const Controller& controller) {
        for (std::uint8_t state = 0; hasBattery(controller) && state < std::size(states); ++state) {
            Labels labels = controllerLabels(controller);
            labels.emplace_back("state", states[state]);
            addSeries(series, labels, yesNo(batteryState(controller) == state));
        }
    });
}

static void addBatteryTemperature(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        if (hasBattery(controller) && controller.battery->temperature != 0)
            addSeries(series, controllerLabels(controller),
                      decimal(batteryTenthsCelsius(*controller.battery), 1));
    });
}

static void addBatteryVoltage(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        if (hasBattery(controller) && controller.battery->voltage != kNoVoltage)
            addSeries(series, controllerLabels(controller), decimal(controller.battery->voltage, 3));
    });
}

static void addEnclosureInfo(const Report& report, Series* series) {
    forEachController(report, [&](const Controller& controller) {
        for (const Enclosure& enclosure : controller.enclosures) {
            Labels labels = controllerLabels(controller);
            labels.emplace_back("enclosure", std::to_string(enclosure.id));
            labels.emplace_back("type", enclosureTypeText(enclosure.entry.type));
            addSeries(series, labels, "1");
        }
    });
}

// The sensors of one type, numbered from 1 in each enclosure; places: decimals of their readings.
static void addSensors(const Report& report, Series* series, std::uint8_t type, int places) {
    forEachController(report, [&](const Controller& controller) {
        for (const Enclosure& enclosure : controller.enclosures) {
            int number = 0;
            if (!enclosure.status)
                continue;
            for (const EnclosureSensor& sensor : enclosure.status->sensor) {
                if (sensor.type != type)
                    continue;
                Labels labels = controllerLabels(controller);
                labels.emplace_back("enclosure", std::to_string(enclosure.id));
                labels.emplace_back("sensor", std::to_string(++number));
                addSeries(series, labels,
                          places > 0 ? decimal(sensor.reading, places)
                                     : std::to_string(static_cast<std::int32_t>(sensor.reading)));
            }
        }
    });
}

static void addFans(const Report& report, Series* series) {
    addSensors(report, series, kFanSensor, 0);
}

static void addTemperatures(const Report& report, Series* series) {
    addSensors(report, series, kTemperatureSensor, 0);
}

static void addRails5V(const Report& report, Series* series) {
    addSensors(report, series, kRail5VSensor, 3);
}

static void addRails12V(const Report& report, Series* series) {
    addSensors(report, series, kRail12VSensor, 3);
}

std::span<const MetricFamily> controllerMetrics() {
    static constexpr MetricFamily families[] = {
        {"sataraid_controller_info", "Versions of a controller; the value is always 1.", addControllerInfo},
        {"sataraid_controller_memory_bytes", "Cache memory of a controller.", addMemory},
        {"sataraid_controller_auto_rebuild_enabled",
         "Whether a controller rebuilds onto spares automatically.", addAutoRebuild},
        {"sataraid_controller_faults", "Operations of a controller that were refused or returned bad data.",
         addFaultCounts},
        {"sataraid_battery_present", "Whether a controller has a battery.", addBatteryPresent},
        {"sataraid_battery_state",
         "Whether this is the state of a battery: 1 for one of the states, 0 for the others.",
         addBatteryState},
        {"sataraid_battery_temperature_celsius", "Temperature of a battery.", addBatteryTemperature},
        {"sataraid_battery_voltage_volts", "Voltage of a battery.", addBatteryVoltage},
        {"sataraid_enclosure_info", "Type of an enclosure; the value is always 1.", addEnclosureInfo},
        {"sataraid_enclosure_fan_rpm", "Speed of a fan.", addFans},
        {"sataraid_enclosure_temperature_celsius", "Temperature of an enclosure.", addTemperatures},
        {"sataraid_enclosure_rail_5v_volts", "Voltage of a 5 V rail.", addRails5V},
        {"sataraid_enclosure_rail_12v_volts", "Voltage of a 12 V rail.", addRails12V},
    };
    return families;
}
