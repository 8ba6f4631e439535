// The five background activities of logical drives, one row each, and the pattern their commands
// share: list, start, pause, resume, stop. What an activity's command prints and calls is in the
// source of that command: init.cpp, sync.cpp, migrate.cpp, rebuild.cpp.
#pragma once

#include "adapter/activity.h"
#include "adapter/logdrv.h"
#include "commands/options.h"

struct ActivityState {
    bool paused;
    int percent;
};

// An activity as listings show it. Progress formats take the percentage.
struct Activity {
    ActivityBit bit;
    ActivityState (*read)(std::uint32_t controller, std::uint32_t logDrvId);
    const char* pausedLine;
    const char* runningLine;
    const char* progress;
};

extern const Activity initialization;
extern const Activity synchronization;
extern const Activity redundancyCheck;
extern const Activity migration;
extern const Activity rebuild;

// Prints what the drive is doing, and how far it has come: one line, and one more unless it is idle.
void printActivity(std::uint32_t controller, const LogDrvInfo& drive);

bool isRunning(const LogDrvInfo& drive, const Activity& activity);

// Whether any activity runs: then no other is started.
bool isBusy(const LogDrvInfo& drive);

// The drive that the words of an activity command name.
struct LogDrvArgs {
    std::uint32_t controller = 0;
    std::uint32_t logDrv = 0;
};

// Rows of its two options, for commands that take more.
Option logDrvOption(LogDrvArgs* read);
Option controllerOption(LogDrvArgs* read);

// How an activity's list speaks. Formats may take the logical drive's and the controller's ID, in this
// order; inProgress takes the percentage before them.
struct ActivityList {
    const Activity* activity;
    const Activity* alternative; // listed in its place when only that one runs; null for most
    const char* noDrive;
    const char* noActivity;
    const char* paused;
    const char* inProgress;
};
int listActivity(int wordCount, char** words, const ActivityList& list);

// When a control operation is called; otherwise the command ends well without a word.
enum class ActivityPrecondition {
    none,
    running,   // paused or not
    notPaused, // running and not paused
    paused,
};

// How an activity's pause, resume, stop or restart is done. All take exactly seven words. Formats may
// take the logical drive's and the controller's ID, in this order.
struct ActivityControl {
    const Activity* activity;
    ActivityPrecondition guard;
    int (*operation)(HbaAddress address, const LogDrvIdBlock* drive);
    const char* countMessage;
    const char* noDrive;
    const char* success;
    const char* failure;
};
int controlActivity(int wordCount, char** words, const ActivityControl& control);

// Looks the drive of a control or start up; false after noDrive, a format as above.
bool lookupLogDrv(const LogDrvArgs& read, LogDrvInfo* drive, const char* noDrive);

// Says how an operation went, by formats that take the logical drive's ID.
int reportActivity(int adapterResult, std::uint32_t logDrv, const char* success, const char* failure);
