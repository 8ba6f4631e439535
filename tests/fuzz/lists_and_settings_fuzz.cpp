// Fuzzes the parsers of ID lists and settings texts: the functions themselves, the formatting of lists, and
// every command with a settings text.
#include <string>

#include "tests/fuzz/scratch_file.h"
#include "tests/fuzz/word_table.h"
#include "util/idlist.h"

static const char* const commands[] = {
    "ctrl -a mod -i 0 -s", "phydrv -a mod -i 0 -p 1 -s", "logdrv -a mod -i 0 -l 0 -s",
    "logdrv -a add -i 0 -p 1,2,3 -e 0,0,0 -z", "logdrv -a add -i 0 -z name=x,raid=5 -e 0,0,0 -p"};

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    [[maybe_unused]] static const bool silent = discardOutput();
    static WordTable table;
    clearWords(&table);
    const std::string text(bytes, bytes + size);
    std::string cut = text;
    char* items[kMaxListItems];
    std::uint32_t values[kMaxListItems];
    int count = 0;
    TranslateIDList(&count, values, text.c_str());
    BlockIDStr2Int(&count, values, cut.data());
    FormIDStrAry((cut = text).data(), &count, items);
    BlockExtentIDsString(static_cast<int>(size < 255 ? size : 255), bytes);
    for (const char* command : commands)
        runWithWord(&table, command, text.c_str());
    return 0;
}
