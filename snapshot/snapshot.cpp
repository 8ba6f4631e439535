// Looking things up in a snapshot, and what follows from its records.
#include "snapshot/snapshot.h"

#include <algorithm>

const Controller* findController(const Snapshot& snapshot, std::uint32_t id) {
    for (const Controller& controller : snapshot.controllers)
        if (controller.id == id)
            return &controller;
    return nullptr;
}

const Drive* findDrive(const Controller& controller, std::uint32_t number) {
    for (const Drive& drive : controller.drives)
        if (drive.number == number)
            return &drive;
    return nullptr;
}

const LogicalDrive* findLogicalDrive(const Controller& controller, std::uint32_t logDrvId) {
    for (const LogicalDrive& drive : controller.logicalDrives)
        if (drive.info.logDrvId == logDrvId)
            return &drive;
    return nullptr;
}

const LogicalDrive* findArray(const Controller& controller, std::uint16_t arrayId) {
    for (const LogicalDrive& drive : controller.logicalDrives)
        if (drive.info.arrayId == arrayId)
            return &drive;
    return nullptr;
}

const Enclosure* findEnclosure(const Controller& controller, std::uint32_t id) {
    for (const Enclosure& enclosure : controller.enclosures)
        if (enclosure.id == id)
            return &enclosure;
    return nullptr;
}

bool hasFault(const Controller& controller, std::string_view operation) {
    return std::any_of(controller.faults.begin(), controller.faults.end(),
                       [&](const Fault& fault) { return fault.operation == operation; });
}

bool isInaccessible(const Drive& drive) {
    const auto all = extents(drive.info);
    return !all.empty() && std::none_of(all.begin(), all.end(), [](const ExtentEntry& extent) {
        return (extent.access & kExtentAccessible) != 0;
    });
}

const ExtentEntry* memberExtent(const Drive& drive, std::uint16_t arrayId) {
    for (const ExtentEntry& extent : extents(drive.info))
        if (extent.arrayId == arrayId && (extent.assignment & kExtentAssigned) != 0)
            return &extent;
    return nullptr;
}

static Member makeMember(const Controller& controller, std::uint32_t number, bool lost, bool named) {
    Member member;
    member.number = number;
    member.lost = lost;
    member.named = named;
    if (const Drive* drive = findDrive(controller, number)) {
        member.listed = true;
        member.serial = fieldText(drive->info.serial);
        member.channel = drive->info.channel;
        member.enclosureId = drive->info.enclosureId;
    }
    return member;
}

void resolveMembers(const Controller& controller, LogicalDrive* drive) {
    static constexpr std::uint32_t kMaskBits = 32;
    std::uint32_t left = drive->lostMask.value_or(0);
    drive->members.clear();
    for (int i = 0; i < boundedMemberCount(drive->info); ++i) {
        const std::uint32_t id = drive->info.memberIds[i];
        const std::uint32_t bit = id < kMaskBits ? std::uint32_t{1} << id : 0;
        drive->members.push_back(
            makeMember(controller, id + 1, (drive->lostMask.value_or(0) & bit) != 0, true));
        left &= ~bit;
    }
    for (std::uint32_t id = 0; id < kMaskBits; ++id)
        if ((left >> id & 1) != 0)
            drive->members.push_back(makeMember(controller, id + 1, true, false));
}

std::string faultText(const Fault& fault) {
    const std::string value = std::to_string(fault.value);
    switch (fault.kind) {
    case FaultKind::overrun:
        return fault.operation + " wrote beyond its buffer of " + value + " bytes";
    case FaultKind::impossible:
        return fault.operation + " returned the impossible count " + value;
    case FaultKind::repeated:
        return fault.operation + " listed ID " + value + " twice or out of order";
    case FaultKind::foreign:
        return fault.operation + " answered for ID " + value + " instead";
    default:
        return fault.operation + " failed with result " + value;
    }
}
