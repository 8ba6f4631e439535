// Fault injection beyond drives: battery, sensors, enclosures, controllers, power.
#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/engine/cache.h"
#include "simulator/engine/fault_injection.h"
#include "simulator/engine/progress.h"
#include "simulator/world/array_rules.h"

namespace q5sim {

static constexpr std::uint64_t kCheckpointMb = 1024; // progress that a power cut can lose
static constexpr std::uint32_t kStripesInCache = 8;  // of each array; chosen arbitrarily

Reason setBattery(Controller& controller, std::uint8_t state, std::int64_t now) {
    Battery& battery = controller.battery;
    if (controller.hasBattery && battery.state == state)
        return std::string("the battery ") + batteryStateName(state) + " already";
    if (!controller.hasBattery)
        battery = {};
    if (!controller.hasBattery && state != kBatteryMissing)
        battery.reportedState = kBatteryMissing;
    else if (battery.reportedState == kBatteryUnreported && controller.hasBattery)
        battery.reportedState = battery.state;
    controller.hasBattery = true;
    battery.state = state;
    battery.since = now;
    return "";
}

Reason setSensor(Controller& controller, std::uint32_t enclosureId, std::uint8_t type, std::int32_t reading) {
    for (Enclosure& enclosure : controller.enclosures) {
        if (enclosure.id != enclosureId)
            continue;
        for (Sensor& sensor : enclosure.sensors)
            if (sensor.type == type) {
                sensor.reading = reading;
                return "";
            }
        return "enclosure " + std::to_string(enclosureId) + " has no such sensor";
    }
    return "there is no enclosure " + std::to_string(enclosureId);
}

static std::vector<std::uint16_t> drivesIn(const std::vector<Drive>& drives, std::uint32_t enclosureId) {
    std::vector<std::uint16_t> ids;
    for (const Drive& drive : drives)
        if (drive.enclosure == enclosureId)
            ids.push_back(drive.id);
    return ids;
}

// Moves the enclosure from one list to the other; false: it is not there.
static bool moveEnclosure(std::vector<Enclosure>& from, std::vector<Enclosure>& to, std::uint32_t id) {
    const auto found = std::find_if(from.begin(), from.end(),
                                    [&](const Enclosure& enclosure) { return enclosure.id == id; });
    if (found == from.end())
        return false;
    to.push_back(*found);
    from.erase(found);
    std::sort(to.begin(), to.end(), [](const Enclosure& a, const Enclosure& b) { return a.id < b.id; });
    return true;
}

Reason pullEnclosure(Controller& controller, std::uint32_t enclosureId, std::int64_t now) {
    if (!moveEnclosure(controller.enclosures, controller.pulledEnclosures, enclosureId))
        return "there is no enclosure " + std::to_string(enclosureId);
    addEvent(controller, now, "Enclosure %u has been removed", enclosureId);
    for (std::uint16_t id : drivesIn(controller.drives, enclosureId))
        pullDrive(controller, id, now);
    return "";
}

Reason insertEnclosure(Controller& controller, std::uint32_t enclosureId, std::int64_t now) {
    if (findEnclosure(controller, enclosureId) != nullptr)
        return "enclosure " + std::to_string(enclosureId) + " is there already";
    if (!moveEnclosure(controller.pulledEnclosures, controller.enclosures, enclosureId))
        return "enclosure " + std::to_string(enclosureId) + " has not been removed";
    addEvent(controller, now, "Enclosure %u has been inserted", enclosureId);
    for (std::uint16_t id : drivesIn(controller.pulledDrives, enclosureId))
        if (findDrive(controller, id) == nullptr)
            insertDrive(controller, id, NewDrive::same, now);
    return "";
}

// An interrupted activity continues from its last checkpoint; a redundancy check is aborted.
static void interruptActivity(Controller& controller, LogicalDrive& array, std::int64_t now) {
    Activity& activity = array.activity;
    if (activity.kind == kRedundancyChecking)
        return abortActivity(controller, array, "aborted", now);
    if (activity.kind == 0)
        return;
    checkpointProgress(controller, activity, now);
    activity.completedMb = activity.completedMb / kCheckpointMb * kCheckpointMb;
    activity.scannedMb = std::min(activity.scannedMb, activity.completedMb);
    activity.since = now;
    if (!activity.paused)
        addEvent(controller, now, "Logical drive %d: %s resumed at %d percent", array.logDrvId,
                 activityName(activity.kind), percentDone(controller, activity, now));
}

static void loseCache(Controller& controller, LogicalDrive& array, std::int64_t now) {
    if (array.idle || !array.active || !losesCacheInPowerCut(controller, array))
        return;
    array.lostWrites += std::min(kStripesInCache, UINT32_MAX - array.lostWrites);
    addEvent(controller, now, "Logical drive %d: cached writes lost", array.logDrvId);
}

// The host was writing: copies and parity may differ.
static void desynchronize(Controller& controller, LogicalDrive& array, std::int64_t now) {
    if (array.idle || !isRedundant(array.level) || functionalStatus(controller, array) == 0)
        return;
    array.synchronized = false;
    if (array.activity.kind == 0 && functionalStatus(controller, array) == kOnline)
        startSynchronization(controller, array, now);
}

static void restartDrives(Controller& controller, std::int64_t now) {
    for (Drive& drive : controller.drives) {
        checkpointPatrol(controller, drive, now);
        if (drive.patrol.state == kPatrolRunning || drive.patrol.state == kPatrolPaused) {
            drive.patrol.state = kPatrolAborted;
            addEvent(controller, now, "Drive %d: media patrol aborted", drive.id + 1);
        }
        drive.locateUntil = 0;
    }
}

void cutPower(World& world, std::int64_t now) {
    for (Controller& controller : world.controllers) {
        addEvent(controller, now, "Controller restarted after a power cut");
        for (LogicalDrive& array : controller.logicalDrives)
            loseCache(controller, array, now);
        restartDrives(controller, now);
        for (LogicalDrive& array : controller.logicalDrives)
            interruptActivity(controller, array, now);
        for (LogicalDrive& array : controller.logicalDrives)
            desynchronize(controller, array, now);
    }
}

void swapController(Controller& controller, std::int64_t now) {
    const Controller factory;
    addEvent(controller, now, "Controller replaced, configuration read from the drives");
    controller.events.erase(controller.events.begin(), controller.events.end() - 1); // event IDs continue
    for (LogicalDrive& array : controller.logicalDrives)
        loseCache(controller, array, now);
    restartDrives(controller, now);
    for (LogicalDrive& array : controller.logicalDrives)
        interruptActivity(controller, array, now);
    controller.rates = factory.rates;
    controller.autoRebuild = factory.autoRebuild;
    controller.rebuildPolicy = factory.rebuildPolicy;
    controller.smartCheck = factory.smartCheck;
    controller.smartPoll = factory.smartPoll;
    controller.encPoll = factory.encPoll;
    controller.buzzer = factory.buzzer;
    controller.speedOptions.clear();
}

} // namespace q5sim
