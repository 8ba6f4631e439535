// What could not be read now is taken from an earlier snapshot of the same adapters: it is not missing now,
// and not new when it can be read again.
#include "tools/status/changes_unread.h"

#include <algorithm>

#include "snapshot/state.h"
#include "tools/status/facts.h"

template <typename Record>
static void keepRecord(const std::optional<Record>& earlier, std::optional<Record>* now) {
    if (!*now)
        *now = earlier;
}

// A drive that cannot be accessed refuses operations; what it reported before does not apply to it anymore.
static void keepDetails(const Drive& earlier, Drive* now) {
    if (fieldText(earlier.info.serial) != fieldText(now->info.serial) || isInaccessible(*now))
        return;
    keepRecord(earlier.settings, &now->settings);
    keepRecord(earlier.patrol, &now->patrol);
    keepRecord(earlier.locate, &now->locate);
    keepRecord(earlier.speed3Gb, &now->speed3Gb);
}

static void keepDrives(const Controller& earlier, Controller* now) {
    for (Drive& drive : now->drives)
        if (const Drive* before = findDrive(earlier, drive.number))
            keepDetails(*before, &drive);
    std::vector<Drive> unlisted;
    for (const Drive& drive : earlier.drives)
        if (findDrive(*now, drive.number) == nullptr && mayBeUnlisted(*now, drive.number) &&
            now->drives.size() + unlisted.size() < kMaxSnapshotDrives)
            unlisted.push_back(drive);
    now->drives.insert(now->drives.end(), unlisted.begin(), unlisted.end());
    std::sort(now->drives.begin(), now->drives.end(),
              [](const Drive& left, const Drive& right) { return left.number < right.number; });
}

static bool isSensor(const EnclosureSensor& sensor) {
    return sensorTypeText(sensor.type) != nullptr;
}

static std::ptrdiff_t countSensors(const EnclosureStatus& status, std::uint8_t type) {
    return std::count_if(std::begin(status.sensor), std::end(status.sensor),
                         [&](const EnclosureSensor& each) { return each.type == type; });
}

// Whether the enclosure lists fewer sensors of this type than before.
static bool hasFewer(const EnclosureStatus& earlier, const EnclosureStatus& now,
                     const EnclosureSensor& sensor) {
    return isSensor(sensor) && countSensors(now, sensor.type) < countSensors(earlier, sensor.type);
}

// Sensors of a type are numbered by their places. One that is not listed keeps its place; if the others have
// moved up, the last ones are those that are not listed.
static void keepSensors(const EnclosureStatus& earlier, EnclosureStatus* now) {
    for (std::size_t place = 0; place < std::size(earlier.sensor); ++place)
        if (hasFewer(earlier, *now, earlier.sensor[place]) && !isSensor(now->sensor[place]))
            now->sensor[place] = earlier.sensor[place];
    for (auto each = std::rbegin(earlier.sensor); each != std::rend(earlier.sensor); ++each) {
        const auto place = std::find_if_not(std::rbegin(now->sensor), std::rend(now->sensor), isSensor);
        if (hasFewer(earlier, *now, *each) && place != std::rend(now->sensor))
            *place = *each;
    }
}

// An enclosure of another type has sensors of its own.
static void keepDetails(const Enclosure& earlier, Enclosure* now) {
    if (earlier.status && now->status && earlier.entry.type == now->entry.type)
        keepSensors(*earlier.status, &*now->status);
    keepRecord(earlier.status, &now->status);
}

static void keepEnclosures(const Controller& earlier, Controller* now) {
    const bool complete = hasAllEnclosures(*now);
    for (const Enclosure& before : earlier.enclosures) {
        const auto same = std::find_if(now->enclosures.begin(), now->enclosures.end(),
                                       [&](const Enclosure& each) { return each.id == before.id; });
        if (same != now->enclosures.end())
            keepDetails(before, &*same);
        else if (!complete)
            now->enclosures.push_back(before);
    }
    std::sort(now->enclosures.begin(), now->enclosures.end(),
              [](const Enclosure& left, const Enclosure& right) { return left.id < right.id; });
}

static bool isReported(const LogicalDrive& drive, ActivityBit kind) {
    return std::any_of(drive.activities.begin(), drive.activities.end(),
                       [&](const Activity& activity) { return activity.kind == kind; });
}

// The activities and lost members of an earlier time are kept only while the logical drive still has some.
static void keepDetails(const LogicalDrive& earlier, LogicalDrive* now) {
    keepRecord(earlier.settings, &now->settings);
    if (arrayState(*now) != ArrayState::online)
        keepRecord(earlier.lostMask, &now->lostMask);
    for (const Activity& activity : earlier.activities)
        if ((now->info.activityStatus & activity.kind) != 0 && !isReported(*now, activity.kind))
            now->activities.push_back(activity);
}

static void addUnlisted(const Controller& earlier, Controller* now) {
    if (hasAllLogicalDrives(*now))
        return;
    for (const LogicalDrive& drive : earlier.logicalDrives)
        if (findLogicalDrive(*now, drive.info.logDrvId) == nullptr && now->logicalDrives.size() < kMaxLogDrvs)
            now->logicalDrives.push_back(drive);
    std::stable_sort(now->logicalDrives.begin(), now->logicalDrives.end(),
                     [](const LogicalDrive& left, const LogicalDrive& right) {
                         return left.info.logDrvId < right.info.logDrvId;
                     });
}

static void keepLogicalDrives(const Controller& earlier, Controller* now) {
    addUnlisted(earlier, now);
    for (LogicalDrive& drive : now->logicalDrives) {
        if (const LogicalDrive* before = findLogicalDrive(earlier, drive.info.logDrvId))
            keepDetails(*before, &drive);
        resolveMembers(*now, &drive);
    }
}

// A list that was complete before contains all objects of that time: what it lacks now was added since.
static void keepCompleteness(const Controller& earlier, Controller* now) {
    if (now->info && hasAllDrives(earlier) && now->info->diskCount > now->drives.size())
        now->info->diskCount = static_cast<std::uint16_t>(now->drives.size());
    if (now->info && hasAllLogicalDrives(earlier) && now->info->arrayCount > now->logicalDrives.size())
        now->info->arrayCount = static_cast<std::uint16_t>(now->logicalDrives.size());
}

// Keeps the record without its counts: lists are not compared with counts of an earlier time.
static void keepInfo(const Controller& earlier, Controller* now) {
    if (now->info)
        return;
    now->info = earlier.info;
    keepCompleteness(earlier, now);
}

static void keepController(const Controller& earlier, Controller* now) {
    keepRecord(earlier.version, &now->version);
    keepRecord(earlier.settings, &now->settings);
    keepRecord(earlier.place, &now->place);
    keepRecord(earlier.driver, &now->driver);
    keepRecord(earlier.battery, &now->battery);
    keepEnclosures(earlier, now);
    keepDrives(earlier, now);
    keepLogicalDrives(earlier, now);
    keepInfo(earlier, now); // last: what the lists lack depends on the count that was read now
}

static void keepOtherControllers(const Snapshot& earlier, Snapshot* now) {
    for (const Controller& controller : earlier.controllers)
        if (findController(*now, controller.id) == nullptr)
            now->controllers.push_back(controller);
    std::sort(now->controllers.begin(), now->controllers.end(),
              [](const Controller& left, const Controller& right) { return left.id < right.id; });
    now->controllerCount = earlier.controllerCount;
}

// A fault of the whole snapshot says that the controllers could not be counted.
void keepUnread(const Snapshot& earlier, Snapshot* now) {
    for (Controller& controller : now->controllers)
        if (const Controller* before = findController(earlier, controller.id))
            keepController(*before, &controller);
    if (!now->faults.empty())
        keepOtherControllers(earlier, now);
}

Snapshot stateToKeep(const Snapshot& earlier, const Snapshot& now, std::optional<std::uint32_t> chosen) {
    Snapshot kept = now;
    keepUnread(earlier, &kept);
    for (Controller& controller : kept.controllers)
        if (const Controller* before = findController(earlier, controller.id))
            keepCompleteness(*before, &controller);
    if (now.controllerCount == 0 && now.faults.empty())
        kept.controllers = earlier.controllers;
    else if (chosen) {
        const bool isMissing = findController(kept, *chosen) == nullptr;
        keepOtherControllers(earlier, &kept);
        if (earlier.controllerCount == 0 && now.faults.empty())
            kept.controllerCount = now.controllerCount; // there are some again
        if (isMissing)
            std::erase_if(kept.controllers, [&](const Controller& each) { return each.id == *chosen; });
    }
    return kept;
}
