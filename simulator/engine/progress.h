// How far activities and media patrols have come. Progress is never stored while it goes on: it
// follows from a start time, the size of the job and the controller's rate.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// A rate of r moves r * kMbPerRate megabytes each second: quicker than real drives, so that a
// rehearsal of hours takes minutes.
inline constexpr std::uint64_t kMbPerRate = 8;
inline constexpr std::uint64_t kQuickInitMb = 16;
inline constexpr std::int64_t kNoDeadline = INT64_MAX;

std::uint8_t rateOf(const Controller& controller, std::uint8_t activityKind);

// Megabytes done at the time now, at most totalMb.
std::uint64_t completedMb(const Controller& controller, const Activity& activity, std::int64_t now);
std::uint8_t percentDone(const Controller& controller, const Activity& activity, std::int64_t now);
// When a running activity will be done; kNoDeadline of a paused one.
std::int64_t endOf(const Controller& controller, const Activity& activity);

std::uint64_t patrolTotalMb(const Drive& drive);
std::uint64_t patrolDoneMb(const Controller& controller, const Drive& drive, std::int64_t now);
std::uint16_t patrolPercent(const Controller& controller, const Drive& drive, std::int64_t now);
std::int64_t patrolEnd(const Controller& controller, const Drive& drive);

// Fixes what has been done so far, before a rate changes or a pause begins.
void checkpointProgress(const Controller& controller, Activity& activity, std::int64_t now);
void checkpointPatrol(const Controller& controller, Drive& drive, std::int64_t now);
void checkpointAllProgress(Controller& controller, std::int64_t now);

} // namespace q5sim
