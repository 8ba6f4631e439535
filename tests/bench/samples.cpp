// The records of the largest configuration.
#include "tests/bench/samples.h"

#include <cstdio>

#include "adapter/enclosure.h"

static constexpr int kDrives = static_cast<int>(kMaxDrives), kArraysPerRound = kDrives / 2;
static constexpr std::uint64_t kExtentSectors = 40'000'000;

static ExtentEntry sampleExtent(int drive, int index) {
    ExtentEntry extent = {};
    extent.index = static_cast<std::uint16_t>(index);
    extent.assignment = kExtentAssigned;
    extent.access = kExtentAccessible;
    extent.state = kExtentOnline;
    extent.arrayId = static_cast<std::uint16_t>(index * kArraysPerRound + drive / 2);
    extent.start = kExtentSectors * static_cast<std::uint64_t>(index);
    extent.size = kExtentSectors;
    return extent;
}

PhyDrvInfo sampleDrive(int id) {
    PhyDrvInfo drive = {};
    drive.driveId = static_cast<std::uint16_t>(id);
    drive.channel = static_cast<std::uint16_t>(id);
    drive.enclosureId = 0;
    drive.capacity = kExtentSectors * kMaxExtents;
    drive.cylinders = 16383;
    drive.heads = 16;
    drive.sectorsPerTrack = 63;
    std::snprintf(drive.model, sizeof drive.model, "Model 400 Series %d", id);
    std::snprintf(drive.serial, sizeof drive.serial, "SERIAL-%06d", id);
    std::snprintf(drive.firmware, sizeof drive.firmware, "FW-2.%d", id);
    drive.dmaMode = 6;
    drive.extentCount = kMaxExtents;
    for (int i = 0; i < static_cast<int>(kMaxExtents); ++i)
        drive.extent[i] = sampleExtent(id, i);
    return drive;
}

PhyDrvSettings sampleDriveSettings(int id) {
    PhyDrvSettings settings = {};
    settings.pdId = static_cast<std::uint16_t>(id);
    settings.writeCache = settings.smartCheck = 1;
    settings.ncqSupported = settings.ncqEnabled = 1;
    return settings;
}

const char* sampleMembers(int logDrv) {
    static const char* const texts[kArraysPerRound] = {"(1,2)",  "(3,4)",   "(5,6)",   "(7,8)",
                                                       "(9,10)", "(11,12)", "(13,14)", "(15,16)"};
    return texts[logDrv % kArraysPerRound];
}

const char* sampleExtents(int logDrv) {
    static const char* const texts[kMaxExtents] = {
        "(0,0)", "(1,1)", "(2,2)",   "(3,3)",   "(4,4)",   "(5,5)",   "(6,6)",   "(7,7)",
        "(8,8)", "(9,9)", "(10,10)", "(11,11)", "(12,12)", "(13,13)", "(14,14)", "(15,15)",
    };
    return texts[logDrv / kArraysPerRound];
}

LogDrvInfo sampleLogDrv(int id) {
    LogDrvInfo drive = {};
    drive.arrayId = drive.logDrvId = static_cast<std::uint16_t>(id);
    drive.raidLevel = kRaid1;
    drive.functionalStatus = kOnline;
    drive.writeCacheMode = kWriteBack;
    drive.sectorCount = kExtentSectors;
    drive.diskCount = 2;
    drive.stripeBlocks = 64;
    std::snprintf(drive.name, sizeof drive.name, "Array %d", id);
    drive.memberIds[0] = static_cast<std::uint8_t>(2 * id % kDrives);
    drive.memberIds[1] = static_cast<std::uint8_t>(drive.memberIds[0] + 1);
    drive.sectorSize = 512;
    return drive;
}

LogDrvSettings sampleLogDrvSettings(int id) {
    LogDrvSettings settings = {};
    settings.cacheFlags = kWriteBack;
    std::snprintf(settings.name, sizeof settings.name, "Array %d", id);
    settings.consolidation = 1;
    settings.lookahead = 4;
    return settings;
}

HBAEvent sampleEvent(int id) {
    HBAEvent event = {};
    event.eventId = 0x100u + static_cast<std::uint32_t>(id);
    std::snprintf(event.description, sizeof event.description, "Controller settings changed, number %d", id);
    return event;
}
