// A file with the current fuzzing input, for functions that read by path. It is in the working directory
// (which should be in memory for long runs) and removed when the fuzzer ends.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

inline char scratchPath[] = "fuzzed_XXXXXX";

// The output of the inputs is not needed.
inline bool discardOutput() {
    return std::freopen("/dev/null", "w", stdout) != nullptr;
}

inline bool makeScratchFile() {
    const int file = mkstemp(scratchPath);
    std::atexit([] { unlink(scratchPath); });
    return file >= 0 && close(file) == 0;
}

// Rewrites the file and returns its path.
inline const char* scratchFile(const std::uint8_t* bytes, std::size_t size) {
    static const bool ready = makeScratchFile();
    std::FILE* file = ready ? std::fopen(scratchPath, "wb") : nullptr;
    if (file == nullptr || std::fwrite(bytes, 1, size, file) != size || std::fclose(file) != 0)
        std::abort();
    return scratchPath;
}
