// Decides after each reading whether the wait is over, and what to print.
#include "tools/wait/watch.h"

#include <algorithm>

#include "tools/wait/conclusion.h"
#include "tools/wait/texts.h"

static constexpr unsigned kMaxFailures = 3;
static constexpr std::int64_t kReportPeriod = 60'000; // milliseconds

static void addMessage(Watch* watch, const std::string& text) {
    watch->messages.push_back({false, text});
}

// A single failed reading is tolerated: the adapter may be busy. The first one, or several in a row, are
// errors.
static WaitStatus handleProblem(Watch* watch, const std::string& problem) {
    ++watch->failures;
    const bool tryAgain = watch->started && watch->failures < kMaxFailures;
    if (!tryAgain)
        watch->messages.push_back({true, problem});
    else if (watch->failures == 1)
        watch->messages.push_back({true, problem + "; trying again"});
    return tryAgain ? WaitStatus::waiting : WaitStatus::unreadable;
}

static const SeenActivity* findActivity(const View& view, const Track& track) {
    for (const SeenActivity& seen : view.activities)
        if (seen.kind == track.kind && seen.target == track.target)
            return &seen;
    return nullptr;
}

static void startTracks(Watch* watch, const View& view, std::int64_t now) {
    for (const SeenActivity& seen : view.activities) {
        const bool known = std::any_of(watch->tracks.begin(), watch->tracks.end(), [&](const Track& track) {
            return track.kind == seen.kind && track.target == seen.target;
        });
        if (known)
            continue;
        Track track;
        track.kind = seen.kind;
        track.target = seen.target;
        track.since = now;
        watch->tracks.push_back(track);
    }
}

static void updateTrack(Watch* watch, Track* track, const SeenActivity& seen, std::int64_t now) {
    observeProgress(&track->progress, seen.percent, seen.paused, now);
    if (seen.paused && !track->paused)
        addMessage(watch, activityText(*track) + " is paused at " + percentText(*track));
    else if (!seen.paused && track->paused)
        addMessage(watch, activityText(*track) + " was resumed at " + percentText(*track));
    track->paused = seen.paused;
}

static void addOnce(const Target& target, std::vector<Target>* targets) {
    if (std::find(targets->begin(), targets->end(), target) == targets->end())
        targets->push_back(target);
}

static void endTrack(Watch* watch, const Track& track) {
    addMessage(watch, activityText(track) + " has ended");
    addOnce(track.target, &watch->ended);
}

static void noteMigrations(Watch* watch, const View& view) {
    for (const SeenArray& array : view.arrays)
        if (array.isMigrating)
            addOnce(array.target, &watch->migrated);
}

static void updateTracks(Watch* watch, const View& view, std::int64_t now) {
    startTracks(watch, view, now);
    for (Track& track : watch->tracks)
        if (const SeenActivity* seen = findActivity(view, track))
            updateTrack(watch, &track, *seen, now);
        else
            endTrack(watch, track);
    std::erase_if(watch->tracks, [&](const Track& track) { return findActivity(view, track) == nullptr; });
}

// When the last activity ends, another one may follow: a synchronization after a rebuild, for example. The
// wait is over if the next reading shows none either.
static WaitStatus decide(Watch* watch, const View& view, std::int64_t now) {
    const bool running = std::any_of(watch->tracks.begin(), watch->tracks.end(), [&](const Track& track) {
        return !track.paused || watch->options.pausedToo;
    });
    if (watch->tracks.empty() && (watch->confirming || watch->ended.empty()))
        return conclude(watch, view);
    watch->confirming = watch->tracks.empty();
    if (!watch->tracks.empty() && !running) {
        addMessage(watch, "only paused activities are left");
        return WaitStatus::paused;
    }
    return watch->options.timeout && now - watch->start >= *watch->options.timeout ? WaitStatus::timeout
                                                                                   : WaitStatus::waiting;
}

WaitStatus handleView(Watch* watch, const View& view, std::int64_t now) {
    watch->messages.clear();
    if (!view.problem.empty())
        return handleProblem(watch, view.problem);
    watch->failures = 0;
    watch->started = true;
    noteMigrations(watch, view);
    updateTracks(watch, view, now);
    return decide(watch, view, now);
}

// The first report names the activity, even if its percentage is unknown.
static bool isDue(const Track& track, std::int64_t now) {
    const bool changed = track.progress.percent != track.reportedPercent;
    return !track.paused && (!track.reported || (changed && now - *track.reported >= kReportPeriod));
}

static std::string progressLine(const Track& track, std::int64_t now, std::time_t clock) {
    std::string line = activityText(track) + ": " + percentText(track);
    if (const auto rate = progressRate(track.progress, now))
        line += ", " + rateText(*rate);
    if (const auto left = timeLeft(track.progress, now))
        line += ", ends about " + endText(clock, *left);
    return line;
}

void reportPercentages(Watch* watch, std::int64_t now, std::time_t clock) {
    for (Track& track : watch->tracks)
        if (isDue(track, now)) {
            addMessage(watch, progressLine(track, now, clock));
            track.reported = now;
            track.reportedPercent = track.progress.percent;
        }
}
