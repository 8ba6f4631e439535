// Completes due activities and patrols, reports failures and starts automatic rebuilds.
#include "simulator/engine/advance.h"

#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/engine/progress.h"
#include "simulator/engine/rebuild.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

namespace q5sim {

static void reportDriveFailure(Controller& controller, Drive& drive, std::int64_t now) {
    if (drive.failed == drive.failureReported)
        return;
    drive.failureReported = drive.failed;
    addEvent(controller, now, "Drive %d %s", drive.id + 1, drive.failed ? "has failed" : "is back");
    const bool patrolled = drive.patrol.state == kPatrolRunning || drive.patrol.state == kPatrolPaused;
    if (!drive.failed || !patrolled)
        return;
    checkpointPatrol(controller, drive, now);
    drive.patrol.state = kPatrolAborted;
    addEvent(controller, now, "Drive %d: media patrol aborted", drive.id + 1);
}

// Whether a drive that the activity adds to the array is no longer usable.
static bool targetLost(const Controller& controller, const LogicalDrive& array) {
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
    return functionalStatus(controller, array) == 0 || targetLost(controller, array) ||
           (!survivesLoss && !lostMembers(controller, array).empty());
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

// Brings the array in line with its drives: aborts what cannot go on, logs a new state, rebuilds onto
// a spare.
static void updateArray(Controller& controller, LogicalDrive& array, std::int64_t now) {
    if (mustAbort(controller, array))
        abortActivity(controller, array, "aborted", now);
    reportStatus(controller, array, now);
    if (controller.autoRebuild && !array.autoRebuildInhibited && array.activity.kind == 0)
        startRebuild(controller, array, usableSpares(controller, array), now);
}

static void finishPatrol(Controller& controller, Drive& drive, std::int64_t at) {
    Patrol& patrol = drive.patrol;
    patrol.loops = static_cast<std::uint16_t>(std::min(patrol.loops + 1, 65535));
    patrol.errors = static_cast<std::uint16_t>(std::min(patrol.errors + drive.mediaErrors, 65535));
    patrol.state = 0;
    patrol.completedMb = 0;
    patrol.since = at;
    addEvent(controller, at, "Drive %d: media patrol ended, %d errors", drive.id + 1, drive.mediaErrors);
}

static bool hasUnreportedFailure(const Controller& controller) {
    return std::any_of(controller.drives.begin(), controller.drives.end(),
                       [](const Drive& drive) { return drive.failed != drive.failureReported; });
}

// Completes the earliest due activity or patrol, so that events are in order of time. Returns false
// when nothing is due.
static bool completeNextDue(Controller& controller, std::int64_t now) {
    std::int64_t earliest = kNoDeadline;
    LogicalDrive* array = nullptr;
    Drive* patrolled = nullptr;
    for (LogicalDrive& candidate : controller.logicalDrives)
        if (candidate.activity.kind != 0 && dueTime(controller, candidate.activity) < earliest) {
            earliest = dueTime(controller, candidate.activity);
            array = &candidate;
        }
    for (Drive& candidate : controller.drives)
        if (patrolDueTime(controller, candidate) < earliest) {
            earliest = patrolDueTime(controller, candidate);
            patrolled = &candidate;
        }
    if (earliest > now)
        return false;
    if (patrolled != nullptr) {
        finishPatrol(controller, *patrolled, earliest);
    } else if (array != nullptr) {
        finishActivity(controller, *array, earliest);
        if (!hasUnreportedFailure(controller)) // a failure takes effect when it is reported
            updateArray(controller, *array, earliest);
    }
    return true;
}

// Failures are reported last: what was due before has completed by then.
static void advanceController(Controller& controller, std::int64_t now) {
    while (completeNextDue(controller, now)) {
    }
    for (Drive& drive : controller.drives)
        reportDriveFailure(controller, drive, now);
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

} // namespace q5sim
