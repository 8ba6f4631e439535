// The command that shows the world.
#include <cstdio>

#include "simulator/engine/activities.h"
#include "simulator/engine/cache.h"
#include "simulator/engine/progress.h"
#include "simulator/q5sim/command.h"
#include "simulator/store/world_store.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/bad_sectors.h"
#include "simulator/world/invariants.h"

namespace q5sim {

static std::string driveState(const Controller& controller, const Drive& drive) {
    std::string state = drive.failed ? "failed" : "working";
    for (const LogicalDrive& array : controller.logicalDrives)
        if (isStaleMember(array, drive.id))
            state += ", stale in logical drive " + std::to_string(array.logDrvId);
    if (drive.smartFailure)
        state += ", SMART failure";
    if (const std::uint64_t bad = countBadSectors(drive); bad > 0)
        state += ", " + std::to_string(bad) + (bad == 1 ? " bad sector" : " bad sectors");
    return state;
}

static std::string arrayState(const Controller& controller, const LogicalDrive& array, std::int64_t now) {
    std::string state = statusName(functionalStatus(controller, array));
    if (!array.active)
        state += ", inactive";
    if (array.activity.kind != 0)
        state += std::string(", ") + activityName(array.activity.kind) + " at " +
                 std::to_string(percentDone(controller, array.activity, now)) + " percent" +
                 (array.activity.paused ? ", paused" : "");
    if (!array.synchronized)
        state += ", not synchronized";
    if (array.inconsistencies + array.lostWrites > 0)
        state += ", inconsistent";
    if (array.lostStripes > 0)
        state += ", " + std::to_string(array.lostStripes) + " stripes lost";
    return state;
}

static void printController(const Controller& controller, std::size_t id, std::int64_t now) {
    std::printf("controller %zu: automatic rebuild %s, ", id, controller.autoRebuild ? "on" : "off");
    if (controller.hasBattery)
        std::printf("battery %s\n", batteryStateName(controller.battery.state));
    else
        std::puts("no battery");
    for (const Drive& drive : controller.drives)
        std::printf("  drive %d: %s\n", drive.id + 1, driveState(controller, drive).c_str());
    for (const Drive& drive : controller.pulledDrives)
        std::printf("  drive %d: %s\n", drive.id + 1,
                    findDrive(controller, drive.id) == nullptr ? "removed" : "another one in its slot");
    for (const Enclosure& enclosure : controller.pulledEnclosures)
        std::printf("  enclosure %d: removed\n", enclosure.id);
    for (const LogicalDrive& array : controller.logicalDrives)
        std::printf("  logical drive %d %s, %s: %s\n", array.logDrvId, array.name.c_str(),
                    levelName(array.level), arrayState(controller, array, now).c_str());
}

static int printViolations(const World& world) {
    const std::vector<std::string> violations = findViolations(world);
    for (const std::string& line : violations)
        std::printf("violated: %s\n", line.c_str());
    if (violations.empty())
        std::puts("the world is consistent");
    return violations.empty() ? 0 : kRefusedStatus;
}

int statusCommand(const Arguments& arguments) {
    const World* world = openWorld() ? currentWorld() : nullptr;
    if (world == nullptr)
        return kRefusedStatus;
    if (arguments.options.check)
        return printViolations(*world);
    std::printf("time %lld, speed %lld, %zu rules, %zu refusals\n", static_cast<long long>(worldTime(*world)),
                static_cast<long long>(world->speed), world->rules.size(), world->refusals.size());
    for (std::size_t id = 0; id < world->controllers.size(); id++)
        printController(world->controllers[id], id, worldTime(*world));
    return 0;
}

} // namespace q5sim
