// The whole plan, and functions shared by its parts.
#include "tools/restore/plan.h"

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

static std::optional<std::uint32_t> mappedDrive(const Planning& planning, std::uint32_t savedDrive) {
    const auto found = planning.drives.find(savedDrive);
    return found != planning.drives.end() ? found->second : savedDrive;
}

const Drive* presentDrive(const Planning& planning, std::uint32_t savedDrive) {
    const auto number = mappedDrive(planning, savedDrive);
    return number ? findDrive(planning.now, *number) : nullptr;
}

bool isLeftOut(const Planning& planning, std::uint32_t savedDrive) {
    return !mappedDrive(planning, savedDrive);
}

static std::string serialOf(const Drive& drive) {
    return printable(trimmed(fieldText(drive.info.serial)));
}

bool hasSerialOf(const Drive& saved, const Drive& drive) {
    return serialOf(saved) == serialOf(drive);
}

// Why the present drive is not the expected one; empty: it is. The drive map accepts any.
static std::string obstacleToSerial(const Planning& planning, std::uint32_t savedDrive) {
    const Drive* saved = findDrive(planning.saved, savedDrive);
    const Drive* now = presentDrive(planning, savedDrive);
    if (planning.drives.count(savedDrive) != 0 || saved == nullptr || now == nullptr ||
        hasSerialOf(*saved, *now))
        return "";
    const std::string number = std::to_string(savedDrive);
    return driveName(savedDrive) + " has another serial: " + serialOf(*now) + " instead of " +
           serialOf(*saved) + "; if it is the replacement, add --drives " + number + "=" + number;
}

// Why a saved drive that is not left out cannot be used; empty: it can.
static std::string obstacleToDrive(const Planning& planning, std::uint32_t savedDrive) {
    const auto number = mappedDrive(planning, savedDrive);
    const Drive* saved = findDrive(planning.saved, savedDrive);
    const Drive* now = presentDrive(planning, savedDrive);
    const std::string serial = saved != nullptr ? serialOf(*saved) : "unknown";
    if (now == nullptr)
        return driveName(*number) + " is missing; " + driveName(savedDrive) + " had the serial " + serial;
    const std::string otherSerial = obstacleToSerial(planning, savedDrive);
    if (!otherSerial.empty())
        return otherSerial;
    if (isInaccessible(*now))
        return driveName(*number) + " gives no access";
    return "";
}

// Returns whether there is no obstacle.
static bool refuse(Planning* planning, std::uint32_t savedDrive, const std::string& obstacle) {
    if (!obstacle.empty() && planning->refused.insert(savedDrive).second)
        planning->plan.obstacles.push_back(obstacle);
    return obstacle.empty();
}

bool isUsable(Planning* planning, std::uint32_t savedDrive) {
    return !isLeftOut(*planning, savedDrive) &&
           refuse(planning, savedDrive, obstacleToDrive(*planning, savedDrive));
}

bool isExpected(Planning* planning, std::uint32_t savedDrive) {
    return refuse(planning, savedDrive, obstacleToSerial(*planning, savedDrive));
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

// What the operation lists; nullptr: nothing that is restored.
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

// An incomplete list would look as if the rest did not exist.
static void checkLists(std::vector<std::string>* obstacles, const Controller& controller, bool inBackup) {
    addUnread(obstacles, controller.faults, inBackup);
    for (const Drive& drive : controller.drives)
        addUnread(obstacles, drive.faults, inBackup);
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
        bool known = false;
        for (const auto& [arrayId, logDrvId] : planning->ids)
            known = known || logDrvId == drive.info.logDrvId;
        if (!known)
            planning->plan.notes.push_back(arrayName(drive, drive.info.logDrvId) +
                                           " is not in the backup; it stays as it is");
    }
}

Plan makePlan(const Controller& saved, const Controller& now, const DriveMap& drives) {
    Planning planning = {saved, now, drives, presentLayouts(now), {}, {}, {}, {}, {}};
    checkLists(&planning.plan.obstacles, saved, true);
    checkLists(&planning.plan.obstacles, now, false);
    if (!planning.plan.obstacles.empty())
        return planning.plan;
    for (const LogicalDrive& drive : now.logicalDrives)
        planning.takenIds.insert(drive.info.logDrvId);
    planController(&planning);
    planDrives(&planning);
    planArrays(&planning);
    planArraySettings(&planning);
    planSpares(&planning);
    noteOtherArrays(&planning);
    return planning.plan;
}
