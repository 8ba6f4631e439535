// Media patrol on single drives.
#include "adapter/mediapatrol.h"

#include "simulator/engine/progress.h"
#include "simulator/operations/operation.h"

using namespace q5sim;

int q5_getHBAMediaPatrolProgress(HbaAddress address, std::uint32_t reserved, const DriveSelector* selector,
                                 MediaPatrolProgress* progress, std::uint32_t size) {
    return fillReply(address, reserved, progress, size, sizeof *progress,
                     [&](const Controller& controller, std::int64_t now) {
                         const Drive* drive =
                             selector != nullptr ? findDrive(controller, selector->driveId) : nullptr;
                         if (drive == nullptr || selector->count != 1)
                             return refuse("media patrol: there is no such drive");
                         progress->header.bytesUsed = sizeof *progress;
                         progress->state = drive->patrol.state;
                         progress->loopCount = drive->patrol.loops;
                         progress->errorCount = drive->patrol.errors;
                         progress->progress = patrolPercent(controller, *drive, now);
                         return kDone;
                     });
}

// A transition of the patrol state machine, allowed from any of these states.
struct PatrolTransition {
    unsigned from; // bit n: from state n
    std::uint16_t to;
    const char* event;
};

static int changePatrolState(const Caller& caller, std::uint32_t reserved, const DriveSelector* selector,
                             const PatrolTransition& wanted) {
    return updateController(caller, reserved, [&](Controller& controller, std::int64_t now) {
        Drive* drive = selector != nullptr ? findDrive(controller, selector->driveId) : nullptr;
        if (drive == nullptr || selector->count != 1 || drive->failed)
            return refuse("media patrol: there is no such working drive");
        if ((wanted.from >> drive->patrol.state & 1) == 0)
            return refuse("media patrol on drive %d: it cannot be %s now", drive->id + 1, wanted.event);
        checkpointPatrol(controller, *drive, now);
        const bool resumed = drive->patrol.state == kPatrolPaused;
        if (wanted.to == kPatrolRunning && !resumed)
            drive->patrol.completedMb = 0;
        drive->patrol.state = wanted.to;
        drive->patrol.since = now;
        addEvent(controller, now, "Drive %d: media patrol %s", drive->id + 1, wanted.event);
        return kDone;
    });
}

static constexpr unsigned kFromIdle = 1u << 0;
static constexpr unsigned kFromRunning = 1u << kPatrolRunning;
static constexpr unsigned kFromAborted = 1u << kPatrolAborted;
static constexpr unsigned kFromPaused = 1u << kPatrolPaused;
static constexpr unsigned kFromStopped = 1u << kPatrolStopped;

int q5_startHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return changePatrolState(address, reserved, drive,
                             {kFromIdle | kFromAborted | kFromStopped, kPatrolRunning, "started"});
}

int q5_stopHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return changePatrolState(address, reserved, drive,
                             {kFromRunning | kFromPaused, kPatrolStopped, "stopped"});
}

int q5_pauseHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return changePatrolState(address, reserved, drive, {kFromRunning, kPatrolPaused, "paused"});
}

int q5_resumeHBAMediaPatrol(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive) {
    return changePatrolState(address, reserved, drive, {kFromPaused, kPatrolRunning, "resumed"});
}
