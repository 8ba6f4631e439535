// Paths in buffers of a fixed size.
#pragma once

#include <cstddef>
#include <cstring>

inline constexpr std::size_t kPathSize = 4096;

// Length of the path's directory, with its slash; 0 for a file of the working directory.
inline std::size_t directoryLength(const char* path) {
    const char* slash = std::strrchr(path, '/');
    return slash != nullptr ? static_cast<std::size_t>(slash - path) + 1 : 0;
}
