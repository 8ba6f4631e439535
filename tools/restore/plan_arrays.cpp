// Plans the logical drives: which of them are in place, and which are to be created.
#include <algorithm>

#include "snapshot/state.h"
#include "snapshot/text.h"
#include "snapshot/words.h"
#include "tools/restore/planning.h"

static MemberPlace placeOf(const Controller& controller, std::uint32_t number, std::uint16_t arrayId) {
    const Drive* drive = findDrive(controller, number);
    const ExtentEntry* extent = drive != nullptr ? memberExtent(*drive, arrayId) : nullptr;
    return extent != nullptr ? MemberPlace{number, 0, extent->start, extent->size} : MemberPlace{number};
}

// Where the members of a logical drive are, in their order.
static MemberPlaces placesOf(const Controller& controller, const LogicalDrive& array) {
    MemberPlaces places;
    for (int i = 0; i < boundedMemberCount(array.info); ++i)
        places.push_back(placeOf(controller, array.info.memberIds[i] + 1u, array.info.arrayId));
    return places;
}

static void mapPlaces(const Planning& planning, MemberPlaces* places) {
    for (MemberPlace& place : *places)
        if (const Drive* drive = presentDrive(planning, place.savedDrive))
            place.drive = drive->number;
}

static bool haveSameGeometry(const LogDrvInfo& a, const LogDrvInfo& b) {
    return a.raidLevel == b.raidLevel && a.sectorCount == b.sectorCount && a.stripeBlocks == b.stripeBlocks &&
           a.sectorSize == b.sectorSize && a.parityCount == b.parityCount && a.symmetric == b.symmetric &&
           a.shift == b.shift && a.subArrayCount == b.subArrayCount && a.diskCount == b.diskCount;
}

// Whether the members are on the same sectors. Those whose place is not known, here or in the backup, are
// left out of the comparison: the others show which logical drive it is.
static bool isAt(const Planning& planning, const LogicalDrive& array, const MemberPlaces& places) {
    const MemberPlaces found = placesOf(planning.now, array);
    bool anyFound = false;
    for (std::size_t i = 0; i < std::min(found.size(), places.size()); ++i) {
        if (!found[i].isKnown() || !places[i].isKnown())
            continue;
        if (found[i].savedDrive != places[i].drive || found[i].start != places[i].start ||
            found[i].size != places[i].size)
            return false;
        anyFound = true;
    }
    return anyFound && found.size() == places.size();
}

// The logical drive that exists already, with any ID and name.
static const LogicalDrive* findInPlace(const Planning& planning, const LogicalDrive& saved,
                                       const MemberPlaces& places) {
    for (const LogicalDrive& drive : planning.now.logicalDrives)
        if (haveSameGeometry(drive.info, saved.info) && isAt(planning, drive, places))
            return &drive;
    return nullptr;
}

void noteId(Planning* planning, const LogicalDrive& saved, std::uint32_t id) {
    planning->ids[saved.info.arrayId] = id;
    if (id != saved.info.logDrvId)
        planning->plan.notes.push_back(arrayName(saved, saved.info.logDrvId) +
                                       " of the backup is logical drive " + std::to_string(id) + " here");
}

static std::string placesText(const Controller& controller, const LogicalDrive& drive) {
    std::string text;
    for (const MemberPlace& place : placesOf(controller, drive))
        text += (text.empty() ? " on " : ", ") + driveName(place.savedDrive) +
                (place.isKnown() ? " (" + std::to_string(place.size) + " sectors from " +
                                       std::to_string(place.start) + ")"
                                 : " (lost)");
    return text;
}

std::string describe(const Controller& controller, const LogicalDrive& drive) {
    return arrayName(drive, drive.info.logDrvId) + ", " + raidLevelText(drive.info.raidLevel) + " of " +
           std::to_string(drive.info.sectorCount) + " sectors" + placesText(controller, drive);
}

// Lists the drives of the members whose place is unknown: those that are left out, or all others.
static std::string unknownDrives(const Planning& planning, const MemberPlaces& places, bool leftOut) {
    std::string text;
    for (const MemberPlace& place : places)
        if (!place.isKnown() && isLeftOut(planning, place.savedDrive) == leftOut)
            text += (text.empty() ? "" : ", ") + driveName(place.savedDrive);
    return text;
}

// Nothing reports where a lost member was, so that it cannot be created again. Leaving its drive out
// accepts that.
static bool requireKnownPlaces(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places) {
    const std::string name = arrayName(saved, saved.info.logDrvId);
    const std::string unknown = unknownDrives(*planning, places, false);
    const std::string leftOut = unknownDrives(*planning, places, true);
    if (!unknown.empty())
        planning->plan.obstacles.push_back(name + " had lost " + unknown +
                                           " when it was saved: where that member was is not known; use an "
                                           "earlier backup, or leave the drive out with --drives");
    else if (!leftOut.empty())
        planning->plan.notes.push_back(name + " is left out: it had lost " + leftOut);
    return unknown.empty() && leftOut.empty();
}

static bool hasLostMember(const LogicalDrive& drive) {
    return std::any_of(drive.members.begin(), drive.members.end(),
                       [](const Member& member) { return member.lost; });
}

static bool isOffline(const LogicalDrive& drive) {
    return arrayState(drive) == ArrayState::offline;
}

static std::string lostDrives(const LogicalDrive& drive) {
    std::string text;
    for (const Member& member : drive.members)
        if (member.lost)
            text += (text.empty() ? " without " : ", ") + driveName(member.number);
    return text;
}

// Notes that the logical drive is in a worse state than when it was saved, and whether a rebuild is running.
static void noteImpaired(Planning* planning, const LogicalDrive& present) {
    std::string text =
        arrayName(present, present.info.logDrvId) + " is " + arrayStateText(arrayState(present));
    const char* link = " and is being rebuilt onto ";
    for (const std::uint32_t drive : rebuildTargets(planning->now, present)) {
        text += link + driveName(drive);
        link = " and ";
    }
    planning->plan.impaired.push_back(text);
}

// What a restore does not change: members that were lost since, and data that is not accessible. Which
// members are lost may not be known.
static void reportState(Planning* planning, const LogicalDrive& saved, const LogicalDrive& present) {
    const std::string name = arrayName(present, present.info.logDrvId);
    Plan& plan = planning->plan;
    if (arrayState(present) > arrayState(saved))
        noteImpaired(planning, present);
    if (isOffline(present) && isOffline(saved))
        plan.notes.push_back(name + " is offline, as it was when it was saved");
    else if (isOffline(present))
        plan.obstacles.push_back(name + " is offline" + lostDrives(present) +
                                 ": a rebuild cannot complete it");
    else if (hasLostMember(present) && !hasLostMember(saved))
        plan.notes.push_back(name + " has lost a member since; a rebuild makes it complete");
    else if (arrayState(present) > arrayState(saved))
        plan.notes.push_back(name + " is " + arrayStateText(arrayState(present)) + "; it was " +
                             arrayStateText(arrayState(saved)) + " when it was saved");
    if ((present.info.activityStatus & kMigrating) != 0)
        plan.notes.push_back(name + " is being migrated; it will be different");
}

// Equal sectors do not show that it is the same logical drive: its data is on the drives. A member that was
// rebuilt onto another drive is accepted if that drive is mapped; where nothing is known of a member, now or
// in the backup, the others have to match.
static std::vector<std::uint32_t> unexpectedDrives(const Planning& planning, const LogicalDrive& present,
                                                   const MemberPlaces& places) {
    const MemberPlaces found = placesOf(planning.now, present);
    std::vector<std::uint32_t> unexpected;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (places[i].isKnown() && found[i].isKnown() && !hasExpectedSerial(planning, places[i].savedDrive))
            unexpected.push_back(places[i].savedDrive);
    return unexpected;
}

// Notes members that have moved: their order differs from the backup, or one of them has become the spare.
static void noteMisplaced(Planning* planning, const MemberPlaces& places) {
    for (const MemberPlace& place : places) {
        const std::string text = misplacedText(*planning, place.savedDrive);
        if (!text.empty())
            planning->plan.notes.push_back(text);
    }
}

static void planInPlace(Planning* planning, const LogicalDrive& saved, const LogicalDrive& present,
                        const MemberPlaces& places) {
    const std::uint32_t id = present.info.logDrvId;
    noteId(planning, saved, id);
    const std::vector<std::uint32_t> unexpected = unexpectedDrives(*planning, present, places);
    for (const std::uint32_t drive : unexpected)
        requireExpectedSerial(planning, drive);
    if (!unexpected.empty()) {
        planning->unsettled.insert(id);
        return;
    }
    reportState(planning, saved, present);
    noteMisplaced(planning, places);
}

// The places on drives that may be in other slots now.
static MemberPlaces movedPlaces(const Planning& planning, MemberPlaces places) {
    for (MemberPlace& place : places)
        if (planning.drives.count(place.savedDrive) == 0)
            place.drive = movedTo(planning, place.savedDrive).value_or(place.savedDrive);
    return places;
}

// Finds the members that the drive map, or their serials, identify with those of an existing logical drive.
void findMembersInPlace(Planning* planning) {
    for (const LogicalDrive& saved : planning->saved.logicalDrives) {
        MemberPlaces places = placesOf(planning->saved, saved);
        mapPlaces(*planning, &places);
        places = movedPlaces(*planning, places);
        const LogicalDrive* present = findInPlace(*planning, saved, places);
        const MemberPlaces found = present != nullptr ? placesOf(planning->now, *present) : MemberPlaces();
        for (std::size_t i = 0; i < found.size(); ++i)
            if (found[i].isKnown() && places[i].isKnown())
                planning->inPlace.insert(places[i].savedDrive);
    }
}

// Whether it is in place on drives that are in other slots now. Adds an obstacle for each of them.
static bool reportMoved(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places) {
    const LogicalDrive* present = findInPlace(*planning, saved, movedPlaces(*planning, places));
    if (present == nullptr || requireMembersWhereSaved(planning, places))
        return false;
    planning->ids[saved.info.arrayId] = present->info.logDrvId;
    planning->unsettled.insert(present->info.logDrvId);
    return true;
}

// The logical drive that the map hides: it is on the drives with the saved serials, or with the saved
// numbers.
static const LogicalDrive* findWithoutMap(const Planning& planning, const LogicalDrive& saved,
                                          const MemberPlaces& places) {
    MemberPlaces bySerial = places, byNumber = places;
    for (std::size_t i = 0; i < places.size(); ++i) {
        byNumber[i].drive = places[i].savedDrive;
        bySerial[i].drive = movedTo(planning, places[i].savedDrive).value_or(places[i].savedDrive);
    }
    const LogicalDrive* found = findInPlace(planning, saved, bySerial);
    return found != nullptr ? found : findInPlace(planning, saved, byNumber);
}

// The part of the map that is about the members.
static DriveMap memberMap(const Planning& planning, const MemberPlaces& places) {
    DriveMap map;
    for (const MemberPlace& place : places) {
        const auto entry = planning.drives.find(place.savedDrive);
        if (entry != planning.drives.end())
            map.insert(*entry);
    }
    return map;
}

// Whether the map hides a logical drive that is in place. Adds an obstacle if so.
static bool reportHiddenByMap(Planning* planning, const LogicalDrive& saved, const MemberPlaces& places) {
    const DriveMap map = memberMap(*planning, places);
    const LogicalDrive* present = map.empty() ? nullptr : findWithoutMap(*planning, saved, places);
    if (present == nullptr)
        return false;
    const std::uint32_t id = present->info.logDrvId;
    planning->plan.obstacles.push_back("--drives " + driveMapText(map) +
                                       " names other drives than those of " +
                                       describe(planning->now, *present));
    planning->ids[saved.info.arrayId] = id;
    planning->unsettled.insert(id);
    for (const auto& [from, to] : map)
        if (to)
            planning->refused.insert(from);
    return true;
}

static void planArray(Planning* planning, const LogicalDrive& saved) {
    MemberPlaces places = placesOf(planning->saved, saved);
    mapPlaces(*planning, &places);
    const LogicalDrive* present = findInPlace(*planning, saved, places);
    const bool isExact = present != nullptr && unexpectedDrives(*planning, *present, places).empty();
    if (!isExact && reportMoved(planning, saved, places))
        return;
    if (present != nullptr)
        planInPlace(planning, saved, *present, places);
    else if (!reportHiddenByMap(planning, saved, places) && requireKnownPlaces(planning, saved, places))
        planCreation(planning, saved, places);
}

void planArrays(Planning* planning) {
    std::vector<const LogicalDrive*> inOrder;
    for (const LogicalDrive& drive : planning->saved.logicalDrives)
        inOrder.push_back(&drive);
    std::sort(inOrder.begin(), inOrder.end(), [](const LogicalDrive* a, const LogicalDrive* b) {
        return a->info.logDrvId < b->info.logDrvId;
    });
    for (const LogicalDrive* drive : inOrder)
        planArray(planning, *drive);
}
