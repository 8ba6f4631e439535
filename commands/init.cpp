// The init command: shows and controls the initialization of a logical drive.
#include "commands/init.h"

#include <cstdio>

#include "commands/activity.h"

static const char noDrive[] = "No logical drive with ID %d is existed!\n";

static constexpr int kInitType = 4;

int ListLogDrvInitStatus(int wordCount, char** words) {
    return listActivity(
        wordCount, words,
        {&initialization, nullptr, noDrive, "No activity for initialization!", "Initialization is paused!\n",
         "Initialization is in progress %d%% in logical drive with ID %d on controller #%d!\n"});
}

int StartLogDrvInit(int wordCount, char** words) {
    if (wordCount != 7)
        return fail(Result::badValue, "Invalid command for \"init\"!");
    LogDrvArgs args;
    const Option options[] = {logDrvOption(&args), controllerOption(&args)};
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, noDrive))
        return Result::notFound;
    if (isBusy(drive))
        return Result::done;

    InitStartRequest request = {};
    request.logDrvId = args.logDrv;
    request.initType = kInitType;
    request.word6 = request.word8 = 0xFFFF;
    const int logDrv = static_cast<int>(args.logDrv);
    if (q5_startLogDrvInit(hbaAddress(args.controller), 0, &request, sizeof request) != 0) {
        std::printf("Initialization is failed to start on Array %d Type %d\n", logDrv, kInitType);
        return Result::refused;
    }
    std::printf("Initialization started on Array %d Type %d\n", logDrv, kInitType);
    return Result::done;
}

int PauseLogDrvInit(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&initialization, ActivityPrecondition::notPaused, invoke<q5_pauseLogDrvInit>,
                            "Invalid command for \"init -a pause\"!", noDrive,
                            "Initialization paused on Array %d.\n",
                            "Initialization is failed to pause on Array %d.\n"});
}

int ResumeLogDrvInit(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&initialization, ActivityPrecondition::paused, invoke<q5_resumeLogDrvInit>,
                            "Invalid number of parameters in command \"init\"!", noDrive,
                            "Initialization resumed on Array %d.\n",
                            "Initialization is failed to resume on Array %d.\n"});
}

int StopLogDrvInit(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&initialization, ActivityPrecondition::running, invoke<q5_stopLogDrvInit>,
                            "Invalid number of parameters in command \"init\"!", noDrive,
                            "Initialization stopped on Array %d.\n",
                            "Initialization is failed to stop on Array %d.\n"});
}
