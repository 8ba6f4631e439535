// Progress of activities and media patrols. It is not stored while a job runs: it follows from a start
// time, the size of the job and the controller's rate.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// At rate r a job processes r * kMbPerRate megabytes per second: faster than real drives, so that a
// rebuild of hours takes minutes.
inline constexpr std::uint64_t kMbPerRate = 8;
inline constexpr std::uint64_t kQuickInitMb = 16;
inline constexpr std::int64_t kNoDeadline = INT64_MAX;

std::uint8_t rateOf(const Controller& controller, std::uint8_t activityKind);

// Megabytes done at the time now, at most totalMb.
std::uint64_t completedMb(const Controller& controller, const Activity& activity, std::int64_t now);
std::uint8_t percentDone(const Controller& controller, const Activity& activity, std::int64_t now);
// When a running activity completes; kNoDeadline: it is paused.
std::int64_t dueTime(const Controller& controller, const Activity& activity);

// When a running activity reaches an offset, but not before it was last checkpointed.
std::int64_t reachTime(const Controller& controller, const Activity& activity, std::uint64_t mb);

std::uint64_t patrolTotalMb(const Drive& drive);
std::uint64_t patrolDoneMb(const Controller& controller, const Drive& drive, std::int64_t now);
std::uint16_t patrolPercent(const Controller& controller, const Drive& drive, std::int64_t now);
std::int64_t patrolDueTime(const Controller& controller, const Drive& drive);

// Stores the progress made so far, before a rate changes or a pause starts.
void checkpointProgress(const Controller& controller, Activity& activity, std::int64_t now);
void checkpointPatrol(const Controller& controller, Drive& drive, std::int64_t now);
void checkpointAllProgress(Controller& controller, std::int64_t now);

} // namespace q5sim
