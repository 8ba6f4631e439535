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

static std::string activityOf(const ArrayPair& pair, ActivityBit kind) {
    return std::string(activityText(kind)) + " of " + objectText(objectOf(pair.controller, pair.now));
}

// A migration that has ended changed the logical drive, unless it was stopped.
static bool isReshaped(const LogDrvInfo& earlier, const LogDrvInfo& now) {
    return earlier.raidLevel != now.raidLevel || earlier.sectorCount != now.sectorCount ||
           earlier.diskCount != now.diskCount || earlier.stripeBlocks != now.stripeBlocks;
}

// An activity that is no longer reported has completed or was stopped, which only its result shows: a
// rebuilt logical drive is online, a migrated one has another shape.
static Line endLine(const ArrayPair& pair, ActivityBit kind) {
    const std::string text = activityOf(pair, kind);
    const ArrayState state = arrayState(pair.now);
    if (state != ArrayState::online)
        return {Severity::warning, printable(text + " ended, but it is " + arrayStateText(state))};
    const bool proven =
        kind == kRebuilding || (kind == kMigrating && isReshaped(pair.earlier.info, pair.now.info));
    return {Severity::info, printable(text + (proven ? " finished" : " ended"))};
}

static Line pauseLine(const ArrayPair& pair, const Activity& now) {
    const bool paused = isPaused(now);
    const std::string text = activityOf(pair, now.kind) + (paused ? " paused" : " resumed");
    return {paused ? Severity::warning : Severity::info,
            printable(text + " at " + std::to_string(now.percent) + "%")};
}

static bool isActive(const LogicalDrive& drive, ActivityBit kind) {
    return (drive.info.activityStatus & kind) != 0;
}

// The progress of an activity may be unreadable, which neither starts nor ends it.
static void addActivityChange(const ArrayPair& pair, ActivityBit kind, Lines* lines) {
    const Activity* earlier = findActivity(pair.earlier, kind);
    const Activity* now = findActivity(pair.now, kind);
    const bool wasActive = isActive(pair.earlier, kind);
    const bool wasPaused = earlier != nullptr && isPaused(*earlier);
    if (!isActive(pair.now, kind)) {
        if (wasActive)
            lines->push_back(endLine(pair, kind));
    } else if (now != nullptr && isPaused(*now) != wasPaused)
        lines->push_back(pauseLine(pair, *now));
    else if (!wasActive)
        lines->push_back({Severity::info, printable(activityOf(pair, kind) + " started")});
}

static void addActivityChanges(const ArrayPair& pair, Lines* lines) {
    static constexpr ActivityBit kinds[] = {kRebuilding, kInitializing, kRedundancyChecking, kSynchronizing,
                                            kMigrating};
    for (const ActivityBit kind : kinds)
        addActivityChange(pair, kind, lines);
}

static const LogicalDrive* findLogicalDrive(const Snapshot& snapshot, std::uint32_t controllerId,
                                            std::uint32_t logDrvId) {
    const Controller* controller = findController(snapshot, controllerId);
    return controller != nullptr ? findLogicalDrive(*controller, logDrvId) : nullptr;
}

bool hasWorsened(const Snapshot& earlier, const Snapshot& now, std::uint32_t controller,
                 std::uint32_t logDrvId) {
    const LogicalDrive* before = findLogicalDrive(earlier, controller, logDrvId);
    const LogicalDrive* after = findLogicalDrive(now, controller, logDrvId);
    return before != nullptr && after != nullptr && arrayState(*after) > arrayState(*before);
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
            const LogicalDrive* known = findLogicalDrive(earlier, controller.id, drive.info.logDrvId);
            const LogicalDrive before = known != nullptr ? *known : withoutProblems(drive);
            addStateChange({controller, before, drive}, lines);
            addActivityChanges({controller, before, drive}, lines);
        }
}
