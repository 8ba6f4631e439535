// Events that follow from a difference between the hardware and what was logged last.
#include "simulator/engine/reports.h"

#include <algorithm>

#include "simulator/engine/progress.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

namespace q5sim {

void reportLostSpares(Controller& controller, const Drive& drive, std::int64_t now) {
    for (const Extent& extent : drive.extents) {
        const LogicalDrive* owner = findArray(controller, extent.array);
        if (extent.use == kUseGlobalSpare)
            addEvent(controller, now, "Drive %d: global spare lost", drive.id + 1);
        else if (extent.use == kUseDedicatedSpare && owner != nullptr)
            addEvent(controller, now, "Drive %d: spare of logical drive %d lost", drive.id + 1,
                     owner->logDrvId);
    }
}

void reportStaleMembers(Controller& controller, const Drive& drive, std::int64_t now) {
    std::vector<std::uint16_t> stale;
    for (const LogicalDrive& array : controller.logicalDrives)
        if (isStaleMember(array, drive.id) && holdsExtentOf(drive, array.arrayId))
            stale.push_back(array.logDrvId);
    for (std::uint16_t id : stale)
        addEvent(controller, now, "Drive %d: its data of logical drive %d is stale", drive.id + 1, id);
}

static void abortPatrol(Controller& controller, Drive& drive, std::int64_t now) {
    if (drive.patrol.state != kPatrolRunning && drive.patrol.state != kPatrolPaused)
        return;
    checkpointPatrol(controller, drive, now);
    drive.patrol.state = kPatrolAborted;
    addEvent(controller, now, "Drive %d: media patrol aborted", drive.id + 1);
}

static void reportFailure(Controller& controller, Drive& drive, std::int64_t now) {
    if (drive.failed == drive.failureReported)
        return;
    drive.failureReported = drive.failed;
    addEvent(controller, now, "Drive %d %s", drive.id + 1, drive.failed ? "has failed" : "is back");
    if (!drive.failed)
        return reportStaleMembers(controller, drive, now);
    abortPatrol(controller, drive, now);
    reportLostSpares(controller, drive, now);
}

static void reportSmart(Controller& controller, Drive& drive, std::int64_t now) {
    if (drive.smartFailure == drive.smartReported || !controller.smartCheck || !drive.smartCheck)
        return;
    drive.smartReported = drive.smartFailure;
    addEvent(controller, now, "Drive %d: SMART %s", drive.id + 1,
             drive.smartFailure ? "predicts a failure" : "no longer predicts a failure");
}

void reportDrive(Controller& controller, Drive& drive, std::int64_t now) {
    reportFailure(controller, drive, now);
    reportSmart(controller, drive, now);
}

static std::vector<std::uint16_t> driveIds(const Controller& controller) {
    std::vector<std::uint16_t> ids;
    for (const Drive& drive : controller.drives)
        ids.push_back(drive.id);
    return ids;
}

static bool containsId(const std::vector<std::uint16_t>& ids, std::uint16_t id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

void reportKnownDrives(Controller& controller, std::int64_t now) {
    const std::vector<std::uint16_t> ids = driveIds(controller);
    if (controller.knownDrives.empty() || controller.knownDrives == ids)
        return;
    for (std::uint16_t id : controller.knownDrives)
        if (!containsId(ids, id))
            addEvent(controller, now, "Drive %d has been removed", id + 1);
    for (std::uint16_t id : ids)
        if (!containsId(controller.knownDrives, id))
            addEvent(controller, now, "Drive %d has been inserted", id + 1);
    controller.knownDrives = ids;
}

void recordKnownDrives(World& world) {
    for (Controller& controller : world.controllers)
        controller.knownDrives = driveIds(controller);
}

struct SensorRange {
    std::uint8_t type;
    const char* name;
    std::int32_t low, high;
};
static constexpr SensorRange kSensorRanges[] = {{kFanSensor, "fan", 1000, 10000},
                                                {kTemperatureSensor, "temperature", 0, 50},
                                                {kRail5VSensor, "5 V rail", 4750, 5250},
                                                {kRail12VSensor, "12 V rail", 11400, 12600}};

void reportSensors(Controller& controller, std::int64_t now) {
    for (Enclosure& enclosure : controller.enclosures)
        for (Sensor& sensor : enclosure.sensors)
            for (const SensorRange& range : kSensorRanges) {
                const bool outside = sensor.reading < range.low || sensor.reading > range.high;
                if (range.type != sensor.type || outside == sensor.alarm)
                    continue;
                sensor.alarm = outside;
                addEvent(controller, now, "Enclosure %d: %s %d is %s", enclosure.id, range.name,
                         sensor.reading, outside ? "out of range" : "back in range");
            }
}

} // namespace q5sim
