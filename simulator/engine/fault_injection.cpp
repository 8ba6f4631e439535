// Fault injection on drives: failures, removal, insertion, media errors.
#include "simulator/engine/fault_injection.h"

#include <algorithm>

#include "simulator/engine/progress.h"
#include "simulator/engine/reports.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/bad_sectors.h"

namespace q5sim {

static Reason noSuchDrive(std::uint32_t driveId) {
    return "there is no drive " + std::to_string(driveId + 1);
}

static std::string driveName(std::uint32_t driveId) {
    return "drive " + std::to_string(driveId + 1);
}

Reason failDrive(Controller& controller, std::uint32_t driveId) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr)
        return noSuchDrive(driveId);
    if (drive->failed)
        return driveName(driveId) + " has failed already";
    drive->failed = true;
    return "";
}

static bool hasSerial(const Controller& controller, const std::string& serial) {
    const auto same = [&](const Drive& drive) { return drive.serial == serial; };
    return std::any_of(controller.drives.begin(), controller.drives.end(), same) ||
           std::any_of(controller.pulledDrives.begin(), controller.pulledDrives.end(), same);
}

// A serial number that no present or pulled drive of the controller has.
static std::string newSerial(const Controller& controller, const Drive& drive, std::int64_t now) {
    for (std::int64_t number = now;; number++) {
        std::string serial = drive.serial.substr(0, 14) + "R" + std::to_string(number % 100000000);
        if (!hasSerial(controller, serial))
            return serial;
    }
}

// Makes the drive a new, empty one of the same model.
static void makeBlank(const Controller& controller, Drive& drive, std::int64_t now) {
    Drive blank;
    blank.id = drive.id;
    blank.channel = drive.channel;
    blank.enclosure = drive.enclosure;
    blank.sectors = drive.sectors;
    blank.model = drive.model;
    blank.firmware = drive.firmware;
    blank.serial = newSerial(controller, drive, now);
    blank.dmaMode = drive.dmaMode;
    blank.writeCache = drive.writeCache;
    blank.smartCheck = drive.smartCheck;
    blank.tcqSupported = drive.tcqSupported;
    blank.ncqSupported = drive.ncqSupported;
    blank.tcqEnabled = drive.tcqEnabled;
    blank.ncqEnabled = drive.ncqEnabled;
    blank.extents = {{kUseFree, kNoArray, 0, drive.sectors}};
    drive = blank;
}

Reason replaceDrive(Controller& controller, std::uint32_t driveId, std::int64_t now) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr)
        return noSuchDrive(driveId);
    if (!drive->failed)
        return driveName(driveId) + " has not failed";
    makeBlank(controller, *drive, now);
    addEvent(controller, now, "Drive %d has been replaced", drive->id + 1);
    return "";
}

static void forget(std::vector<Drive>& drives, std::uint32_t id) {
    std::erase_if(drives, [&](const Drive& drive) { return drive.id == id; });
}

static void insertInOrder(std::vector<Drive>& drives, Drive drive) {
    const auto position =
        std::find_if(drives.begin(), drives.end(), [&](const Drive& other) { return other.id > drive.id; });
    drives.insert(position, std::move(drive));
}

Reason pullDrive(Controller& controller, std::uint32_t driveId, std::int64_t now) {
    Drive* found = findDrive(controller, driveId);
    if (found == nullptr)
        return noSuchDrive(driveId);
    Drive drive = *found;
    addEvent(controller, now, "Drive %d has been removed", drive.id + 1);
    if (!drive.failed)
        reportLostSpares(controller, drive, now);
    checkpointPatrol(controller, drive, now);
    if (drive.patrol.state == kPatrolRunning || drive.patrol.state == kPatrolPaused)
        drive.patrol.state = kPatrolAborted;
    drive.locateUntil = 0;
    forget(controller.pulledDrives, driveId);
    forget(controller.drives, driveId);
    insertInOrder(controller.pulledDrives, std::move(drive));
    std::erase(controller.knownDrives, static_cast<std::uint16_t>(driveId));
    return "";
}

// Extents of arrays that have changed in the meantime are foreign.
static void matchConfiguration(const Controller& controller, Drive& drive) {
    for (Extent& extent : drive.extents) {
        const LogicalDrive* array = findArray(controller, extent.array);
        if (extent.use == kUseArray &&
            (array == nullptr || extent.size < array->memberSectors ||
             std::find(array->members.begin(), array->members.end(), drive.id) == array->members.end()))
            extent.use = kUseForeign;
        if (extent.use == kUseDedicatedSpare && array == nullptr)
            extent = {kUseFree, kNoArray, extent.start, extent.size};
    }
}

// Half of the drive belongs to an array of another controller.
static void makeForeign(const Controller& controller, Drive& drive) {
    const std::uint64_t half = drive.sectors / 2 / kSectorsPerMb * kSectorsPerMb;
    if (half == 0)
        drive.extents = {{kUseForeign, lowestFreeId(controller), 0, drive.sectors}};
    else
        drive.extents = {{kUseForeign, lowestFreeId(controller), 0, half},
                         {kUseFree, kNoArray, half, drive.sectors - half}};
}

// A drive for an empty slot: of the model that was in it, or else of the first drive.
static const Drive* modelFor(const Controller& controller, std::uint32_t driveId) {
    for (const Drive& pulled : controller.pulledDrives)
        if (pulled.id == driveId)
            return &pulled;
    return controller.drives.empty() ? nullptr : &controller.drives.front();
}

static Reason checkSlot(const Controller& controller, std::uint32_t driveId) {
    if (findDrive(controller, driveId) != nullptr)
        return "the slot of " + driveName(driveId) + " is in use";
    const Drive* model = modelFor(controller, driveId);
    if (model == nullptr)
        return "there is no drive to copy the model from";
    if (model->enclosure != kNoEnclosureId && model->id == driveId &&
        findEnclosure(controller, model->enclosure) == nullptr)
        return "enclosure " + std::to_string(model->enclosure) + " has been removed";
    return "";
}

Reason insertDrive(Controller& controller, std::uint32_t driveId, NewDrive kind, std::int64_t now) {
    if (Reason reason = checkSlot(controller, driveId); !reason.empty())
        return reason;
    Drive drive = *modelFor(controller, driveId);
    if (kind == NewDrive::same && drive.id != driveId)
        return "no drive has been pulled from the slot of " + driveName(driveId);
    if (kind != NewDrive::same) {
        drive.channel = drive.id == driveId ? drive.channel : static_cast<std::uint16_t>(driveId);
        drive.id = static_cast<std::uint16_t>(driveId);
        makeBlank(controller, drive, now);
    } else {
        forget(controller.pulledDrives, driveId);
    }
    if (kind == NewDrive::foreign)
        makeForeign(controller, drive);
    matchConfiguration(controller, drive);
    const bool foreign = std::any_of(drive.extents.begin(), drive.extents.end(),
                                     [](const Extent& extent) { return extent.use == kUseForeign; });
    addEvent(controller, now, "Drive %d has been inserted%s", drive.id + 1,
             foreign ? ", with a foreign configuration" : "");
    reportStaleMembers(controller, drive, now);
    if (!controller.knownDrives.empty()) {
        controller.knownDrives.push_back(drive.id);
        std::sort(controller.knownDrives.begin(), controller.knownDrives.end());
    }
    insertInOrder(controller.drives, std::move(drive));
    return "";
}

// Bad sectors that are added where a running activity has already read do not affect it.
static void markScanned(Controller& controller, std::int64_t now) {
    for (LogicalDrive& array : controller.logicalDrives)
        if (array.activity.kind != 0)
            array.activity.scannedMb =
                std::max(array.activity.scannedMb, completedMb(controller, array.activity, now));
}

// The first bad sector: at the percentage of the drive, or earlier if the last one would be beyond the end.
static std::uint64_t startOf(const Drive& drive, std::uint64_t count, int percent) {
    const std::uint64_t wanted = drive.sectors / 100 * static_cast<std::uint64_t>(percent);
    return std::min(wanted, drive.sectors - std::min(count, drive.sectors));
}

Reason addMediaErrors(Controller& controller, std::uint32_t driveId, std::uint64_t count, int percent,
                      std::int64_t now, std::uint64_t& added) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr)
        return noSuchDrive(driveId);
    if (drive->failed)
        return driveName(driveId) + " has failed";
    markScanned(controller, now);
    const std::uint64_t before = countBadSectors(*drive);
    if (percent < 0)
        spreadBadSectors(*drive, count);
    else
        addBadSectors(*drive, startOf(*drive, count, percent), count);
    added = countBadSectors(*drive) - before;
    return added > 0 ? "" : driveName(driveId) + " has bad sectors there already";
}

Reason setSmartFailure(Controller& controller, std::uint32_t driveId, bool failure) {
    Drive* drive = findDrive(controller, driveId);
    if (drive == nullptr)
        return noSuchDrive(driveId);
    if (drive->smartFailure == failure)
        return "SMART of " + driveName(driveId) + (failure ? " predicts a failure" : " predicts no failure") +
               " already";
    drive->smartFailure = failure;
    return "";
}

} // namespace q5sim
