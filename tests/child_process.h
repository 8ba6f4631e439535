// Runs functions in child processes, which may be killed or run without root privileges.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include <gtest/gtest.h>

inline constexpr uid_t kNobody = 65534;

// Counters of executed branches, in a build that has them.
extern "C" void __gcov_dump() __attribute__((weak));

// Ends a child process without the cleanup of its parent.
[[noreturn]] inline void endChild(int status) {
    if (&__gcov_dump != nullptr)
        __gcov_dump();
    _exit(status);
}

// Runs the function in a child process. Returns its exit status, which is 0 if no expectation in it failed,
// or 128 plus the number of the signal that ended it.
inline int runInChild(const std::function<void()>& function) {
    const pid_t child = fork();
    if (child == 0) {
        function();
        endChild(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The same without root privileges, except that counters are written.
inline int runAsNobody(const std::function<void()>& function) {
    return runInChild([&] {
        const uid_t before = geteuid();
        const bool unprivileged = before != 0 || (setegid(kNobody) == 0 && seteuid(kNobody) == 0);
        ASSERT_TRUE(unprivileged);
        function();
        ASSERT_EQ(seteuid(before), 0);
    });
}
