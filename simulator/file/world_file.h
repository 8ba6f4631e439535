// Reading, atomic replacement and locking of one file. Plain POSIX, independent of the world's format.
#pragma once

#include <cstddef>
#include <string>

namespace q5sim {

// Whether the path exists, or cannot be looked up and so may exist. Links are followed.
bool fileExists(const std::string& path);

// Resolves the symbolic links of a path, so that replacing a file does not replace a link to it. A path
// without a file stays as it is. Returns false, with errno set, for a link that leads to no file.
bool resolveLinks(const std::string& path, std::string& real);

// Reads the whole file. Returns false, with errno set, when it cannot be read, is not a regular file or
// exceeds the limit.
bool readFile(const std::string& path, std::size_t limit, std::string& text);

// Replaces the file atomically: a reader sees the old or the new content, even after a crash. The
// caller holds a lock that excludes other writers. Only a regular file is replaced. Returns false, with
// errno set, on failure.
bool replaceFile(const std::string& path, const std::string& text);

// Creates the directories of the path. Returns false, with errno set, on failure.
bool makeDirectoriesFor(const std::string& path);

// Waits for an exclusive advisory lock on path.lock, which must not be a link. Release it with
// unlockFile. Returns -1, with errno set, on failure.
int lockFile(const std::string& path);
void unlockFile(int lock);

// Removes what a program that was killed in replaceFile left, unless another program holds the lock. The
// caller does not hold it.
void removeAbandonedFile(const std::string& path);

} // namespace q5sim
