// Controllers for plans, and the texts of a plan.
#pragma once

#include <gtest/gtest.h>

#include <cstring>

#include "tools/restore/plan.h"

// A controller with drives of one free extent each.
inline Controller controllerWith(std::uint32_t drives, std::uint64_t sectors) {
    Controller controller;
    controller.settings = ControllerSettings{};
    controller.buzzer = 1;
    for (std::uint32_t number = 1; number <= drives; ++number) {
        Drive drive;
        drive.number = number;
        drive.info.driveId = static_cast<std::uint16_t>(number - 1);
        drive.info.serial[0] = static_cast<char>('A' + number);
        drive.info.extentCount = 1;
        drive.info.extent[0] = {0,        0,  0, 0,      kExtentFree | kExtentAccessible, kExtentOnline,
                                kNoArray, {}, 0, sectors};
        drive.settings = PhyDrvSettings{};
        controller.drives.push_back(drive);
    }
    return controller;
}

inline void addExtent(Drive* drive, std::uint8_t assignment, std::uint16_t arrayId, std::uint64_t start,
                      std::uint64_t size) {
    const std::uint8_t index = drive->info.extentCount++;
    const std::uint8_t access = assignment == 0 ? kExtentFree | kExtentAccessible : kExtentAccessible;
    drive->info.extent[index] = {index, 0, assignment, 0, access, kExtentOnline, arrayId, {}, start, size};
}

// A mirror on the second of three extents of drives 1 and 2.
inline Controller controllerWithMirror() {
    Controller controller = controllerWith(2, 40960);
    for (Drive& drive : controller.drives) {
        drive.info.extentCount = 0;
        addExtent(&drive, 0, kNoArray, 0, 4096);
        addExtent(&drive, kExtentAssigned, 5, 4096, 8192);
        addExtent(&drive, 0, kNoArray, 12288, 28672);
    }
    LogicalDrive mirror;
    mirror.info.arrayId = 5;
    mirror.info.raidLevel = kRaid1;
    mirror.info.functionalStatus = kOnline;
    mirror.info.sectorCount = 8192;
    mirror.info.diskCount = 2;
    mirror.info.stripeBlocks = 64;
    mirror.info.sectorSize = 512;
    std::strcpy(mirror.info.name, "Mirror");
    mirror.info.memberIds[1] = 1;
    mirror.settings = LogDrvSettings{};
    controller.logicalDrives.push_back(mirror);
    return controller;
}

// Drive 2 is gone, and with it the place of the second member.
inline Controller controllerWithHalfAMirror() {
    Controller controller = controllerWithMirror();
    controller.drives.pop_back();
    controller.logicalDrives[0].info.functionalStatus = kCritical;
    controller.logicalDrives[0].lostMask = 2;
    for (LogicalDrive& drive : controller.logicalDrives)
        resolveMembers(controller, &drive);
    return controller;
}

inline std::vector<std::string> textsOf(const Plan& plan) {
    std::vector<std::string> texts;
    for (const Step& step : plan.steps)
        texts.push_back(step.text);
    return texts;
}

using Texts = std::vector<std::string>;
