// The sync and rc commands: a logical drive's synchronisation and redundancy check. One operation of
// the adapter starts both; which of them then runs is the adapter's decision.
#include "commands/sync.h"

#include "commands/activity.h"

static const char noDriveListed[] = "No logical drive with ID %d is existed!\n";
static const char noDriveNamed[] = "No logical drive with ID %d on controller #%d is existed!\n";

int ListLogDrvSyncStatus(int wordCount, char** words) {
    return listActivity(
        wordCount, words,
        {&synchronization, nullptr, noDriveListed, "No activity for synchronization!",
         "synchronization is paused!\n",
         "Synchronization is in progress %d%% in logical drive with ID %d on controller #%d!\n"});
}

// A drive that is only synchronising is reported as being checked.
int ListLogDrvRCStatus(int wordCount, char** words) {
    return listActivity(
        wordCount, words,
        {&redundancyCheck, &synchronization, noDriveListed, "No activity for redundancy check!",
         "Redundancy check is paused!\n",
         "Redundancy check is in progress %d%% in logical drive with ID %d on controller #%d!\n"});
}

// Starts the check on an idle drive; a busy one is left alone without a word.
static int startCheck(const LogDrvArgs& read, bool noFix, const char* success, const char* failure) {
    LogDrvInfo drive;
    if (!lookupLogDrv(read, &drive, noDriveNamed))
        return Result::notFound;
    if (isBusy(drive))
        return Result::done;
    const RedundancyCheckRequest request = {read.logDrv, noFix, 0, {}};
    return reportActivity(q5_startRedundancyCheck(hbaAddress(read.controller), 0, &request), read.logDrv,
                          success, failure);
}

int StartLogDrvSync(int wordCount, char** words) {
    if (wordCount < 5)
        return fail(Result::badCount, "Invalid number of parameters in command \"sync \"!");
    LogDrvArgs read;
    const Option options[] = {logDrvOption(&read), controllerOption(&read)};
    // The line begins with the options: there is no action word before them.
    if (const int result = readOptions(wordCount, words, 1, options, "Invalid parameters defined"))
        return result;
    return startCheck(read, false, "Synchronization started on Array %d!\n",
                      "Synchronization failed to start on Array %d!\n");
}

int StartLogDrvRC(int wordCount, char** words) {
    if (wordCount < 7)
        return fail(Result::badCount, "Invalid number of parameters in command \"rc -a start\"!");
    LogDrvArgs read;
    bool noFix = false;
    const Option options[] = {logDrvOption(&read), controllerOption(&read), flagOption("-n", &noFix)};
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    return startCheck(read, noFix, "Redundancy check started on Array %d!\n",
                      "Redundancy check failed to start on Array %d!\n");
}

int PauseLogDrvRC(int wordCount, char** words) {
    return controlActivity(
        wordCount, words,
        {&redundancyCheck, ActivityPrecondition::notPaused, invoke<q5_pauseRedundancyCheck>,
         "Invalid number of parameters in command \"rc -a pause\"!", noDriveNamed,
         "Redundancy check paused on Array %d.\n", "Redundancy check is failed to pause on Array %d.\n"});
}

int ResumeLogDrvRC(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&redundancyCheck, ActivityPrecondition::paused, invoke<q5_resumeRedundancyCheck>,
                            "Invalid number of parameters in command \"rc -a resume\"!", noDriveNamed,
                            "Redundancy check resumed on Array %d.\n",
                            "Redundancy check is failed to resume on Array %d.\n"});
}

int StopLogDrvRC(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&redundancyCheck, ActivityPrecondition::running, invoke<q5_stopRedundancyCheck>,
                            "Invalid number of parameters in command \"rc -a stop\"!", noDriveNamed,
                            "Redundancy check stopped on Array %d.\n",
                            "Redundancy check is failed to stop on Array %d.\n"});
}
