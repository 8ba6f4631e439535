// Reading a controller's logical drives, their lost members and the progress of their activities.
#include "snapshot/read.h"

template <auto operation, typename Progress>
static bool readProgress(const Reading& reading, const LogDrvInfo& info, ActivityBit kind,
                         Activity* activity) {
    const ActivityQuery query = {info.logDrvId, kind == kMigrating ? kMigrationKind : 0};
    const auto progress = readReply<operation, Progress>(reading, query);
    if (!progress)
        return false;
    *activity = {kind, progress->state, progress->percent};
    if (activity->percent > 100)
        addFault<operation>(reading.faults, FaultKind::impossible, activity->percent);
    return true;
}

struct ProgressOperation {
    ActivityBit kind;
    bool (*read)(const Reading& reading, const LogDrvInfo& info, ActivityBit kind, Activity* activity);
};

static constexpr ProgressOperation progressOperations[] = {
    {kRebuilding, readProgress<q5_getRebuildProgress, RebuildProgress>},
    {kInitializing, readProgress<q5_getLogDrvInitProgress, InitProgress>},
    {kRedundancyChecking, readProgress<q5_getRedundancyCheckProgress, SyncProgress>},
    {kSynchronizing, readProgress<q5_getLogDrvSynchProgress, SyncProgress>},
    {kMigrating, readProgress<q5_getMigrationProgress, MigrationProgress>},
};

static std::optional<std::uint32_t> readLostMask(const Reading& reading, const LogDrvInfo& info) {
    Guarded<std::uint32_t> reply;
    const bool done = readRecord<q5_getAryLostDisk>(reading.faults, &reply, [&](std::uint32_t* mask) {
        return callReadOnly<q5_getAryLostDisk>(reading.address, 0u, static_cast<std::uint8_t>(info.logDrvId),
                                               mask);
    });
    return done ? std::optional(reply.record) : std::nullopt;
}

static LogicalDrive readLogicalDrive(const Controller& controller, const LogDrvInfo& info) {
    LogicalDrive drive;
    drive.info = info;
    const Reading reading = {hbaAddress(controller.id), &drive.faults};
    if (info.diskCount > kMaxArrayMembers)
        addFault<q5_getLogDrvInfo>(&drive.faults, FaultKind::impossible, info.diskCount);
    const LogDrvQuery query = {info.logDrvId, 1};
    drive.settings = readOne<q5_getLogDrvSettings, LogDrvSettings>(reading, query);
    drive.lostMask = readLostMask(reading, info);
    resolveMembers(controller, &drive);
    for (const ProgressOperation& operation : progressOperations) {
        Activity activity;
        if ((info.activityStatus & operation.kind) != 0 &&
            operation.read(reading, info, operation.kind, &activity))
            drive.activities.push_back(activity);
    }
    return drive;
}

void readLogicalDrives(Controller* controller) {
    const LogDrvQuery query = {0, kMaxLogDrvs};
    const auto list = readList<q5_getLogDrvInfo, LogDrvInfo, kMaxLogDrvs>(
        {hbaAddress(controller->id), &controller->faults}, query);
    for (const LogDrvInfo& info : list.value_or(std::vector<LogDrvInfo>()))
        if (findLogicalDrive(*controller, info.logDrvId) != nullptr)
            addFault<q5_getLogDrvInfo>(&controller->faults, FaultKind::repeated, info.logDrvId);
        else
            controller->logicalDrives.push_back(readLogicalDrive(*controller, info));
}
