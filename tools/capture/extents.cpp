// The extents of the drives: which array each one belongs to, and the drives that a rebuild or a migration
// adds to an array.
#include <algorithm>

#include "simulator/world/array_rules.h"
#include "tools/capture/convert.h"

// The drives whose records have an assigned extent of the array that matches.
template <typename Matches>
static std::vector<std::uint16_t> drivesWithExtent(const Conversion& conversion, std::uint16_t arrayId,
                                                   Matches matches) {
    std::vector<std::uint16_t> ids;
    for (const q5sim::Drive& drive : conversion.to.drives) {
        const auto all = extents(sourceOf(conversion.from, drive)->info);
        if (std::any_of(all.begin(), all.end(), [&](const ExtentEntry& extent) {
                return (extent.assignment & kExtentAssigned) != 0 && extent.arrayId == arrayId &&
                       matches(extent);
            }))
            ids.push_back(drive.id);
    }
    return ids;
}

static std::vector<std::uint8_t> openPositions(const LogicalDrive& from, const q5sim::LogicalDrive& drive) {
    std::vector<std::uint8_t> open;
    for (std::size_t i = 0; i < drive.members.size(); i++)
        if (!from.lostMask || (*from.lostMask >> drive.members[i] & 1) != 0)
            open.push_back(static_cast<std::uint8_t>(i));
    return open;
}

// A member that returned takes its own position, any other drive the first open one.
static void addTargets(q5sim::LogicalDrive& drive, std::vector<std::uint8_t> open,
                       const std::vector<std::uint16_t>& ids) {
    for (const bool own : {true, false})
        for (const std::uint16_t id : ids) {
            if (contains(drive.members, id) != own || open.empty())
                continue;
            const auto mine = std::find_if(open.begin(), open.end(), [&](std::uint8_t position) {
                return drive.members[position] == id;
            });
            if (own && mine == open.end())
                continue;
            const std::uint8_t position = own ? *mine : open.front();
            drive.activity.targets.push_back({id, position});
            std::erase(open, position);
        }
}

static void findTargets(Conversion& conversion, const LogicalDrive& from, q5sim::LogicalDrive& drive,
                        const Place& place) {
    const std::vector<std::uint16_t> ids =
        drivesWithExtent(conversion, drive.arrayId,
                         [](const ExtentEntry& extent) { return (extent.state & kExtentRebuilding) != 0; });
    const std::vector<std::uint8_t> open = openPositions(from, drive);
    addTargets(drive, open, ids);
    if (drive.activity.targets.size() != ids.size())
        noteMissing(below(place, "activity.targets"), "no lost member is left for one of them");
    if (open.size() > 1)
        noteAssumption(below(place, "activity.targets"), "which drive takes which lost member's position");
}

static constexpr std::uint32_t kDefaultStripe = 64; // KB

// The first level that the members allow, the present one before all others.
static void chooseLevel(q5sim::MigrationTarget& goal) {
    static constexpr std::uint8_t others[] = {kRaid5, kRaid10, kRaid0};
    for (const std::uint8_t level : others)
        if (!q5sim::isValidGeometry({goal.level, goal.members.size(), goal.parity, goal.subArrays})) {
            goal.level = level;
            goal.parity = goal.subArrays = 0;
        }
    if (!q5sim::isValidStripe(goal.stripe))
        goal.stripe = kDefaultStripe;
}

// The geometry after the migration. Only the added drives are known; level and stripe are kept where
// possible.
static void findGoal(Conversion& conversion, q5sim::LogicalDrive& drive, const Place& place) {
    q5sim::MigrationTarget& goal = drive.activity.goal;
    goal = {drive.level, drive.stripe, drive.parity, drive.subArrays, drive.members};
    for (const std::uint16_t id : drivesWithExtent(conversion, drive.arrayId, [](const ExtentEntry& extent) {
             return (extent.maintenance & kExtentMigrating) != 0;
         }))
        if (!contains(goal.members, id) && goal.members.size() < kMaxArrayMembers)
            goal.members.push_back(id);
    chooseLevel(goal);
    noteAssumption(below(place, "activity.goal"), "level, stripe, and the order of the added drives");
}

// The drive's extent in an array: preferably one in use, otherwise the first one assigned to it.
static const ExtentEntry* memberExtentOf(std::span<const ExtentEntry> all, std::uint16_t arrayId) {
    const ExtentEntry* found = nullptr;
    for (const ExtentEntry& extent : all)
        if ((extent.assignment & kExtentAssigned) != 0 && extent.arrayId == arrayId &&
            (found == nullptr || (found->state == 0 && extent.state != 0)))
            found = &extent;
    return found;
}

static bool takesPart(const q5sim::LogicalDrive& drive, std::uint16_t id) {
    const std::vector<q5sim::RebuildTarget>& targets = drive.activity.targets;
    return contains(drive.members, id) || contains(drive.activity.goal.members, id) ||
           std::any_of(targets.begin(), targets.end(),
                       [&](const q5sim::RebuildTarget& target) { return target.drive == id; });
}

// Whether a member that is not lost has an extent of this size, or none can be compared.
static bool hasShare(const Conversion& conversion, const LogicalDrive& from, std::uint64_t size) {
    bool compared = false;
    for (const q5sim::Drive& drive : conversion.to.drives) {
        const auto reported = extents(sourceOf(conversion.from, drive)->info);
        const ExtentEntry* extent =
            isReportedLost(from, drive.id) ? nullptr : memberExtentOf(reported, from.info.arrayId);
        if (extent != nullptr && extent->size == size)
            return true;
        compared = compared || extent != nullptr;
    }
    return !compared;
}

// In the place of a lost member, an array of another system may have the same ID. Where members have equal
// shares, its size shows that the extent is not that of the lost member.
static bool isOfAnotherSystem(const Conversion& conversion, const q5sim::LogicalDrive& array,
                              std::uint16_t id, const ExtentEntry& extent) {
    const LogicalDrive& from = *sourceOf(conversion.from, array);
    return array.level != kJbod && isReportedLost(from, id) && extent.state == 0 &&
           !hasShare(conversion, from, extent.size);
}

static q5sim::Extent convertExtent(const Conversion& conversion, const q5sim::Drive& drive,
                                   std::span<const ExtentEntry> all, const ExtentEntry& from) {
    q5sim::Extent extent = {q5sim::kUseFree, kNoArray, from.start, from.size};
    const q5sim::LogicalDrive* array = q5sim::findArray(conversion.to, from.arrayId);
    if ((from.assignment & kExtentAssigned) != 0) {
        const bool member = array != nullptr && takesPart(*array, drive.id) &&
                            memberExtentOf(all, from.arrayId) == &from &&
                            !isOfAnotherSystem(conversion, *array, drive.id, from);
        extent.use = member ? q5sim::kUseArray : q5sim::kUseForeign;
        extent.array = std::min(from.arrayId, kNoArray);
    } else if ((from.assignment & kExtentGlobalSpare) != 0) {
        extent.use = q5sim::kUseGlobalSpare;
    } else if ((from.assignment & kExtentDedicatedSpare) != 0) {
        extent.use = array != nullptr ? q5sim::kUseDedicatedSpare : q5sim::kUseForeign;
        extent.array = std::min(from.arrayId, kNoArray);
    }
    return extent;
}

static void convertDriveExtents(const Conversion& conversion, q5sim::Drive& drive, const Place& place) {
    const auto reported = extents(sourceOf(conversion.from, drive)->info);
    std::vector<const ExtentEntry*> all;
    for (const ExtentEntry& extent : reported)
        all.push_back(&extent);
    std::ranges::stable_sort(all, {}, &ExtentEntry::start);
    std::uint64_t end = 0;
    const std::uint64_t limit = std::min(drive.sectors, q5sim::kMaxDriveSectors);
    for (const ExtentEntry* extent : all)
        if (extent->size == 0 || extent->start < end || extent->start > limit ||
            extent->size > limit - extent->start) {
            noteMissing(place, "extent " + std::to_string(extent->index) +
                                   " is outside its drive or overlaps another");
        } else {
            drive.extents.push_back(convertExtent(conversion, drive, reported, *extent));
            end = extent->start + extent->size;
        }
}

void convertExtents(Conversion& conversion) {
    std::vector<q5sim::LogicalDrive>& arrays = conversion.to.logicalDrives;
    for (std::size_t i = 0; i < arrays.size(); i++) {
        const Place place = below(conversion.place, "logicalDrives", i);
        if (arrays[i].activity.kind == kRebuilding)
            findTargets(conversion, *sourceOf(conversion.from, arrays[i]), arrays[i], place);
        if (arrays[i].activity.kind == kMigrating)
            findGoal(conversion, arrays[i], place);
    }
    std::vector<q5sim::Drive>& drives = conversion.to.drives;
    for (std::size_t i = 0; i < drives.size(); i++)
        convertDriveExtents(conversion, drives[i], below(conversion.place, "drives", i));
}
