// Atomic replacement of a file, and its advisory lock.
#include "simulator/file/world_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace q5sim {

bool fileExists(const std::string& path) {
    struct ::stat info;
    return ::stat(path.c_str(), &info) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

static bool isLink(const std::string& path) {
    struct ::stat info;
    return ::lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

bool resolveLinks(const std::string& path, std::string& real) {
    char* found = ::realpath(path.c_str(), nullptr);
    const int cause = errno;
    real = found != nullptr ? found : path;
    std::free(found);
    if (found != nullptr || !isLink(path))
        return true;
    errno = cause;
    return false;
}

static bool readAll(int file, std::size_t limit, std::string& text) {
    char piece[65536];
    for (;;) {
        const ::ssize_t got = ::read(file, piece, sizeof piece);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return got == 0;
        text.append(piece, static_cast<std::size_t>(got));
        if (text.size() > limit) {
            errno = EFBIG;
            return false;
        }
    }
}

// Closes a file without losing the error of an earlier call.
static int closeKeepingErrno(int file) {
    const int cause = errno;
    const int result = ::close(file);
    if (result == 0)
        errno = cause;
    return result;
}

static bool isRegularFile(int file) {
    struct ::stat info;
    if (::fstat(file, &info) != 0)
        return false;
    errno = S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
    return S_ISREG(info.st_mode);
}

bool readFile(const std::string& path, std::size_t limit, std::string& text) {
    text.clear();
    // Without O_NONBLOCK, opening a pipe would block.
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0)
        return false;
    const bool good = isRegularFile(file) && readAll(file, limit, text);
    closeKeepingErrno(file);
    return good;
}

static bool writeAll(int file, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ::ssize_t put = ::write(file, text.data() + done, text.size() - done);
        if (put < 0 && errno != EINTR)
            return false;
        if (put > 0)
            done += static_cast<std::size_t>(put);
    }
    return true;
}

static std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

// A rename survives a power cut only after its directory was synchronized.
static void syncDirectoryOf(const std::string& path) {
    const int directory = ::open(directoryOf(path).c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    if (directory < 0)
        return;
    ::fsync(directory);
    ::close(directory);
}

static int createTemporary(const std::string& path) {
    ::unlink(path.c_str()); // what a killed program left
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
}

static void keepPermissions(int file, const std::string& path) {
    struct ::stat old;
    if (::stat(path.c_str(), &old) == 0)
        ::fchmod(file, old.st_mode & 0777);
}

// Whether a regular file is at the path, or nothing. A link can have replaced the file during the session.
static bool canBeReplaced(const std::string& path) {
    struct ::stat info;
    if (::lstat(path.c_str(), &info) != 0 || S_ISREG(info.st_mode))
        return true;
    errno = S_ISLNK(info.st_mode) ? ELOOP : S_ISDIR(info.st_mode) ? EISDIR : EINVAL;
    return false;
}

bool replaceFile(const std::string& path, const std::string& text) {
    if (!canBeReplaced(path))
        return false;
    const std::string temporary = path + ".new";
    const int file = createTemporary(temporary);
    if (file < 0)
        return false;
    keepPermissions(file, path);
    bool good = writeAll(file, text) && ::fsync(file) == 0;
    good = closeKeepingErrno(file) == 0 && good;
    good = good && std::rename(temporary.c_str(), path.c_str()) == 0;
    if (good) {
        syncDirectoryOf(path);
        return true;
    }
    const int cause = errno;
    ::unlink(temporary.c_str());
    errno = cause;
    return false;
}

bool makeDirectoriesFor(const std::string& path) {
    for (std::size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        if (::mkdir(path.substr(0, slash).c_str(), 0755) != 0 && errno != EEXIST &&
            errno != EISDIR) // FreeBSD's error for the root directory
            return false;
    return true;
}

// command: F_SETLKW waits, F_SETLK does not.
static bool lockWholeFile(int file, int command) {
    struct ::flock whole = {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    while (::fcntl(file, command, &whole) != 0)
        if (errno != EINTR)
            return false;
    return true;
}

static int openLock(const std::string& path, int command) {
    const int lock = ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
    if (lock < 0 || lockWholeFile(lock, command))
        return lock;
    closeKeepingErrno(lock);
    return -1;
}

int lockFile(const std::string& path) {
    return openLock(path, F_SETLKW);
}

void removeAbandonedFile(const std::string& path) {
    const std::string temporary = path + ".new";
    struct ::stat info;
    if (::lstat(temporary.c_str(), &info) != 0)
        return;
    const int lock = openLock(path, F_SETLK);
    if (lock < 0)
        return;
    ::unlink(temporary.c_str());
    unlockFile(lock);
}

void unlockFile(int lock) {
    ::close(lock);
}

} // namespace q5sim
