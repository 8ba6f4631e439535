// Start and end of the activities of arrays.
#include "simulator/engine/activities.h"

#include <algorithm>

#include "simulator/engine/media_errors.h"
#include "simulator/engine/progress.h"
#include "simulator/engine/rebuild.h"
#include "simulator/world/array_rules.h"

namespace q5sim {

static constexpr std::uint8_t kQuickInit = 1;

const char* activityName(std::uint8_t kind) {
    switch (kind) {
    case kRebuilding:
        return "rebuild";
    case kInitializing:
        return "initialization";
    case kRedundancyChecking:
        return "redundancy check";
    case kSynchronizing:
        return "synchronization";
    case kMigrating:
        return "migration";
    default:
        return "activity";
    }
}

void startActivity(LogicalDrive& array, std::uint8_t kind, std::uint64_t totalMb, std::int64_t now) {
    array.activity = {};
    array.activity.kind = kind;
    array.activity.since = now;
    array.activity.totalMb = std::max<std::uint64_t>(1, totalMb);
}

void startInitialization(Controller& controller, LogicalDrive& array, std::uint8_t type, std::int64_t now) {
    const std::uint64_t whole = array.memberSectors / kSectorsPerMb;
    startActivity(array, kInitializing, type == kQuickInit ? std::min(kQuickInitMb, whole) : whole, now);
    array.activity.initType = type;
    array.captured = false;
    array.synchronized = !isRedundant(array.level);
    addEvent(controller, now, "Logical drive %d: initialization started", array.logDrvId);
}

void startSynchronization(Controller& controller, LogicalDrive& array, std::int64_t now) {
    startActivity(array, kSynchronizing, array.memberSectors / kSectorsPerMb, now);
    addEvent(controller, now, "Logical drive %d: synchronization started", array.logDrvId);
}

// A quick initialization leaves most of the array untouched, so a synchronization follows.
static void finishInitialization(Controller& controller, LogicalDrive& array, std::int64_t at) {
    const bool quick = array.activity.initType == kQuickInit;
    array.activity = {};
    if (!quick) {
        array.synchronized = true;
        array.inconsistencies = 0;
        array.lostWrites = 0;
        array.lostStripes = 0;
    } else if (!array.synchronized) {
        startSynchronization(controller, array, at);
    }
}

static void finishCheck(Controller& controller, LogicalDrive& array, std::int64_t at) {
    const bool repairs = !array.activity.noFix;
    const CheckedSectors sectors = checkMembers(controller, array, repairs);
    if (sectors.found > 0)
        addEvent(controller, at,
                 "Logical drive %d: redundancy check found %llu unreadable sectors, %llu repaired",
                 array.logDrvId, static_cast<unsigned long long>(sectors.found),
                 static_cast<unsigned long long>(sectors.repaired));
    array.inconsistencies += std::min(array.lostWrites, UINT32_MAX - array.inconsistencies);
    array.lostWrites = 0;
    addEvent(controller, at, "Logical drive %d: redundancy check found %u inconsistencies%s", array.logDrvId,
             array.inconsistencies,
             array.inconsistencies == 0 ? ""
             : repairs                  ? ", repaired"
                                        : ", left as they are");
    if (repairs)
        array.inconsistencies = 0;
    array.activity = {};
}

void finishActivity(Controller& controller, LogicalDrive& array, std::int64_t at) {
    addEvent(controller, at, "Logical drive %d: %s ended", array.logDrvId, activityName(array.activity.kind));
    switch (array.activity.kind) {
    case kRebuilding:
        finishRebuild(controller, array);
        if (!array.synchronized && functionalStatus(controller, array) == kOnline)
            startSynchronization(controller, array, at); // aborted earlier by a lost member
        break;
    case kInitializing:
        finishInitialization(controller, array, at);
        break;
    case kRedundancyChecking:
        finishCheck(controller, array, at);
        break;
    case kMigrating:
        finishMigration(array);
        break;
    default:
        array.synchronized = true;
        array.inconsistencies = 0;
        array.activity = {};
    }
}

void abortActivity(Controller& controller, LogicalDrive& array, const char* ending, std::int64_t now) {
    addEvent(controller, now, "Logical drive %d: %s %s", array.logDrvId, activityName(array.activity.kind),
             ending);
    if (array.activity.kind == kRebuilding)
        abortRebuild(controller, array);
    else if (array.activity.kind == kMigrating)
        abortMigration(controller, array);
    else
        array.activity = {};
}

} // namespace q5sim
