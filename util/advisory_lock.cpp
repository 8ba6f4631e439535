// flock() on a directory, with a limited wait.
#include "util/advisory_lock.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "util/path.h"

static constexpr long kPause = 20'000'000; // nanoseconds between two attempts

static int openDirectoryOf(const char* path) {
    char directory[kPathSize];
    const std::size_t length = directoryLength(path);
    if (path[0] == '\0' || length >= sizeof directory)
        return -1;
    std::memcpy(directory, path, length);
    directory[length] = '\0';
    return open(length > 0 ? directory : ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

static std::time_t monotonicSeconds() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec;
}

// Fails immediately on a file system without such locks.
static bool waitForLock(int directory, int seconds) {
    if (flock(directory, LOCK_EX | LOCK_NB) == 0)
        return true;
    const std::time_t deadline = monotonicSeconds() + seconds;
    while (errno == EWOULDBLOCK || errno == EINTR) {
        if (monotonicSeconds() >= deadline)
            return false;
        const timespec pause = {0, kPause};
        nanosleep(&pause, nullptr);
        if (flock(directory, LOCK_EX | LOCK_NB) == 0)
            return true;
    }
    return false;
}

int lockDirectoryOf(const char* path, int seconds) {
    const int directory = openDirectoryOf(path);
    if (directory < 0 || waitForLock(directory, seconds))
        return directory;
    close(directory);
    return -1;
}

void unlockDirectory(int lock) {
    if (lock >= 0)
        close(lock);
}
