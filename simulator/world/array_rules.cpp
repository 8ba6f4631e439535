// RAID levels: members, capacity, redundancy and what lost members do to an array.
#include "simulator/world/array_rules.h"

#include <algorithm>

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

bool shapeIsPossible(const ArrayGeometry& shape) {
    const std::size_t members = shape.members;
    if (members > kMaxArrayMembers)
        return false;
    switch (shape.level) {
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
        return members >= 6 && shape.subArrays >= 2 && members % shape.subArrays == 0 &&
               members / shape.subArrays >= 3;
    case kRaidMf:
        return shape.parity >= 1 && members > shape.parity;
    default:
        return false;
    }
}

std::size_t dataMembers(const ArrayGeometry& shape) {
    if (!shapeIsPossible(shape))
        return 0;
    switch (shape.level) {
    case kRaid1:
    case kRaid10:
        return shape.members / 2;
    case kRaid5:
        return shape.members - 1;
    case kRaid50:
        return shape.members - shape.subArrays;
    case kRaidMf:
        return shape.members - shape.parity;
    default:
        return shape.members;
    }
}

bool isRedundant(std::uint8_t level) {
    return level != kRaid0 && level != kJbod;
}

bool stripeIsPossible(std::uint32_t stripe) {
    static constexpr std::uint32_t sizes[] = {32, 64, 128, 256, 512, 1024};
    return std::find(std::begin(sizes), std::end(sizes), stripe) != std::end(sizes);
}

bool memberIsPresent(const Controller& controller, const LogicalDrive& array, std::size_t position) {
    const Drive* drive = findDrive(controller, array.members[position]);
    if (drive == nullptr || drive->failed)
        return false;
    for (const RebuildTarget& target : array.activity.targets)
        if (array.activity.kind == kRebuilding && target.position == position)
            return false;
    return std::any_of(drive->extents.begin(), drive->extents.end(), [&](const Extent& extent) {
        return extent.use == kUseArray && extent.array == array.arrayId;
    });
}

std::vector<std::size_t> lostMembers(const Controller& controller, const LogicalDrive& drive) {
    std::vector<std::size_t> lost;
    for (std::size_t i = 0; i < drive.members.size(); i++)
        if (!memberIsPresent(controller, drive, i))
            lost.push_back(i);
    return lost;
}

// Members that lose data together form a group: a mirror pair, a sub array or the whole array.
static std::size_t groupSize(const ArrayGeometry& shape) {
    if (shape.level == kRaid10)
        return 2;
    if (shape.level == kRaid50 && shape.subArrays > 0)
        return std::max<std::size_t>(1, shape.members / shape.subArrays);
    return std::max<std::size_t>(1, shape.members);
}

// How many members a group can lose and still give all its data.
static std::size_t groupSurvives(const ArrayGeometry& shape) {
    if (shape.level == kRaidMf)
        return shape.parity;
    return isRedundant(shape.level) ? 1 : 0;
}

std::uint8_t functionalStatus(const Controller& controller, const LogicalDrive& drive) {
    const ArrayGeometry shape = geometryOf(drive);
    const std::vector<std::size_t> lost = lostMembers(controller, drive);
    if (!drive.active)
        return 0;
    if (lost.empty())
        return kOnline;
    const std::size_t size = groupSize(shape);
    bool redundancyLeft = false;
    for (std::size_t first = 0; first < shape.members; first += size) {
        const auto gone = static_cast<std::size_t>(std::count_if(
            lost.begin(), lost.end(), [&](std::size_t i) { return i >= first && i < first + size; }));
        if (gone > groupSurvives(shape))
            return 0;
        redundancyLeft = redundancyLeft || gone < groupSurvives(shape);
    }
    return redundancyLeft ? kDegraded : kCritical;
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
                                                   kExtentDedicatedSpare};
    const Extent& extent = drive.extents[index];
    const LogicalDrive* array = extent.use == kUseArray ? findArray(controller, extent.array) : nullptr;
    ExtentEntry entry = {};
    entry.index = static_cast<std::uint16_t>(index);
    entry.assignment = assignments[extent.use % std::size(assignments)];
    entry.maintenance = array != nullptr ? maintenanceBits(array->activity.kind) : std::uint8_t{0};
    const int access = (drive.failed ? 0 : kExtentAccessible) | (extent.use == kUseFree ? kExtentFree : 0) |
                       (drive.smartFailure ? kExtentSmartFailed : 0);
    entry.access = static_cast<std::uint8_t>(access);
    if (!drive.failed)
        entry.state = isRebuildTarget(array, drive.id) ? kExtentRebuilding : kExtentOnline;
    entry.arrayId = extent.array;
    entry.start = extent.start;
    entry.size = extent.size;
    return entry;
}

} // namespace q5sim
