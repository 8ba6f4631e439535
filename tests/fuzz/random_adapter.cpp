// An adapter that is out of its mind: every reply is filled, and every result taken, from randomReplies.
#include "tests/fuzz/random_adapter.h"
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

Bytes randomReplies;

static constexpr std::uint32_t kMostControllers = 3; // listings go through all that are reported

// Three answers of four are 0, the others have either sign.
static int answer(void* reply, std::size_t size) {
    if (size > 0)
        takeBytes(&randomReplies, reply, size);
    const auto result = takeValue<std::int8_t>(&randomReplies);
    return result >= -32 && result < 96 ? 0 : result;
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

int q5_getNumberOfHBA(std::uint32_t* count) {
    *count = takeValue<std::uint8_t>(&randomReplies) % (kMostControllers + 1);
    return 0;
}

int q5_getControllerInfo(HbaAddress, std::uint32_t, const ControllerQuery*, void* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_getPhyDrvInfo(HbaAddress, std::uint32_t, const PhyDrvQuery*, void* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_getPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector*, void* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_getLogDrvInfo(HbaAddress, std::uint32_t, const LogDrvQuery*, void* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_getControllerSettings(HbaAddress, std::uint32_t, const ControllerQuery*, ControllerSettings* reply,
                             std::uint32_t size) {
    return answer(reply, size);
}

int q5_setControllerSettings(HbaAddress, std::uint32_t, const ControllerQuery*, const ControllerSettings*,
                             std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_getDriverInfo(HbaAddress, std::uint32_t, DriverInfo* reply) {
    return answer(reply, sizeof *reply);
}

int q5_getDiscoverPath(HbaAddress, DiscoverPathInfo* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_getBatteryInfo(HbaAddress, std::uint32_t, const BatteryQuery*, BatteryInfo* reply,
                      std::uint32_t size) {
    return answer(reply, size);
}

int q5_getBuzzerStatus(HbaAddress, std::uint32_t, std::uint8_t* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_turnOnBuzzer(HbaAddress, std::uint32_t, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_turnOffBuzzer(HbaAddress, std::uint32_t, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_getEnclosureInfo(HbaAddress, std::uint32_t, const EnclosureQuery*, void* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_getEnclosureStatus(HbaAddress, std::uint32_t, const EnclosureQuery*, EnclosureStatus* reply,
                          std::uint32_t size) {
    return answer(reply, size);
}

int q5_getHBAEvents(HbaAddress, std::uint32_t, EventQuery* query, void* reply, std::uint32_t size) {
    takeBytes(&randomReplies, &query->count, sizeof query->count);
    return answer(reply, size);
}

int q5_setPhyDrvSettings(HbaAddress, std::uint32_t, const PhyDrvSelector*, const void*, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_getPhyDrvLocateStatus(HbaAddress, std::uint32_t, std::uint16_t, std::uint8_t* reply) {
    return answer(reply, sizeof *reply);
}

int q5_locatePhyDrv(HbaAddress, std::uint32_t, std::uint16_t, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_stopLocatePhyDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return answer(nullptr, 0);
}

int q5_removeHBADiskMDD(HbaAddress, std::uint32_t, const DriveSelector*) {
    return answer(nullptr, 0);
}

int q5_getDataTransferSpeed(HbaAddress, std::uint32_t, const char*, const char*, int* reply,
                            std::uint32_t size) {
    return answer(reply, size);
}

int q5_setDataTransferSpeed(HbaAddress, std::uint32_t, const char*, const char*, const int*, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_spareHBAExtent(HbaAddress, std::uint32_t, const ExtentPlacement*) {
    return answer(nullptr, 0);
}

int q5_addHBAExtentToArray(HbaAddress, std::uint32_t, const ExtentPlacement*) {
    return answer(nullptr, 0);
}

int q5_freeHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*) {
    return answer(nullptr, 0);
}

int q5_deleteHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*) {
    return answer(nullptr, 0);
}

int q5_splitHBAExtent(HbaAddress, std::uint32_t, const ExtentRef*, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_getHBAMediaPatrolProgress(HbaAddress, std::uint32_t, const DriveSelector*, MediaPatrolProgress* reply,
                                 std::uint32_t size) {
    return answer(reply, size);
}

int q5_startHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return answer(nullptr, 0);
}

int q5_stopHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return answer(nullptr, 0);
}

int q5_pauseHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return answer(nullptr, 0);
}

int q5_resumeHBAMediaPatrol(HbaAddress, std::uint32_t, const DriveSelector*) {
    return answer(nullptr, 0);
}

int q5_getLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery*, void* reply, std::uint32_t size) {
    return answer(reply, size);
}

int q5_setLogDrvSettings(HbaAddress, std::uint32_t, const LogDrvQuery*, const void*, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_getAryLostDisk(HbaAddress, std::uint32_t, std::uint8_t, std::uint32_t* reply) {
    return answer(reply, sizeof *reply);
}

int q5_delDiskArray(HbaAddress, std::uint32_t, const DeleteArrayRequest*, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_locateLogDrv(HbaAddress, std::uint32_t, std::uint16_t, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_stopLocateLogDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return answer(nullptr, 0);
}

int q5_addHBAArray(HbaAddress, std::uint32_t, const CreateArrayRequest*) {
    return answer(nullptr, 0);
}

int q5_activateLogDrv(HbaAddress, std::uint32_t, std::uint16_t) {
    return answer(nullptr, 0);
}

int q5_getLogDrvInitProgress(HbaAddress, std::uint32_t, const ActivityQuery*, InitProgress* reply,
                             std::uint32_t size) {
    return answer(reply, size);
}

int q5_startLogDrvInit(HbaAddress, std::uint32_t, const InitStartRequest*, std::uint32_t) {
    return answer(nullptr, 0);
}

int q5_pauseLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_resumeLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_stopLogDrvInit(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_getLogDrvSynchProgress(HbaAddress, std::uint32_t, const ActivityQuery*, SyncProgress* reply,
                              std::uint32_t size) {
    return answer(reply, size);
}

int q5_getRedundancyCheckProgress(HbaAddress, std::uint32_t, const ActivityQuery*, SyncProgress* reply,
                                  std::uint32_t size) {
    return answer(reply, size);
}

int q5_startRedundancyCheck(HbaAddress, std::uint32_t, const RedundancyCheckRequest*) {
    return answer(nullptr, 0);
}

int q5_pauseRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_resumeRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_stopRedundancyCheck(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_getMigrationProgress(HbaAddress, std::uint32_t, const ActivityQuery*, MigrationProgress* reply,
                            std::uint32_t size) {
    return answer(reply, size);
}

int q5_migrateHBAArray(HbaAddress, std::uint32_t, const MigrateRequest*) {
    return answer(nullptr, 0);
}

int q5_PauseMigration(HbaAddress, std::uint32_t, const ActivityQuery*) {
    return answer(nullptr, 0);
}

int q5_ResumeMigration(HbaAddress, std::uint32_t, const ActivityQuery*) {
    return answer(nullptr, 0);
}

int q5_getRebuildProgress(HbaAddress, std::uint32_t, const ActivityQuery*, RebuildProgress* reply,
                          std::uint32_t size) {
    return answer(reply, size);
}

int q5_startHBARebuildExtent(HbaAddress, std::uint32_t, std::uint8_t, const RebuildEntry*,
                             const LogDrvInfo*) {
    return answer(nullptr, 0);
}

int q5_pauseRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_resumeRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_restartRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}

int q5_stopRebuild(HbaAddress, std::uint32_t, const LogDrvIdBlock*) {
    return answer(nullptr, 0);
}
