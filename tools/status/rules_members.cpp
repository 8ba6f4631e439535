// Rules about lost members and what replaces them.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

// The drive of this number in the baseline, which may still have what the controller no longer reports.
static const Drive* earlierDrive(const Evaluation& evaluation, std::uint32_t controllerId,
                                 std::uint32_t number) {
    const Controller* earlier =
        evaluation.baseline != nullptr ? findController(*evaluation.baseline, controllerId) : nullptr;
    return earlier != nullptr ? findDrive(*earlier, number) : nullptr;
}

enum class Holding { nothing, member, rebuildTarget };

// The drive's extent in the logical drive.
static Holding holdingOf(const Controller& controller, std::uint32_t number, const LogicalDrive& array) {
    const Drive* drive = findDrive(controller, number);
    bool isMember = false;
    if (drive != nullptr)
        for (const ExtentEntry& extent : extents(drive->info))
            if ((extent.assignment & kExtentAssigned) != 0 && extent.arrayId == array.info.arrayId) {
                if ((extent.state & kExtentRebuilding) != 0)
                    return Holding::rebuildTarget;
                isMember = true;
            }
    return isMember ? Holding::member : Holding::nothing;
}

static std::string lastSeenText(const Drive* earlier) {
    if (earlier == nullptr)
        return "";
    return ", last seen on " +
           placeText(earlier->info.channel, earlier->info.enclosureId, fieldText(earlier->info.serial));
}

// Identifies the lost drive and its place, where its replacement may be now.
static std::string lostMemberText(const Evaluation& evaluation, const Controller& controller,
                                  const LogicalDrive& array, const Member& member) {
    const Drive* earlier = earlierDrive(evaluation, controller.id, member.number);
    const std::string text = "lost by " + shortObjectText(objectOf(controller, array));
    const std::string place = placeText(member.channel, member.enclosureId, member.serial);
    if (!member.listed)
        return text + "; it is not listed any more" + lastSeenText(earlier);
    const Holding holding = holdingOf(controller, member.number, array);
    if (holding == Holding::member)
        return text + "; " + place;
    const bool replaced = earlier != nullptr && fieldText(earlier->info.serial) != member.serial;
    const char* end =
        holding == Holding::rebuildTarget ? ") is being rebuilt as its member" : ") holds nothing of it";
    return text + "; the drive there now (" + place + end + (replaced ? lastSeenText(earlier) : "");
}

void findLostMembers(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const LogicalDrive& array : controller.logicalDrives)
            for (const Member& member : array.members)
                if (member.lost)
                    addFinding(evaluation, {ObjectKind::drive, controller.id, member.number, ""},
                               lostMemberText(*evaluation, controller, array, member));
}

static std::size_t countLost(const LogicalDrive& array) {
    return static_cast<std::size_t>(std::count_if(array.members.begin(), array.members.end(),
                                                  [](const Member& member) { return member.lost; }));
}

// Why no rebuild will start automatically, or has not started; empty if that is unknown, because not all
// drives could be listed.
static std::string replacementProblem(const Controller& controller, const LogicalDrive& array) {
    const std::size_t spares = countSuitableSpares(controller, array);
    const std::size_t lost = countLost(array);
    const bool certain = hasAllDrives(controller);
    if (spares == 0 && certain)
        return "there is no suitable spare";
    if (controller.info && controller.info->autoRebuild == 0)
        return "automatic rebuild is off";
    if (spares < lost)
        return certain ? counted(spares, "suitable spare") + " for " + std::to_string(lost) + " lost members"
                       : "";
    return "no rebuild runs, though there is a suitable spare";
}

// Whether a rebuild is needed that does not run.
static bool lacksRebuild(const LogicalDrive& array) {
    const bool isRebuilding = (array.info.activityStatus & kRebuilding) != 0;
    return countLost(array) > 0 && !isRebuilding && isRedundant(array.info.raidLevel) &&
           arrayState(array) != ArrayState::offline;
}

void findMissingReplacements(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const LogicalDrive& array : controller.logicalDrives) {
            const std::string problem =
                lacksRebuild(array) ? replacementProblem(controller, array) : std::string();
            if (!problem.empty())
                addFinding(evaluation, objectOf(controller, array), "no replacement is coming: " + problem);
        }
}

void findArraysWithoutSpare(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const LogicalDrive& array : controller.logicalDrives)
            if (countLost(array) == 0 && isRedundant(array.info.raidLevel) &&
                arrayState(array) != ArrayState::offline && hasAllDrives(controller) &&
                countSuitableSpares(controller, array) == 0)
                addFinding(evaluation, objectOf(controller, array), "has no spare");
}
