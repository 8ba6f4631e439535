// Spares, and how free space is divided. Spares come after all other steps that use free space: a spare that
// exists while logical drives are still being created could be used for a rebuild.
#include "snapshot/text.h"
#include "tools/restore/planning.h"

static bool isSpare(const ExtentEntry& extent) {
    return (extent.assignment & (kExtentGlobalSpare | kExtentDedicatedSpare)) != 0;
}

// The logical drive whose spare it is; kNoArray: any. nullopt: it does not exist.
static std::optional<std::uint32_t> ownerOf(const Planning& planning, const ExtentEntry& extent) {
    if ((extent.assignment & kExtentGlobalSpare) != 0)
        return kNoArray;
    const auto id = planning.ids.find(extent.arrayId);
    return id != planning.ids.end() ? std::optional(id->second) : std::nullopt;
}

static std::uint32_t logDrvIdOf(const Controller& controller, std::uint16_t arrayId) {
    const LogicalDrive* array = findArray(controller, arrayId);
    return array != nullptr ? array->info.logDrvId : kNoArray;
}

// Whether the present drive has the same spare already.
static bool isInPlace(const Planning& planning, const Drive& drive, const ExtentEntry& wanted,
                      std::uint32_t owner) {
    for (const ExtentEntry& extent : extents(drive.info)) {
        const bool global = (extent.assignment & kExtentGlobalSpare) != 0;
        if (extent.start == wanted.start && extent.size == wanted.size && isSpare(extent) &&
            owner == (global ? kNoArray : logDrvIdOf(planning.now, extent.arrayId)))
            return true;
    }
    return false;
}

// The logical drive that is being rebuilt in the place of the spare, which may be used for it; nullptr: none.
static const LogicalDrive* spareUser(const Planning& planning, const Drive& drive, const ExtentEntry& wanted,
                                     std::uint32_t owner) {
    for (const ExtentEntry& extent : extents(drive.info)) {
        const LogicalDrive* array = rebuiltArray(planning.now, drive, extent);
        if (array != nullptr && (array->info.activityStatus & kRebuilding) != 0 &&
            extent.start >= wanted.start && extent.start < wanted.start + wanted.size &&
            (owner == kNoArray || owner == array->info.logDrvId))
            return array;
    }
    return nullptr;
}

static bool noteSpareUser(Planning* planning, const Drive& drive, const ExtentEntry& wanted,
                          std::uint32_t owner) {
    const LogicalDrive* array = spareUser(*planning, drive, wanted, owner);
    if (array != nullptr)
        planning->plan.notes.push_back("the spare on " + driveName(drive.number) + " is in use: " +
                                       arrayName(*array, array->info.logDrvId) + " is being rebuilt onto it");
    return array != nullptr;
}

static Step spareStep(const Planning& planning, std::uint32_t drive, std::size_t extent,
                      std::uint32_t owner) {
    Step step;
    step.kind = StepKind::spare;
    step.words = {"extent",
                  "-a",
                  "spare",
                  "-p",
                  std::to_string(drive),
                  "-i",
                  std::to_string(planning.now.id),
                  "-e",
                  std::to_string(extent)};
    step.text = "make extent " + std::to_string(extent) + " of " + driveName(drive) + " ";
    if (owner == kNoArray) {
        step.text += "a global spare";
    } else {
        step.text += "a spare of logical drive " + std::to_string(owner);
        step.words.insert(step.words.end(), {"-l", std::to_string(owner)});
    }
    return step;
}

// Adds the splits to the plan, and the step that makes the spare to those that come last.
static void planSpare(Planning* planning, const Drive& drive, const ExtentEntry& saved,
                      std::vector<Step>* spares) {
    const auto owner = ownerOf(*planning, saved);
    if (!owner) {
        planning->plan.notes.push_back("a spare on " + driveName(drive.number) +
                                       " is left out: its logical drive is not here");
        return;
    }
    if (isInPlace(*planning, drive, saved, *owner) || noteSpareUser(planning, drive, saved, *owner))
        return;
    Layout& layout = planning->layouts[drive.number];
    const std::string obstacle = obstacleInRange(layout, saved.start, saved.size);
    if (!obstacle.empty()) {
        planning->plan.obstacles.push_back(driveName(drive.number) + " " + printable(obstacle) +
                                           "; a spare was there");
        return;
    }
    if (!splitAt(planning, drive.number, saved.start) ||
        !splitAt(planning, drive.number, saved.start + saved.size))
        return;
    const std::size_t index = findRegion(layout, saved.start);
    spares->push_back(spareStep(*planning, drive.number, index, *owner));
}

// Whether a logical drive that is here has lost the member that was on the drive. The member's space may be
// needed for a rebuild, or together with the rest for a spare.
static bool lacksMember(const Planning& planning, const Drive& saved, const Layout& layout) {
    for (const ExtentEntry& extent : extents(saved.info)) {
        const std::size_t index = findRegion(layout, extent.start);
        if ((extent.assignment & kExtentAssigned) != 0 && planning.ids.count(extent.arrayId) != 0 &&
            rebuiltArray(planning.saved, saved, extent) == nullptr && index < layout.size() &&
            layout[index].isFree())
            return true;
    }
    return false;
}

// Splits adjacent free extents as saved. Space that is used or cannot be split is left unchanged.
static void divideFreeSpace(Planning* planning, const Drive& drive, const ExtentEntry& saved) {
    const Layout& layout = planning->layouts[drive.number];
    const std::size_t index = findRegion(layout, saved.start);
    if (index < layout.size() && layout[index].isFree() &&
        (saved.start - layout[index].start) % kSectorsPerMb == 0)
        splitAt(planning, drive.number, saved.start);
}

// Notes a rebuild that was running when the backup was made: the logical drive is created complete and needs
// no target. A target that it still has is in use.
static void noteRebuildTarget(Planning* planning, const Drive& saved, const Drive& drive,
                              const ExtentEntry& extent) {
    const LogicalDrive* array = rebuiltArray(planning->saved, saved, extent);
    const Layout& layout = planning->layouts[drive.number];
    if (array != nullptr && obstacleInRange(layout, extent.start, extent.size).empty())
        planning->plan.notes.push_back(arrayName(*array, array->info.logDrvId) + " was being rebuilt onto " +
                                       driveName(drive.number) + "; that space stays free");
}

static bool hasSpare(const Drive& drive) {
    for (const ExtentEntry& extent : extents(drive.info))
        if (isSpare(extent))
            return true;
    return false;
}

static bool isMember(const Controller& saved, std::uint32_t number) {
    for (const LogicalDrive& array : saved.logicalDrives)
        for (int i = 0; i < boundedMemberCount(array.info); ++i)
            if (array.info.memberIds[i] + 1u == number)
                return true;
    return false;
}

// How to leave out a drive that only holds a spare; empty: it is needed, or it can be used.
static std::string leaveOutText(const Planning& planning, const Drive& saved) {
    const Drive* now = presentDrive(planning, saved.number);
    const bool isLost = now == nullptr ? movedText(planning, saved.number).empty() : isInaccessible(*now);
    if (!isLost || isMember(planning.saved, saved.number))
        return "";
    DriveMap map = planning.drives;
    map[saved.number] = std::nullopt;
    return "; to give up the spare on it, use --drives " + driveMapText(map);
}

static bool requireUsableSpare(Planning* planning, const Drive& saved) {
    std::vector<std::string>& obstacles = planning->plan.obstacles;
    const std::size_t count = obstacles.size();
    if (requireUsable(planning, saved.number))
        return true;
    if (obstacles.size() > count)
        obstacles.back() += leaveOutText(*planning, saved);
    return false;
}

static bool isSameDrive(const Planning& planning, const Drive& saved, const Drive& drive) {
    return planning.drives.count(saved.number) != 0 || hasSerialOf(saved, drive);
}

// Whether the present drive is the saved one, even if it is in another slot or left out.
static bool isOrWas(const Planning& planning, const Drive& drive, const Drive& saved) {
    return presentDrive(planning, saved.number) == &drive ||
           movedTo(planning, saved.number) == drive.number ||
           (isLeftOut(planning, saved.number) && saved.number == drive.number);
}

// Whether the spare was one when the backup was made. It may have belonged to another logical drive, which is
// reported elsewhere, or be a part of the saved one, of which a rebuild uses the rest.
static bool wasSpare(const Planning& planning, const Drive& drive, const ExtentEntry& spare) {
    for (const Drive& saved : planning.saved.drives)
        if (isOrWas(planning, drive, saved))
            for (const ExtentEntry& extent : extents(saved.info))
                if (isSpare(extent) && extent.start <= spare.start &&
                    spare.start + spare.size <= extent.start + extent.size)
                    return true;
    return false;
}

static void noteOtherSpares(Planning* planning, const Drive& drive) {
    std::size_t index = 0;
    for (const ExtentEntry& extent : extents(drive.info)) {
        if (isSpare(extent) && !wasSpare(*planning, drive, extent))
            planning->plan.notes.push_back("the spare on extent " + std::to_string(index) + " of " +
                                           driveName(drive.number) +
                                           " is not in the backup; it stays as it is");
        ++index;
    }
}

void planSpares(Planning* planning) {
    std::vector<Step> spares;
    for (const Drive& saved : planning->saved.drives) {
        const Drive* drive = presentDrive(*planning, saved.number);
        if ((hasSpare(saved) && !requireUsableSpare(planning, saved)) || drive == nullptr)
            continue;
        for (const ExtentEntry& extent : extents(saved.info))
            if (isSpare(extent))
                planSpare(planning, *drive, extent, &spares);
            else if (rebuiltArray(planning->saved, saved, extent) != nullptr)
                noteRebuildTarget(planning, saved, *drive, extent);
            else if (extentUser(planning->saved, extent).empty() && isSameDrive(*planning, saved, *drive) &&
                     !lacksMember(*planning, saved, planning->layouts[drive->number]))
                divideFreeSpace(planning, *drive, extent);
    }
    for (const Drive& drive : planning->now.drives)
        noteOtherSpares(planning, drive);
    for (const Step& step : spares)
        planning->plan.steps.push_back(step);
}
