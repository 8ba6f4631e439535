// RAID levels: members, capacity, redundancy and what lost members do to an array.
#include "simulator/world/array_rules.h"

#include <algorithm>

#include "simulator/world/extent_alloc.h"

namespace q5sim {

ArrayGeometry geometryOf(const LogicalDrive& drive) {
    return {drive.level, drive.members.size(), drive.parity, drive.subArrays};
}

const char* levelName(std::uint8_t level) {
    switch (level) {
    case kRaid0:
        return "RAID0";
    case kRaid1:
        return "RAID1";
    case kRaid5:
        return "RAID5";
    case kJbod:
        return "JBOD";
    case kRaid10:
        return "RAID10";
    case kRaid50:
        return "RAID50";
    case kRaidMf:
        return "RAIDMF";
    default:
        return "unknown RAID level";
    }
}

bool isValidGeometry(const ArrayGeometry& geometry) {
    const std::size_t members = geometry.members;
    if (members > kMaxArrayMembers)
        return false;
    switch (geometry.level) {
    case kRaid0:
        return members >= 1;
    case kRaid1:
        return members == 2;
    case kRaid5:
        return members >= 3;
    case kJbod:
        return members == 1;
    case kRaid10:
        return members >= 4 && members % 2 == 0;
    case kRaid50:
        return members >= 6 && geometry.subArrays >= 2 && members % geometry.subArrays == 0 &&
               members / geometry.subArrays >= 3;
    case kRaidMf:
        return geometry.parity >= 1 && members > geometry.parity;
    default:
        return false;
    }
}

std::size_t dataMembers(const ArrayGeometry& geometry) {
    if (!isValidGeometry(geometry))
        return 0;
    switch (geometry.level) {
    case kRaid1:
    case kRaid10:
        return geometry.members / 2;
    case kRaid5:
        return geometry.members - 1;
    case kRaid50:
        return geometry.members - geometry.subArrays;
    case kRaidMf:
        return geometry.members - geometry.parity;
    default:
        return geometry.members;
    }
}

bool isRedundant(std::uint8_t level) {
    return level != kRaid0 && level != kJbod;
}

bool isValidStripe(std::uint32_t stripe) {
    static constexpr std::uint32_t sizes[] = {32, 64, 128, 256, 512, 1024};
    return std::find(std::begin(sizes), std::end(sizes), stripe) != std::end(sizes);
}

bool isStaleMember(const LogicalDrive& array, std::uint32_t drive) {
    return std::find(array.staleMembers.begin(), array.staleMembers.end(), drive) != array.staleMembers.end();
}

bool isWorkingMember(const Controller& controller, const LogicalDrive& array, std::size_t position) {
    const Drive* drive = findDrive(controller, array.members[position]);
    if (drive == nullptr || drive->failed)
        return false;
    if (isStaleMember(array, drive->id))
        return false;
    for (const RebuildTarget& target : array.activity.targets)
        if (array.activity.kind == kRebuilding && target.position == position)
            return false;
    return holdsExtentOf(*drive, array.arrayId);
}

std::vector<std::size_t> lostMembers(const Controller& controller, const LogicalDrive& drive) {
    std::vector<std::size_t> lost;
    for (std::size_t i = 0; i < drive.members.size(); i++)
        if (!isWorkingMember(controller, drive, i))
            lost.push_back(i);
    return lost;
}

// Members that lose data together form a group: a mirror pair, a subarray or the whole array.
static std::size_t groupSize(const ArrayGeometry& geometry) {
    if (geometry.level == kRaid10)
        return 2;
    if (geometry.level == kRaid50 && geometry.subArrays > 0)
        return std::max<std::size_t>(1, geometry.members / geometry.subArrays);
    return std::max<std::size_t>(1, geometry.members);
}

// How many members a group can lose without losing data.
static std::size_t groupTolerance(const ArrayGeometry& geometry) {
    if (geometry.level == kRaidMf)
        return geometry.parity;
    return isRedundant(geometry.level) ? 1 : 0;
}

std::uint8_t functionalStatus(const Controller& controller, const LogicalDrive& drive) {
    const ArrayGeometry geometry = geometryOf(drive);
    const std::vector<std::size_t> lost = lostMembers(controller, drive);
    if (!drive.active)
        return 0;
    if (lost.empty())
        return kOnline;
    const std::size_t size = groupSize(geometry);
    bool redundancyLeft = false;
    for (std::size_t first = 0; first < geometry.members; first += size) {
        const auto gone = static_cast<std::size_t>(std::count_if(
            lost.begin(), lost.end(), [&](std::size_t i) { return i >= first && i < first + size; }));
        if (gone > groupTolerance(geometry))
            return 0;
        redundancyLeft = redundancyLeft || gone < groupTolerance(geometry);
    }
    return redundancyLeft ? kDegraded : kCritical;
}

bool canReconstruct(const Controller& controller, const LogicalDrive& drive, std::size_t position) {
    const ArrayGeometry geometry = geometryOf(drive);
    const std::size_t size = groupSize(geometry);
    const std::size_t first = position / size * size;
    std::size_t gone = 0;
    for (std::size_t i = first; i < std::min(first + size, geometry.members); i++)
        gone += i != position && !isWorkingMember(controller, drive, i) ? 1u : 0u;
    return gone < groupTolerance(geometry);
}

bool isReadForRebuild(const LogicalDrive& drive, std::size_t position) {
    const std::size_t size = groupSize(geometryOf(drive));
    const std::vector<RebuildTarget>& targets = drive.activity.targets;
    return std::any_of(targets.begin(), targets.end(), [&](const RebuildTarget& target) {
        return target.position / size == position / size;
    });
}

const char* statusName(std::uint8_t status) {
    switch (status) {
    case kOnline:
        return "online";
    case kCritical:
        return "critical";
    case kDegraded:
        return "degraded";
    default:
        return "offline";
    }
}

static std::uint8_t maintenanceBits(std::uint8_t activity) {
    switch (activity) {
    case kSynchronizing:
        return kExtentSynchronizing;
    case kInitializing:
        return kExtentInitializing;
    case kMigrating:
        return kExtentMigrating;
    default:
        return 0;
    }
}

static bool isRebuildTarget(const LogicalDrive* array, std::uint16_t drive) {
    if (array == nullptr || array->activity.kind != kRebuilding)
        return false;
    const std::vector<RebuildTarget>& targets = array->activity.targets;
    return std::any_of(targets.begin(), targets.end(),
                       [&](const RebuildTarget& target) { return target.drive == drive; });
}

ExtentEntry extentEntry(const Controller& controller, const Drive& drive, std::size_t index) {
    static constexpr std::uint8_t assignments[] = {0, kExtentAssigned, kExtentGlobalSpare,
                                                   kExtentDedicatedSpare, kExtentAssigned};
    const Extent& extent = drive.extents[index];
    const LogicalDrive* array = extent.use == kUseArray ? findArray(controller, extent.array) : nullptr;
    ExtentEntry entry = {};
    entry.index = static_cast<std::uint16_t>(index);
    entry.assignment = assignments[extent.use % std::size(assignments)];
    entry.maintenance = array != nullptr ? maintenanceBits(array->activity.kind) : std::uint8_t{0};
    const bool usable =
        !drive.failed && extent.use != kUseForeign && (array == nullptr || !isStaleMember(*array, drive.id));
    const int access = (drive.failed ? 0 : kExtentAccessible) | (extent.use == kUseFree ? kExtentFree : 0) |
                       (drive.smartFailure ? kExtentSmartFailed : 0);
    entry.access = static_cast<std::uint8_t>(access);
    if (isRebuildTarget(array, drive.id))
        entry.state = drive.failed ? 0 : kExtentRebuilding;
    else if (usable)
        entry.state = kExtentOnline;
    entry.arrayId = extent.array;
    entry.start = extent.start;
    entry.size = extent.size;
    return entry;
}

} // namespace q5sim
