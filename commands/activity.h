// The five background activities of logical drives, one row each, and the pattern their commands
// share: list, start, pause, resume, stop. The messages and operations of each are in
// the source of its command: init.cpp, sync.cpp, migrate.cpp, rebuild.cpp.
#pragma once

#include "adapter/activity.h"
#include "adapter/logdrv.h"
#include "commands/options.h"

struct ActivityState {
    bool paused;
    int percent;
};

// An activity and how listings show it. The progress format takes the percentage.
struct Activity {
    ActivityBit bit;
    ActivityState (*readState)(std::uint32_t controller, std::uint32_t logDrvId);
    const char* pausedLine;
    const char* runningLine;
    const char* progress;
};

extern const Activity initialization;
extern const Activity synchronization;
extern const Activity redundancyCheck;
extern const Activity migration;
extern const Activity rebuild;

// Prints the drive's activity and its progress: two lines, or one if the drive is idle.
void printActivity(std::uint32_t controller, const LogDrvInfo& drive);

bool isRunning(const LogDrvInfo& drive, const Activity& activity);

// Whether any activity is running, in which case no other can be started.
bool isBusy(const LogDrvInfo& drive);

// The logical drive that an activity command operates on.
struct LogDrvArgs {
    std::uint32_t controller = 0;
    std::uint32_t logDrv = 0;
};

// The options -l and -i, for commands that have others as well.
Option logDrvOption(LogDrvArgs* args);
Option controllerOption(LogDrvArgs* args);

// The messages of an activity's list action. Formats may take the logical drive's and the controller's ID, in
// this order; inProgress takes the percentage before them.
struct ActivityList {
    const Activity* activity;
    const Activity* fallback; // listed if activity is not running; may be null
    const char* noDrive;
    const char* noActivity;
    const char* paused;
    const char* inProgress;
};
int listActivity(int wordCount, char** words, const ActivityList& list);

// When a control operation is called. Otherwise the command succeeds silently.
enum class ActivityPrecondition {
    none,
    running,   // paused or not
    notPaused, // running and not paused
    paused,
};

// An activity's pause, resume, stop or restart action. All require exactly seven words. Formats may
// take the logical drive's and the controller's ID, in this order.
struct ActivityControl {
    const Activity* activity;
    ActivityPrecondition precondition;
    int (*operation)(HbaAddress address, const LogDrvIdBlock* drive);
    const char* countMessage;
    const char* noDrive;
    const char* success;
    const char* failure;
};
int controlActivity(int wordCount, char** words, const ActivityControl& control);

// Looks up the drive of a control or start action. If it does not exist, prints noDrive, a format as
// above, and returns false.
bool lookupLogDrv(const LogDrvArgs& args, LogDrvInfo* drive, const char* noDrive);

// Prints the outcome of an operation, with formats that take the logical drive's ID, and returns the
// result code.
int reportActivity(int adapterResult, std::uint32_t logDrv, const char* success, const char* failure);
