// Atomic replacement of a file, and its advisory lock.
#include "simulator/file/world_file.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace q5sim {

static std::int64_t nanoseconds(const ::timespec& time) {
    return static_cast<std::int64_t>(time.tv_sec) * 1000000000 + time.tv_nsec;
}

FileStamp fileStamp(const std::string& path) {
    struct ::stat info;
    if (::stat(path.c_str(), &info) != 0)
        return {};
    return {
        true, info.st_dev, info.st_ino, info.st_size, nanoseconds(info.st_mtim), nanoseconds(info.st_ctim)};
}

std::string realPath(const std::string& path) {
    char* found = ::realpath(path.c_str(), nullptr);
    if (found == nullptr)
        return path;
    std::string real = found;
    std::free(found);
    return real;
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

// Closes a file without losing the error of a call before.
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

bool replaceFile(const std::string& path, const std::string& text) {
    const std::string temporary = path + ".new";
    ::unlink(temporary.c_str()); // left behind by a killed program
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0)
        return false;
    struct ::stat old;
    if (::stat(path.c_str(), &old) == 0)
        ::fchmod(file, old.st_mode & 0777); // keep its permissions
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
            errno != EISDIR) // FreeBSD's answer for the root directory
            return false;
    return true;
}

int lockFile(const std::string& path) {
    const int lock = ::open((path + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (lock < 0)
        return -1;
    struct ::flock whole = {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    while (::fcntl(lock, F_SETLKW, &whole) != 0) {
        if (errno != EINTR) {
            closeKeepingErrno(lock);
            return -1;
        }
    }
    return lock;
}

void unlockFile(int lock) {
    ::close(lock);
}

} // namespace q5sim
