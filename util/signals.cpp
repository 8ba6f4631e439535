// Blocking signals, and cleaning up before one of them ends the program.
#include "util/signals.h"

#include <cstddef>
#include <unistd.h>

static constexpr int kHeldSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP, SIGTTOU, SIGPIPE};

// Those of them that end the program while it writes a file.
static constexpr int kEndingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};
static constexpr std::size_t kEndingCount = sizeof kEndingSignals / sizeof *kEndingSignals;

void holdSignals(sigset_t* before) {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : kHeldSignals)
        sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, before);
}

void releaseSignals(const sigset_t* before) {
    sigprocmask(SIG_SETMASK, before, nullptr);
}

static const char* volatile doomedPath = nullptr;
static struct sigaction formerActions[kEndingCount];

extern "C" {
static void removeDoomed(int signal) {
    if (const char* path = doomedPath)
        unlink(path);
    raise(signal); // delivered when this returns, and then with the default action
}
}

static bool isDefault(const struct sigaction& action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_DFL;
}

void removeOnSignal(const char* path) {
    doomedPath = path;
    struct sigaction action = {};
    action.sa_handler = removeDoomed;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kEndingCount; ++i)
        if (sigaction(kEndingSignals[i], nullptr, &formerActions[i]) == 0 && isDefault(formerActions[i]))
            sigaction(kEndingSignals[i], &action, nullptr);
}

void keepOnSignal() {
    for (std::size_t i = 0; i < kEndingCount; ++i)
        sigaction(kEndingSignals[i], &formerActions[i], nullptr);
    doomedPath = nullptr;
}
