// A temporary directory for each test that other users can read, and child processes that may be killed or
// drop root privileges.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/temp_dir.h"

inline constexpr uid_t kNobody = 65534;

class TemporaryDirectory : public testing::Test {
protected:
    void SetUp() override { std::filesystem::permissions(directory, std::filesystem::perms(0755)); }

    std::string path(const std::string& name) const { return temporary.path(name); }
    void write(const std::string& name, const std::string& content) const { temporary.write(name, content); }
    std::string content(const std::string& name) const { return temporary.read(name); }
    // The names in the directory, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            found.push_back(entry.path().filename().string());
        std::sort(found.begin(), found.end());
        return found;
    }
    using Names = std::vector<std::string>;

    const TempDir temporary;
    const std::string directory = temporary.path();
};

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
