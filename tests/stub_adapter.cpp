// Every operation of the adapter library, forwarded to the functions of stub_adapter.h.
#include "tests/stub_adapter.h"

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

int q5_initialize(const ApiInitRecord*) {
    return respond(__func__, nullptr, 0);
}

int q5_discover(int) {
    return respond(__func__, nullptr, 0);
}

int q5_getNumberOfHBA(std::uint32_t* count) {
    return respondWithCount(__func__, count);
}

int q5_finalize() {
    return respond(__func__, nullptr, 0);
}

int q5_getControllerInfo(HbaAddress, std::uint32_t, const ControllerQuery*, void* reply, std::uint32_t size) {
    return respond(__func__, reply, size);
}

int q5_getControllerSettings(HbaAddress, std::uint32_t, const ControllerQuery*, ControllerSettings* settings,
                             std::uint32_t size) {
    return respond(__func__, settings, size);
}

int q5_setControllerSettings(HbaAddress, std::uint32_t, const ControllerQuery*, const ControllerSettings*,
                             std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_getDriverInfo(HbaAddress, std::uint32_t, DriverInfo* info) {
    return respond(__func__, info, sizeof *info);
}

int q5_getDiscoverPath(HbaAddress, DiscoverPathInfo* info, std::uint32_t size) {
    return respond(__func__, info, size);
}

int q5_getBatteryInfo(HbaAddress, std::uint32_t, const BatteryQuery*, BatteryInfo* info, std::uint32_t size) {
    return respond(__func__, info, size);
}

int q5_getBuzzerStatus(HbaAddress, std::uint32_t, std::uint8_t* state, std::uint32_t size) {
    return respond(__func__, state, size);
}

int q5_turnOnBuzzer(HbaAddress, std::uint32_t, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_turnOffBuzzer(HbaAddress, std::uint32_t, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_getEnclosureInfo(HbaAddress, std::uint32_t, const EnclosureQuery*, void* reply, std::uint32_t size) {
    return respond(__func__, reply, size);
}

int q5_getEnclosureStatus(HbaAddress, std::uint32_t, const EnclosureQuery*, EnclosureStatus* status,
                          std::uint32_t size) {
    return respond(__func__, status, size);
}

int q5_getHBAEvents(HbaAddress, std::uint32_t, EventQuery* query, void* reply, std::uint32_t size) {
    return respondWithEvents(__func__, query, reply, size);
}

int q5_getPhyDrvInfo(HbaAddress, std::uint32_t, const PhyDrvQuery*, void* reply, std::uint32_t size) {
    return respondWithList(__func__, reply, size);
}

int q5_getPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector*, void* reply, std::uint32_t size) {
    return respondWithList(__func__, reply, size);
}

int q5_setPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector*, const void*, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_getPhyDrvLocateStatus(HbaAddress, std::uint32_t, std::uint16_t, std::uint8_t* state) {
    return respond(__func__, state, sizeof *state);
}

int q5_locatePhyDrv(HbaAddress, std::uint32_t, std::uint16_t, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_stopLocatePhyDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return respond(__func__, nullptr, 0);
}

int q5_removeHBADiskMDD(HbaAddress, std::uint32_t, const DriveSelector*) {
    return respond(__func__, nullptr, 0);
}

int q5_getDataTransferSpeed(HbaAddress, std::uint32_t, const char* model, const char* firmware, int* setting,
                            std::uint32_t size) {
    recordDriveModel(model, firmware);
    return respond(__func__, setting, size);
}

int q5_setDataTransferSpeed(HbaAddress, std::uint32_t, const char* model, const char* firmware, const int*,
                            std::uint32_t) {
    recordDriveModel(model, firmware);
    return respond(__func__, nullptr, 0);
}

int q5_spareHBAExtent(HbaAddress, std::uint32_t, const ExtentPlacement*) {
    return respond(__func__, nullptr, 0);
}

int q5_addHBAExtentToArray(HbaAddress, std::uint32_t, const ExtentPlacement*) {
    return respond(__func__, nullptr, 0);
}

int q5_freeHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*) {
    return respond(__func__, nullptr, 0);
}

int q5_deleteHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*) {
    return respond(__func__, nullptr, 0);
}

int q5_splitHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_getHBAMediaPatrolProgress(HbaAddress, std::uint32_t, const DriveSelector*,
                                 MediaPatrolProgress* progress, std::uint32_t size) {
    return respond(__func__, progress, size);
}

int q5_startHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return respond(__func__, nullptr, 0);
}

int q5_stopHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return respond(__func__, nullptr, 0);
}

int q5_pauseHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return respond(__func__, nullptr, 0);
}

int q5_resumeHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return respond(__func__, nullptr, 0);
}

int q5_getLogDrvInfo(HbaAddress, std::uint32_t, const LogDrvQuery*, void* reply, std::uint32_t size) {
    return respondWithList(__func__, reply, size);
}

int q5_getLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery*, void* reply, std::uint32_t size) {
    return respondWithList(__func__, reply, size);
}

int q5_setLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery*, const void*, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_getAryLostDisk(HbaAddress, std::uint32_t, std::uint8_t, std::uint32_t* lostMask) {
    return respond(__func__, lostMask, sizeof *lostMask);
}

int q5_delDiskArray(HbaAddress, std::uint32_t, const DeleteArrayRequest*, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_locateLogDrv(HbaAddress, std::uint32_t, std::uint16_t, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_stopLocateLogDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return respond(__func__, nullptr, 0);
}

int q5_addHBAArray(HbaAddress, std::uint32_t, const CreateArrayRequest*) {
    return respond(__func__, nullptr, 0);
}

int q5_activateLogDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return respond(__func__, nullptr, 0);
}

int q5_getLogDrvInitProgress(HbaAddress, std::uint32_t, const ActivityQuery*, InitProgress* progress,
                             std::uint32_t size) {
    return respond(__func__, progress, size);
}

int q5_startLogDrvInit(HbaAddress, std::uint32_t, const InitStartRequest*, std::uint32_t) {
    return respond(__func__, nullptr, 0);
}

int q5_pauseLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_resumeLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_stopLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_getLogDrvSynchProgress(HbaAddress, std::uint32_t, const ActivityQuery*, SyncProgress* progress,
                              std::uint32_t size) {
    return respond(__func__, progress, size);
}

int q5_getRedundancyCheckProgress(HbaAddress, std::uint32_t, const ActivityQuery*, SyncProgress* progress,
                                  std::uint32_t size) {
    return respond(__func__, progress, size);
}

int q5_startRedundancyCheck(HbaAddress, std::uint32_t, const RedundancyCheckRequest*) {
    return respond(__func__, nullptr, 0);
}

int q5_pauseRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_resumeRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_stopRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_getMigrationProgress(HbaAddress, std::uint32_t, const ActivityQuery*, MigrationProgress* progress,
                            std::uint32_t size) {
    return respond(__func__, progress, size);
}

int q5_migrateHBAArray(HbaAddress, std::uint32_t, const MigrateRequest*) {
    return respond(__func__, nullptr, 0);
}

int q5_PauseMigration(HbaAddress, std::uint32_t, const ActivityQuery*) {
    return respond(__func__, nullptr, 0);
}

int q5_ResumeMigration(HbaAddress, std::uint32_t, const ActivityQuery*) {
    return respond(__func__, nullptr, 0);
}

int q5_getRebuildProgress(HbaAddress, std::uint32_t, const ActivityQuery*, RebuildProgress* progress,
                          std::uint32_t size) {
    return respond(__func__, progress, size);
}

int q5_startHBARebuildExtent(HbaAddress, std::uint32_t, std::uint8_t, const RebuildEntry*,
                             const LogDrvInfo*) {
    return respond(__func__, nullptr, 0);
}

int q5_pauseRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_resumeRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_restartRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}

int q5_stopRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return respond(__func__, nullptr, 0);
}
