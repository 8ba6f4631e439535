// Deferring signals.
#include "util/signals.h"

#include <gtest/gtest.h>

static volatile std::sig_atomic_t delivered;

extern "C" {
static void count(int) {
    delivered = delivered + 1;
}
}

TEST(Signals, AreDeliveredAfterward) {
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP, SIGTTOU, SIGPIPE}) {
        delivered = 0;
        const auto former = std::signal(signal, count);
        sigset_t before;
        blockSignals(&before);
        raise(signal);
        EXPECT_EQ(delivered, 0) << signal;
        restoreSignals(&before);
        EXPECT_EQ(delivered, 1) << signal;
        std::signal(signal, former);
    }
}

TEST(Signals, ThatWereBlockedBeforeStayBlocked) {
    sigset_t none, before, after;
    sigemptyset(&none);
    sigaddset(&none, SIGUSR1);
    sigprocmask(SIG_BLOCK, &none, nullptr);
    blockSignals(&before);
    restoreSignals(&before);
    sigprocmask(SIG_UNBLOCK, &none, &after);
    EXPECT_EQ(sigismember(&after, SIGUSR1), 1);
    EXPECT_EQ(sigismember(&after, SIGINT), 0);
}
