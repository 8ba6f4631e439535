// Allocation and release of extents.
#include "simulator/world/extent_alloc.h"

namespace q5sim {

std::size_t bestFitFreeExtent(const Drive& drive, std::uint64_t sectors) {
    std::size_t best = kNoExtent;
    for (std::size_t i = 0; i < drive.extents.size(); i++) {
        const Extent& extent = drive.extents[i];
        if (extent.use == kUseFree && extent.size >= sectors &&
            (best == kNoExtent || extent.size < drive.extents[best].size))
            best = i;
    }
    return best;
}

void allocateExtent(const Controller& controller, Drive& drive, std::size_t index, std::uint64_t sectors,
                    std::uint16_t arrayId) {
    Extent rest = drive.extents[index];
    Extent& taken = drive.extents[index];
    taken.use = kUseArray;
    taken.array = arrayId;
    if (rest.size - sectors < kSectorsPerMb || drive.extents.size() >= controller.maxExtentsPerDisk)
        return;
    taken.size = sectors;
    rest.start += sectors;
    rest.size -= sectors;
    drive.extents.insert(drive.extents.begin() + static_cast<std::ptrdiff_t>(index) + 1, rest);
}

static void releaseExtent(Extent& extent) {
    extent.use = kUseFree;
    extent.array = kNoArray;
}

void freeMemberExtent(Drive& drive, std::uint16_t arrayId) {
    for (Extent& extent : drive.extents)
        if (extent.use == kUseArray && extent.array == arrayId)
            releaseExtent(extent);
}

void freeAllOfArray(Controller& controller, std::uint16_t arrayId) {
    for (Drive& drive : controller.drives)
        for (Extent& extent : drive.extents)
            if (extent.array == arrayId && extent.use != kUseForeign)
                releaseExtent(extent);
    for (Drive& drive : controller.pulledDrives)
        for (Extent& extent : drive.extents)
            if (extent.array == arrayId && extent.use == kUseArray)
                extent.use = kUseForeign;
}

std::size_t memberExtent(const Drive& drive, std::uint16_t arrayId) {
    for (std::size_t i = 0; i < drive.extents.size(); i++)
        if (drive.extents[i].use == kUseArray && drive.extents[i].array == arrayId)
            return i;
    return kNoExtent;
}

bool holdsExtentOf(const Drive& drive, std::uint16_t arrayId) {
    return memberExtent(drive, arrayId) != kNoExtent;
}

} // namespace q5sim
