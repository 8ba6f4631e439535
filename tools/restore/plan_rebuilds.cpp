// The rebuilds that are running now, or were when the backup was made.
#include "tools/restore/planning.h"

static bool isMember(const LogicalDrive& array, const Drive& drive) {
    for (int i = 0; i < boundedMemberCount(array.info); ++i)
        if (array.info.memberIds[i] + 1u == drive.number)
            return true;
    return false;
}

// The target belongs to the logical drive before it is one of its members, unless it is in a lost one's slot.
const LogicalDrive* rebuiltArray(const Controller& controller, const Drive& drive,
                                 const ExtentEntry& extent) {
    const LogicalDrive* array = findArray(controller, extent.arrayId);
    if (array == nullptr || (extent.assignment & kExtentAssigned) == 0)
        return nullptr;
    return (extent.state & kExtentRebuilding) != 0 || !isMember(*array, drive) ? array : nullptr;
}

std::vector<std::uint32_t> rebuildTargets(const Controller& controller, const LogicalDrive& array) {
    std::vector<std::uint32_t> targets;
    if ((array.info.activityStatus & kRebuilding) == 0)
        return targets;
    for (const Drive& drive : controller.drives)
        for (const ExtentEntry& extent : extents(drive.info))
            if (rebuiltArray(controller, drive, extent) == &array)
                targets.push_back(drive.number);
    return targets;
}

void listRebuilds(Planning* planning) {
    for (const LogicalDrive& array : planning->now.logicalDrives)
        for (const std::uint32_t drive : rebuildTargets(planning->now, array))
            planning->plan.rebuilds.push_back(arrayName(array, array.info.logDrvId) + " onto " +
                                              driveName(drive));
}
