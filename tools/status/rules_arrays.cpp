// Rules about logical drives: their state, activities and cache.
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

template <typename Apply>
static void forEachArray(Evaluation* evaluation, Apply apply) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const LogicalDrive& drive : controller.logicalDrives)
            apply(controller, drive);
}

static void findArraysIn(Evaluation* evaluation, ArrayState state, const char* text) {
    forEachArray(evaluation, [&](const Controller& controller, const LogicalDrive& drive) {
        if (arrayState(drive) == state)
            addFinding(evaluation, objectOf(controller, drive),
                       std::string(text) + " (" + raidLevelText(drive.info.raidLevel) + ")");
    });
}

void findOfflineArrays(Evaluation* evaluation) {
    findArraysIn(evaluation, ArrayState::offline, "offline: its data cannot be reached");
}

void findCriticalArrays(Evaluation* evaluation) {
    findArraysIn(evaluation, ArrayState::critical, "critical: no redundancy is left");
}

void findDegradedArrays(Evaluation* evaluation) {
    findArraysIn(evaluation, ArrayState::degraded, "degraded: part of its redundancy is lost");
}

static void findActivities(Evaluation* evaluation, bool paused) {
    forEachArray(evaluation, [&](const Controller& controller, const LogicalDrive& drive) {
        for (const Activity& activity : drive.activities)
            if (isPaused(activity) == paused)
                addFinding(evaluation, objectOf(controller, drive),
                           std::string(activityText(activity.kind)) + (paused ? " paused" : " running"),
                           activity.percent);
    });
}

void findRunningActivities(Evaluation* evaluation) {
    findActivities(evaluation, false);
}

void findPausedActivities(Evaluation* evaluation) {
    findActivities(evaluation, true);
}

// Why the battery does not protect the cache; nullptr: it does, or could not be read.
static const char* batteryProblem(const Controller& controller) {
    if (!controller.battery)
        return nullptr;
    if (!hasBattery(controller))
        return "the controller has no battery";
    switch (batteryState(controller)) {
    case kBatteryCharging:
    case kBatteryFull:
        return nullptr;
    case kBatteryDischarging:
        return "the battery is discharging";
    case kBatteryReconditioning:
        return "the battery is being reconditioned";
    default:
        return "the battery does not work";
    }
}

// In automatic mode the adapter itself checks the battery.
void findUnprotectedWriteBack(Evaluation* evaluation) {
    forEachArray(evaluation, [&](const Controller& controller, const LogicalDrive& drive) {
        const char* problem = batteryProblem(controller);
        if (problem == nullptr || !drive.settings ||
            (drive.settings->cacheFlags & (kWriteBack | kAutoMode)) != kWriteBack)
            return;
        addFinding(evaluation, objectOf(controller, drive), std::string("set to write back, but ") + problem);
    });
}
