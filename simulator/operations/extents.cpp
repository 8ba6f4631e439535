// Operations on single extents of a drive.
#include "simulator/engine/rebuild.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"

using namespace q5sim;

// The drive and the extent on it that an operation names; drive is nullptr when there is none.
struct Place {
    Drive* drive = nullptr;
    std::size_t index = 0;
    Extent& extent() const { return drive->extents[index]; }
};

static Place findPlace(Controller& controller, std::uint32_t driveId, std::uint32_t index) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr || drive->failed || index >= drive->extents.size())
        return {};
    return {drive, index};
}

static Place findPlace(Controller& controller, const ExtentRef* ref) {
    return ref != nullptr ? findPlace(controller, ref->driveId, ref->extent) : Place{};
}

static Place findPlace(Controller& controller, const ExtentPlacement* placement) {
    if (placement == nullptr || placement->logDrvId > 255 || placement->reserved6 != 0)
        return {};
    return findPlace(controller, placement->driveId, placement->extent);
}

// A dedicated spare must be able to replace a member: big enough, on a drive that is not one itself.
static bool isUsableSpare(const LogicalDrive& array, const Place& place) {
    return isRedundant(array.level) && place.extent().size >= array.memberSectors &&
           std::find(array.members.begin(), array.members.end(), place.drive->id) == array.members.end();
}

int q5_spareHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        const Place place = findPlace(controller, placement);
        if (place.drive == nullptr || place.extent().use == kUseArray)
            return kRefused;
        const bool global = placement->logDrvId == kNoArray;
        const LogicalDrive* array = global ? nullptr : findLogicalDrive(controller, placement->logDrvId);
        if (!global && (array == nullptr || !isUsableSpare(*array, place)))
            return kRefused;
        const std::uint8_t use = global ? kUseGlobalSpare : kUseDedicatedSpare;
        const std::uint16_t owner = global ? kNoArray : array->arrayId;
        if (place.extent().use == use && place.extent().array == owner)
            return kRefused;
        place.extent().use = use;
        place.extent().array = owner;
        if (global)
            addEvent(controller, now, "Drive %d: extent %zu is a global spare", place.drive->id + 1,
                     place.index);
        else
            addEvent(controller, now, "Drive %d: extent %zu is a spare of logical drive %d",
                     place.drive->id + 1, place.index, array->logDrvId);
        return kDone;
    });
}

// An array that lacks a member rebuilds onto the extent; no other array takes one in.
int q5_addHBAExtentToArray(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        const Place place = findPlace(controller, placement);
        LogicalDrive* array =
            place.drive != nullptr ? findLogicalDrive(controller, placement->logDrvId) : nullptr;
        if (array == nullptr)
            return kRefused;
        const RebuildChoice choice = {placement->driveId, placement->extent};
        return startRebuild(controller, *array, {choice}, now) ? kDone : kRefused;
    });
}

int q5_freeHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* ref) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        const Place place = findPlace(controller, ref);
        if (place.drive == nullptr || place.extent().use == kUseArray || place.extent().use == kUseFree)
            return kRefused;
        place.extent().use = kUseFree;
        place.extent().array = kNoArray;
        addEvent(controller, now, "Drive %d: extent %zu is free", place.drive->id + 1, place.index);
        return kDone;
    });
}

// Whether two neighbours in the list are free and touch each other.
static bool canMerge(const Drive& drive, std::size_t first) {
    if (first + 1 >= drive.extents.size())
        return false;
    const Extent& one = drive.extents[first];
    const Extent& next = drive.extents[first + 1];
    return one.use == kUseFree && next.use == kUseFree && one.start + one.size == next.start;
}

// A deleted extent's space goes to the free one before it, or else to the one behind it.
int q5_deleteHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* ref) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        const Place place = findPlace(controller, ref);
        if (place.drive == nullptr)
            return kRefused;
        std::vector<Extent>& extents = place.drive->extents;
        const bool before = place.index > 0 && canMerge(*place.drive, place.index - 1);
        if (!before && !canMerge(*place.drive, place.index))
            return kRefused;
        const std::size_t first = before ? place.index - 1 : place.index;
        extents[first].size += extents[first + 1].size;
        extents.erase(extents.begin() + static_cast<std::ptrdiff_t>(first) + 1);
        addEvent(controller, now, "Drive %d: extent %zu deleted", place.drive->id + 1, place.index);
        return kDone;
    });
}

int q5_splitHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* ref,
                      std::uint32_t offset) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        const Place place = findPlace(controller, ref);
        const std::uint64_t sectors = offset * kSectorsPerMb;
        if (place.drive == nullptr || place.extent().use != kUseFree || sectors == 0 ||
            sectors >= place.extent().size || place.drive->extents.size() >= controller.maxExtentsPerDisk)
            return kRefused;
        Extent rest = place.extent();
        place.extent().size = sectors;
        rest.start += sectors;
        rest.size -= sectors;
        std::vector<Extent>& extents = place.drive->extents;
        extents.insert(extents.begin() + static_cast<std::ptrdiff_t>(place.index) + 1, rest);
        addEvent(controller, now, "Drive %d: extent %zu split at %u MB", place.drive->id + 1, place.index,
                 offset);
        return kDone;
    });
}
