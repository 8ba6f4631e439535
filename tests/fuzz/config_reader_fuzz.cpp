// Fuzzes the reader of configuration files: displays the input as one, then imports it without and with
// re-creation of the logical drives.
#include "config/import.h"
#include "tests/fuzz/scratch_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    [[maybe_unused]] static const bool silent = discardOutput();
    const char* path = scratchFile(bytes, size);
    DisplayImportFile(path);
    SetDataFromConfigFile(path, true, false, 0, nullptr, 0, nullptr, 0, nullptr);
    SetDataFromConfigFile(path, true, true, 0, nullptr, 0, nullptr, 0, nullptr);
    return 0;
}
