// A stub adapter: two controllers with 16 drives and two logical drives each. It is stateless. Every
// other operation succeeds and leaves the caller's cleared buffer unchanged.
#include <cstring>

#include "adapter/activity.h"
#include "adapter/battery.h"
#include "adapter/controller.h"
#include "adapter/creation.h"
#include "adapter/enclosure.h"
#include "adapter/event.h"
#include "adapter/extent.h"
#include "adapter/logdrv.h"
#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"
#include "adapter/session.h"

static constexpr std::uint32_t kControllers = 2;
static constexpr std::uint16_t kDrives = 16;
static constexpr std::uint16_t kLogDrvs = 2;

// Fills a list reply with the records from first on: as many as exist, were requested and fit.
template <typename Record>
static int list(void* reply, std::uint32_t size, std::uint32_t first, std::uint32_t requested,
                std::uint16_t total, std::uint16_t Record::*id) {
    ReplyHeader header = {};
    header.bytesUsed = sizeof header;
    auto* next = static_cast<std::uint8_t*>(reply) + sizeof header;
    for (std::uint32_t i = first; i < total && i - first < requested; ++i) {
        if (header.bytesUsed + sizeof(Record) > size)
            break;
        Record record = {};
        record.*id = static_cast<std::uint16_t>(i);
        std::memcpy(next, &record, sizeof record);
        next += sizeof record;
        header.bytesUsed += static_cast<std::uint32_t>(sizeof record);
    }
    std::memcpy(reply, &header, sizeof header);
    return 0;
}

int q5_getNumberOfHBA(std::uint32_t* count) {
    *count = kControllers;
    return 0;
}

int q5_getControllerInfo(HbaAddress, std::uint32_t, const ControllerQuery* query, void* reply,
                         std::uint32_t size) {
    if (query->infoClass == kGeneralInfo && size == sizeof(ControllerInfo)) {
        ControllerInfo info = {};
        info.diskCount = kDrives;
        std::memcpy(reply, &info, sizeof info);
    }
    return 0;
}

int q5_getPhyDrvInfo(HbaAddress, std::uint32_t, const PhyDrvQuery* query, void* reply, std::uint32_t size) {
    return list<PhyDrvInfo>(reply, size, query->firstDriveId, query->count, kDrives, &PhyDrvInfo::driveId);
}

int q5_getPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector* selector, void* reply,
                         std::uint32_t size) {
    return list<PhyDrvSettings>(reply, size, selector->driveId, selector->count, kDrives,
                                &PhyDrvSettings::pdId);
}

int q5_getLogDrvInfo(HbaAddress, std::uint32_t, const LogDrvQuery* query, void* reply, std::uint32_t size) {
    return list<LogDrvInfo>(reply, size, query->logDrvId, query->count, kLogDrvs, &LogDrvInfo::logDrvId);
}

int q5_initialize(const ApiInitRecord*) {
    return 0;
}

int q5_discover(int) {
    return 0;
}

int q5_finalize() {
    return 0;
}

int q5_getControllerSettings(HbaAddress, std::uint32_t, const ControllerQuery*, ControllerSettings*,
                             std::uint32_t) {
    return 0;
}

int q5_setControllerSettings(HbaAddress, std::uint32_t, const ControllerQuery*, const ControllerSettings*,
                             std::uint32_t) {
    return 0;
}

int q5_getDriverInfo(HbaAddress, std::uint32_t, DriverInfo*) {
    return 0;
}

int q5_getDiscoverPath(HbaAddress, DiscoverPathInfo*, std::uint32_t) {
    return 0;
}

int q5_getBatteryInfo(HbaAddress, std::uint32_t, const BatteryQuery*, BatteryInfo*, std::uint32_t) {
    return 0;
}

int q5_getBuzzerStatus(HbaAddress, std::uint32_t, std::uint8_t*, std::uint32_t) {
    return 0;
}

int q5_turnOnBuzzer(HbaAddress, std::uint32_t, std::uint32_t) {
    return 0;
}

int q5_turnOffBuzzer(HbaAddress, std::uint32_t, std::uint32_t) {
    return 0;
}

int q5_getEnclosureInfo(HbaAddress, std::uint32_t, const EnclosureQuery*, void*, std::uint32_t) {
    return 0;
}

int q5_getEnclosureStatus(HbaAddress, std::uint32_t, const EnclosureQuery*, EnclosureStatus*, std::uint32_t) {
    return 0;
}

int q5_getHBAEvents(HbaAddress, std::uint32_t, EventQuery*, void*, std::uint32_t) {
    return 0;
}

int q5_setPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector*, const void*, std::uint32_t) {
    return 0;
}

int q5_getPhyDrvLocateStatus(HbaAddress, std::uint32_t, std::uint16_t, std::uint8_t*) {
    return 0;
}

int q5_locatePhyDrv(HbaAddress, std::uint32_t, std::uint16_t, std::uint32_t) {
    return 0;
}

int q5_stopLocatePhyDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return 0;
}

int q5_removeHBADiskMDD(HbaAddress, std::uint32_t, const DriveSelector*) {
    return 0;
}

int q5_getDataTransferSpeed(HbaAddress, std::uint32_t, const char*, const char*, int*, std::uint32_t) {
    return 0;
}

int q5_setDataTransferSpeed(HbaAddress, std::uint32_t, const char*, const char*, const int*, std::uint32_t) {
    return 0;
}

int q5_spareHBAExtent(HbaAddress, std::uint32_t, const ExtentPlacement*) {
    return 0;
}

int q5_addHBAExtentToArray(HbaAddress, std::uint32_t, const ExtentPlacement*) {
    return 0;
}

int q5_freeHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*) {
    return 0;
}

int q5_deleteHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*) {
    return 0;
}

int q5_splitHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*, std::uint32_t) {
    return 0;
}

int q5_getHBAMediaPatrolProgress(HbaAddress, std::uint32_t, const DriveSelector*, MediaPatrolProgress*,
                                 std::uint32_t) {
    return 0;
}

int q5_startHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return 0;
}

int q5_stopHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return 0;
}

int q5_pauseHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return 0;
}

int q5_resumeHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return 0;
}

int q5_getLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery*, void*, std::uint32_t) {
    return 0;
}

int q5_setLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery*, const void*, std::uint32_t) {
    return 0;
}

int q5_getAryLostDisk(HbaAddress, std::uint32_t, std::uint8_t, std::uint32_t*) {
    return 0;
}

int q5_delDiskArray(HbaAddress, std::uint32_t, const DeleteArrayRequest*, std::uint32_t) {
    return 0;
}

int q5_locateLogDrv(HbaAddress, std::uint32_t, std::uint16_t, std::uint32_t) {
    return 0;
}

int q5_stopLocateLogDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return 0;
}

int q5_addHBAArray(HbaAddress, std::uint32_t, const CreateArrayRequest*) {
    return 0;
}

int q5_activateLogDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return 0;
}

int q5_getLogDrvInitProgress(HbaAddress, std::uint32_t, const ActivityQuery*, InitProgress*, std::uint32_t) {
    return 0;
}

int q5_startLogDrvInit(HbaAddress, std::uint32_t, const InitStartRequest*, std::uint32_t) {
    return 0;
}

int q5_pauseLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_resumeLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_stopLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_getLogDrvSynchProgress(HbaAddress, std::uint32_t, const ActivityQuery*, SyncProgress*, std::uint32_t) {
    return 0;
}

int q5_getRedundancyCheckProgress(HbaAddress, std::uint32_t, const ActivityQuery*, SyncProgress*,
                                  std::uint32_t) {
    return 0;
}

int q5_startRedundancyCheck(HbaAddress, std::uint32_t, const RedundancyCheckRequest*) {
    return 0;
}

int q5_pauseRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_resumeRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_stopRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_getMigrationProgress(HbaAddress, std::uint32_t, const ActivityQuery*, MigrationProgress*,
                            std::uint32_t) {
    return 0;
}

int q5_migrateHBAArray(HbaAddress, std::uint32_t, const MigrateRequest*) {
    return 0;
}

int q5_PauseMigration(HbaAddress, std::uint32_t, const ActivityQuery*) {
    return 0;
}

int q5_ResumeMigration(HbaAddress, std::uint32_t, const ActivityQuery*) {
    return 0;
}

int q5_getRebuildProgress(HbaAddress, std::uint32_t, const ActivityQuery*, RebuildProgress*, std::uint32_t) {
    return 0;
}

int q5_startHBARebuildExtent(HbaAddress, std::uint32_t, std::uint8_t, const RebuildEntry*,
                             const LogDrvInfo*) {
    return 0;
}

int q5_pauseRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_resumeRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_restartRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}

int q5_stopRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return 0;
}
