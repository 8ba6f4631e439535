// The operations that show and control activities.
#include "adapter/activity.h"

#include "simulator/engine/activities.h"
#include "simulator/engine/progress.h"
#include "simulator/engine/rebuild.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"

using namespace q5sim;

static constexpr std::uint8_t kActivityRunning = 1;
static constexpr std::uint8_t kCheckKinds = kRedundancyChecking | kSynchronizing;

// Fills a progress reply when the array has an activity of this kind.
template <typename Progress>
static int fillProgress(const Caller& caller, std::uint32_t reserved, std::uint8_t kind,
                        const ActivityQuery* query, Progress* progress, std::uint32_t size) {
    return fillReply(caller, reserved, progress, size, sizeof *progress,
                     [&](const Controller& controller, std::int64_t now) {
                         const std::uint32_t wanted = kind == kMigrating ? kMigrationKind : 0;
                         const LogicalDrive* array = query != nullptr && query->kind == wanted
                                                         ? findLogicalDrive(controller, query->logDrvId)
                                                         : nullptr;
                         if (array == nullptr || array->activity.kind != kind)
                             return refuse("%s progress: the logical drive has no such activity",
                                           activityName(kind));
                         progress->header.bytesUsed = sizeof *progress;
                         progress->state = array->activity.paused ? kActivityPaused : kActivityRunning;
                         progress->percent = percentDone(controller, array->activity, now);
                         return kDone;
                     });
}

int q5_getLogDrvInitProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                             InitProgress* progress, std::uint32_t size) {
    return fillProgress(address, reserved, kInitializing, query, progress, size);
}

int q5_getLogDrvSynchProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                              SyncProgress* progress, std::uint32_t size) {
    return fillProgress(address, reserved, kSynchronizing, query, progress, size);
}

int q5_getRedundancyCheckProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                                  SyncProgress* progress, std::uint32_t size) {
    return fillProgress(address, reserved, kRedundancyChecking, query, progress, size);
}

int q5_getMigrationProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                            MigrationProgress* progress, std::uint32_t size) {
    return fillProgress(address, reserved, kMigrating, query, progress, size);
}

int q5_getRebuildProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                          RebuildProgress* progress, std::uint32_t size) {
    return fillProgress(address, reserved, kRebuilding, query, progress, size);
}

enum class Control { pause, resume, stop, restart };

static bool applyControl(Controller& controller, LogicalDrive& array, Control control, std::int64_t now) {
    Activity& activity = array.activity;
    if (control == (activity.paused ? Control::pause : Control::resume))
        return false;
    static constexpr const char* words[] = {"paused", "resumed", "stopped", "restarted"};
    if (control == Control::stop) {
        array.autoRebuildInhibited = activity.kind == kRebuilding;
        abortActivity(controller, array, "stopped", now);
        return true;
    }
    checkpointProgress(controller, activity, now);
    activity.since = now;
    activity.paused = control == Control::pause;
    if (control == Control::restart)
        activity.completedMb = 0;
    addEvent(controller, now, "Logical drive %d: %s %s", array.logDrvId, activityName(activity.kind),
             words[static_cast<int>(control)]);
    return true;
}

static std::uint8_t lowestBit(std::uint8_t bits) {
    return static_cast<std::uint8_t>(bits & -bits);
}

// Controls the array's activity when it is one of kinds (ActivityBit bits).
static int controlActivity(const Caller& caller, std::uint32_t reserved, const std::uint32_t* logDrvId,
                           std::uint8_t kinds, Control control) {
    return updateController(caller, reserved, [&](Controller& controller, std::int64_t now) {
        LogicalDrive* array = logDrvId != nullptr ? findLogicalDrive(controller, *logDrvId) : nullptr;
        if (array == nullptr)
            return refuse("there is no such logical drive");
        if ((array->activity.kind & kinds) == 0)
            return refuse("logical drive %d has no %s", array->logDrvId, activityName(lowestBit(kinds)));
        if (!applyControl(controller, *array, control, now))
            return refuse("%s of logical drive %d is %s already", activityName(array->activity.kind),
                          array->logDrvId, array->activity.paused ? "paused" : "running");
        return kDone;
    });
}

static const std::uint32_t* idOf(const LogDrvIdBlock* block) {
    return block != nullptr ? &block->logDrvId : nullptr;
}

static const std::uint32_t* migrationIdOf(const ActivityQuery* query) {
    return query != nullptr && query->kind == kMigrationKind ? &query->logDrvId : nullptr;
}

int q5_pauseLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kInitializing, Control::pause);
}

int q5_resumeLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kInitializing, Control::resume);
}

int q5_stopLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kInitializing, Control::stop);
}

int q5_pauseRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kCheckKinds, Control::pause);
}

int q5_resumeRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kCheckKinds, Control::resume);
}

int q5_stopRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kCheckKinds, Control::stop);
}

int q5_PauseMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query) {
    return controlActivity(address, reserved, migrationIdOf(query), kMigrating, Control::pause);
}

int q5_ResumeMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query) {
    return controlActivity(address, reserved, migrationIdOf(query), kMigrating, Control::resume);
}

int q5_pauseRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kRebuilding, Control::pause);
}

int q5_resumeRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kRebuilding, Control::resume);
}

int q5_restartRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kRebuilding, Control::restart);
}

int q5_stopRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return controlActivity(address, reserved, idOf(drive), kRebuilding, Control::stop);
}

// An initialization replaces a synchronization: it makes the array consistent as well.
int q5_startLogDrvInit(HbaAddress address, std::uint32_t reserved, const InitStartRequest* request,
                       std::uint32_t size) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (request == nullptr || size != sizeof *request ||
            (request->initType != 1 && request->initType != 2 && request->initType != 4))
            return refuse("initialization: the request is invalid");
        LogicalDrive* array = findLogicalDrive(controller, request->logDrvId);
        if (array == nullptr)
            return refuse("initialization: there is no logical drive %u", request->logDrvId);
        if (functionalStatus(controller, *array) != kOnline)
            return refuse("initialization of logical drive %d: it is %s", array->logDrvId,
                          statusName(functionalStatus(controller, *array)));
        if (array->activity.kind == kSynchronizing)
            abortActivity(controller, *array, "halted for an initialization", now);
        if (array->activity.kind != 0)
            return refuse("initialization of logical drive %d: it has another activity", array->logDrvId);
        startInitialization(controller, *array, request->initType, now);
        return kDone;
    });
}

// Why a redundancy check is refused; nullptr: it is not.
static const char* checkRefusal(const Controller& controller, const LogicalDrive& array) {
    if (array.activity.kind != 0)
        return "has another activity";
    if (!isRedundant(array.level))
        return "is not redundant";
    return functionalStatus(controller, array) != kOnline ? "is not online" : nullptr;
}

// Starts a synchronization while the array is not synchronized and may be repaired, else a redundancy
// check.
int q5_startRedundancyCheck(HbaAddress address, std::uint32_t reserved,
                            const RedundancyCheckRequest* request) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (request == nullptr || request->noFix > 1 || request->zero5 != 0)
            return refuse("redundancy check: the request is invalid");
        LogicalDrive* array = findLogicalDrive(controller, request->logDrvId);
        if (array == nullptr)
            return refuse("redundancy check: there is no logical drive %u", request->logDrvId);
        if (const char* reason = checkRefusal(controller, *array))
            return refuse("redundancy check of logical drive %d: it %s", array->logDrvId, reason);
        if (request->noFix == 0 && !array->synchronized) {
            startSynchronization(controller, *array, now);
            return kDone;
        }
        startActivity(*array, kRedundancyChecking, array->memberSectors / kSectorsPerMb, now);
        array->activity.noFix = request->noFix != 0;
        addEvent(controller, now, "Logical drive %d: redundancy check started", array->logDrvId);
        return kDone;
    });
}

int q5_startHBARebuildExtent(HbaAddress address, std::uint32_t reserved, std::uint8_t entryCount,
                             const RebuildEntry* entries, const LogDrvInfo* drive) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (entries == nullptr || entryCount == 0 || drive == nullptr)
            return refuse("rebuild: the request is invalid");
        std::vector<RebuildChoice> choices;
        for (std::size_t i = 0; i < entryCount; i++) {
            if (entries[i].logDrvId != drive->logDrvId)
                return refuse("rebuild: an entry names another logical drive");
            choices.push_back({entries[i].driveId, entries[i].extent});
        }
        LogicalDrive* array = findLogicalDrive(controller, drive->logDrvId);
        if (array == nullptr)
            return refuse("rebuild: there is no logical drive %d", drive->logDrvId);
        if (const std::string reason = rebuildRefusal(controller, *array, choices); !reason.empty())
            return refuse("rebuild of logical drive %d: %s", array->logDrvId, reason.c_str());
        startRebuild(controller, *array, choices, now);
        return kDone;
    });
}
