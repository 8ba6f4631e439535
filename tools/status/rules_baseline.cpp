// Rules that compare with an earlier snapshot. Only they notice what disappeared silently.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

// The same controller in both snapshots.
struct Pair {
    const Controller& earlier;
    const Controller& now;
};

template <typename Apply>
static void forEachPair(const Evaluation& evaluation, Apply apply) {
    if (evaluation.baseline == nullptr)
        return;
    for (const Controller& earlier : evaluation.baseline->controllers)
        if (const Controller* now = findController(evaluation.snapshot, earlier.id))
            apply(Pair{earlier, *now});
}

static std::string_view serialOf(const Drive& drive) {
    return trimmed(fieldText(drive.info.serial));
}

// Where a drive is. Drives without a serial are identified by their place only.
struct Place {
    const Controller* controller = nullptr;
    const Drive* drive = nullptr;
};

// The same drive, where it was.
static bool isUnchanged(const Drive& earlier, const Drive* now) {
    return now != nullptr && serialOf(*now) == serialOf(earlier) &&
           now->info.channel == earlier.info.channel && now->info.enclosureId == earlier.info.enclosureId;
}

static bool isInBoth(const Place& place, const Snapshot& other) {
    const Controller* controller = findController(other, place.controller->id);
    return controller != nullptr && isUnchanged(*place.drive, findDrive(*controller, place.drive->number));
}

// A drive with this serial that has another place in the other snapshot, or none: serials are not always
// unique.
static Place findSerial(const Snapshot& snapshot, const Snapshot& other, std::string_view serial) {
    for (const Controller& controller : snapshot.controllers)
        for (const Drive& drive : controller.drives)
            if (!serial.empty() && serialOf(drive) == serial && !isInBoth({&controller, &drive}, other))
                return {&controller, &drive};
    return {};
}

enum class DriveChange { none, missing, unchecked, replaced, moved };

// What happened to an earlier drive. other: the drive that has its place or its serial now.
static DriveChange changeOf(const Evaluation& evaluation, const Pair& pair, const Drive& drive,
                            Place* other) {
    const Drive* same = findDrive(pair.now, drive.number);
    if (isUnchanged(drive, same))
        return DriveChange::none;
    *other = findSerial(evaluation.snapshot, *evaluation.baseline, serialOf(drive));
    if (other->drive != nullptr)
        return DriveChange::moved;
    *other = {&pair.now, same};
    if (same == nullptr)
        return mayBeUnlisted(pair.now, drive.number) ? DriveChange::unchecked : DriveChange::missing;
    if (serialOf(drive) == serialOf(*same))
        return DriveChange::moved;
    if (findSerial(*evaluation.baseline, evaluation.snapshot, serialOf(*same)).drive == nullptr)
        return DriveChange::replaced;
    return hasAllDrives(pair.now) ? DriveChange::missing : DriveChange::unchecked;
}

static std::string changeText(DriveChange change, const Drive& drive, const Place& other) {
    if (change == DriveChange::missing)
        return "is missing; it was on " + placeText(drive);
    if (change == DriveChange::replaced)
        return "was replaced; serial " + knownText(serialOf(drive)) + " is now " +
               knownText(serialOf(*other.drive));
    return "has moved to drive " + std::to_string(other.drive->number) + " of controller " +
           std::to_string(other.controller->id) + "; " + placeText(*other.drive);
}

static void findDriveChanges(Evaluation* evaluation, DriveChange wanted) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Drive& drive : pair.earlier.drives) {
            Place other;
            if (changeOf(*evaluation, pair, drive, &other) == wanted)
                addFinding(evaluation, objectOf(pair.earlier, drive), changeText(wanted, drive, other));
        }
    });
}

void findMissingDrives(Evaluation* evaluation) {
    findDriveChanges(evaluation, DriveChange::missing);
}

void findReplacedDrives(Evaluation* evaluation) {
    findDriveChanges(evaluation, DriveChange::replaced);
}

void findMovedDrives(Evaluation* evaluation) {
    findDriveChanges(evaluation, DriveChange::moved);
}

// Neither its serial nor its number was there before: a replacement is not new.
void findNewDrives(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Drive& drive : pair.now.drives)
            if (hasAllDrives(pair.earlier) &&
                findSerial(*evaluation->baseline, evaluation->snapshot, serialOf(drive)).drive == nullptr &&
                findDrive(pair.earlier, drive.number) == nullptr)
                addFinding(evaluation, objectOf(pair.now, drive), "is new; " + placeText(drive));
    });
}

static std::size_t countSpares(const Controller& controller) {
    std::size_t count = 0;
    for (const Drive& drive : controller.drives) {
        const auto all = extents(drive.info);
        count += static_cast<std::size_t>(std::count_if(all.begin(), all.end(), isSpare));
    }
    return count;
}

static void compareSpares(Evaluation* evaluation, bool fewer) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        const std::size_t before = countSpares(pair.earlier), after = countSpares(pair.now);
        if (before != after && (after < before) == fewer && hasAllDrives(pair.earlier) &&
            hasAllDrives(pair.now))
            addFinding(evaluation, objectOf(pair.now),
                       "has " + counted(after, "spare") + "; it had " + std::to_string(before));
    });
}

void findMissingSpares(Evaluation* evaluation) {
    compareSpares(evaluation, true);
}

void findNewSpares(Evaluation* evaluation) {
    compareSpares(evaluation, false);
}

static bool hasSpare(const Drive& drive) {
    const auto all = extents(drive.info);
    return std::any_of(all.begin(), all.end(), isSpare);
}

// The drives of one that have a spare and neither the number nor the serial of such a drive of the other: a
// spare's drive that was replaced or moved is a change of that drive.
static std::vector<std::uint32_t> otherSpares(const Controller& one, const Controller& other) {
    std::vector<std::uint32_t> numbers;
    for (const Drive& drive : one.drives)
        if (hasSpare(drive) && std::none_of(other.drives.begin(), other.drives.end(), [&](const Drive& each) {
                return hasSpare(each) && (each.number == drive.number ||
                                          (!serialOf(each).empty() && serialOf(each) == serialOf(drive)));
            }))
            numbers.push_back(drive.number);
    return numbers;
}

// Spares without a counterpart are missing or new.
void findMovedSpares(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        if (!hasAllDrives(pair.earlier) || !hasAllDrives(pair.now))
            return;
        const std::vector<std::uint32_t> before = otherSpares(pair.earlier, pair.now);
        const std::vector<std::uint32_t> after = otherSpares(pair.now, pair.earlier);
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i)
            addFinding(evaluation, objectOf(pair.now),
                       "has a spare on drive " + std::to_string(after[i]) + "; it was on drive " +
                           std::to_string(before[i]));
    });
}

void findMissingArrays(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const LogicalDrive& drive : pair.earlier.logicalDrives)
            if (findLogicalDrive(pair.now, drive.info.logDrvId) == nullptr && hasAllLogicalDrives(pair.now))
                addFinding(evaluation, objectOf(pair.earlier, drive), "is missing; it was " + shapeOf(drive));
    });
}

void findNewArrays(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const LogicalDrive& drive : pair.now.logicalDrives)
            if (findLogicalDrive(pair.earlier, drive.info.logDrvId) == nullptr &&
                hasAllLogicalDrives(pair.earlier))
                addFinding(evaluation, objectOf(pair.now, drive), "is new; it is " + shapeOf(drive));
    });
}

// apply(pair, earlier, now): logical drives with the same ID.
template <typename Apply>
static void forEachArrayPair(const Evaluation& evaluation, Apply apply) {
    forEachPair(evaluation, [&](const Pair& pair) {
        for (const LogicalDrive& drive : pair.now.logicalDrives)
            if (const LogicalDrive* earlier = findLogicalDrive(pair.earlier, drive.info.logDrvId))
                apply(pair, *earlier, drive);
    });
}

void findChangedArrays(Evaluation* evaluation) {
    forEachArrayPair(*evaluation,
                     [&](const Pair& pair, const LogicalDrive& earlier, const LogicalDrive& now) {
                         const std::string name(fieldText(earlier.info.name));
                         if (shapeOf(earlier) != shapeOf(now))
                             addFinding(evaluation, objectOf(pair.now, now),
                                        "is " + shapeOf(now) + "; it was " + shapeOf(earlier));
                         if (name != fieldText(now.info.name))
                             addFinding(evaluation, objectOf(pair.now, now),
                                        name.empty() ? "had no name" : "was named " + name);
                     });
}

static std::string drivesOf(const LogicalDrive& drive) {
    std::vector<std::uint32_t> numbers;
    for (const Member& member : drive.members)
        numbers.push_back(member.number);
    std::sort(numbers.begin(), numbers.end());
    std::string text = numbers.size() == 1 ? "drive" : "drives";
    for (std::size_t i = 0; i < numbers.size(); ++i)
        text += (i == 0 ? " " : ", ") + std::to_string(numbers[i]);
    return text;
}

// Lost members count: only a rebuild or a migration replaces them. An online logical drive has lost none.
static bool areMembersKnown(const LogicalDrive& drive) {
    return !drive.members.empty() && (drive.lostMask || arrayState(drive) == ArrayState::online);
}

void findMovedArrays(Evaluation* evaluation) {
    forEachArrayPair(
        *evaluation, [&](const Pair& pair, const LogicalDrive& earlier, const LogicalDrive& now) {
            if (areMembersKnown(earlier) && areMembersKnown(now) && drivesOf(earlier) != drivesOf(now))
                addFinding(evaluation, objectOf(pair.now, now),
                           "is on " + drivesOf(now) + "; it was on " + drivesOf(earlier));
        });
}

void findMissingEnclosures(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.earlier.enclosures)
            if (findEnclosure(pair.now, enclosure.id) == nullptr && hasAllEnclosures(pair.now))
                addFinding(evaluation, objectOf(pair.earlier, enclosure), "is missing");
    });
}

void findNewEnclosures(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.now.enclosures)
            if (findEnclosure(pair.earlier, enclosure.id) == nullptr && hasAllEnclosures(pair.earlier))
                addFinding(evaluation, objectOf(pair.now, enclosure), "is new");
    });
}

// An enclosure reports nothing else that identifies it.
void findReplacedEnclosures(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.now.enclosures) {
            const Enclosure* earlier = findEnclosure(pair.earlier, enclosure.id);
            if (earlier != nullptr && earlier->entry.type != enclosure.entry.type)
                addFinding(evaluation, objectOf(pair.now, enclosure),
                           std::string("is now ") + enclosureTypeText(enclosure.entry.type) + "; it was " +
                               enclosureTypeText(earlier->entry.type));
        }
    });
}

void findMissingBatteries(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        if (hasBattery(pair.earlier) && pair.now.battery && !hasBattery(pair.now))
            addFinding(evaluation, batteryOf(pair.now), "is missing");
    });
}

void findNewBatteries(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        if (pair.earlier.battery && !hasBattery(pair.earlier) && hasBattery(pair.now))
            addFinding(evaluation, batteryOf(pair.now), "is new");
    });
}

// Whether the controllers are those of an earlier time, because the library finds none.
static bool areGone(const Snapshot& snapshot) {
    return snapshot.controllerCount == 0 && !snapshot.controllers.empty();
}

// A snapshot has as many controllers as the library counts, unless the library failed.
void findMissingControllers(Evaluation* evaluation) {
    const Snapshot* baseline = evaluation->baseline;
    if (baseline == nullptr || areGone(*baseline) || !evaluation->snapshot.faults.empty())
        return;
    for (const Controller& earlier : evaluation->baseline->controllers)
        if (findController(evaluation->snapshot, earlier.id) == nullptr)
            addFinding(evaluation, objectOf(earlier), "is missing");
}

// Objects of the baseline that may be in the part of a list that could not be read.
static void addUnchecked(Evaluation* evaluation, const Object& object, const std::string& word,
                         const std::vector<std::uint32_t>& numbers) {
    if (numbers.empty())
        return;
    std::vector<std::string> parts;
    std::string text = numbers.size() == 1 ? word : word + "s";
    for (const std::uint32_t number : numbers) {
        text += (parts.empty() ? " " : ", ") + std::to_string(number);
        parts.push_back(word + " " + std::to_string(number));
    }
    addFindingOf(evaluation, object, parts,
                 text + " of the baseline cannot be checked: not all " + word + "s could be read");
}

static void findUncheckedControllers(Evaluation* evaluation) {
    std::vector<std::uint32_t> numbers;
    if (evaluation->baseline != nullptr && !evaluation->snapshot.faults.empty())
        for (const Controller& earlier : evaluation->baseline->controllers)
            if (findController(evaluation->snapshot, earlier.id) == nullptr)
                numbers.push_back(earlier.id);
    addUnchecked(evaluation, {}, "controller", numbers);
}

static std::vector<std::uint32_t> uncheckedDrives(const Evaluation& evaluation, const Pair& pair) {
    std::vector<std::uint32_t> numbers;
    Place other;
    for (const Drive& drive : pair.earlier.drives)
        if (changeOf(evaluation, pair, drive, &other) == DriveChange::unchecked)
            numbers.push_back(drive.number);
    return numbers;
}

static std::vector<std::uint32_t> uncheckedArrays(const Pair& pair) {
    std::vector<std::uint32_t> numbers;
    for (const LogicalDrive& drive : pair.earlier.logicalDrives)
        if (findLogicalDrive(pair.now, drive.info.logDrvId) == nullptr && !hasAllLogicalDrives(pair.now))
            numbers.push_back(drive.info.logDrvId);
    return numbers;
}

static std::vector<std::uint32_t> uncheckedEnclosures(const Pair& pair) {
    std::vector<std::uint32_t> numbers;
    for (const Enclosure& enclosure : pair.earlier.enclosures)
        if (findEnclosure(pair.now, enclosure.id) == nullptr && !hasAllEnclosures(pair.now))
            numbers.push_back(enclosure.id);
    return numbers;
}

// What the baseline lacks is not noticed when it disappears.
static void addIncomplete(Evaluation* evaluation, const Object& object, const std::string& words) {
    addFindingOf(evaluation, object, {words + " of the baseline"},
                 "the baseline may lack " + words + ": not all could be read when it was saved");
}

static void findIncompleteBaseline(Evaluation* evaluation) {
    const Snapshot& baseline = *evaluation->baseline;
    if (!baseline.faults.empty() || baseline.controllers.empty())
        addIncomplete(evaluation, {}, "controllers");
    forEachPair(*evaluation, [&](const Pair& pair) {
        const Object object = objectOf(pair.now);
        if (!hasAllDrives(pair.earlier))
            addIncomplete(evaluation, object, "drives");
        if (!hasAllLogicalDrives(pair.earlier))
            addIncomplete(evaluation, object, "logical drives");
        if (!hasAllEnclosures(pair.earlier))
            addIncomplete(evaluation, object, "enclosures");
    });
}

void findUncheckedObjects(Evaluation* evaluation) {
    findIncompleteBaseline(evaluation);
    findUncheckedControllers(evaluation);
    forEachPair(*evaluation, [&](const Pair& pair) {
        const Object object = objectOf(pair.now);
        addUnchecked(evaluation, object, "drive", uncheckedDrives(*evaluation, pair));
        addUnchecked(evaluation, object, "logical drive", uncheckedArrays(pair));
        addUnchecked(evaluation, object, "enclosure", uncheckedEnclosures(pair));
    });
}

// One that was counted, but not read, was there before; so may any if the library could not count them.
static bool isNew(const Snapshot& baseline, std::uint32_t controllerId) {
    if (findController(baseline, controllerId) != nullptr)
        return areGone(baseline);
    return controllerId >= baseline.controllerCount &&
           (baseline.controllerCount > 0 || baseline.faults.empty());
}

void findNewControllers(Evaluation* evaluation) {
    if (evaluation->baseline == nullptr || areGone(evaluation->snapshot))
        return;
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (isNew(*evaluation->baseline, controller.id))
            addFinding(evaluation, objectOf(controller), "is new");
}
