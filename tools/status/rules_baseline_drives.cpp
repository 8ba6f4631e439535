// Rules that compare drives and spares with an earlier snapshot.
#include <algorithm>

#include "snapshot/serials.h"
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"
#include "tools/status/rules_baseline.h"

// Where a drive is. Drives without a serial are identified by their place only.
struct Place {
    const Controller* controller = nullptr;
    const Drive* drive = nullptr;
};

// Whether it is the same drive in the same place.
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

// The drives with a spare of one controller state without a counterpart in the other, which has the same
// number or serial: if a drive with a spare was replaced or moved, that is a change of the drive.
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

bool isUncheckedDrive(const Evaluation& evaluation, const Pair& pair, const Drive& drive) {
    Place other;
    return changeOf(evaluation, pair, drive, &other) == DriveChange::unchecked;
}
