// A controller's own properties, its battery and its enclosures.
#include <algorithm>

#include "tools/capture/convert.h"

bool contains(const std::vector<std::uint16_t>& ids, std::uint32_t id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

void noteFaults(const Place& place, const Faults& faults) {
    for (const Fault& fault : faults)
        noteMissing(place, faultText(fault));
}

static q5sim::Version versionOf(const VersionNumber& number) {
    return {{number.major, number.minor, number.third, number.fourth}};
}

static void convertInfo(Conversion& conversion) {
    if (const auto& version = conversion.from.version)
        conversion.to.firmware = versionOf(version->firmwareVersion);
    if (const auto& driver = conversion.from.driver)
        conversion.to.driver = versionOf(driver->driverVersion);
    const auto& info = conversion.from.info;
    if (!info)
        return;
    conversion.to.bios = versionOf(info->biosVersion);
    conversion.to.ecc = info->memoryType == 1;
    conversion.to.memoryMb = info->memorySize;
    conversion.to.maxExtentsPerDisk = info->maxExtentsPerDisk;
    conversion.to.maxPorts = info->maxPorts;
}

static void convertSettings(Conversion& conversion) {
    const auto& settings = conversion.from.settings;
    if (!settings)
        return;
    conversion.to.rates = {settings->rebuildRate, settings->syncRate, settings->mpRate, settings->initRate,
                           settings->migrateRate};
    conversion.to.autoRebuild = settings->autoRebuild != 0;
    conversion.to.rebuildPolicy = settings->rebuildPolicy != 0;
    conversion.to.smartCheck = settings->smartCheck != 0;
    conversion.to.smartPoll = settings->smartPollInterval;
    conversion.to.encPoll = settings->encPollInterval;
}

static void convertBusLocation(Conversion& conversion) {
    if (const auto& place = conversion.from.place)
        conversion.to.busLocation = {place->irq,
                                     place->logicalSlot,
                                     place->biosMemoryStart,
                                     place->biosMemoryRange,
                                     place->busMasterBase,
                                     place->baseAddressAta,
                                     place->baseAddressXor,
                                     place->baseAddressSeq,
                                     place->baseAddressMmio,
                                     place->baseAddressSdram};
}

// Whether a controller without a battery once had one: its caches are set to write back, but do not.
static bool hasLostBattery(const Controller& controller) {
    return std::any_of(controller.logicalDrives.begin(), controller.logicalDrives.end(),
                       [](const LogicalDrive& drive) {
                           return drive.settings && (drive.settings->cacheFlags & kWriteBack) != 0 &&
                                  (drive.info.writeCacheMode & kWriteBack) == 0;
                       });
}

static constexpr std::int32_t kZeroCelsius = 2731; // tenths of a kelvin
static constexpr std::uint8_t kStateMask = 0x7F;

static void convertPresentBattery(Conversion& conversion, const BatteryInfo& info) {
    q5sim::Battery& battery = conversion.to.battery;
    battery.temperature = info.temperature - kZeroCelsius;
    battery.voltage = info.voltage == kNoVoltage ? -1 : info.voltage;
    battery.state = info.status & kStateMask;
    if (battery.state > kBatteryReconditioning) {
        noteMissing(below(conversion.place, "battery"), "its state is unknown; taken as failed");
        battery.state = kBatteryFailed;
    }
}

static void convertBattery(Conversion& conversion) {
    const auto& info = conversion.from.battery;
    const bool present = info && info->status != 0;
    conversion.to.hasBattery = present || hasLostBattery(conversion.from);
    if (!conversion.to.hasBattery)
        return;
    q5sim::Battery& battery = conversion.to.battery;
    battery.state = q5sim::kBatteryMissing;
    if (present)
        convertPresentBattery(conversion, *info);
    else
        noteAssumption(below(conversion.place, "battery"),
                       "missing, since write-back is set but not in effect");
    battery.reportedState = battery.state;
    conversion.to.writeThroughForced =
        battery.state == kBatteryFailed || battery.state == q5sim::kBatteryMissing;
}

static q5sim::Enclosure convertEnclosure(const Enclosure& from, const Place& place) {
    q5sim::Enclosure enclosure = {static_cast<std::uint16_t>(from.id), from.entry.type, {}};
    noteFaults(place, from.faults);
    if (!from.status)
        return enclosure;
    for (const EnclosureSensor& sensor : from.status->sensor)
        enclosure.sensors.push_back({sensor.type, static_cast<std::int32_t>(sensor.reading), false, true});
    while (!enclosure.sensors.empty() && enclosure.sensors.back().type == 0 &&
           enclosure.sensors.back().reading == 0)
        enclosure.sensors.pop_back();
    return enclosure;
}

static void convertEnclosures(Conversion& conversion) {
    for (const Enclosure& enclosure : conversion.from.enclosures) {
        const std::size_t position = conversion.to.enclosures.size();
        conversion.to.enclosures.push_back(
            convertEnclosure(enclosure, below(conversion.place, "enclosures", position)));
    }
}

q5sim::Controller convertController(const Controller& controller, const Place& place, std::int64_t now) {
    q5sim::Controller converted;
    Conversion conversion = {controller, converted, place, now};
    noteFaults(place, controller.faults);
    convertInfo(conversion);
    convertSettings(conversion);
    convertBusLocation(conversion);
    if (!controller.buzzer)
        noteMissing(below(place, "buzzer"), "the adapter does not know; taken as on");
    converted.buzzer = controller.buzzer.value_or(1) != 0;
    convertBattery(conversion);
    convertEnclosures(conversion);
    convertDrives(conversion);
    convertLogicalDrives(conversion);
    convertExtents(conversion);
    convertShares(conversion);
    convertActivities(conversion);
    inferStates(conversion);
    compareWithModel(conversion);
    return converted;
}
