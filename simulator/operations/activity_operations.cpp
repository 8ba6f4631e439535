// The operations that show and steer activities.
#include "adapter/activity.h"

#include "simulator/engine/activities.h"
#include "simulator/engine/progress.h"
#include "simulator/engine/rebuild.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"

using namespace q5sim;

static constexpr std::uint8_t kActivityRunning = 1;
static constexpr std::uint8_t kCheckKinds = kRedundancyChecking | kSynchronizing;

// Answers a progress query: state and percent of the activity, when it is the one asked for.
template <typename Progress>
static int fillProgress(HbaAddress address, std::uint32_t reserved, std::uint8_t kind,
                        const ActivityQuery* query, Progress* progress, std::uint32_t size) {
    return replying(address, reserved, progress, size, sizeof *progress,
                    [&](const Controller& controller, std::int64_t now) {
                        const std::uint32_t wanted = kind == kMigrating ? kMigrationKind : 0;
                        const LogicalDrive* array = query != nullptr && query->kind == wanted
                                                        ? findLogicalDrive(controller, query->logDrvId)
                                                        : nullptr;
                        if (array == nullptr || array->activity.kind != kind)
                            return kRefused;
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

enum class Turn { pause, resume, stop, restart };

static bool turn(Controller& controller, LogicalDrive& array, Turn wanted, std::int64_t now) {
    Activity& activity = array.activity;
    if (wanted == (activity.paused ? Turn::pause : Turn::resume))
        return false;
    static constexpr const char* words[] = {"paused", "resumed", "stopped", "restarted"};
    if (wanted == Turn::stop) {
        array.autoRebuildInhibited = activity.kind == kRebuilding;
        abortActivity(controller, array, "stopped", now);
        return true;
    }
    checkpointProgress(controller, activity, now);
    activity.since = now;
    activity.paused = wanted == Turn::pause;
    if (wanted == Turn::restart)
        activity.completedMb = 0;
    addEvent(controller, now, "Logical drive %d: %s %s", array.logDrvId, activityName(activity.kind),
             words[static_cast<int>(wanted)]);
    return true;
}

// Steers the drive's activity when it is one of kinds (ActivityBit bits).
static int steer(HbaAddress address, std::uint32_t reserved, const std::uint32_t* logDrvId,
                 std::uint8_t kinds, Turn wanted) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        LogicalDrive* array = logDrvId != nullptr ? findLogicalDrive(controller, *logDrvId) : nullptr;
        if (array == nullptr || (array->activity.kind & kinds) == 0)
            return kRefused;
        return turn(controller, *array, wanted, now) ? kDone : kRefused;
    });
}

static const std::uint32_t* idOf(const LogDrvIdBlock* block) {
    return block != nullptr ? &block->logDrvId : nullptr;
}

static const std::uint32_t* migrationIdOf(const ActivityQuery* query) {
    return query != nullptr && query->kind == kMigrationKind ? &query->logDrvId : nullptr;
}

int q5_pauseLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kInitializing, Turn::pause);
}

int q5_resumeLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kInitializing, Turn::resume);
}

int q5_stopLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kInitializing, Turn::stop);
}

int q5_pauseRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kCheckKinds, Turn::pause);
}

int q5_resumeRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kCheckKinds, Turn::resume);
}

int q5_stopRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kCheckKinds, Turn::stop);
}

int q5_PauseMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query) {
    return steer(address, reserved, migrationIdOf(query), kMigrating, Turn::pause);
}

int q5_ResumeMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query) {
    return steer(address, reserved, migrationIdOf(query), kMigrating, Turn::resume);
}

int q5_pauseRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kRebuilding, Turn::pause);
}

int q5_resumeRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kRebuilding, Turn::resume);
}

int q5_restartRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kRebuilding, Turn::restart);
}

int q5_stopRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive) {
    return steer(address, reserved, idOf(drive), kRebuilding, Turn::stop);
}

// A synchronisation yields to an initialisation, which makes the array consistent as well.
int q5_startLogDrvInit(HbaAddress address, std::uint32_t reserved, const InitStartRequest* request,
                       std::uint32_t size) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (request == nullptr || size != sizeof *request ||
            (request->initType != 1 && request->initType != 2 && request->initType != 4))
            return kRefused;
        LogicalDrive* array = findLogicalDrive(controller, request->logDrvId);
        if (array == nullptr || functionalStatus(controller, *array) != kOnline)
            return kRefused;
        if (array->activity.kind == kSynchronizing)
            abortActivity(controller, *array, "halted for an initialization", now);
        if (array->activity.kind != 0)
            return kRefused;
        startInitialization(controller, *array, request->initType, now);
        return kDone;
    });
}

// Which activity it is: a synchronisation as long as the array has never been made consistent and may
// be mended, else a redundancy check.
int q5_startRedundancyCheck(HbaAddress address, std::uint32_t reserved,
                            const RedundancyCheckRequest* request) {
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (request == nullptr || request->noFix > 1 || request->zero5 != 0)
            return kRefused;
        LogicalDrive* array = findLogicalDrive(controller, request->logDrvId);
        if (array == nullptr || array->activity.kind != 0 || !isRedundant(array->level) ||
            functionalStatus(controller, *array) != kOnline)
            return kRefused;
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
    return changing(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (entries == nullptr || entryCount == 0 || drive == nullptr)
            return kRefused;
        std::vector<RebuildChoice> choices;
        for (std::size_t i = 0; i < entryCount; i++) {
            if (entries[i].logDrvId != drive->logDrvId)
                return kRefused;
            choices.push_back({entries[i].driveId, entries[i].extent});
        }
        LogicalDrive* array = findLogicalDrive(controller, drive->logDrvId);
        return array != nullptr && startRebuild(controller, *array, choices, now) ? kDone : kRefused;
    });
}
