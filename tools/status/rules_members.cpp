// Rules about lost members and what replaces them.
#include <algorithm>

#include "snapshot/serials.h"
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

// Whether both are the same controller. If no drive is listed now, an unchanged number of controllers shows
// it.
static bool isSameController(const Evaluation& evaluation, const Controller& earlier, const Controller& now) {
    return countSharedDrives(earlier, now) > 0 ||
           (now.drives.empty() &&
            evaluation.baseline->controllerCount == evaluation.snapshot.controllerCount);
}

// The drive with this number in the baseline, which may still have what the controller no longer reports;
// nullptr: none. A drive of another controller would be misleading: it may be healthy, and would be pulled.
static const Drive* earlierDrive(const Evaluation& evaluation, const Controller& controller,
                                 std::uint32_t number) {
    const Controller* earlier =
        evaluation.baseline != nullptr ? findController(*evaluation.baseline, controller.id) : nullptr;
    return earlier != nullptr && isSameController(evaluation, *earlier, controller)
               ? findDrive(*earlier, number)
               : nullptr;
}

enum class DriveRole { nothing, member, rebuildTarget };

// What the drive is to the logical drive, by its extents.
static DriveRole roleOf(const Controller& controller, std::uint32_t number, const LogicalDrive& array) {
    const Drive* drive = findDrive(controller, number);
    bool isMember = false;
    if (drive != nullptr)
        for (const ExtentEntry& extent : extents(drive->info))
            if ((extent.assignment & kExtentAssigned) != 0 && extent.arrayId == array.info.arrayId) {
                if ((extent.state & kExtentRebuilding) != 0)
                    return DriveRole::rebuildTarget;
                isMember = true;
            }
    return isMember ? DriveRole::member : DriveRole::nothing;
}

static std::string lastSeenText(const Drive* earlier) {
    if (earlier == nullptr)
        return "";
    return ", last seen on " + placeText(*earlier);
}

// Identifies the lost drive and its place, where its replacement may be now.
static std::string lostMemberText(const Evaluation& evaluation, const Controller& controller,
                                  const LogicalDrive& array, const Member& member) {
    const Drive* earlier = earlierDrive(evaluation, controller, member.number);
    const std::string text = "lost by " + shortObjectText(objectOf(controller, array));
    const std::string place = placeText(member.channel, member.enclosureId, member.serial);
    if (!member.listed)
        return text +
               (mayBeUnlisted(controller, member.number)
                    ? "; it cannot be identified, because not all drives could be read"
                    : "; it is no longer listed") +
               lastSeenText(earlier);
    const DriveRole role = roleOf(controller, member.number, array);
    if (role == DriveRole::member)
        return text + "; " + place;
    const bool replaced = earlier != nullptr && fieldText(earlier->info.serial) != member.serial;
    const char* end =
        role == DriveRole::rebuildTarget ? ") is being rebuilt as its member" : ") holds nothing of it";
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

// The state shows that a member is lost even if the adapter does not report which one.
static std::size_t countLost(const LogicalDrive& array) {
    const auto reported = std::count_if(array.members.begin(), array.members.end(),
                                        [](const Member& member) { return member.lost; });
    const std::size_t least = arrayState(array) == ArrayState::online ? 0 : 1;
    return std::max(static_cast<std::size_t>(reported), least);
}

static bool isRebuilding(const LogicalDrive& array) {
    return (array.info.activityStatus & kRebuilding) != 0;
}

// A rebuild has at least one drive that it writes to, even if none is reported.
static std::size_t countRebuildTargets(const Controller& controller, const LogicalDrive& array) {
    std::size_t count = 0;
    for (const Drive& drive : controller.drives)
        count += roleOf(controller, drive.number, array) == DriveRole::rebuildTarget ? 1 : 0;
    return isRebuilding(array) ? std::max<std::size_t>(count, 1) : 0;
}

// An activity that a rebuild waits for.
static bool isBusy(const LogicalDrive& array) {
    return (array.info.activityStatus & (kRebuilding | kMigrating)) != 0;
}

// Why no rebuild of these lost members will start automatically. Empty if theirs may follow a running rebuild
// or migration, or if that is unknown, because not all drives could be listed.
static std::string replacementProblem(const Controller& controller, const LogicalDrive& array,
                                      std::size_t waiting) {
    const std::size_t spares = countSuitableSpares(controller, array);
    const bool certain = hasAllDrives(controller);
    if (spares == 0 && certain)
        return "there is no suitable spare";
    if (controller.info && controller.info->autoRebuild == 0)
        return "automatic rebuild is off";
    if (spares < waiting)
        return certain
                   ? counted(spares, "suitable spare") + " for " + std::to_string(waiting) + " lost members"
                   : "";
    return isBusy(array) ? "" : "no rebuild runs, though there is a suitable spare";
}

static void findMissingReplacement(Evaluation* evaluation, const Controller& controller,
                                   const LogicalDrive& array) {
    const std::size_t lost = countLost(array), rebuilding = countRebuildTargets(controller, array);
    if (lost <= rebuilding)
        return;
    const std::string problem = replacementProblem(controller, array, lost - rebuilding);
    const std::string share = isRebuilding(array) ? " for " + std::to_string(lost - rebuilding) + " of " +
                                                        std::to_string(lost) + " lost members"
                                                  : "";
    if (!problem.empty())
        addFinding(evaluation, objectOf(controller, array),
                   "no replacement is coming" + share + ": " + problem);
}

void findMissingReplacements(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const LogicalDrive& array : controller.logicalDrives)
            if (isRedundant(array.info.raidLevel) && arrayState(array) != ArrayState::offline)
                findMissingReplacement(evaluation, controller, array);
}

void findArraysWithoutSpare(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const LogicalDrive& array : controller.logicalDrives)
            if (countLost(array) == 0 && isRedundant(array.info.raidLevel) &&
                arrayState(array) != ArrayState::offline && hasAllDrives(controller) &&
                countSuitableSpares(controller, array) == 0)
                addFinding(evaluation, objectOf(controller, array), "has no spare");
}
