// Progress computed from time, size and rate, in whole megabytes and seconds.
#include "simulator/engine/progress.h"

#include <algorithm>

namespace q5sim {

// At rate r a job processes r * kMbPerRate megabytes per second: faster than real drives, so that a
// rebuild of hours takes minutes.
static constexpr std::uint64_t kMbPerRate = 8;

// The controller's rate for an activity, one ActivityBit.
static std::uint8_t rateOf(const Controller& controller, std::uint8_t activityKind) {
    switch (activityKind) {
    case kRebuilding:
        return controller.rates.rebuild;
    case kInitializing:
        return controller.rates.init;
    case kMigrating:
        return controller.rates.migrate;
    default:
        return controller.rates.sync;
    }
}

// A clock that was set back stops progress but does not undo it.
static std::uint64_t doneAt(std::uint64_t start, std::uint64_t total, std::int64_t since, std::int64_t now,
                            std::uint64_t speed) {
    const std::uint64_t elapsed = now > since ? static_cast<std::uint64_t>(now - since) : 0;
    if (start >= total || elapsed >= (total - start + speed - 1) / speed)
        return total;
    return start + elapsed * speed;
}

static std::int64_t dueTimeOf(std::uint64_t start, std::uint64_t total, std::int64_t since,
                              std::uint64_t speed) {
    const std::uint64_t left = start < total ? total - start : 0;
    return since + static_cast<std::int64_t>((left + speed - 1) / speed);
}

static std::uint64_t speedOf(const Controller& controller, std::uint8_t activityKind) {
    return std::max<std::uint64_t>(1, rateOf(controller, activityKind)) * kMbPerRate;
}

std::uint64_t completedMb(const Controller& controller, const Activity& activity, std::int64_t now) {
    if (activity.paused)
        return std::min(activity.completedMb, activity.totalMb);
    return doneAt(activity.completedMb, activity.totalMb, activity.since, now,
                  speedOf(controller, activity.kind));
}

std::uint8_t percentDone(const Controller& controller, const Activity& activity, std::int64_t now) {
    const std::uint64_t done = completedMb(controller, activity, now);
    return static_cast<std::uint8_t>(done * 100 / std::max<std::uint64_t>(1, activity.totalMb));
}

std::int64_t dueTime(const Controller& controller, const Activity& activity) {
    if (activity.paused)
        return kNoDeadline;
    return dueTimeOf(activity.completedMb, activity.totalMb, activity.since,
                     speedOf(controller, activity.kind));
}

std::int64_t reachTime(const Controller& controller, const Activity& activity, std::uint64_t mb) {
    return dueTimeOf(activity.completedMb, mb, activity.since, speedOf(controller, activity.kind));
}

static std::uint64_t patrolSpeed(const Controller& controller) {
    return std::max<std::uint64_t>(1, controller.rates.patrol) * kMbPerRate;
}

static std::uint64_t patrolTotalMb(const Drive& drive) {
    return std::max<std::uint64_t>(1, drive.sectors / kSectorsPerMb);
}

static std::uint64_t patrolDoneMb(const Controller& controller, const Drive& drive, std::int64_t now) {
    const std::uint64_t total = patrolTotalMb(drive);
    const Patrol& patrol = drive.patrol;
    if (patrol.state != kPatrolRunning)
        return std::min(patrol.completedMb, total);
    return doneAt(patrol.completedMb, total, patrol.since, now, patrolSpeed(controller));
}

std::uint16_t patrolPercent(const Controller& controller, const Drive& drive, std::int64_t now) {
    return static_cast<std::uint16_t>(patrolDoneMb(controller, drive, now) * 100 / patrolTotalMb(drive));
}

std::int64_t patrolDueTime(const Controller& controller, const Drive& drive) {
    if (drive.patrol.state != kPatrolRunning)
        return kNoDeadline;
    return dueTimeOf(drive.patrol.completedMb, patrolTotalMb(drive), drive.patrol.since,
                     patrolSpeed(controller));
}

void checkpointProgress(const Controller& controller, Activity& activity, std::int64_t now) {
    if (activity.kind == 0 || activity.paused)
        return;
    activity.completedMb = completedMb(controller, activity, now);
    activity.since = now;
}

void checkpointPatrol(const Controller& controller, Drive& drive, std::int64_t now) {
    if (drive.patrol.state != kPatrolRunning)
        return;
    drive.patrol.completedMb = patrolDoneMb(controller, drive, now);
    drive.patrol.since = now;
}

void checkpointAllProgress(Controller& controller, std::int64_t now) {
    for (LogicalDrive& drive : controller.logicalDrives)
        checkpointProgress(controller, drive.activity, now);
    for (Drive& drive : controller.drives)
        checkpointPatrol(controller, drive, now);
}

} // namespace q5sim
