// Progress of activities and media patrols. It is not stored while a job runs: it follows from a start
// time, the size of the job and the controller's rate.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

inline constexpr std::uint64_t kQuickInitMb = 16;
inline constexpr std::int64_t kNoDeadline = INT64_MAX;

// Megabytes done at the time now, at most totalMb, and the same in percent.
std::uint64_t completedMb(const Controller& controller, const Activity& activity, std::int64_t now);
std::uint8_t percentDone(const Controller& controller, const Activity& activity, std::int64_t now);

// When a running activity completes; kNoDeadline: it is paused.
std::int64_t dueTime(const Controller& controller, const Activity& activity);

// When a running activity reaches an offset in megabytes, but not before it was last checkpointed.
std::int64_t reachTime(const Controller& controller, const Activity& activity, std::uint64_t mb);

// The same for the media patrol of a drive, which reads all of it.
std::uint16_t patrolPercent(const Controller& controller, const Drive& drive, std::int64_t now);
std::int64_t patrolDueTime(const Controller& controller, const Drive& drive);

// Stores the progress made so far, before a rate changes or a pause starts.
void checkpointProgress(const Controller& controller, Activity& activity, std::int64_t now);
void checkpointPatrol(const Controller& controller, Drive& drive, std::int64_t now);
void checkpointAllProgress(Controller& controller, std::int64_t now);

} // namespace q5sim
