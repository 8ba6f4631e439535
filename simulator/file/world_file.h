// Reading and replacing one file as a whole. Plain POSIX; knows nothing of the world.
#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>

namespace q5sim {

// Tells versions of a file apart: each replacement has a number of its own in the file system.
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

// The file that a path leads to through links, so that a link survives the file's replacement; the
// path itself when there is no such file.
std::string realPath(const std::string& path);

// Reads the whole file; false when it cannot be read or is larger than the limit.
bool readFile(const std::string& path, std::size_t limit, std::string& text);

// Puts text in the file's place: whoever opens the path finds the old or the new content whole, even
// after a crash at any moment. The caller holds the file's lock.
bool replaceFile(const std::string& path, const std::string& text);

// Makes the directories that lead to the file.
bool makeDirectoriesFor(const std::string& path);

// An exclusive lock on the file beside path; waits for it. release with unlockFile. -1 on failure.
int lockFile(const std::string& path);
void unlockFile(int lock);

} // namespace q5sim
