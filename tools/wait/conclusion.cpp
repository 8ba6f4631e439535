// The outcome of activities that have ended.
#include "tools/wait/conclusion.h"

#include <algorithm>

#include "tools/wait/texts.h"

// A new array may get the number and the array ID of a deleted one. What else shows that it is another one;
// empty: nothing does. One that is not online may report no size.
static std::string differenceText(const Watch& watch, const Target& before, const SeenArray& now) {
    if (now.target.name != before.name)
        return " is now named \"" + now.target.name + "\"";
    const bool migrated =
        std::find(watch.migrated.begin(), watch.migrated.end(), before) != watch.migrated.end();
    const bool isSame = now.target.shape == before.shape || migrated || now.state != ArrayState::online;
    return isSame ? "" : " has another level or size";
}

static WaitStatus checkSeen(Watch* watch, const SeenArray& array, const Target& target) {
    const std::string difference = differenceText(*watch, target, array);
    const std::string text = difference.empty() ? std::string(" is ") + arrayStateText(array.state)
                                                : difference + "; it may be another one";
    watch->messages.push_back({false, targetText(target) + text});
    const bool isOnline = difference.empty() && array.state == ArrayState::online;
    return isOnline ? WaitStatus::finished : WaitStatus::notOnline;
}

static WaitStatus checkArray(Watch* watch, const View& view, const Target& target) {
    for (const SeenArray& array : view.arrays)
        if (array.target == target)
            return checkSeen(watch, array, target);
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
