// Opening the file of an import so that all of it can be read.
#pragma once

#include <cstddef>
#include <cstdio>

// Limit for anything but a regular file, which may never end.
inline constexpr std::size_t kMaxStreamSize = 16 * 1024 * 1024;

// Opens the file at its start. Null if it cannot be opened or read to its end. Anything but a regular file is
// copied to a temporary file, because it can be read only once.
std::FILE* openConfigFile(const char* name);
