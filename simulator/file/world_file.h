// Reading, atomic replacement and locking of one file. Plain POSIX; knows nothing of the world.
#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace q5sim {

// Identifies a version of a file: each replacement has an inode number of its own.
struct FileStamp {
    bool exists = false;
    ::dev_t device = 0;
    ::ino_t number = 0;
    ::off_t size = 0;
    std::int64_t modified = 0; // nanoseconds
    std::int64_t changed = 0;
    bool operator==(const FileStamp&) const = default;
};
FileStamp fileStamp(const std::string& path);

// The path with symbolic links resolved, so that a link survives replacement of the file; the path
// itself when there is no such file.
std::string realPath(const std::string& path);

// Reads the whole file. Returns false, with errno set, when it cannot be read, is no regular file or
// exceeds the limit.
bool readFile(const std::string& path, std::size_t limit, std::string& text);

// Replaces the file atomically: a reader sees the old or the new content, even after a crash. The
// caller holds the file's lock. Returns false, with errno set, on failure.
bool replaceFile(const std::string& path, const std::string& text);

// Creates the directories of the path. Returns false, with errno set, on failure.
bool makeDirectoriesFor(const std::string& path);

// Waits for an exclusive advisory lock on path.lock. Release it with unlockFile. Returns -1, with errno
// set, on failure.
int lockFile(const std::string& path);
void unlockFile(int lock);

} // namespace q5sim
