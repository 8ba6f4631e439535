// The lock on a directory. Its holder is another process.
#include "util/advisory_lock.h"

#include <csignal>

#include "tests/child_process.h"
#include "tests/temp_dir_fixture.h"

using AdvisoryLock = TempDirFixture;

static int tryLock(const std::string& path) {
    return lockDirectoryOf(path.c_str(), 0);
}

static bool isFree(const std::string& path) {
    const int lock = tryLock(path);
    unlockDirectory(lock);
    return lock >= 0;
}

static bool isFreeForAnother(const std::string& path) {
    return runInChild([&] { endChild(isFree(path) ? 7 : 8); }) == 7;
}

TEST_F(AdvisoryLock, ExcludesOthersUntilItIsReleased) {
    const int lock = tryLock(path("file"));
    ASSERT_GE(lock, 0);
    EXPECT_FALSE(isFreeForAnother(path("file")));
    EXPECT_FALSE(isFreeForAnother(path("another file")));
    unlockDirectory(lock);
    EXPECT_TRUE(isFreeForAnother(path("file")));
}

TEST_F(AdvisoryLock, EndsWithItsHolder) {
    EXPECT_EQ(runInChild([&] {
                  EXPECT_GE(tryLock(path("file")), 0);
                  raise(SIGKILL);
              }),
              128 + SIGKILL);
    EXPECT_TRUE(isFree(path("file")));
}

TEST_F(AdvisoryLock, AppliesToOneDirectory) {
    std::filesystem::create_directory(path("below"));
    const int lock = tryLock(path("file"));
    EXPECT_TRUE(isFreeForAnother(path("below/file")));
    unlockDirectory(lock);
}

TEST_F(AdvisoryLock, ChangesNothingInTheDirectory) {
    const auto before = std::filesystem::last_write_time(directory);
    const int lock = tryLock(path("file"));
    EXPECT_EQ(names(), Names());
    unlockDirectory(lock);
    EXPECT_EQ(std::filesystem::last_write_time(directory), before);
}

// The child gets the lock within its wait, whose length does not matter.
TEST_F(AdvisoryLock, WaitsForItsHolder) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int lock = tryLock(path("file"));
    const pid_t child = fork();
    if (child == 0) {
        close(lock); // inherited; it would hold the lock after the parent has released it
        EXPECT_EQ(::write(ends[1], "x", 1), 1);
        endChild(lockDirectoryOf(path("file").c_str(), kLockSeconds) >= 0 ? 0 : 1);
    }
    char started = 0;
    EXPECT_EQ(::read(ends[0], &started, 1), 1);
    unlockDirectory(lock);
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(AdvisoryLock, ReturnsMinusOneIfTheDirectoryCannotBeOpened) {
    EXPECT_EQ(tryLock(""), -1);
    EXPECT_EQ(tryLock(path("missing/file")), -1);
    EXPECT_EQ(tryLock(path(std::string(5000, 'x') + "/file")), -1);
    unlockDirectory(-1);
}

TEST_F(AdvisoryLock, LocksTheWorkingDirectoryForABareName) {
    const int lock = tryLock("file");
    EXPECT_GE(lock, 0);
    unlockDirectory(lock);
}
