// A temporary file in the same directory, synchronized and renamed over the old one.
#include "util/atomic_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "util/signals.h"

static constexpr int kMaxLinks = 40;  // as many as the kernel follows
static constexpr int kMaxNames = 100; // tried for the temporary file

// Resolves the symbolic links at the end of path; the file they point to may be missing. False if that is not
// possible.
static bool resolveLinks(char (&path)[kPathSize]) {
    for (int links = 0; links <= kMaxLinks; ++links) {
        char link[kPathSize];
        const ssize_t read = readlink(path, link, sizeof link - 1);
        if (read < 0)
            return true;
        const auto length = static_cast<std::size_t>(read);
        link[length] = '\0';
        const std::size_t start = link[0] == '/' ? 0 : directoryLength(path);
        if (start + length >= sizeof path)
            return false;
        std::memcpy(path + start, link, length + 1);
    }
    return false;
}

static bool isSameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Writes the name of a temporary file in the target's directory; false if it does not fit.
static bool nameTemporary(FileReplacement* replacement, int attempt) {
    const int length = std::snprintf(replacement->temporary, kPathSize, "%.*s.cli-%ld-%d.tmp",
                                     static_cast<int>(directoryLength(replacement->path)), replacement->path,
                                     replacement->locked ? 0L : static_cast<long>(getpid()), attempt);
    return length > 0 && static_cast<std::size_t>(length) < kPathSize;
}

// Creates the temporary file. Returns -1, with errno set, if that is not possible.
static int createTemporary(FileReplacement* replacement, mode_t mode) {
    for (int attempt = 0; attempt < kMaxNames && nameTemporary(replacement, attempt); ++attempt) {
        const char* name = replacement->temporary;
        sigset_t before;
        blockSignals(&before);
        if (replacement->locked)
            unlink(name);
        const int file = open(name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
        const int error = errno;
        if (file >= 0)
            removeOnSignal(name);
        restoreSignals(&before);
        errno = error;
        if (file >= 0 || error != EEXIST)
            return file;
    }
    errno = ENAMETOOLONG;
    return -1;
}

static void removeTemporary(FileReplacement* replacement) {
    unlink(replacement->temporary);
    keepOnSignal();
    replacement->temporary[0] = '\0';
}

// The owner first: changing it may clear permissions. If the group cannot be kept, the permissions of the old
// group are not granted to another one.
static void keepOwner(int file, const struct stat& old, mode_t maxMode) {
    mode_t mode = old.st_mode & maxMode;
    if (fchown(file, old.st_uid, old.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0)
        mode &= 0707;
    fchmod(file, mode);
}

// Whether the error means that the directory does not allow replacing a file.
static bool mustWriteInPlace(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

// The new content of an existing file is first collected in another file, so that it is complete when the old
// content is overwritten.
static bool openInPlace(FileReplacement* replacement, const char* name) {
    if (replacement->target < 0) {
        replacement->stream = std::fopen(name, "w");
        return replacement->stream != nullptr;
    }
    replacement->stream = std::tmpfile();
    if (replacement->stream != nullptr)
        return true;
    const int target = replacement->target;
    replacement->target = -1;
    replacement->stream = ftruncate(target, 0) == 0 ? fdopen(target, "w") : nullptr;
    if (replacement->stream == nullptr)
        close(target);
    return replacement->stream != nullptr;
}

static bool openTemporary(FileReplacement* replacement, const struct stat* old, mode_t maxMode) {
    const int file = createTemporary(replacement, old != nullptr ? 0600 : 0666 & maxMode);
    if (file < 0) {
        replacement->temporary[0] = '\0';
        return false;
    }
    if (old != nullptr)
        keepOwner(file, *old, maxMode);
    replacement->stream = fdopen(file, "w+");
    if (replacement->stream == nullptr) {
        close(file);
        removeTemporary(replacement);
    }
    return replacement->stream != nullptr;
}

// Opens the replacement of a missing file, or of one that is not a regular file.
static bool openNew(FileReplacement* replacement, const char* name, bool exists, LinkPolicy links,
                    mode_t maxMode) {
    if (links == LinkPolicy::replace)
        return openTemporary(replacement, nullptr, maxMode);
    if (exists || name[0] == '\0' || !resolveLinks(replacement->path))
        return openInPlace(replacement, name);
    return openTemporary(replacement, nullptr, maxMode);
}

// Opens the replacement of a regular file. The file itself is open for writing.
static bool openExisting(FileReplacement* replacement, const char* name, const struct stat& old,
                         LinkPolicy links, mode_t maxMode) {
    struct stat found;
    if (links == LinkPolicy::follow &&
        !(resolveLinks(replacement->path) && lstat(replacement->path, &found) == 0 && isSameFile(found, old)))
        return openInPlace(replacement, name);
    if (openTemporary(replacement, &old, maxMode) ||
        (mustWriteInPlace(errno) && openInPlace(replacement, name)))
        return true;
    if (replacement->target >= 0)
        close(replacement->target);
    return false;
}

bool openReplacement(FileReplacement* replacement, const char* name, LinkPolicy links, mode_t maxMode,
                     bool locked) {
    replacement->target = -1;
    replacement->locked = locked;
    replacement->temporary[0] = '\0';
    const int length = std::snprintf(replacement->path, kPathSize, "%s", name);
    if (length < 0 || static_cast<std::size_t>(length) >= kPathSize) {
        errno = ENAMETOOLONG;
        return false;
    }
    const bool follow = links == LinkPolicy::follow;
    struct stat old;
    const bool exists = (follow ? stat(name, &old) : lstat(name, &old)) == 0;
    if (!exists && errno != ENOENT)
        return false;
    if (!exists || !S_ISREG(old.st_mode))
        return openNew(replacement, name, exists, links, maxMode);
    replacement->target = open(name, O_WRONLY | O_CLOEXEC | (follow ? 0 : O_NOFOLLOW));
    return replacement->target >= 0 && openExisting(replacement, name, old, links, maxMode);
}

// EINVAL: the file system cannot synchronize this file.
static bool synchronize(int file) {
    while (fsync(file) != 0)
        if (errno != EINTR)
            return errno == EINVAL;
    return true;
}

// Makes the rename survive a power failure.
static void synchronizeDirectory(char (&path)[kPathSize]) {
    path[directoryLength(path)] = '\0';
    const int directory = open(path[0] != '\0' ? path : ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        return;
    synchronize(directory);
    close(directory);
}

static bool writeAll(int file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0) {
            bytes += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    return true;
}

// Overwrites the target with the content.
static bool copyToTarget(const FileReplacement& replacement) {
    const int source = fileno(replacement.stream);
    if (lseek(source, 0, SEEK_SET) != 0 || ftruncate(replacement.target, 0) != 0)
        return false;
    char bytes[kPathSize];
    ssize_t length;
    while ((length = read(source, bytes, sizeof bytes)) != 0) {
        if (length < 0 && errno != EINTR)
            return false;
        if (length > 0 && !writeAll(replacement.target, bytes, static_cast<std::size_t>(length)))
            return false;
    }
    return synchronize(replacement.target);
}

static bool moveIntoPlace(FileReplacement* replacement) {
    if (replacement->temporary[0] == '\0')
        return replacement->target < 0 || copyToTarget(*replacement);
    if (!synchronize(fileno(replacement->stream)))
        return false;
    if (std::rename(replacement->temporary, replacement->path) != 0)
        return mustWriteInPlace(errno) && replacement->target >= 0 && copyToTarget(*replacement);
    keepOnSignal();
    replacement->temporary[0] = '\0';
    synchronizeDirectory(replacement->path);
    return true;
}

bool commitReplacement(FileReplacement* replacement) {
    const bool direct = replacement->temporary[0] == '\0' && replacement->target < 0;
    const bool written = std::fflush(replacement->stream) == 0 && std::ferror(replacement->stream) == 0;
    const bool placed = written && moveIntoPlace(replacement);
    const int error = errno;
    const bool closed = std::fclose(replacement->stream) == 0;
    if (replacement->target >= 0)
        close(replacement->target);
    if (replacement->temporary[0] != '\0')
        removeTemporary(replacement);
    if (!placed)
        errno = error;
    return placed && (closed || !direct); // once synchronized, the content does not depend on the close
}
