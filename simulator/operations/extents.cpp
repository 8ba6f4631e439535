// Operations on single extents of a drive.
#include "simulator/engine/rebuild.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

using namespace q5sim;

// The drive and extent that a request names; drive is nullptr when there is none.
struct ExtentLocation {
    Drive* drive = nullptr;
    std::size_t index = 0;
    Extent& extent() const { return drive->extents[index]; }
};

static ExtentLocation locateExtent(Controller& controller, std::uint32_t driveId, std::uint32_t index) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr || drive->failed || index >= drive->extents.size())
        return {};
    return {drive, index};
}

static ExtentLocation locateExtent(Controller& controller, const ExtentRef* ref) {
    return ref != nullptr ? locateExtent(controller, ref->driveId, ref->extent) : ExtentLocation{};
}

static ExtentLocation locateExtent(Controller& controller, const ExtentPlacement* placement) {
    if (placement == nullptr || placement->logDrvId > 255 || placement->reserved6 != 0)
        return {};
    return locateExtent(controller, placement->driveId, placement->extent);
}

// A dedicated spare must be able to replace a member: large enough, and not on a member drive.
static bool isUsableSpare(const LogicalDrive& array, const ExtentLocation& location) {
    return isRedundant(array.level) && location.extent().size >= array.memberSectors &&
           std::find(array.members.begin(), array.members.end(), location.drive->id) == array.members.end();
}

int q5_spareHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        const ExtentLocation location = locateExtent(controller, placement);
        if (location.drive == nullptr)
            return refuse("spare: there is no such extent on a working drive");
        if (isAssigned(location.extent()))
            return refuse("spare: extent %zu of drive %d is a member of an array", location.index,
                          location.drive->id + 1);
        const bool global = placement->logDrvId == kNoArray;
        const LogicalDrive* array = global ? nullptr : findLogicalDrive(controller, placement->logDrvId);
        if (!global && (array == nullptr || !isUsableSpare(*array, location)))
            return refuse("spare: the logical drive is missing, not redundant, has a member on the drive, or "
                          "needs a larger extent");
        const std::uint8_t use = global ? kUseGlobalSpare : kUseDedicatedSpare;
        const std::uint16_t owner = global ? kNoArray : array->arrayId;
        if (location.extent().use == use && location.extent().array == owner)
            return refuse("spare: extent %zu of drive %d is one already", location.index,
                          location.drive->id + 1);
        location.extent().use = use;
        location.extent().array = owner;
        if (global)
            addEvent(controller, now, "Drive %d: extent %zu is a global spare", location.drive->id + 1,
                     location.index);
        else
            addEvent(controller, now, "Drive %d: extent %zu is a spare of logical drive %d",
                     location.drive->id + 1, location.index, array->logDrvId);
        return kDone;
    });
}

// Rebuilds a lost member onto the extent; an array without lost members refuses it.
int q5_addHBAExtentToArray(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        const ExtentLocation location = locateExtent(controller, placement);
        LogicalDrive* array =
            location.drive != nullptr ? findLogicalDrive(controller, placement->logDrvId) : nullptr;
        if (array == nullptr)
            return refuse("adding an extent: there is no such extent or logical drive");
        const std::vector<RebuildChoice> choices = {{placement->driveId, placement->extent}};
        if (const std::string reason = rebuildRefusal(controller, *array, choices); !reason.empty())
            return refuse("adding an extent to logical drive %d: %s", array->logDrvId, reason.c_str());
        startRebuild(controller, *array, choices, now);
        return kDone;
    });
}

int q5_freeHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* ref) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        const ExtentLocation location = locateExtent(controller, ref);
        if (location.drive == nullptr)
            return refuse("freeing: there is no such extent on a working drive");
        if (isAssigned(location.extent()) || location.extent().use == kUseFree)
            return refuse("freeing: extent %zu of drive %d is not a spare", location.index,
                          location.drive->id + 1);
        location.extent().use = kUseFree;
        location.extent().array = kNoArray;
        addEvent(controller, now, "Drive %d: extent %zu is free", location.drive->id + 1, location.index);
        return kDone;
    });
}

// Whether two neighbors in the list are free and adjacent.
static bool canMerge(const Drive& drive, std::size_t first) {
    if (first + 1 >= drive.extents.size())
        return false;
    const Extent& one = drive.extents[first];
    const Extent& next = drive.extents[first + 1];
    return one.use == kUseFree && next.use == kUseFree && one.start + one.size == next.start;
}

// A deleted extent is merged into the free one before it, or else after it.
int q5_deleteHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* ref) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        const ExtentLocation location = locateExtent(controller, ref);
        if (location.drive == nullptr)
            return refuse("deleting: there is no such extent on a working drive");
        std::vector<Extent>& extents = location.drive->extents;
        const bool before = location.index > 0 && canMerge(*location.drive, location.index - 1);
        if (!before && !canMerge(*location.drive, location.index))
            return refuse("deleting: extent %zu of drive %d or its neighbors are not free", location.index,
                          location.drive->id + 1);
        const std::size_t first = before ? location.index - 1 : location.index;
        extents[first].size += extents[first + 1].size;
        extents.erase(extents.begin() + static_cast<std::ptrdiff_t>(first) + 1);
        addEvent(controller, now, "Drive %d: extent %zu deleted", location.drive->id + 1, location.index);
        return kDone;
    });
}

int q5_splitHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* ref,
                      std::uint32_t offset) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        const ExtentLocation location = locateExtent(controller, ref);
        const std::uint64_t sectors = offset * kSectorsPerMb;
        if (location.drive == nullptr || location.extent().use != kUseFree || sectors == 0 ||
            sectors >= location.extent().size ||
            location.drive->extents.size() >= controller.maxExtentsPerDisk)
            return refuse("splitting: the extent is not free, the offset is outside, or the drive has too "
                          "many extents");
        Extent rest = location.extent();
        location.extent().size = sectors;
        rest.start += sectors;
        rest.size -= sectors;
        std::vector<Extent>& extents = location.drive->extents;
        extents.insert(extents.begin() + static_cast<std::ptrdiff_t>(location.index) + 1, rest);
        addEvent(controller, now, "Drive %d: extent %zu split at %u MB", location.drive->id + 1,
                 location.index, offset);
        return kDone;
    });
}
