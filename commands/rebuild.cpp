// The rb command: shows and controls the rebuild of a logical drive onto selected drives and extents.
#include "commands/rebuild.h"

#include "commands/activity.h"

static const char noDriveOnController[] = "No logical drive with ID %d on controller #%d is existed!\n";

int ListLogDrvRebuildStatus(int wordCount, char** words) {
    return listActivity(wordCount, words,
                        {&rebuild, nullptr, "No logical drive with ID %d is existed!\n",
                         "No activity for rebuild!",
                         "Rebuild is paused in logical drive with ID %d on controller #%d!\n",
                         "Rebuild is in progress %d%% in logical drive with ID %d on controller #%d!\n"});
}

int StartLogDrvRebuild(int wordCount, char** words) {
    if (wordCount != 11)
        return fail(Result::badCount, "Invalid numbers of parameter in command \"rebuild -a start\"!");
    LogDrvArgs args;
    IdList<> drives = {}, extents = {};
    const Option options[] = {
        logDrvOption(&args),
        controllerOption(&args),
        driveListOption("-p", &drives),
        listOption("-e", &extents),
    };
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    if (drives.count != extents.count)
        return fail(Result::badValue, "Invalid parameters defined");
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, "No logical drive with ID %d in controller #%d is existed!\n"))
        return Result::notFound;
    if (isBusy(drive))
        return Result::done;

    RebuildEntry entries[kMaxListItems] = {};
    for (int i = 0; i < drives.count; ++i)
        entries[i] = {args.logDrv, drives.id[i], extents.id[i], {}};
    return reportActivity(q5_startHBARebuildExtent(hbaAddress(args.controller), 0,
                                                   static_cast<std::uint8_t>(drives.count), entries, &drive),
                          args.logDrv, "Rebuild is started on Array %d.\n",
                          "Rebuild is failed to start on Array %d.\n");
}

int PauseLogDrvRebuild(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&rebuild, ActivityPrecondition::notPaused, invoke<q5_pauseRebuild>,
                            "Invalid numbers of parameter in command \"rebuild -a pause\"!",
                            noDriveOnController, "Rebuild paused on Array %d.\n",
                            "Rebuild is failed to pause on Array %d.\n"});
}

int ResumeLogDrvRebuild(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&rebuild, ActivityPrecondition::paused, invoke<q5_resumeRebuild>,
                            "Invalid numbers of parameter in command \"rebuild -a resume\"!",
                            noDriveOnController, "Rebuild resumed on Array %d.\n",
                            "Rebuild is failed to resume on Array %d.\n"});
}

// A restart is attempted regardless of the drive's activity.
int RestartLogDrvRebuild(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&rebuild, ActivityPrecondition::none, invoke<q5_restartRebuild>,
                            "Invalid numbers of parameter in command \"rebuild -a restart\"!",
                            noDriveOnController, "Rebuild is restarted on Array %d.\n",
                            "Rebuild is failed to restart on Array %d.\n"});
}

int StopLogDrvRebuild(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&rebuild, ActivityPrecondition::running, invoke<q5_stopRebuild>,
                            "Invalid numbers of parameter in command \"rebuild -a stop\"!",
                            noDriveOnController, "Rebuild aborted on Array %d.\n",
                            "Rebuild is failed to abort on Array %d.\n"});
}
