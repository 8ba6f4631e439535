// cli-wait: waits until background activities have ended.
#include <algorithm>
#include <cstdio>
#include <ctime>

#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tools/common/standard_streams.h"
#include "tools/wait/bars.h"
#include "tools/wait/screen.h"
#include "tools/wait/time_limit.h"

static constexpr std::int64_t kSecond = 1000;

static std::int64_t monotonicTime() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::int64_t{time.tv_sec} * kSecond + time.tv_nsec / 1'000'000;
}

static WaitStatus reportProblem(WaitStatus status, const std::string& problem) {
    std::fprintf(stderr, "cli-wait: %s\n", problem.c_str());
    return status;
}

struct Session {
    Watch watch;
    Screen screen;
    std::uint32_t controllers = 0;
    std::int64_t now = 0;
    bool unwritable = false;
};

static std::vector<std::string> displayOf(const Session& session, std::time_t clock) {
    const ScreenSize size = screenSize();
    const bool several = session.controllers > 1 && !session.watch.options.controller;
    return progressBars(session.watch, session.now, clock, {size.columns, size.rows, several});
}

static void update(Session* session, const std::vector<std::string>& lines,
                   const std::vector<std::string>& display) {
    const bool written = session->watch.options.quiet || updateScreen(&session->screen, lines, display);
    session->unwritable = session->unwritable || !written;
}

// On a terminal, messages are printed above the display, and the display replaces the lines of percentages
// except for the last ones.
static void show(Session* session, bool last) {
    Watch* watch = &session->watch;
    const std::time_t clock = std::time(nullptr);
    if (!session->screen.isTerminal || last)
        reportPercentages(watch, session->now, clock);
    std::vector<std::string> lines, errors, display;
    for (const Message& message : watch->messages)
        (message.isError ? errors : lines).push_back(message.text);
    watch->messages.clear();
    if (!errors.empty()) { // below the lines, where the display was
        update(session, lines, display);
        lines.clear();
    }
    for (const std::string& error : errors)
        reportProblem(WaitStatus::waiting, error);
    if (session->screen.isTerminal && !last)
        display = displayOf(*session, clock);
    update(session, lines, display);
}

// The display counts seconds between the readings.
static void pauseUntil(Session* session, std::int64_t time) {
    while ((session->now = monotonicTime()) < time) {
        const std::int64_t limit = session->screen.isTerminal ? kSecond : time - session->now;
        if (session->screen.isTerminal)
            show(session, false);
        pauseFor(std::min(limit, time - session->now));
    }
}

static std::int64_t nextReading(const Session& session) {
    const Watch& watch = session.watch;
    const std::int64_t next = session.now + watch.options.every;
    return watch.options.timeout ? std::min(next, watch.start + *watch.options.timeout) : next;
}

// Slow adapters get at least this time to answer, even if less is left.
static constexpr std::int64_t kLeastLimit = 10 * kSecond;

// elapsed: since the wait began.
static void limitTime(const Options& options, std::int64_t elapsed) {
    std::optional<std::int64_t> limit = options.limit;
    if (options.timeout) {
        const std::int64_t left = std::max(*options.timeout - elapsed, kLeastLimit);
        limit = std::min(limit.value_or(left), left);
    }
    if (limit)
        startTimeLimit(*limit);
}

static View observeInTime(const Session& session) {
    const Watch& watch = session.watch;
    limitTime(watch.options, monotonicTime() - watch.start);
    View view = observe(watch.options, session.controllers);
    stopTimeLimit();
    return view;
}

// Whether the selected logical drive does not exist, which is a usage error.
static bool isMissing(const Options& options, const View& view) {
    return options.logicalDrive && view.problem.empty() && view.arrays.empty();
}

static WaitStatus waitOpened(Session* session) {
    const Options& options = session->watch.options;
    if (options.controller && *options.controller >= session->controllers)
        return reportProblem(WaitStatus::usage,
                             "there is no controller " + std::to_string(*options.controller));
    session->watch.start = monotonicTime();
    for (;;) {
        const View view = observeInTime(*session);
        session->now = monotonicTime();
        if (!session->watch.started && isMissing(options, view))
            return reportProblem(WaitStatus::usage,
                                 "there is no logical drive " + std::to_string(*options.logicalDrive) +
                                     " of controller " + std::to_string(*options.controller));
        const WaitStatus status = handleView(&session->watch, view, session->now);
        show(session, status != WaitStatus::waiting);
        if (status != WaitStatus::waiting)
            return status;
        pauseUntil(session, nextReading(*session));
    }
}

static WaitStatus run(const Options& options) {
    Snapshot snapshot;
    limitTime(options, 0);
    const OpenResult opened = openAdapters(&snapshot);
    stopTimeLimit();
    if (opened == OpenResult::failed)
        return reportProblem(WaitStatus::unreadable, faultText(snapshot.faults.front()));
    Session session;
    session.watch.options = options;
    session.controllers = snapshot.controllerCount;
    if (opened == OpenResult::noController) {
        closeAdapters();
        return reportProblem(WaitStatus::unreadable, "no controller is found");
    }
    if (!options.quiet)
        openScreen(&session.screen);
    WaitStatus status = waitOpened(&session);
    closeScreen(&session.screen);
    closeAdapters();
    if (status == WaitStatus::timeout && !options.quiet)
        reportProblem(status, "timed out after " +
                                  counted(static_cast<std::size_t>(*options.timeout / kSecond), "second"));
    return session.unwritable ? reportProblem(status, "cannot write to standard output") : status;
}

int main(int argc, char** argv) {
    openStandardStreams();
    Options options;
    const OptionsResult result = readOptions(argc, argv, &options);
    if (result != OptionsResult::run)
        return static_cast<int>(result == OptionsResult::done ? WaitStatus::finished : WaitStatus::usage);
    return static_cast<int>(run(options));
}
