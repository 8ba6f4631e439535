// The sync and rc commands: synchronization and redundancy check of a logical drive. One operation
// starts either; the adapter decides which.
#include "commands/sync.h"

#include "commands/activity.h"

static const char noDrive[] = "No logical drive with ID %d is existed!\n";
static const char noDriveOnController[] = "No logical drive with ID %d on controller #%d is existed!\n";

int ListLogDrvSyncStatus(int wordCount, char** words) {
    return listActivity(
        wordCount, words,
        {&synchronization, nullptr, noDrive, "No activity for synchronization!",
         "synchronization is paused!\n",
         "Synchronization is in progress %d%% in logical drive with ID %d on controller #%d!\n"});
}

// Compatibility: a synchronization is reported as a redundancy check.
int ListLogDrvRCStatus(int wordCount, char** words) {
    return listActivity(
        wordCount, words,
        {&redundancyCheck, &synchronization, noDrive, "No activity for redundancy check!",
         "Redundancy check is paused!\n",
         "Redundancy check is in progress %d%% in logical drive with ID %d on controller #%d!\n"});
}

// Starts the check on an idle drive. Does nothing, silently, if the drive is busy.
static int startCheck(const LogDrvArgs& args, bool noFix, const char* success, const char* failure) {
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, noDriveOnController))
        return Result::notFound;
    if (isBusy(drive))
        return Result::done;
    const RedundancyCheckRequest request = {args.logDrv, noFix, 0, {}};
    return reportActivity(q5_startRedundancyCheck(hbaAddress(args.controller), 0, &request), args.logDrv,
                          success, failure);
}

int StartLogDrvSync(int wordCount, char** words) {
    if (wordCount < 5)
        return fail(Result::badCount, "Invalid number of parameters in command \"sync \"!");
    LogDrvArgs args;
    const Option options[] = {logDrvOption(&args), controllerOption(&args)};
    // sync has no action word before its options.
    if (const int result = readOptions(wordCount, words, 1, options, "Invalid parameters defined"))
        return result;
    return startCheck(args, false, "Synchronization started on Array %d!\n",
                      "Synchronization failed to start on Array %d!\n");
}

int StartLogDrvRC(int wordCount, char** words) {
    if (wordCount < 7)
        return fail(Result::badCount, "Invalid number of parameters in command \"rc -a start\"!");
    LogDrvArgs args;
    bool noFix = false;
    const Option options[] = {logDrvOption(&args), controllerOption(&args), flagOption("-n", &noFix)};
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    return startCheck(args, noFix, "Redundancy check started on Array %d!\n",
                      "Redundancy check failed to start on Array %d!\n");
}

int PauseLogDrvRC(int wordCount, char** words) {
    return controlActivity(
        wordCount, words,
        {&redundancyCheck, ActivityPrecondition::notPaused, invoke<q5_pauseRedundancyCheck>,
         "Invalid number of parameters in command \"rc -a pause\"!", noDriveOnController,
         "Redundancy check paused on Array %d.\n", "Redundancy check is failed to pause on Array %d.\n"});
}

int ResumeLogDrvRC(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&redundancyCheck, ActivityPrecondition::paused, invoke<q5_resumeRedundancyCheck>,
                            "Invalid number of parameters in command \"rc -a resume\"!", noDriveOnController,
                            "Redundancy check resumed on Array %d.\n",
                            "Redundancy check is failed to resume on Array %d.\n"});
}

int StopLogDrvRC(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&redundancyCheck, ActivityPrecondition::running, invoke<q5_stopRedundancyCheck>,
                            "Invalid number of parameters in command \"rc -a stop\"!", noDriveOnController,
                            "Redundancy check stopped on Array %d.\n",
                            "Redundancy check is failed to stop on Array %d.\n"});
}
