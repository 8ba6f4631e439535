// How fast an activity proceeds, observed from its percentages.
#include "tools/wait/progress.h"

#include <algorithm>
#include <cmath>

static constexpr unsigned kFull = 100;
static constexpr std::size_t kMaxSteps = 11;
static constexpr double kMaxEstimate = 365.0 * 86400 * 1000;

void observeProgress(Progress* progress, std::optional<unsigned> percent, bool paused, std::int64_t now) {
    if (percent)
        percent = std::min(*percent, kFull);
    const bool restarted = percent && progress->percent && *percent < *progress->percent;
    const bool advanced = percent && progress->percent && *percent > *progress->percent;
    if (paused || restarted)
        progress->steps.clear();
    else if (advanced)
        progress->steps.push_back({now, *percent});
    if (progress->steps.size() > kMaxSteps)
        progress->steps.pop_front();
    if (percent)
        progress->percent = percent;
}

// If the next step is overdue, the rate is limited to what it would be if the step came now.
std::optional<double> progressRate(const Progress& progress, std::int64_t now) {
    if (progress.steps.size() < 2)
        return std::nullopt;
    const ProgressStep &first = progress.steps.front(), &last = progress.steps.back();
    if (last.time <= first.time)
        return std::nullopt;
    const double percents = last.percent - first.percent;
    const double rate = percents / static_cast<double>(last.time - first.time);
    return now > last.time ? std::min(rate, (percents + 1) / static_cast<double>(now - first.time)) : rate;
}

std::optional<std::int64_t> timeLeft(const Progress& progress, std::int64_t now) {
    const std::optional<double> rate = progressRate(progress, now);
    if (!rate)
        return std::nullopt;
    const ProgressStep& last = progress.steps.back();
    const double since =
        std::min(1.0, *rate * static_cast<double>(std::max<std::int64_t>(0, now - last.time)));
    const double left = std::max(0.0, kFull - last.percent - since) / *rate;
    return left < kMaxEstimate ? std::optional<std::int64_t>(std::llround(left)) : std::nullopt;
}
