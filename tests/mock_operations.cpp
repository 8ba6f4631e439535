// The adapter's operations, in the order of the headers in adapter/. Each passes its arguments, in the
// form bytesOf() describes, to the plan of the running test.
#include "tests/mock_call.h"

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

namespace {
// A buffer whose size is passed in the call.
struct Region {
    const void* start;
    std::size_t size;
};
} // namespace

// Null pointers add nothing.
static void add(Bytes* bytes, const Region& region) {
    if (region.start != nullptr)
        appendBytes(bytes, region.start, region.size);
}

static void add(Bytes* bytes, const char* text) {
    add(bytes, Region{text, text == nullptr ? 0 : std::strlen(text) + 1});
}

// A library may write into the selectors and requests it is given: none may be used twice.
template <typename Record>
static void overwrite(const Record* record) {
    if (record != nullptr)
        std::memset(const_cast<Record*>(record), 0xEE, sizeof *record);
}

template <typename Value>
static void add(Bytes* bytes, const Value& value) {
    if constexpr (std::is_pointer_v<Value>) {
        add(bytes, Region{value, sizeof *value});
        if constexpr (std::is_const_v<std::remove_pointer_t<Value>>)
            overwrite(value);
    } else
        add(bytes, Region{&value, sizeof value});
}

template <typename... Arguments>
static Bytes argumentBytes(const Arguments&... arguments) {
    Bytes bytes;
    (add(&bytes, arguments), ...);
    return bytes;
}

static void fill(void* target, std::size_t size, const Bytes& reply) {
    if (target != nullptr && !reply.empty())
        std::memcpy(target, reply.data(), reply.size() < size ? reply.size() : size);
}

static int respond(const char* operation, const Bytes& arguments, void* target = nullptr,
                   std::size_t size = 0) {
    const PlannedReply planned = nextPlannedReply(operation, arguments);
    fill(target, size, planned.reply);
    return planned.result;
}

// Session.
int q5_initialize(const ApiInitRecord* record) {
    return respond(__func__, argumentBytes(record));
}

int q5_discover(int always1) {
    return respond(__func__, argumentBytes(always1));
}

int q5_getNumberOfHBA(std::uint32_t* count) {
    return respond(__func__, argumentBytes(), count, sizeof *count);
}

int q5_finalize() {
    return respond(__func__, argumentBytes());
}

// Controllers.
int q5_getControllerInfo(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                         void* reply, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), reply, size);
}

int q5_getControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             ControllerSettings* settings, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), settings, size);
}

int q5_setControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             const ControllerSettings* settings, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, settings, size));
}

int q5_getDriverInfo(HbaAddress address, std::uint32_t reserved, DriverInfo* info) {
    return respond(__func__, argumentBytes(address, reserved), info, sizeof *info);
}

int q5_getDiscoverPath(HbaAddress address, DiscoverPathInfo* info, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, size), info, size);
}

// Batteries and buzzers.
int q5_getBatteryInfo(HbaAddress address, std::uint32_t reserved, const BatteryQuery* query,
                      BatteryInfo* info, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), info, size);
}

int q5_getBuzzerStatus(HbaAddress address, std::uint32_t reserved, std::uint8_t* state, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, size), state, size);
}

int q5_turnOnBuzzer(HbaAddress address, std::uint32_t reserved, std::uint32_t reserved2) {
    return respond(__func__, argumentBytes(address, reserved, reserved2));
}

int q5_turnOffBuzzer(HbaAddress address, std::uint32_t reserved, std::uint32_t reserved2) {
    return respond(__func__, argumentBytes(address, reserved, reserved2));
}

// Enclosures.
int q5_getEnclosureInfo(HbaAddress address, std::uint32_t reserved, const EnclosureQuery* query, void* reply,
                        std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), reply, size);
}

int q5_getEnclosureStatus(HbaAddress address, std::uint32_t reserved, const EnclosureQuery* query,
                          EnclosureStatus* status, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), status, size);
}

// Events.
int q5_getHBAEvents(HbaAddress address, std::uint32_t reserved, EventQuery* query, void* reply,
                    std::uint32_t size) {
    const Bytes arguments = argumentBytes(address, reserved, query, size);
    const PlannedReply planned = nextPlannedReply(__func__, arguments);
    fill(query, sizeof *query, planned.reply);
    const std::size_t split = planned.reply.size() < sizeof *query ? planned.reply.size() : sizeof *query;
    const Bytes events(planned.reply.begin() + static_cast<std::ptrdiff_t>(split), planned.reply.end());
    fill(reply, events.size(), events);
    return planned.result;
}

// Physical drives.
int q5_getPhyDrvInfo(HbaAddress address, std::uint32_t reserved, const PhyDrvQuery* query, void* reply,
                     std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), reply, size);
}

int q5_getPhyDrvSettings(HbaAddress address, std::uint32_t reserved, const PhyDrvSelector* selector,
                         void* reply, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, selector, size), reply, size);
}

int q5_setPhyDrvSettings(HbaAddress address, std::uint32_t reserved, const PhyDrvSelector* selector,
                         const void* settings, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, selector, Region{settings, size}, size));
}

int q5_getPhyDrvLocateStatus(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId,
                             std::uint8_t* state) {
    return respond(__func__, argumentBytes(address, reserved, driveId), state, sizeof *state);
}

int q5_locatePhyDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId,
                    std::uint32_t seconds) {
    return respond(__func__, argumentBytes(address, reserved, driveId, seconds));
}

int q5_stopLocatePhyDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId) {
    return respond(__func__, argumentBytes(address, reserved, driveId));
}

int q5_removeHBADiskMDD(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_getDataTransferSpeed(HbaAddress address, std::uint32_t reserved, const char* model,
                            const char* firmware, int* setting, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, model, firmware, size), setting, size);
}

int q5_setDataTransferSpeed(HbaAddress address, std::uint32_t reserved, const char* model,
                            const char* firmware, const int* setting, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, model, firmware, setting, size));
}

// Extents.
int q5_spareHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement) {
    return respond(__func__, argumentBytes(address, reserved, placement));
}

int q5_addHBAExtentToArray(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement) {
    return respond(__func__, argumentBytes(address, reserved, placement));
}

int q5_freeHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* extent) {
    return respond(__func__, argumentBytes(address, reserved, extent));
}

int q5_deleteHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* extent) {
    return respond(__func__, argumentBytes(address, reserved, extent));
}

int q5_splitHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* extent,
                      std::uint32_t offset) {
    return respond(__func__, argumentBytes(address, reserved, extent, offset));
}

// Media patrol.
int q5_getHBAMediaPatrolProgress(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive,
                                 MediaPatrolProgress* progress, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, drive, size), progress, size);
}

int q5_startHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_stopHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_pauseHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_resumeHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

// Logical drives.
int q5_getLogDrvInfo(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query, void* reply,
                     std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), reply, size);
}

int q5_getLogDrvSettings(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query, void* reply,
                         std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), reply, size);
}

int q5_setLogDrvSettings(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query,
                         const void* settings, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, Region{settings, size}, size));
}

int q5_getAryLostDisk(HbaAddress address, std::uint32_t reserved, std::uint8_t logDrvId,
                      std::uint32_t* lostMask) {
    return respond(__func__, argumentBytes(address, reserved, logDrvId), lostMask, sizeof *lostMask);
}

int q5_delDiskArray(HbaAddress address, std::uint32_t reserved, const DeleteArrayRequest* request,
                    std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, request, size));
}

int q5_locateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t logDrvId,
                    std::uint32_t seconds) {
    return respond(__func__, argumentBytes(address, reserved, logDrvId, seconds));
}

int q5_stopLocateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t logDrvId) {
    return respond(__func__, argumentBytes(address, reserved, logDrvId));
}

// Creation.
int q5_addHBAArray(HbaAddress address, std::uint32_t reserved, const CreateArrayRequest* request) {
    return respond(__func__, argumentBytes(address, reserved, request));
}

int q5_activateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t arrayId) {
    return respond(__func__, argumentBytes(address, reserved, arrayId));
}

// Activities.
int q5_getLogDrvInitProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                             InitProgress* progress, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), progress, size);
}

int q5_startLogDrvInit(HbaAddress address, std::uint32_t reserved, const InitStartRequest* request,
                       std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, request, size));
}

int q5_pauseLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_resumeLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_stopLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_getLogDrvSynchProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                              SyncProgress* progress, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), progress, size);
}

int q5_getRedundancyCheckProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                                  SyncProgress* progress, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), progress, size);
}

int q5_startRedundancyCheck(HbaAddress address, std::uint32_t reserved,
                            const RedundancyCheckRequest* request) {
    return respond(__func__, argumentBytes(address, reserved, request));
}

int q5_pauseRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_resumeRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_stopRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_getMigrationProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                            MigrationProgress* progress, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), progress, size);
}

int q5_migrateHBAArray(HbaAddress address, std::uint32_t reserved, const MigrateRequest* request) {
    return respond(__func__, argumentBytes(address, reserved, request));
}

int q5_PauseMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query) {
    return respond(__func__, argumentBytes(address, reserved, query));
}

int q5_ResumeMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query) {
    return respond(__func__, argumentBytes(address, reserved, query));
}

int q5_getRebuildProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                          RebuildProgress* progress, std::uint32_t size) {
    return respond(__func__, argumentBytes(address, reserved, query, size), progress, size);
}

int q5_startHBARebuildExtent(HbaAddress address, std::uint32_t reserved, std::uint8_t entryCount,
                             const RebuildEntry* entries, const LogDrvInfo* drive) {
    return respond(__func__, argumentBytes(address, reserved, entryCount,
                                           Region{entries, entryCount * sizeof *entries}, drive));
}

int q5_pauseRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_resumeRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_restartRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}

int q5_stopRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return respond(__func__, argumentBytes(address, reserved, drive));
}
