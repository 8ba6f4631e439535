// The outcome of activities that have ended.
#include "tools/wait/conclusion.h"

#include "tools/wait/texts.h"

// A new array may get the number and the array ID of a deleted one: then only its name differs.
static WaitStatus checkArray(Watch* watch, const View& view, const Target& target) {
    for (const SeenArray& array : view.arrays)
        if (array.target == target && array.target.name != target.name) {
            watch->messages.push_back({false, targetText(target) + " is now named \"" + array.target.name +
                                                  "\"; it may be another one"});
            return WaitStatus::notOnline;
        } else if (array.target == target) {
            watch->messages.push_back({false, targetText(target) + " is " + arrayStateText(array.state)});
            return array.state == ArrayState::online ? WaitStatus::finished : WaitStatus::notOnline;
        }
    watch->messages.push_back({false, targetText(target) + " no longer exists"});
    return WaitStatus::notOnline;
}

// A patrol that completed leaves the drive idle.
static WaitStatus checkDrive(Watch* watch, const View& view, const Target& target) {
    const std::string patrol = "media patrol of " + targetText(target);
    for (const SeenDrive& drive : view.drives)
        if (drive.target == target) {
            const bool broken = drive.patrol == kPatrolAborted || drive.patrol == kPatrolStopped;
            const char* how = drive.patrol == kPatrolAborted ? " was aborted" : " was stopped";
            if (broken)
                watch->messages.push_back({false, patrol + how});
            return broken ? WaitStatus::notOnline : WaitStatus::finished;
        }
    watch->messages.push_back({false, targetText(target) + " is no longer listed"});
    return WaitStatus::notOnline;
}

static WaitStatus checkTarget(Watch* watch, const View& view, const Target& target) {
    return target.isDrive ? checkDrive(watch, view, target) : checkArray(watch, view, target);
}

WaitStatus conclude(Watch* watch, const View& view) {
    WaitStatus status = WaitStatus::finished;
    std::vector<Target> targets = watch->ended;
    if (targets.empty()) {
        watch->messages.push_back({false, "no " + kindsText(watch->options.kinds) + " is running"});
        for (const SeenArray& array : view.arrays)
            targets.push_back(array.target);
    }
    for (const Target& target : targets)
        if (checkTarget(watch, view, target) != WaitStatus::finished)
            status = WaitStatus::notOnline;
    return status;
}
