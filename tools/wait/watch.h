// Decides after each reading whether the wait is over, and what to print.
#pragma once

#include <ctime>

#include "tools/wait/observe.h"
#include "tools/wait/progress.h"

// The exit statuses of the program, and waiting for a wait that is not over.
enum class WaitStatus {
    finished = 0,
    notOnline = 1,
    usage = 2,
    timeout = 3,
    paused = 4,
    unreadable = 5,
    waiting,
};

// An activity that is being waited for.
struct Track {
    unsigned kind = 0; // one bit
    Target target;
    bool paused = false;
    Progress progress;
    std::int64_t since = 0;               // when it was first seen
    std::optional<std::int64_t> reported; // when its percentage was last printed as a line, and which
    std::optional<unsigned> reportedPercent;
};

struct Message {
    bool isError;
    std::string text;
};

struct Watch {
    Options options;
    std::int64_t start = 0;  // of the wait
    bool started = false;    // a reading has succeeded
    bool confirming = false; // the last reading showed no activity
    unsigned failures = 0;   // consecutive failed readings
    std::vector<Track> tracks;
    std::vector<Target> ended;     // objects whose activity has ended
    std::vector<Target> migrated;  // logical drives that were migrating, whether or not that is waited for
    std::vector<Message> messages; // of the last step
};

// Handles a reading made at the time now, in milliseconds of a monotonic clock. Replaces the messages.
WaitStatus handleView(Watch* watch, const View& view, std::int64_t now);

// The lines of percentages that are due: the first one of each activity, then one for each changed
// percentage, at most one a minute for each activity.
void reportPercentages(Watch* watch, std::int64_t now, std::time_t clock);
