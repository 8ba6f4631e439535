// The extents of the drives at each point of a plan.
#include "tools/restore/layout.h"

#include "snapshot/words.h"

static std::string nameOf(const LogicalDrive& drive) {
    return "logical drive " + std::to_string(drive.info.logDrvId) + " " +
           std::string(fieldText(drive.info.name));
}

std::string extentUser(const Controller& controller, const ExtentEntry& extent) {
    if ((extent.assignment & kExtentGlobalSpare) != 0)
        return "a global spare";
    const LogicalDrive* array = findArray(controller, extent.arrayId);
    if ((extent.assignment & kExtentDedicatedSpare) != 0)
        return "a spare of " + (array != nullptr ? nameOf(*array) : "an unknown array");
    if ((extent.assignment & kExtentAssigned) != 0)
        return array != nullptr ? nameOf(*array) : "an unknown array";
    if ((extent.access & kExtentAccessible) == 0)
        return "something that the controller gives no access to";
    return (extent.access & kExtentFree) != 0 ? "" : "something unknown";
}

Layouts presentLayouts(const Controller& controller) {
    Layouts layouts;
    for (const Drive& drive : controller.drives)
        for (const ExtentEntry& extent : extents(drive.info))
            layouts[drive.number].push_back({extent.start, extent.size, extentUser(controller, extent)});
    return layouts;
}

std::size_t findRegion(const Layout& layout, std::uint64_t sector) {
    std::size_t index = 0;
    while (index < layout.size() && !(layout[index].start <= sector && sector < layout[index].end()))
        ++index;
    return index;
}

void splitRegion(Layout* layout, std::size_t index, std::uint64_t offset) {
    Region rest = (*layout)[index];
    (*layout)[index].size = offset;
    rest.start += offset;
    rest.size -= offset;
    layout->insert(layout->begin() + static_cast<std::ptrdiff_t>(index) + 1, rest);
}

void takeRegion(Layout* layout, std::size_t index, std::uint64_t size, const std::string& use) {
    if ((*layout)[index].size > size)
        splitRegion(layout, index, size);
    (*layout)[index].use = use;
}

std::string obstacleInRange(const Layout& layout, std::uint64_t start, std::uint64_t size) {
    const std::uint64_t end = start + size;
    if (layout.empty() || end > layout.back().end())
        return "is too small: " + std::to_string(end) + " sectors are needed, it has " +
               std::to_string(layout.empty() ? 0 : layout.back().end());
    for (const Region& region : layout)
        if (!region.isFree() && region.start < end && start < region.end())
            return "is in use by " + region.use;
    const std::size_t index = findRegion(layout, start);
    if (index == layout.size() || end > layout[index].end())
        return "has no single free extent from sector " + std::to_string(start) + " to " +
               std::to_string(end);
    return "";
}
