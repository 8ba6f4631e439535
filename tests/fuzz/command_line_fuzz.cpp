// Fuzzes the line splitter and the dispatcher: runs every line of the input as at the prompt, with a no-op
// adapter. Files named by commands are all /dev/null.
#include <string>

#include "tests/fuzz/scratch_file.h"
#include "tests/fuzz/word_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    [[maybe_unused]] static const bool silent = discardOutput();
    static WordTable table;
    clearWords(&table);
    const std::string text(bytes, bytes + size);
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = text.find('\n', start);
        if (!runLine(&table, text.substr(start, end - start).c_str()) || end == std::string::npos)
            return 0;
        start = end + 1;
    }
    return 0;
}
