// The whole plan, and functions shared by its parts.
#include "tools/restore/plan.h"

#include <algorithm>

#include "snapshot/text.h"
#include "tools/restore/planning.h"

std::string driveName(std::uint32_t number) {
    return "drive " + std::to_string(number);
}

std::string arrayName(const LogicalDrive& drive, std::uint32_t logDrvId) {
    const std::string name(fieldText(drive.info.name));
    return "logical drive " + std::to_string(logDrvId) + (name.empty() ? "" : " " + printable(name));
}

void addStep(Planning* planning, StepKind kind, const std::string& text,
             const std::vector<std::string>& words) {
    Step step;
    step.kind = kind;
    step.text = text;
    step.words = words;
    planning->plan.steps.push_back(step);
}

bool splitAt(Planning* planning, std::uint32_t drive, std::uint64_t sector) {
    Layout& layout = planning->layouts[drive];
    const std::size_t index = findRegion(layout, sector);
    if (index == layout.size() || layout[index].start == sector)
        return true;
    const std::uint64_t offset = sector - layout[index].start;
    if (offset % kSectorsPerMb != 0) {
        planning->plan.obstacles.push_back(driveName(drive) + " cannot be cut at sector " +
                                           std::to_string(sector) + ", which is not at a whole megabyte");
        return false;
    }
    const std::string megabytes = std::to_string(offset / kSectorsPerMb);
    addStep(planning, StepKind::split,
            "split extent " + std::to_string(index) + " of " + driveName(drive) + " at " + megabytes + " MB",
            {"extent", "-a", "split", "-p", std::to_string(drive), "-e", std::to_string(index), "-i",
             std::to_string(planning->now.id), "-o", megabytes});
    splitRegion(&layout, index, offset);
    return true;
}

// What the operation of the fault lists; nullptr: nothing that is restored.
static const char* listedBy(const Fault& fault) {
    if (fault.operation == "q5_getLogDrvInfo")
        return "logical drives";
    return fault.operation == "q5_getPhyDrvInfo" ? "drives" : nullptr;
}

static void addUnread(std::vector<std::string>* obstacles, const Faults& faults, bool inBackup) {
    for (const Fault& fault : faults)
        if (const char* what = listedBy(fault))
            obstacles->push_back((inBackup ? std::string("the backup does not contain all ") + what +
                                                 ", because they could not be read: "
                                           : std::string("not all ") + what + " can be read: ") +
                                 printable(faultText(fault)));
}

static void addShort(std::vector<std::string>* obstacles, const std::string& things, std::size_t counted,
                     std::size_t listed, bool inBackup) {
    const std::string count = std::to_string(counted), list = std::to_string(listed);
    if (listed < counted && inBackup)
        obstacles->push_back("the backup does not contain all " + things + ": the controller counted " +
                             count + ", but listed " + list);
    else if (listed < counted)
        obstacles->push_back("not all " + things + " can be read: the controller counts " + count +
                             ", but lists " + list);
}

// Lists that are shorter than the controller's own count, although the adapter reported no error.
static void addShortLists(std::vector<std::string>* obstacles, const Controller& controller, bool inBackup) {
    if (!controller.info)
        return;
    if (!hasFault(controller, "q5_getPhyDrvInfo"))
        addShort(obstacles, "drives", controller.info->diskCount, controller.drives.size(), inBackup);
    if (!hasFault(controller, "q5_getLogDrvInfo"))
        addShort(obstacles, "logical drives", controller.info->arrayCount, controller.logicalDrives.size(),
                 inBackup);
}

// Refuses incomplete lists: objects that are not listed would look as if they did not exist.
static void checkLists(std::vector<std::string>* obstacles, const Controller& controller, bool inBackup) {
    addUnread(obstacles, controller.faults, inBackup);
    addShortLists(obstacles, controller, inBackup);
    for (const Drive& drive : controller.drives)
        for (const Fault& fault : drive.faults)
            if (fault.kind != FaultKind::refused) // a drive that was refused alone is listed nevertheless
                addUnread(obstacles, {fault}, inBackup);
    for (const LogicalDrive& drive : controller.logicalDrives)
        addUnread(obstacles, drive.faults, inBackup);
}

static bool isInBackup(const Controller& saved, std::uint32_t number) {
    bool found = findDrive(saved, number) != nullptr;
    for (const LogicalDrive& drive : saved.logicalDrives)
        for (const Member& member : drive.members)
            found = found || member.number == number;
    return found;
}

std::optional<std::uint32_t> unknownDrive(const Controller& saved, const DriveMap& drives) {
    std::vector<std::string> incomplete;
    checkLists(&incomplete, saved, true);
    for (const auto& [from, to] : drives)
        if (incomplete.empty() && !isInBackup(saved, from))
            return from;
    return std::nullopt;
}

static void noteOtherArrays(Planning* planning) {
    for (const LogicalDrive& drive : planning->now.logicalDrives) {
        bool known = planning->unsettled.count(drive.info.logDrvId) != 0;
        for (const auto& [arrayId, logDrvId] : planning->ids)
            known = known || logDrvId == drive.info.logDrvId;
        if (!known)
            planning->plan.notes.push_back(arrayName(drive, drive.info.logDrvId) +
                                           " is not in the backup; it stays as it is");
    }
}

// Removes the notes that repeat an obstacle.
static void removeRepeatedNotes(Plan* plan) {
    std::erase_if(plan->notes, [plan](const std::string& note) {
        return std::find(plan->obstacles.begin(), plan->obstacles.end(), note) != plan->obstacles.end();
    });
}

Plan makePlan(const Controller& saved, const Controller& now, const DriveMap& drives) {
    Planning planning = {saved, now, drives, presentLayouts(now), {}, {}, {}, {}, {}, {}};
    checkLists(&planning.plan.obstacles, saved, true);
    checkLists(&planning.plan.obstacles, now, false);
    if (!planning.plan.obstacles.empty())
        return planning.plan;
    for (const LogicalDrive& drive : now.logicalDrives)
        planning.takenIds.insert(drive.info.logDrvId);
    findMembersInPlace(&planning);
    planController(&planning);
    planDrives(&planning);
    planArrays(&planning);
    planArraySettings(&planning);
    planSpares(&planning);
    if (planning.lastStep)
        planning.plan.steps.push_back(*planning.lastStep);
    listRebuilds(&planning);
    requireMapWhereSaved(&planning);
    noteOtherArrays(&planning);
    removeRepeatedNotes(&planning.plan);
    return planning.plan;
}
