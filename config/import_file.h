// Opening the file of an import so that all of it can be read.
#pragma once

#include <cstddef>
#include <cstdio>

// What is no regular file is refused beyond this size: it may never end.
inline constexpr std::size_t kMaxStreamSize = 16 * 1024 * 1024;

// Opens the file at its start. Null when it cannot be opened or read to its end. What is no regular file
// is read once, and its content then comes from a temporary file.
std::FILE* openConfigFile(const char* name);
