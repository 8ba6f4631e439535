// Bad sectors under arrays. Positions are offsets in a member's share, in whole megabytes.
#include "simulator/engine/media_errors.h"

#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/engine/progress.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/bad_sectors.h"
#include "simulator/world/extent_alloc.h"

namespace q5sim {

// The member's share of its drive.
struct MemberShare {
    Drive* drive = nullptr; // nullptr: lost
    std::uint64_t start = 0;
    std::uint64_t size = 0;
};

static MemberShare shareOf(Controller& controller, const LogicalDrive& array, std::size_t position) {
    if (!isWorkingMember(controller, array, position))
        return {};
    Drive* drive = findDrive(controller, array.members[position]);
    const Extent& extent = drive->extents[memberExtent(*drive, array.arrayId)];
    return {drive, extent.start, std::min(extent.size, array.memberSectors)};
}

static bool isRead(const LogicalDrive& array, std::size_t position) {
    return array.activity.kind == kMigrating || isReadForRebuild(array, position);
}

// The offset of the first bad sector from an offset on; UINT64_MAX: none.
static std::uint64_t firstBadMb(const MemberShare& share, std::uint64_t fromMb) {
    const std::uint64_t from = share.start + fromMb * kSectorsPerMb;
    const std::uint64_t end = share.start + share.size;
    for (const BadSectors& bad : share.drive->badSectors)
        if (bad.start + bad.count > from && bad.start < end)
            return (std::max(bad.start, from) - share.start) / kSectorsPerMb;
    return UINT64_MAX;
}

static std::uint64_t nextBadMb(const Controller& controller, const LogicalDrive& array) {
    std::uint64_t next = UINT64_MAX;
    auto& mutableController = const_cast<Controller&>(controller);
    for (std::size_t i = 0; i < array.members.size(); i++) {
        const MemberShare share = shareOf(mutableController, array, i);
        if (share.drive != nullptr && !share.drive->badSectors.empty() && isRead(array, i))
            next = std::min(next, firstBadMb(share, array.activity.scannedMb));
    }
    return next;
}

std::int64_t nextBadSectorTime(const Controller& controller, const LogicalDrive& array) {
    const std::uint8_t kind = array.activity.kind;
    if ((kind != kRebuilding && kind != kMigrating) || array.activity.paused)
        return kNoDeadline;
    const std::uint64_t next = nextBadMb(controller, array);
    return next == UINT64_MAX ? kNoDeadline : reachTime(controller, array.activity, next);
}

// The offset after the adjacent bad sectors in the megabyte at an offset.
static std::uint64_t badRangeEndMb(Controller& controller, const LogicalDrive& array, std::uint64_t mb) {
    std::uint64_t endMb = mb + 1;
    for (std::size_t i = 0; i < array.members.size(); i++) {
        const MemberShare share = shareOf(controller, array, i);
        if (share.drive == nullptr || !isRead(array, i))
            continue;
        const std::uint64_t from = share.start + mb * kSectorsPerMb;
        for (const BadSectors& bad : share.drive->badSectors)
            if (bad.start < from + kSectorsPerMb && bad.start + bad.count > from)
                endMb = std::max(endMb, (std::min(bad.start + bad.count, share.start + share.size) -
                                         share.start + kSectorsPerMb - 1) /
                                            kSectorsPerMb);
    }
    return endMb;
}

// Stripes that a number of adjacent sectors touches.
static std::uint32_t stripesOf(const LogicalDrive& array, std::uint64_t sectors) {
    const std::uint64_t stripe = std::max<std::uint64_t>(1, std::uint64_t{array.stripe} * 2);
    return static_cast<std::uint32_t>(std::min<std::uint64_t>((sectors + stripe - 1) / stripe, 1u << 20));
}

// Returns false when the activity was aborted.
static bool handleUnreadable(Controller& controller, LogicalDrive& array, const Drive& drive,
                             std::uint64_t sectors, std::int64_t at) {
    if (controller.rebuildOnError == kAbortOnError) {
        addEvent(controller, at, "Logical drive %d: unreadable sector on drive %d", array.logDrvId,
                 drive.id + 1);
        abortActivity(controller, array, "aborted", at);
        array.autoRebuildInhibited = true; // it would fail in the same place
        return false;
    }
    const std::uint32_t stripes = stripesOf(array, sectors);
    array.lostStripes += std::min(stripes, UINT32_MAX - array.lostStripes);
    addEvent(controller, at, "Logical drive %d: %u stripe%s lost, unreadable on drive %d", array.logDrvId,
             stripes, stripes == 1 ? "" : "s", drive.id + 1);
    return true;
}

void handleBadSectors(Controller& controller, LogicalDrive& array, std::int64_t at) {
    const std::uint64_t reached = nextBadMb(controller, array);
    const std::uint64_t end = badRangeEndMb(controller, array, reached);
    for (std::size_t i = 0; i < array.members.size(); i++) {
        const MemberShare share = shareOf(controller, array, i);
        if (share.drive == nullptr || !isRead(array, i))
            continue;
        const std::uint64_t start = share.start + reached * kSectorsPerMb;
        const std::uint64_t size =
            std::min((end - reached) * kSectorsPerMb, share.start + share.size - start);
        const std::uint64_t bad = countBadSectors(*share.drive, start, size);
        if (bad == 0)
            continue;
        if (canReconstruct(controller, array, i)) {
            repairBadSectors(*share.drive, start, size);
            addEvent(controller, at, "Drive %d: %llu unreadable sector%s repaired", share.drive->id + 1,
                     static_cast<unsigned long long>(bad), bad == 1 ? "" : "s");
        } else if (!handleUnreadable(controller, array, *share.drive, bad, at)) {
            return;
        }
    }
    array.activity.scannedMb = end;
}

std::uint64_t repairDrive(Controller& controller, Drive& drive) {
    std::uint64_t repaired = 0;
    for (const LogicalDrive& array : controller.logicalDrives)
        for (std::size_t i = 0; i < array.members.size(); i++)
            if (array.members[i] == drive.id && functionalStatus(controller, array) != 0 &&
                isWorkingMember(controller, array, i) && canReconstruct(controller, array, i)) {
                const MemberShare share = shareOf(controller, array, i);
                repaired += repairBadSectors(drive, share.start, share.size);
            }
    return repaired;
}

CheckedSectors checkMembers(Controller& controller, const LogicalDrive& array, bool repair) {
    CheckedSectors checked;
    for (std::size_t i = 0; i < array.members.size(); i++) {
        const MemberShare share = shareOf(controller, array, i);
        if (share.drive == nullptr)
            continue;
        checked.found += countBadSectors(*share.drive, share.start, share.size);
        if (repair && canReconstruct(controller, array, i))
            checked.repaired += repairBadSectors(*share.drive, share.start, share.size);
    }
    return checked;
}

} // namespace q5sim
