// Which present drive takes the place of a saved one, and why it cannot be used.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/restore/planning.h"

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

static std::string serialText(const Drive& drive) {
    return printable(trimmed(fieldText(drive.info.serial)));
}

bool hasSerialOf(const Drive& saved, const Drive& drive) {
    return serialText(saved) == serialText(drive);
}

// nullptr: none has it, or several have it.
static const Drive* driveWithSerial(const Controller& controller, const std::string& serial) {
    const Drive* found = nullptr;
    for (const Drive& drive : controller.drives)
        if (serialText(drive) == serial) {
            if (found != nullptr)
                return nullptr;
            found = &drive;
        }
    return found;
}

// The drive with the same serial in the other state of the controller; nullptr: none, or it is not certain.
static const Drive* sameDrive(const Controller& from, const Drive& drive, const Controller& to) {
    const std::string serial = serialText(drive);
    return serial.empty() || driveWithSerial(from, serial) == nullptr ? nullptr : driveWithSerial(to, serial);
}

std::optional<std::uint32_t> movedTo(const Planning& planning, std::uint32_t savedDrive) {
    const Drive* saved = findDrive(planning.saved, savedDrive);
    const Drive* now = saved != nullptr ? sameDrive(planning.saved, *saved, planning.now) : nullptr;
    return now != nullptr && now->number != savedDrive ? std::optional(now->number) : std::nullopt;
}

// The saved drive that the map puts in another one's place; 0: none.
static std::uint32_t mappedFrom(const Planning& planning, std::uint32_t drive) {
    for (const auto& [from, to] : planning.drives)
        if (to == drive)
            return from;
    return 0;
}

// The other drive of the backup that the map puts in this one's place; nullptr: none. A drive that is left
// out, or whose own place another one has taken by now, is free for that.
static const Drive* misplacedDrive(const Planning& planning, std::uint32_t savedDrive) {
    const Drive* now = presentDrive(planning, savedDrive);
    const Drive* other = now != nullptr ? sameDrive(planning.now, *now, planning.saved) : nullptr;
    const bool isFree = other == nullptr || other->number == savedDrive ||
                        isLeftOut(planning, other->number) || planning.inPlace.count(other->number) != 0;
    return isFree ? nullptr : other;
}

// Whether the serials show that the map is wrong about a drive. A logical drive that is in place on the
// drives of the map shows that it is right.
static bool isContradicted(const Planning& planning, std::uint32_t savedDrive) {
    const auto found = planning.drives.find(savedDrive);
    if (found == planning.drives.end() || !found->second || planning.inPlace.count(savedDrive) != 0)
        return false;
    const auto now = movedTo(planning, savedDrive);
    return (now && now != found->second) || misplacedDrive(planning, savedDrive) != nullptr;
}

// The entries of the drive map that the serials do not contradict, and the drives that have moved.
static DriveMap mapWithMoved(const Planning& planning) {
    DriveMap map;
    std::set<std::uint32_t> targets;
    for (const auto& [from, to] : planning.drives)
        if (!isContradicted(planning, from)) {
            map.emplace(from, to);
            targets.insert(to.value_or(0));
        }
    for (const Drive& saved : planning.saved.drives) {
        const auto now = movedTo(planning, saved.number);
        if (now && targets.count(*now) == 0)
            map.emplace(saved.number, now);
    }
    return map;
}

static std::string movedToText(std::uint32_t savedDrive, std::uint32_t now) {
    return driveName(savedDrive) + " of the backup is " + (now == savedDrive ? "still " : "now ") +
           driveName(now);
}

std::string misplacedText(const Planning& planning, std::uint32_t savedDrive) {
    const auto now = movedTo(planning, savedDrive);
    const std::uint32_t other = now ? mappedFrom(planning, *now) : 0;
    if (other == 0 || other == savedDrive)
        return "";
    return movedToText(savedDrive, *now) + ", which --drives puts in the place of " + driveName(other);
}

std::string movedText(const Planning& planning, std::uint32_t savedDrive) {
    const bool mapped = planning.drives.count(savedDrive) != 0;
    if (mapped && !isContradicted(planning, savedDrive))
        return "";
    std::string misplaced = misplacedText(planning, savedDrive);
    if (!misplaced.empty())
        return misplaced;
    if (const auto now = movedTo(planning, savedDrive))
        return movedToText(savedDrive, *now) + "; use --drives " + driveMapText(mapWithMoved(planning));
    const Drive* other = mapped ? misplacedDrive(planning, savedDrive) : nullptr;
    if (other == nullptr)
        return "";
    return movedToText(other->number, presentDrive(planning, savedDrive)->number) +
           ", which --drives puts in the place of " + driveName(savedDrive);
}

// Why the present drive is not the expected one; empty: it is. The drive map accepts any.
static std::string obstacleToSerial(const Planning& planning, std::uint32_t savedDrive) {
    const Drive* saved = findDrive(planning.saved, savedDrive);
    const Drive* now = presentDrive(planning, savedDrive);
    if (planning.drives.count(savedDrive) != 0 || saved == nullptr || now == nullptr ||
        hasSerialOf(*saved, *now))
        return "";
    const std::string text = driveName(savedDrive) + " has another serial: " + serialText(*now) +
                             " instead of " + serialText(*saved);
    if (const Drive* other = sameDrive(planning.now, *now, planning.saved))
        return text + "; that is " + driveName(other->number) + " of the backup";
    const std::string number = std::to_string(savedDrive);
    return text + "; if it is the replacement, add --drives " + number + "=" + number;
}

// Why a saved drive that is not left out cannot be used; empty: it can.
static std::string obstacleToDrive(const Planning& planning, std::uint32_t savedDrive) {
    std::string moved = movedText(planning, savedDrive);
    if (!moved.empty())
        return moved;
    const auto number = mappedDrive(planning, savedDrive);
    const Drive* saved = findDrive(planning.saved, savedDrive);
    const Drive* now = presentDrive(planning, savedDrive);
    if (now == nullptr)
        return driveName(*number) + " is missing; " + driveName(savedDrive) + " had the serial " +
               (saved != nullptr ? serialText(*saved) : "unknown");
    std::string otherSerial = obstacleToSerial(planning, savedDrive);
    if (!otherSerial.empty())
        return otherSerial;
    return isInaccessible(*now) ? driveName(*number) + " gives no access" : "";
}

// Adds the obstacle, if it is not empty, once for the drive; two drives can have the same one. Returns
// whether there is none.
static bool refuse(Planning* planning, std::uint32_t savedDrive, const std::string& obstacle) {
    std::vector<std::string>& obstacles = planning->plan.obstacles;
    if (!obstacle.empty() && planning->refused.insert(savedDrive).second &&
        std::find(obstacles.begin(), obstacles.end(), obstacle) == obstacles.end())
        obstacles.push_back(obstacle);
    return obstacle.empty();
}

bool requireUsable(Planning* planning, std::uint32_t savedDrive) {
    return !isLeftOut(*planning, savedDrive) &&
           refuse(planning, savedDrive, obstacleToDrive(*planning, savedDrive));
}

bool hasExpectedSerial(const Planning& planning, std::uint32_t savedDrive) {
    return obstacleToSerial(planning, savedDrive).empty();
}

bool requireExpectedSerial(Planning* planning, std::uint32_t savedDrive) {
    return refuse(planning, savedDrive, obstacleToSerial(*planning, savedDrive));
}

bool requireWhereSaved(Planning* planning, std::uint32_t savedDrive) {
    return refuse(planning, savedDrive, movedText(*planning, savedDrive));
}

// All members, so that all obstacles are reported at once.
bool requireMembersWhereSaved(Planning* planning, const MemberPlaces& places) {
    bool allThere = true;
    for (const MemberPlace& place : places)
        allThere = requireWhereSaved(planning, place.savedDrive) && allThere;
    return allThere;
}

void requireMapWhereSaved(Planning* planning) {
    for (const auto& [from, to] : planning->drives)
        requireWhereSaved(planning, from);
}
