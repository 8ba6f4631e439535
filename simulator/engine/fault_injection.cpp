// Fault injection: drives fail and are replaced.
#include "simulator/engine/fault_injection.h"

namespace q5sim {

bool failDrive(Controller& controller, std::uint32_t driveId) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr || drive->failed)
        return false;
    drive->failed = true;
    return true;
}

bool replaceDrive(Controller& controller, std::uint32_t driveId, std::int64_t now) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr || !drive->failed)
        return false;
    drive->serial = drive->serial.substr(0, 14) + "R" + std::to_string(now % 100000000);
    drive->failed = false;
    drive->failureReported = false;
    drive->smartFailure = false;
    drive->mediaErrors = 0;
    drive->locateUntil = 0;
    drive->patrol = {};
    drive->extents = {{kUseFree, kNoArray, 0, drive->sectors}};
    addEvent(controller, now, "Drive %d has been replaced", drive->id + 1);
    return true;
}

} // namespace q5sim
