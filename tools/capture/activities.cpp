// Converts the progress of activities, and compares the result with the adapters' report.
#include <algorithm>

#include "simulator/engine/cache.h"
#include "simulator/world/array_rules.h"
#include "tools/capture/convert.h"

static const Activity* reportedActivity(const LogicalDrive& from, std::uint8_t kind) {
    for (const Activity& activity : from.activities)
        if (activity.kind == kind)
            return &activity;
    return nullptr;
}

// A job of fewer than a hundred megabytes cannot show every percentage.
static std::uint64_t totalFor(const q5sim::LogicalDrive& drive, std::uint64_t percent) {
    const std::uint64_t total = std::max<std::uint64_t>(1, drive.memberSectors / q5sim::kSectorsPerMb);
    return megabytesAt(percent, total) * 100 / total == percent ? total : 100;
}

static constexpr std::uint8_t kForegroundInit = 2;

static void convertActivity(Conversion& conversion, const LogicalDrive& from, q5sim::LogicalDrive& drive,
                            const Place& place) {
    q5sim::Activity& activity = drive.activity;
    const Activity* reported = reportedActivity(from, activity.kind);
    const std::uint64_t percent = reported != nullptr ? std::min<std::uint64_t>(reported->percent, 100) : 0;
    activity.paused = reported != nullptr && reported->state == kActivityPaused;
    activity.since = conversion.now;
    activity.totalMb = totalFor(drive, percent);
    activity.completedMb = activity.scannedMb = megabytesAt(percent, activity.totalMb);
    drive.synchronized = activity.kind != kSynchronizing &&
                         (activity.kind != kInitializing || !q5sim::isRedundant(drive.level));
    if (activity.kind == kInitializing) {
        activity.initType = kForegroundInit;
        noteAssumption(below(place, "initType"), "foreground");
    }
    if (activity.kind == kRedundancyChecking)
        noteAssumption(below(place, "noFix"), "false");
    if (from.info.activityStatus != activity.kind)
        noteMissing(place, "a world has one activity for each logical drive");
}

void convertActivities(Conversion& conversion) {
    std::vector<q5sim::LogicalDrive>& drives = conversion.to.logicalDrives;
    for (std::size_t i = 0; i < drives.size(); i++) {
        const Place place = below(below(conversion.place, "logicalDrives", i), "activity");
        if (drives[i].activity.kind != 0)
            convertActivity(conversion, *sourceOf(conversion.from, drives[i]), drives[i], place);
    }
}

static std::uint32_t lostMask(const q5sim::Controller& controller, const q5sim::LogicalDrive& drive) {
    std::uint32_t mask = 0;
    for (const std::size_t position : q5sim::lostMembers(controller, drive))
        mask |= std::uint32_t{1} << drive.members[position];
    return mask;
}

static void compareLogicalDrive(const q5sim::Controller& controller, const q5sim::LogicalDrive& drive,
                                const LogicalDrive& from, const Place& place) {
    const std::uint8_t status = q5sim::functionalStatus(controller, drive);
    if (status != from.info.functionalStatus)
        noteMissing(place, std::string("the copy is ") + q5sim::statusName(status) + "; reported is " +
                               q5sim::statusName(from.info.functionalStatus));
    if (from.lostMask && lostMask(controller, drive) != *from.lostMask)
        noteMissing(place, "the copy has other lost members");
    const int cacheMode = q5sim::effectiveCacheFlags(controller, drive) & kWritePolicyMask;
    if (cacheMode != static_cast<int>(from.info.writeCacheMode & kWritePolicyMask))
        noteMissing(place, "the copy has another write cache mode");
}

static bool isSameExtent(const ExtentEntry& one, const ExtentEntry& other) {
    const bool named = (one.assignment & (kExtentAssigned | kExtentDedicatedSpare)) != 0;
    return one.index == other.index && one.assignment == other.assignment &&
           one.maintenance == other.maintenance && one.access == other.access && one.state == other.state &&
           (!named || one.arrayId == other.arrayId) && one.start == other.start && one.size == other.size;
}

static void compareExtents(const q5sim::Controller& controller, const q5sim::Drive& drive, const Drive& from,
                           const Place& place) {
    const auto reported = extents(from.info);
    for (std::size_t i = 0; i < std::min(reported.size(), drive.extents.size()); i++)
        if (!isSameExtent(q5sim::extentEntry(controller, drive, i), reported[i]))
            noteMissing(below(place, "extents", i), "the copy shows it in another state");
}

void compareWithModel(Conversion& conversion) {
    const q5sim::Controller& to = conversion.to;
    for (std::size_t i = 0; i < to.logicalDrives.size(); i++)
        compareLogicalDrive(to, to.logicalDrives[i], *sourceOf(conversion.from, to.logicalDrives[i]),
                            below(conversion.place, "logicalDrives", i));
    for (std::size_t i = 0; i < to.drives.size(); i++)
        compareExtents(to, to.drives[i], *sourceOf(conversion.from, to.drives[i]),
                       below(conversion.place, "drives", i));
}
