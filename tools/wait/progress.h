// How fast an activity proceeds, estimated from its percentages. Times are milliseconds of a monotonic
// clock.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

// The moment when a percentage was first seen. Adapters report whole percents, so that the exact
// progress is known only at the moment of a change.
struct ProgressStep {
    std::int64_t time;
    unsigned percent;
};

struct Progress {
    std::optional<unsigned> percent; // the last one read, at most 100
    std::deque<ProgressStep> steps;  // the latest ones
};

// Adds a reading; empty: the adapter reported no percentage. One that is lower than before, or a pause,
// starts the observation over.
void observeProgress(Progress* progress, std::optional<unsigned> percent, bool paused, std::int64_t now);

// Percent per millisecond; empty until two steps were seen.
std::optional<double> progressRate(const Progress& progress, std::int64_t now);

// Milliseconds until the end at this rate; empty if the rate is unknown, or the end is more than a year away.
std::optional<std::int64_t> timeLeft(const Progress& progress, std::int64_t now);
