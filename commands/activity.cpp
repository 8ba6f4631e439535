// The five activities' rows and what their commands share. Formats are printed with all the numbers
// any of them takes; those that take fewer ignore the rest.
#include "commands/activity.h"

#include <cstdio>

#include "commands/logdrv_lookup.h"

// Reads the progress record of an activity; zero, that is running at 0 percent, when there is none.
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

// The two lines prefer different activities when a drive reports more than one, and each reads the
// progress for itself.
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
    std::puts(running->read(controller, drive.logDrvId).paused ? running->pausedLine : running->runningLine);
    running = firstRunning(drive, progressOrder);
    std::printf(running->progress, running->read(controller, drive.logDrvId).percent);
}

Option logDrvOption(LogDrvArgs* read) {
    return numberOption("-l", "logical drive ID", &read->logDrv, Result::badId);
}

Option controllerOption(LogDrvArgs* read) {
    return numberOption("-i", "controller ID", &read->controller, Result::badId);
}

static int parseLogDrvArgs(int wordCount, char** words, int first, LogDrvArgs* read) {
    const Option options[] = {logDrvOption(read), controllerOption(read)};
    return readOptions(wordCount, words, first, options, "Invalid parameters defined");
}

bool lookupLogDrv(const LogDrvArgs& read, LogDrvInfo* drive, const char* noDrive) {
    if (findLogDrv(read.controller, read.logDrv, drive))
        return true;
    std::printf(noDrive, static_cast<int>(read.logDrv), static_cast<int>(read.controller));
    return false;
}

// The activity a list speaks of: its own, or the alternative when only that one runs.
static const Activity* listedActivity(const LogDrvInfo& drive, const ActivityList& list) {
    if (isRunning(drive, *list.activity))
        return list.activity;
    if (list.alternative != nullptr && isRunning(drive, *list.alternative))
        return list.alternative;
    return nullptr;
}

int listActivity(int wordCount, char** words, const ActivityList& list) {
    LogDrvArgs read;
    if (const int result = parseLogDrvArgs(wordCount, words, firstOption(wordCount, words), &read))
        return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(read, &drive, list.noDrive))
        return Result::notFound;
    const Activity* activity = listedActivity(drive, list);
    if (activity == nullptr)
        return fail(Result::done, list.noActivity);

    const int logDrv = static_cast<int>(read.logDrv), controller = static_cast<int>(read.controller);
    const ActivityState state = activity->read(read.controller, read.logDrv);
    if (state.paused)
        std::printf(list.paused, logDrv, controller);
    else
        std::printf(list.inProgress, state.percent, logDrv, controller);
    return Result::done;
}

static bool preconditionMet(const ActivityControl& control, const LogDrvArgs& read, const LogDrvInfo& drive) {
    if (control.guard == ActivityPrecondition::none)
        return true;
    if (!isRunning(drive, *control.activity))
        return false;
    if (control.guard == ActivityPrecondition::running)
        return true;
    const bool paused = control.activity->read(read.controller, read.logDrv).paused;
    return paused == (control.guard == ActivityPrecondition::paused);
}

int reportActivity(int adapterResult, std::uint32_t logDrv, const char* success, const char* failure) {
    std::printf(adapterResult == 0 ? success : failure, static_cast<int>(logDrv));
    return adapterResult == 0 ? Result::done : Result::refused;
}

int controlActivity(int wordCount, char** words, const ActivityControl& control) {
    if (wordCount != 7)
        return fail(Result::badCount, control.countMessage);
    LogDrvArgs read;
    if (const int result = parseLogDrvArgs(wordCount, words, 3, &read))
        return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(read, &drive, control.noDrive))
        return Result::notFound;
    if (!preconditionMet(control, read, drive))
        return Result::done;
    const LogDrvIdBlock block = {read.logDrv, {}};
    return reportActivity(control.operation(hbaAddress(read.controller), &block), read.logDrv,
                          control.success, control.failure);
}
