// Blocking signals, and cleaning up before one of them ends the program.
#include "util/signals.h"

#include <cstddef>
#include <unistd.h>

static constexpr int kBlockedSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP, SIGTTOU, SIGPIPE};

// The signals that remove the temporary file.
static constexpr int kTerminatingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};
static constexpr std::size_t kTerminatingCount = sizeof kTerminatingSignals / sizeof *kTerminatingSignals;

void blockSignals(sigset_t* before) {
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : kBlockedSignals)
        sigaddset(&blocked, signal);
    sigprocmask(SIG_BLOCK, &blocked, before);
}

void restoreSignals(const sigset_t* before) {
    sigprocmask(SIG_SETMASK, before, nullptr);
}

static const char* volatile pathToRemove = nullptr;
static struct sigaction savedActions[kTerminatingCount];

extern "C" {
static void removeAndReraise(int signal) {
    if (const char* path = pathToRemove)
        unlink(path);
    raise(signal); // with the default action, when this returns
}
}

static bool isDefault(const struct sigaction& action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_DFL;
}

void removeOnSignal(const char* path) {
    pathToRemove = path;
    struct sigaction action = {};
    action.sa_handler = removeAndReraise;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kTerminatingCount; ++i)
        if (sigaction(kTerminatingSignals[i], nullptr, &savedActions[i]) == 0 && isDefault(savedActions[i]))
            sigaction(kTerminatingSignals[i], &action, nullptr);
}

void keepOnSignal() {
    for (std::size_t i = 0; i < kTerminatingCount; ++i)
        sigaction(kTerminatingSignals[i], &savedActions[i], nullptr);
    pathToRemove = nullptr;
}
