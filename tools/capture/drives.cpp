// Physical drives, without their extents.
#include <algorithm>

#include "tools/capture/convert.h"

std::uint64_t megabytesAt(std::uint64_t percent, std::uint64_t total) {
    return (std::min<std::uint64_t>(percent, 100) * total + 99) / 100;
}

const Drive* sourceOf(const Controller& controller, const q5sim::Drive& drive) {
    return findDrive(controller, drive.id + 1u);
}

static bool isSmartFailing(const Drive& drive) {
    const auto all = extents(drive.info);
    return std::any_of(all.begin(), all.end(),
                       [](const ExtentEntry& extent) { return (extent.access & kExtentSmartFailed) != 0; });
}

static void convertDriveSettings(const Drive& from, q5sim::Drive& drive) {
    if (!from.settings)
        return;
    drive.writeCache = from.settings->writeCache != 0;
    drive.smartCheck = from.settings->smartCheck != 0;
    drive.tcqSupported = from.settings->tcqSupported != 0;
    drive.ncqSupported = from.settings->ncqSupported != 0;
    drive.tcqEnabled = from.settings->tcqEnabled != 0;
    drive.ncqEnabled = from.settings->ncqEnabled != 0;
}

static void convertPatrol(const Drive& from, q5sim::Drive& drive, std::int64_t now) {
    if (!from.patrol)
        return;
    q5sim::Patrol& patrol = drive.patrol;
    patrol.state = from.patrol->state <= kPatrolStopped ? from.patrol->state : std::uint16_t{0};
    patrol.loops = from.patrol->loopCount;
    patrol.errors = from.patrol->errorCount;
    const std::uint64_t total = std::min(drive.sectors, q5sim::kMaxDriveSectors) / q5sim::kSectorsPerMb;
    patrol.completedMb = megabytesAt(from.patrol->progress, std::max<std::uint64_t>(1, total));
    if (patrol.state == kPatrolRunning)
        patrol.since = now;
}

static constexpr std::int64_t kLocateSeconds = 3600;

static void convertLocate(const Drive& from, q5sim::Drive& drive, const Place& place, std::int64_t now) {
    if (from.locate.value_or(0) == 0)
        return;
    drive.locateUntil = now + kLocateSeconds;
    noteAssumption(below(place, "locateUntil"), "an hour from now");
}

static q5sim::Drive convertDrive(const Drive& from, const Place& place, std::int64_t now) {
    q5sim::Drive drive;
    noteFaults(place, from.faults);
    drive.id = from.info.driveId;
    drive.channel = from.info.channel;
    drive.enclosure = from.info.enclosureId;
    drive.sectors = from.info.capacity;
    drive.model = fieldText(from.info.model);
    drive.serial = fieldText(from.info.serial);
    drive.firmware = fieldText(from.info.firmware);
    drive.dmaMode = from.info.dmaMode;
    drive.failed = drive.failureReported = isInaccessible(from);
    drive.smartFailure = drive.smartReported = isSmartFailing(from);
    convertDriveSettings(from, drive);
    convertPatrol(from, drive, now);
    convertLocate(from, drive, place, now);
    if (extents(from.info).empty())
        noteAssumption(below(place, "failed"), "false; only extents show it, and this drive has none");
    return drive;
}

// The option belongs to all drives of a model and firmware.
static void convertSpeed(Conversion& conversion, const Drive& from, const q5sim::Drive& drive) {
    std::vector<q5sim::SpeedOption>& options = conversion.to.speedOptions;
    const bool known = std::any_of(options.begin(), options.end(), [&](const q5sim::SpeedOption& option) {
        return option.model == drive.model && option.firmware == drive.firmware;
    });
    if (from.speed3Gb.value_or(0) != 0 && !known)
        options.push_back({drive.model, drive.firmware, *from.speed3Gb});
}

void convertDrives(Conversion& conversion) {
    for (const Drive& from : conversion.from.drives) {
        const Place place = below(conversion.place, "drives", conversion.to.drives.size());
        if (from.info.driveId > q5sim::kMaxDriveId) {
            noteMissing(place, "a world has no room for drive " + std::to_string(from.number));
            continue;
        }
        conversion.to.drives.push_back(convertDrive(from, place, conversion.now));
        convertSpeed(conversion, from, conversion.to.drives.back());
    }
}
