// The outcome of activities that have ended.
#include "tools/wait/conclusion.h"

#include "tools/wait/texts.h"

// A new array may get number and array ID of a deleted one; its name is the last thing that differs.
static Verdict verdictOnArray(Watch* watch, const View& view, const Target& target) {
    for (const SeenArray& array : view.arrays)
        if (array.target == target && array.target.name != target.name) {
            watch->messages.push_back({false, targetText(target) + " is now named \"" + array.target.name +
                                                  "\"; it may be another one"});
            return Verdict::notOnline;
        } else if (array.target == target) {
            watch->messages.push_back({false, targetText(target) + " is " + arrayStateText(array.state)});
            return array.state == ArrayState::online ? Verdict::finished : Verdict::notOnline;
        }
    watch->messages.push_back({false, targetText(target) + " no longer exists"});
    return Verdict::notOnline;
}

// A patrol that completed leaves the drive idle.
static Verdict verdictOnDrive(Watch* watch, const View& view, const Target& target) {
    const std::string patrol = "media patrol of " + targetText(target);
    for (const SeenDrive& drive : view.drives)
        if (drive.target == target) {
            const bool broken =
                !drive.patrol || *drive.patrol == kPatrolAborted || *drive.patrol == kPatrolStopped;
            const char* how = !drive.patrol                     ? " can no longer be read"
                              : *drive.patrol == kPatrolAborted ? " was aborted"
                                                                : " was stopped";
            if (broken)
                watch->messages.push_back({false, patrol + how});
            return broken ? Verdict::notOnline : Verdict::finished;
        }
    watch->messages.push_back({false, targetText(target) + " is no longer listed"});
    return Verdict::notOnline;
}

static Verdict verdictOn(Watch* watch, const View& view, const Target& target) {
    return target.isDrive ? verdictOnDrive(watch, view, target) : verdictOnArray(watch, view, target);
}

Verdict conclude(Watch* watch, const View& view) {
    Verdict verdict = Verdict::finished;
    std::vector<Target> targets = watch->ended;
    if (targets.empty()) {
        watch->messages.push_back({false, "no " + kindsText(watch->options.kinds) + " is running"});
        for (const SeenArray& array : view.arrays)
            targets.push_back(array.target);
    }
    for (const Target& target : targets)
        if (verdictOn(watch, view, target) != Verdict::finished)
            verdict = Verdict::notOnline;
    return verdict;
}
