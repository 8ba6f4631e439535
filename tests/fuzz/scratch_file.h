// A file in the working directory (which had better be in memory for a long run) that holds the bytes of
// the present fuzzing input, for what reads by path. Gone when the fuzzer ends.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

inline char scratchPath[] = "fuzzed_XXXXXX";

// The messages of a million inputs are of no use to anybody.
inline bool discardOutput() {
    return std::freopen("/dev/null", "w", stdout) != nullptr;
}

inline bool makeScratchFile() {
    const int file = mkstemp(scratchPath);
    std::atexit([] { unlink(scratchPath); });
    return file >= 0 && close(file) == 0;
}

// The path of the file, written anew.
inline const char* scratchFile(const std::uint8_t* bytes, std::size_t size) {
    static const bool ready = makeScratchFile();
    std::FILE* file = ready ? std::fopen(scratchPath, "wb") : nullptr;
    if (file == nullptr || std::fwrite(bytes, 1, size, file) != size || std::fclose(file) != 0)
        std::abort();
    return scratchPath;
}
