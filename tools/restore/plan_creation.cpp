// Plans the creation of a logical drive.
#include <set>

#include "snapshot/text.h"
#include "snapshot/words.h"
#include "tools/restore/array_record.h"
#include "tools/restore/planning.h"

// The adapter assigns the lowest free ID.
static std::uint32_t nextId(const Planning& planning) {
    std::uint32_t id = 0;
    while (planning.takenIds.count(id) != 0)
        ++id;
    return id;
}

static bool requireFreeId(Planning* planning, const LogicalDrive& saved) {
    for (const LogicalDrive& drive : planning->now.logicalDrives) {
        if (drive.info.logDrvId != saved.info.logDrvId)
            continue;
        planning->unsettled.insert(drive.info.logDrvId);
        const std::string here = describe(planning->now, drive), there = describe(planning->saved, saved);
        planning->plan.obstacles.push_back("a different array is in place: " + here + "; the backup has " +
                                           (here == there ? "another stripe, sector size or parity" : there));
        return false;
    }
    return true;
}

// A map can put a drive in the place of another one although it also keeps its own place.
static bool requireDifferentDrives(Planning* planning, const LogicalDrive& saved,
                                   const MemberPlaces& places) {
    std::set<std::uint32_t> drives;
    for (const MemberPlace& place : places)
        if (presentDrive(*planning, place.savedDrive) != nullptr && !drives.insert(place.drive).second) {
            planning->plan.obstacles.push_back(driveName(place.drive) + " would hold two members of " +
                                               arrayName(saved, saved.info.logDrvId));
            return false;
        }
    return true;
}

// Checks every drive and every range of sectors, so that all obstacles are reported at once.
static bool requireFreePlaces(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places) {
    bool allFree = true;
    for (const MemberPlace& place : places) {
        if (!requireUsable(planning, place.savedDrive)) {
            allFree = false;
            if (planning->refused.count(place.savedDrive) == 0)
                planning->plan.obstacles.push_back(driveName(place.savedDrive) + " is left out, but " +
                                                   arrayName(saved, saved.info.logDrvId) + " needs it");
            continue;
        }
        const std::string obstacle = obstacleInRange(planning->layouts[place.drive], place.start, place.size);
        if (!obstacle.empty())
            planning->plan.obstacles.push_back(driveName(place.drive) + " " + printable(obstacle) + "; " +
                                               arrayName(saved, saved.info.logDrvId) + " was there");
        allFree = allFree && obstacle.empty();
    }
    return allFree;
}

// Splits where extents must begin and, for a JBOD, which uses whole extents, where they end.
static bool prepareExtents(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places,
                           LogDrvConfigRecord* record) {
    for (const MemberPlace& place : places)
        if (!splitAt(planning, place.drive, place.start) ||
            (saved.info.raidLevel == kJbod && !splitAt(planning, place.drive, place.start + place.size)))
            return false;
    for (std::size_t i = 0; i < places.size(); ++i) {
        Layout& layout = planning->layouts[places[i].drive];
        const std::size_t index = findRegion(layout, places[i].start);
        record->memberIds[i] = static_cast<int>(places[i].drive);
        record->extents[i] = static_cast<int>(index);
    }
    return true;
}

static void addCreation(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places,
                        const LogDrvConfigRecord& record) {
    Step step;
    step.kind = StepKind::create;
    step.arrayRecord = record;
    const std::uint32_t id = nextId(*planning);
    step.text = "create " + arrayName(saved, id) + ": " + raidLevelText(saved.info.raidLevel) + " of " +
                std::to_string(saved.info.sectorCount) + " sectors on";
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto index = static_cast<std::size_t>(record.extents[i]);
        step.text += (i == 0 ? " " : ", ") + driveName(places[i].drive) + " extent " + std::to_string(index) +
                     " (" + std::to_string(places[i].size) + " sectors from " +
                     std::to_string(places[i].start) + ")";
        takeRegion(&planning->layouts[places[i].drive], index, places[i].size, arrayName(saved, id));
    }
    planning->plan.steps.push_back(step);
    planning->takenIds.insert(id);
    noteId(planning, saved, id);
}

static bool requireRepeatableSize(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places) {
    std::uint64_t size = 0;
    for (const MemberPlace& place : places)
        size += place.size;
    if (!isRoundedJbod(saved, size))
        return true;
    planning->plan.obstacles.push_back(describe(planning->saved, saved) +
                                       " was rounded to whole GB: create it with logdrv -a add and "
                                       "rounding=gbb, then restore the rest");
    return false;
}

void planCreation(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places) {
    LogDrvConfigRecord record = recordOf(planning->now.id, saved);
    // Reported even if another obstacle is found first.
    const bool whereSaved = requireMembersWhereSaved(planning, places);
    if (!requireFreeId(planning, saved) || (whereSaved && !requireDifferentDrives(planning, saved, places)) ||
        !requireFreePlaces(planning, saved, places) || !requireRepeatableSize(planning, saved, places) ||
        !prepareExtents(planning, saved, places, &record))
        return;
    if (isCreatable(saved, record))
        addCreation(planning, saved, places, record);
    else
        planning->plan.obstacles.push_back(describe(planning->saved, saved) +
                                           " cannot be created by a command: its name, its stripe, its "
                                           "sector size or its number of members");
    if ((saved.info.functionalStatus & kOnline) == 0 || saved.lostMask.value_or(0) != 0)
        planning->plan.notes.push_back(arrayName(saved, saved.info.logDrvId) +
                                       " was not complete when it was saved; it is created complete");
}
