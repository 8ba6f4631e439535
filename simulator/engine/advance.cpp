// Completes due activities and patrols, reports failures and starts automatic rebuilds.
#include "simulator/engine/advance.h"

#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/engine/cache.h"
#include "simulator/engine/media_errors.h"
#include "simulator/engine/progress.h"
#include "simulator/engine/rebuild.h"
#include "simulator/engine/reports.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/bad_sectors.h"
#include "simulator/world/extent_alloc.h"

namespace q5sim {

// Whether a drive that the activity adds to the array is no longer usable.
static bool hasLostTarget(const Controller& controller, const LogicalDrive& array) {
    const auto gone = [&](std::uint16_t id) {
        const Drive* drive = findDrive(controller, id);
        return drive == nullptr || drive->failed || !holdsExtentOf(*drive, array.arrayId);
    };
    const Activity& activity = array.activity;
    if (activity.kind == kRebuilding)
        return std::any_of(activity.targets.begin(), activity.targets.end(),
                           [&](const RebuildTarget& target) { return gone(target.drive); });
    return activity.kind == kMigrating &&
           std::any_of(
               activity.goal.members.begin() +
                   static_cast<std::ptrdiff_t>(std::min(array.members.size(), activity.goal.members.size())),
               activity.goal.members.end(), gone);
}

static bool mustAbort(const Controller& controller, const LogicalDrive& array) {
    const std::uint8_t kind = array.activity.kind;
    if (kind == 0)
        return false;
    const bool survivesLoss = kind == kRebuilding || kind == kMigrating;
    return functionalStatus(controller, array) == 0 || hasLostTarget(controller, array) ||
           (!survivesLoss && !lostMembers(controller, array).empty());
}

// Members that are lost while the host continues to write miss these writes.
static void markStaleMembers(const Controller& controller, LogicalDrive& array) {
    if (array.idle || functionalStatus(controller, array) == 0)
        return;
    for (std::size_t position : lostMembers(controller, array))
        if (!isStaleMember(array, array.members[position]))
            array.staleMembers.push_back(array.members[position]);
}

static void reportStatus(Controller& controller, LogicalDrive& array, std::int64_t now) {
    const std::uint8_t status = functionalStatus(controller, array);
    if (status == array.reportedState)
        return;
    if (array.reportedState != kStateNotReported || status != kOnline)
        addEvent(controller, now, "Logical drive %d is %s", array.logDrvId, statusName(status));
    array.reportedState = status;
    array.autoRebuildInhibited = false;
}

// Applies the state of the drives to their array: aborts an activity that cannot continue, logs a new status,
// starts a rebuild onto a spare.
static void updateArray(Controller& controller, LogicalDrive& array, std::int64_t now) {
    if (mustAbort(controller, array))
        abortActivity(controller, array, "aborted", now);
    reportStatus(controller, array, now);
    markStaleMembers(controller, array);
    if (controller.autoRebuild && !array.autoRebuildInhibited && array.activity.kind == 0)
        startRebuild(controller, array, usableSpares(controller, array), now);
}

static void finishPatrol(Controller& controller, Drive& drive, std::int64_t at) {
    Patrol& patrol = drive.patrol;
    const std::uint64_t found = countBadSectors(drive);
    const auto errors = static_cast<unsigned>(std::min<std::uint64_t>(found, 65535));
    const std::uint64_t repaired = repairDrive(controller, drive);
    patrol.loops = static_cast<std::uint16_t>(std::min(patrol.loops + 1, 65535));
    patrol.errors = static_cast<std::uint16_t>(std::min(patrol.errors + errors, 65535u));
    patrol.state = 0;
    patrol.completedMb = 0;
    patrol.since = at;
    addEvent(controller, at, "Drive %d: media patrol ended, %u errors", drive.id + 1, errors);
    if (repaired > 0)
        addEvent(controller, at, "Drive %d: %llu unreadable sector%s repaired", drive.id + 1,
                 static_cast<unsigned long long>(repaired), repaired == 1 ? "" : "s");
}

static bool hasUnreportedFailure(const Controller& controller) {
    return std::any_of(controller.drives.begin(), controller.drives.end(),
                       [](const Drive& drive) { return drive.failed != drive.failureReported; });
}

// The next automatic change on a controller.
struct Transition {
    std::int64_t time = kNoDeadline;
    LogicalDrive* array = nullptr;
    Drive* patrolled = nullptr;
    bool atBadSector = false; // the array's activity reaches one, and does not end yet
};

static Transition nextTransition(Controller& controller) {
    Transition next;
    for (LogicalDrive& array : controller.logicalDrives) {
        if (array.activity.kind == 0)
            continue;
        const std::int64_t bad = nextBadSectorTime(controller, array);
        const std::int64_t end = dueTime(controller, array.activity);
        if (std::min(bad, end) < next.time)
            next = {std::min(bad, end), &array, nullptr, bad <= end};
    }
    for (Drive& drive : controller.drives)
        if (patrolDueTime(controller, drive) < next.time)
            next = {patrolDueTime(controller, drive), nullptr, &drive, false};
    if (batteryDueTime(controller) < next.time)
        next = {batteryDueTime(controller), nullptr, nullptr, false};
    return next;
}

// Completes the earliest due transition, so that events are in order of time. Returns false when
// nothing is due.
static bool completeNextDue(Controller& controller, std::int64_t now) {
    const Transition next = nextTransition(controller);
    if (next.time > now)
        return false;
    if (next.array == nullptr) {
        if (next.patrolled != nullptr)
            finishPatrol(controller, *next.patrolled, next.time);
        else
            completeBatteryState(controller, next.time);
        return true;
    }
    if (next.atBadSector)
        handleBadSectors(controller, *next.array, next.time);
    else
        finishActivity(controller, *next.array, next.time);
    if (!hasUnreportedFailure(controller)) // a failure takes effect when it is reported
        updateArray(controller, *next.array, next.time);
    return true;
}

// Failures are reported after everything that is due has completed.
static void advanceController(Controller& controller, std::int64_t now) {
    while (completeNextDue(controller, now)) {
    }
    reportKnownDrives(controller, now);
    for (Drive& drive : controller.drives)
        reportDrive(controller, drive, now);
    reportBattery(controller, now);
    reportSensors(controller, now);
    for (LogicalDrive& array : controller.logicalDrives)
        updateArray(controller, array, now);
}

void advanceTo(World& world, std::int64_t now) {
    for (Controller& controller : world.controllers)
        advanceController(controller, now);
}

bool hasDueTransitions(const World& world, std::int64_t now) {
    World advanced = world;
    advanceTo(advanced, now);
    return advanced != world;
}

std::int64_t nextActivityTime(const World& world) {
    std::int64_t next = kNoDeadline;
    for (const Controller& controller : world.controllers) {
        for (const LogicalDrive& array : controller.logicalDrives)
            if (array.activity.kind != 0)
                next = std::min(next, dueTime(controller, array.activity));
        for (const Drive& drive : controller.drives)
            next = std::min(next, patrolDueTime(controller, drive));
    }
    return next;
}

} // namespace q5sim
