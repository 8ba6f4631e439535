// Rebuilds: eligible extents, the member that each one replaces, completion and abort.
#include "simulator/engine/rebuild.h"

#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

namespace q5sim {

static bool isOnWorkingMember(const Controller& controller, const LogicalDrive& array, std::uint32_t drive) {
    for (std::size_t i = 0; i < array.members.size(); i++)
        if (array.members[i] == drive && isWorkingMember(controller, array, i))
            return true;
    return false;
}

static bool isUsableExtent(const LogicalDrive& array, const Extent& extent) {
    const bool spareOfAnother = extent.use == kUseDedicatedSpare && extent.array != array.arrayId;
    return !isAssigned(extent) && !spareOfAnother && extent.size >= array.memberSectors;
}

// A stale member can be rebuilt in place.
static bool isStaleExtent(const LogicalDrive& array, const Drive& drive, std::size_t index) {
    return isStaleMember(array, drive.id) && memberExtent(drive, array.arrayId) == index;
}

static bool isFreeForRebuild(const LogicalDrive& array, const Drive& drive, std::size_t index) {
    return isUsableExtent(array, drive.extents[index]) && !holdsExtentOf(drive, array.arrayId);
}

static bool isEligibleTarget(const Controller& controller, const LogicalDrive& array,
                             const RebuildChoice& choice) {
    const Drive* drive = findDrive(controller, choice.drive);
    return drive != nullptr && !drive->failed && choice.extent < drive->extents.size() &&
           (isFreeForRebuild(array, *drive, choice.extent) || isStaleExtent(array, *drive, choice.extent)) &&
           !isOnWorkingMember(controller, array, choice.drive);
}

// A drive that replaced a lost member takes its position, any other drive the first open one.
static std::size_t slotFor(const LogicalDrive& array, const std::vector<std::size_t>& open,
                           std::uint32_t drive) {
    for (std::size_t position : open)
        if (array.members[position] == drive)
            return position;
    return open.front();
}

// Drives that return to their own position come first.
static std::vector<RebuildTarget> assignSlots(const LogicalDrive& array, std::vector<std::size_t> open,
                                              const std::vector<RebuildChoice>& choices) {
    std::vector<RebuildTarget> targets;
    for (const bool own : {true, false})
        for (const RebuildChoice& choice : choices) {
            const bool returns =
                std::find(array.members.begin(), array.members.end(), choice.drive) != array.members.end();
            if (returns != own || open.empty())
                continue;
            const std::size_t position = slotFor(array, open, choice.drive);
            targets.push_back(
                {static_cast<std::uint16_t>(choice.drive), static_cast<std::uint8_t>(position)});
            std::erase(open, position);
        }
    return targets;
}

static bool hasDriveTwice(const std::vector<RebuildChoice>& choices) {
    for (std::size_t i = 0; i < choices.size(); i++)
        for (std::size_t k = 0; k < i; k++)
            if (choices[i].drive == choices[k].drive)
                return true;
    return false;
}

static std::string extentName(const RebuildChoice& choice) {
    return "extent " + std::to_string(choice.extent) + " of drive " + std::to_string(choice.drive + 1);
}

std::string rebuildRefusal(const Controller& controller, const LogicalDrive& array,
                           const std::vector<RebuildChoice>& choices) {
    const std::uint8_t status = functionalStatus(controller, array);
    if (array.activity.kind != 0)
        return "it has another activity";
    if (status == kOnline)
        return "no member is lost";
    if (status != kCritical && status != kDegraded)
        return "it is offline";
    if (choices.empty() || choices.size() > lostMembers(controller, array).size())
        return "more extents are given than members are lost";
    if (hasDriveTwice(choices))
        return "a drive is given twice";
    for (const RebuildChoice& choice : choices)
        if (!isEligibleTarget(controller, array, choice))
            return extentName(choice) + " cannot take a member";
    return "";
}

bool startRebuild(Controller& controller, LogicalDrive& array, const std::vector<RebuildChoice>& choices,
                  std::int64_t now) {
    if (!rebuildRefusal(controller, array, choices).empty())
        return false;
    const std::vector<std::size_t> lost = lostMembers(controller, array);
    const std::vector<RebuildTarget> targets = assignSlots(array, lost, choices);
    for (const RebuildChoice& choice : choices)
        if (Drive& drive = *findDrive(controller, choice.drive); !isStaleExtent(array, drive, choice.extent))
            allocateExtent(controller, drive, choice.extent, array.memberSectors, array.arrayId);
    startActivity(array, kRebuilding, array.memberSectors / kSectorsPerMb, now);
    array.activity.targets = targets;
    array.autoRebuildInhibited = false;
    for (const RebuildTarget& target : targets)
        addEvent(controller, now, "Logical drive %d: rebuild onto drive %d started", array.logDrvId,
                 target.drive + 1);
    return true;
}

std::vector<RebuildChoice> usableSpares(const Controller& controller, const LogicalDrive& array) {
    std::vector<RebuildChoice> spares;
    const std::size_t wanted = lostMembers(controller, array).size();
    for (const std::uint8_t use : {kUseDedicatedSpare, kUseGlobalSpare})
        for (const Drive& drive : controller.drives)
            for (std::size_t i = 0; i < drive.extents.size() && spares.size() < wanted; i++) {
                const RebuildChoice choice = {drive.id, static_cast<std::uint32_t>(i)};
                const bool chosen =
                    std::any_of(spares.begin(), spares.end(),
                                [&](const RebuildChoice& spare) { return spare.drive == choice.drive; });
                if (drive.extents[i].use == use && !chosen && isEligibleTarget(controller, array, choice))
                    spares.push_back(choice);
            }
    return spares;
}

void finishRebuild(Controller& controller, LogicalDrive& array) {
    for (const RebuildTarget& target : array.activity.targets) {
        std::uint16_t& member = array.members[target.position];
        Drive* old = findDrive(controller, member);
        if (old != nullptr && member != target.drive)
            freeMemberExtent(*old, array.arrayId);
        std::erase(array.staleMembers, member);
        std::erase(array.staleMembers, target.drive);
        member = target.drive;
    }
    array.activity = {};
}

void abortRebuild(Controller& controller, LogicalDrive& array) {
    for (const RebuildTarget& target : array.activity.targets)
        if (Drive* drive = findDrive(controller, target.drive))
            freeMemberExtent(*drive, array.arrayId);
    array.activity = {};
}

} // namespace q5sim
