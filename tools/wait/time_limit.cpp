// A timer whose signal ends the program.
#include "tools/wait/time_limit.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

#include "tools/wait/screen.h"
#include "tools/wait/watch.h"

static constexpr char kMessage[] = "cli-wait: timed out: the adapters do not answer\n";
static constexpr std::int64_t kLongestTimer = 100'000'000; // seconds; FreeBSD accepts no more

static void setTimer(std::int64_t milliseconds) {
    itimerval timer = {};
    timer.it_value.tv_sec = static_cast<time_t>(std::min(milliseconds / 1000, kLongestTimer));
    timer.it_value.tv_usec = static_cast<suseconds_t>(milliseconds % 1000 * 1000);
    setitimer(ITIMER_REAL, &timer, nullptr);
}

extern "C" {
// Only async-signal-safe functions: the signal may interrupt a call of the adapter library.
static void endOnLimit(int) {
    leaveDisplay();
    const ssize_t written = write(STDERR_FILENO, kMessage, sizeof kMessage - 1);
    static_cast<void>(written);
    _exit(static_cast<int>(WaitStatus::timeout));
}
}

void startTimeLimit(std::int64_t milliseconds) {
    struct sigaction action = {};
    action.sa_handler = endOnLimit;
    sigfillset(&action.sa_mask);
    sigaction(SIGALRM, &action, nullptr);
    sigset_t alarm;
    sigemptyset(&alarm);
    sigaddset(&alarm, SIGALRM);
    sigprocmask(SIG_UNBLOCK, &alarm, nullptr);
    setTimer(milliseconds);
}

void stopTimeLimit() {
    setTimer(0);
}
