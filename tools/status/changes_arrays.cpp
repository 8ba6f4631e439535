// Changes of logical drives: lost members, state and activities.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/changes.h"
#include "tools/status/facts.h"
#include "tools/status/rules.h"

// The earlier and the present state of a logical drive.
struct ArrayPair {
    const Controller& controller; // as it is
    const LogicalDrive& earlier;
    const LogicalDrive& now;
};

static bool isLost(const LogicalDrive& drive, std::uint32_t number) {
    return std::any_of(drive.members.begin(), drive.members.end(),
                       [&](const Member& member) { return member.lost && member.number == number; });
}

static Severity severityOf(ArrayState state) {
    if (state == ArrayState::online)
        return Severity::info;
    return state == ArrayState::degraded ? Severity::warning : Severity::critical;
}

// "drive 2 of controller 0 lost; logical drive 0 Archive is critical"
static void addStateChange(const ArrayPair& pair, Lines* lines) {
    const ArrayState state = arrayState(pair.now);
    const Object object = objectOf(pair.controller, pair.now);
    std::string lost;
    for (const Member& member : pair.now.members)
        if (member.lost && !isLost(pair.earlier, member.number))
            lost += "drive " + std::to_string(member.number) + " of controller " +
                    std::to_string(pair.controller.id) + " lost; ";
    if (lost.empty() && arrayState(pair.earlier) == state)
        return;
    const std::string name = lost.empty() ? objectText(object) : shortObjectText(object);
    const char* again = state == ArrayState::online ? " again" : "";
    lines->push_back({severityOf(state), printable(lost + name + " is " + arrayStateText(state) + again)});
}

static const Activity* findActivity(const LogicalDrive& drive, ActivityBit kind) {
    for (const Activity& activity : drive.activities)
        if (activity.kind == kind)
            return &activity;
    return nullptr;
}

// An activity that is no longer reported has completed if its logical drive is online; otherwise it is
// unknown why it ended.
static Line activityLine(const ArrayPair& pair, ActivityBit kind, const Activity* earlier,
                         const Activity* now) {
    const std::string text =
        std::string(activityText(kind)) + " of " + objectText(objectOf(pair.controller, pair.now));
    const std::string percent = now != nullptr ? std::to_string(now->percent) + "%" : "";
    if (now == nullptr && arrayState(pair.now) == ArrayState::online)
        return {Severity::info, printable(text + " finished")};
    if (now == nullptr)
        return {Severity::warning,
                printable(text + " ended, but it is " + arrayStateText(arrayState(pair.now)))};
    if (isPaused(*now))
        return {Severity::warning, printable(text + " paused at " + percent)};
    return {Severity::info, printable(text + (earlier == nullptr ? " started" : " resumed at " + percent))};
}

static void addActivityChanges(const ArrayPair& pair, Lines* lines) {
    static constexpr ActivityBit kinds[] = {kRebuilding, kInitializing, kRedundancyChecking, kSynchronizing,
                                            kMigrating};
    for (const ActivityBit kind : kinds) {
        const Activity* earlier = findActivity(pair.earlier, kind);
        const Activity* now = findActivity(pair.now, kind);
        const bool unread = now == nullptr && (pair.now.info.activityStatus & kind) != 0;
        if (unread || (earlier == nullptr) != (now == nullptr) ||
            (earlier != nullptr && isPaused(*earlier) != isPaused(*now)))
            if (!unread)
                lines->push_back(activityLine(pair, kind, earlier, now));
    }
}

static const LogicalDrive* findEarlier(const Snapshot& earlier, const Controller& controller,
                                       const LogicalDrive& drive) {
    const Controller* before = findController(earlier, controller.id);
    if (before == nullptr)
        return nullptr;
    for (const LogicalDrive& each : before->logicalDrives)
        if (each.info.logDrvId == drive.info.logDrvId)
            return &each;
    return nullptr;
}

// What a logical drive that the earlier state does not contain is compared with, so that its problems are
// reported: the same one without them.
static LogicalDrive withoutProblems(LogicalDrive drive) {
    drive.info.functionalStatus = kOnline;
    for (Member& member : drive.members)
        member.lost = false;
    for (Activity& activity : drive.activities)
        activity.state = 0;
    return drive;
}

void addArrayChanges(const Snapshot& earlier, const Snapshot& now, Lines* lines) {
    for (const Controller& controller : now.controllers)
        for (const LogicalDrive& drive : controller.logicalDrives) {
            const LogicalDrive* known = findEarlier(earlier, controller, drive);
            const LogicalDrive before = known != nullptr ? *known : withoutProblems(drive);
            addStateChange({controller, before, drive}, lines);
            addActivityChanges({controller, before, drive}, lines);
        }
}
