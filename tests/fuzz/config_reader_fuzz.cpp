// Fuzzes the reader of configuration files: shows the bytes as one, then imports them without and with
// re-creation of the logical drives.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "config/import.h"

// In the working directory, which had better be in memory for a long run.
static char path[] = "config_reader_XXXXXX";

// The messages of a million files are of no use to anybody.
static bool prepared() {
    const int file = mkstemp(path);
    std::atexit([] { unlink(path); });
    return file >= 0 && close(file) == 0 && std::freopen("/dev/null", "w", stdout) != nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const bool ready = prepared();
    std::FILE* file = ready ? std::fopen(path, "wb") : nullptr;
    if (file == nullptr || std::fwrite(bytes, 1, size, file) != size || std::fclose(file) != 0)
        std::abort();
    DisplayImportFile(path);
    SetDataFromConfigFile(path, true, false, 0, nullptr, 0, nullptr, 0, nullptr);
    SetDataFromConfigFile(path, true, true, 0, nullptr, 0, nullptr, 0, nullptr);
    return 0;
}
