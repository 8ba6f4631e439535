// The table of the five activities and the code that their commands share. Every message is printed
// with all numbers that any of the formats in its place uses; a format ignores those it does not need.
#include "commands/activity.h"

#include <cstdio>

#include "commands/logdrv_lookup.h"

// Reads the progress record of an activity. If the adapter returns none, the activity is reported as
// running at 0 percent.
template <typename Progress, auto operation, std::uint32_t kind = 0>
static ActivityState readProgress(std::uint32_t controller, std::uint32_t logDrvId) {
    const ActivityQuery query = {logDrvId, kind};
    Progress progress = {};
    operation(hbaAddress(controller), 0, &query, &progress, sizeof progress);
    return {progress.state == kActivityPaused, progress.percent};
}

const Activity initialization = {
    kInitializing,
    readProgress<InitProgress, q5_getLogDrvInitProgress>,
    "Array activity status : Initialization Paused",
    "Array activity status : Initializing",
    "Array initialization progress : %d %%\n",
};
const Activity synchronization = {
    kSynchronizing,
    readProgress<SyncProgress, q5_getLogDrvSynchProgress>,
    "Array activity status : Synchronization Paused",
    "Array activity status : Synchronizing",
    "Array synchronization progress : %d %%\n",
};
const Activity redundancyCheck = {
    kRedundancyChecking,
    readProgress<SyncProgress, q5_getRedundancyCheckProgress>,
    "Array activity status : Redundancy Check Paused",
    "Array activity status : Redundancy Check In Progress",
    "Array redundancy check progress : %d %%\n",
};
const Activity migration = {
    kMigrating,
    readProgress<MigrationProgress, q5_getMigrationProgress, kMigrationKind>,
    "Array activity status : Migration Paused",
    "Array activity status : Migrating",
    "Array migration progress : %d %%\n",
};
const Activity rebuild = {
    kRebuilding,
    readProgress<RebuildProgress, q5_getRebuildProgress>,
    "Array activity status : Rebuild Paused",
    "Array activity status : Rebuilding",
    "Array rebuilding progress : %d %%\n",
};

bool isRunning(const LogDrvInfo& drive, const Activity& activity) {
    return (drive.activityStatus & activity.bit) != 0;
}

bool isBusy(const LogDrvInfo& drive) {
    return (drive.activityStatus & kAnyActivity) != 0;
}

static const Activity* firstRunning(const LogDrvInfo& drive, std::span<const Activity* const> order) {
    for (const Activity* activity : order)
        if (isRunning(drive, *activity))
            return activity;
    return nullptr;
}

// Compatibility: when a drive reports several activities, the two lines may describe different ones.
// Each line reads the progress separately.
void printActivity(std::uint32_t controller, const LogDrvInfo& drive) {
    static const Activity* const statusOrder[] = {&rebuild, &synchronization, &redundancyCheck,
                                                  &initialization, &migration};
    static const Activity* const progressOrder[] = {&initialization, &rebuild, &synchronization,
                                                    &redundancyCheck, &migration};
    const Activity* running = firstRunning(drive, statusOrder);
    if (running == nullptr) {
        std::puts("Array activity status : Idle");
        return;
    }
    std::puts(running->readState(controller, drive.logDrvId).paused ? running->pausedLine
                                                                    : running->runningLine);
    running = firstRunning(drive, progressOrder);
    std::printf(running->progress, running->readState(controller, drive.logDrvId).percent);
}

Option logDrvOption(LogDrvArgs* args) {
    return numberOption("-l", "logical drive ID", &args->logDrv, Result::badId);
}

Option controllerOption(LogDrvArgs* args) {
    return numberOption("-i", "controller ID", &args->controller, Result::badId);
}

static int parseLogDrvArgs(int wordCount, char** words, int first, LogDrvArgs* args) {
    const Option options[] = {logDrvOption(args), controllerOption(args)};
    return readOptions(wordCount, words, first, options, "Invalid parameters defined");
}

bool lookupLogDrv(const LogDrvArgs& args, LogDrvInfo* drive, const char* noDrive) {
    if (findLogDrv(args.controller, args.logDrv, drive))
        return true;
    std::printf(noDrive, static_cast<int>(args.logDrv), static_cast<int>(args.controller));
    return false;
}

// The activity to list: the list's own, or its fallback when only that one is running.
static const Activity* listedActivity(const LogDrvInfo& drive, const ActivityList& list) {
    if (isRunning(drive, *list.activity))
        return list.activity;
    if (list.fallback != nullptr && isRunning(drive, *list.fallback))
        return list.fallback;
    return nullptr;
}

int listActivity(int wordCount, char** words, const ActivityList& list) {
    LogDrvArgs args;
    if (const int result = parseLogDrvArgs(wordCount, words, firstOption(wordCount, words), &args))
        return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, list.noDrive))
        return Result::notFound;
    const Activity* activity = listedActivity(drive, list);
    if (activity == nullptr)
        return fail(Result::done, list.noActivity);

    const int logDrv = static_cast<int>(args.logDrv), controller = static_cast<int>(args.controller);
    const ActivityState state = activity->readState(args.controller, args.logDrv);
    if (state.paused)
        std::printf(list.paused, logDrv, controller);
    else
        std::printf(list.inProgress, state.percent, logDrv, controller);
    return Result::done;
}

static bool preconditionMet(const ActivityControl& control, const LogDrvArgs& args, const LogDrvInfo& drive) {
    if (control.precondition == ActivityPrecondition::none)
        return true;
    if (!isRunning(drive, *control.activity))
        return false;
    if (control.precondition == ActivityPrecondition::running)
        return true;
    const bool paused = control.activity->readState(args.controller, args.logDrv).paused;
    return paused == (control.precondition == ActivityPrecondition::paused);
}

int reportActivity(int adapterResult, std::uint32_t logDrv, const char* success, const char* failure) {
    std::printf(adapterResult == 0 ? success : failure, static_cast<int>(logDrv));
    return adapterResult == 0 ? Result::done : Result::refused;
}

int controlActivity(int wordCount, char** words, const ActivityControl& control) {
    if (wordCount != 7)
        return fail(Result::badCount, control.countMessage);
    LogDrvArgs args;
    if (const int result = parseLogDrvArgs(wordCount, words, 3, &args))
        return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, control.noDrive))
        return Result::notFound;
    if (!preconditionMet(control, args, drive))
        return Result::done;
    const LogDrvIdBlock block = {args.logDrv, {}};
    return reportActivity(control.operation(hbaAddress(args.controller), &block), args.logDrv,
                          control.success, control.failure);
}
