// Logical drives, their shares of the members, and what follows from the reported states.
#include <algorithm>

#include "simulator/engine/advance.h"
#include "simulator/engine/reports.h"
#include "simulator/world/array_rules.h"
#include "tools/capture/convert.h"

const LogicalDrive* sourceOf(const Controller& controller, const q5sim::LogicalDrive& drive) {
    return findLogicalDrive(controller, drive.logDrvId);
}

static void convertSettings(const LogicalDrive& from, q5sim::LogicalDrive& drive) {
    drive.cacheFlags = static_cast<std::uint8_t>(from.info.writeCacheMode);
    if (!from.settings)
        return;
    drive.cacheFlags = from.settings->cacheFlags;
    drive.consolidation = from.settings->consolidation != 0;
    drive.lookahead = from.settings->lookahead;
}

// A world has one activity for each array; this order is that of the listings.
static std::uint8_t activityOf(std::uint8_t bits) {
    for (const std::uint8_t kind :
         {kRebuilding, kInitializing, kRedundancyChecking, kSynchronizing, kMigrating})
        if ((bits & kind) != 0)
            return kind;
    return 0;
}

static q5sim::LogicalDrive convertLogicalDrive(const LogicalDrive& from) {
    q5sim::LogicalDrive drive;
    drive.captured = true;
    drive.arrayId = from.info.arrayId;
    drive.logDrvId = from.info.logDrvId;
    drive.name = fieldText(from.info.name);
    drive.level = from.info.raidLevel;
    drive.stripe = from.info.stripeBlocks;
    drive.sectorSize = from.info.sectorSize;
    drive.sectors = from.info.sectorCount;
    drive.parity = from.info.parityCount;
    drive.symmetric = from.info.symmetric;
    drive.shift = from.info.shift;
    drive.subArrays = from.info.subArrayCount;
    for (int i = 0; i < boundedMemberCount(from.info); ++i)
        drive.members.push_back(from.info.memberIds[i]);
    drive.activity.kind = activityOf(from.info.activityStatus);
    convertSettings(from, drive);
    return drive;
}

static bool areValidMembers(const std::vector<std::uint16_t>& members) {
    return std::all_of(members.begin(), members.end(), [&](std::uint16_t id) {
        return id <= q5sim::kMaxDriveId && std::count(members.begin(), members.end(), id) == 1;
    });
}

static constexpr std::uint16_t kMaxArrayId = 254;

// Why the logical drive is left out of the world; nullptr: it is not.
static const char* obstacle(const Conversion& conversion, const q5sim::LogicalDrive& drive) {
    if (drive.arrayId > kMaxArrayId || drive.logDrvId > kMaxArrayId)
        return "its ID is too high";
    if (q5sim::findArray(conversion.to, drive.arrayId) != nullptr)
        return "its array ID is taken";
    if (!areValidMembers(drive.members))
        return "its members are not distinct drives from 1 to 32";
    if (!q5sim::isValidGeometry(q5sim::geometryOf(drive)))
        return "its level cannot have these members";
    return nullptr;
}

void convertLogicalDrives(Conversion& conversion) {
    for (const LogicalDrive& from : conversion.from.logicalDrives) {
        const Place place = below(conversion.place, "logicalDrives", conversion.to.logicalDrives.size());
        const q5sim::LogicalDrive drive = convertLogicalDrive(from);
        noteFaults(place, from.faults);
        if (const char* reason = obstacle(conversion, drive))
            noteMissing(place, "logical drive " + std::to_string(drive.logDrvId) + " is left out: " + reason);
        else
            conversion.to.logicalDrives.push_back(drive);
    }
    std::ranges::sort(conversion.to.logicalDrives, {}, &q5sim::LogicalDrive::logDrvId);
}

// The smallest extent of the array; 0: it has none.
static std::uint64_t smallestExtent(const q5sim::Controller& controller, std::uint16_t arrayId) {
    std::uint64_t smallest = 0;
    for (const q5sim::Drive& drive : controller.drives)
        for (const q5sim::Extent& extent : drive.extents)
            if (extent.use == q5sim::kUseArray && extent.array == arrayId)
                smallest = smallest == 0 ? extent.size : std::min(smallest, extent.size);
    return smallest;
}

// Like the simulated adapters, divides a capacity into whole megabytes.
static std::uint64_t evenShare(std::uint64_t sectors, std::uint64_t members) {
    const std::uint64_t share = sectors / members + (sectors % members != 0 ? 1 : 0);
    return (share / q5sim::kSectorsPerMb + (share % q5sim::kSectorsPerMb != 0 ? 1 : 0)) *
           q5sim::kSectorsPerMb;
}

static void convertShare(Conversion& conversion, q5sim::LogicalDrive& drive, const Place& place) {
    const std::uint64_t data = q5sim::dataMembers(q5sim::geometryOf(drive));
    const std::uint64_t smallest = smallestExtent(conversion.to, drive.arrayId);
    drive.memberSectors =
        std::clamp<std::uint64_t>(evenShare(drive.sectors, data), 1, q5sim::kMaxDriveSectors);
    if (smallest != 0)
        drive.memberSectors = std::min(drive.memberSectors, smallest);
    if (drive.sectors > drive.memberSectors * data) {
        noteMissing(below(place, "sectors"),
                    std::to_string(drive.sectors) + " is more than the members have");
        drive.sectors = drive.memberSectors * data;
    }
}

void convertShares(Conversion& conversion) {
    std::vector<q5sim::LogicalDrive>& drives = conversion.to.logicalDrives;
    for (std::size_t i = 0; i < drives.size(); i++)
        convertShare(conversion, drives[i], below(conversion.place, "logicalDrives", i));
}

bool isReportedLost(const LogicalDrive& from, std::uint16_t id) {
    return (from.lostMask.value_or(0) >> id & 1) != 0;
}

// A member that is lost although its drive works and holds its extent missed writes.
static void inferStale(Conversion& conversion, const LogicalDrive& from, q5sim::LogicalDrive& drive,
                       const Place& place) {
    for (std::size_t i = 0; i < drive.members.size(); i++) {
        const std::uint16_t id = drive.members[i];
        if (!isReportedLost(from, id) || !q5sim::isWorkingMember(conversion.to, drive, i))
            continue;
        drive.staleMembers.push_back(id);
        noteAssumption(below(place, "staleMembers"),
                       "drive " + std::to_string(id + 1) + ", which counts as lost");
    }
}

// An array that is offline although its members are present is inactive.
static void inferActive(Conversion& conversion, const LogicalDrive& from, q5sim::LogicalDrive& drive,
                        const Place& place) {
    if (from.info.functionalStatus == 0 && q5sim::functionalStatus(conversion.to, drive) != 0) {
        drive.active = false;
        noteAssumption(below(place, "active"), "false, since it is offline with its members present");
    }
    drive.reportedState = q5sim::functionalStatus(conversion.to, drive);
}

// Whether the model would start a rebuild at once, which the adapter did not.
static bool wouldRebuild(const Conversion& conversion, std::size_t position) {
    if (conversion.to.logicalDrives[position].activity.kind != 0)
        return false;
    q5sim::World probe;
    probe.controllers.push_back(conversion.to);
    q5sim::advanceTo(probe, conversion.now);
    return probe.controllers[0].logicalDrives[position].activity.kind == kRebuilding;
}

static void inferInhibitedRebuilds(Conversion& conversion) {
    std::vector<q5sim::LogicalDrive>& drives = conversion.to.logicalDrives;
    for (std::size_t i = 0; conversion.to.autoRebuild && i < drives.size(); i++)
        if (wouldRebuild(conversion, i)) {
            drives[i].autoRebuildInhibited = true;
            noteAssumption(below(below(conversion.place, "logicalDrives", i), "rebuildHeld"),
                           "true, since no rebuild runs although there is a spare");
            i = SIZE_MAX; // the spare may now be suitable for an earlier one
        }
}

void inferStates(Conversion& conversion) {
    std::vector<q5sim::LogicalDrive>& drives = conversion.to.logicalDrives;
    for (std::size_t i = 0; i < drives.size(); i++) {
        const LogicalDrive* from = sourceOf(conversion.from, drives[i]);
        const Place place = below(conversion.place, "logicalDrives", i);
        inferStale(conversion, *from, drives[i], place);
        inferActive(conversion, *from, drives[i], place);
    }
    q5sim::reportSensors(conversion.to, conversion.now); // known states cause no events
    conversion.to.events.clear();
    inferInhibitedRebuilds(conversion);
}
