// Fuzzes what the program makes of replies: one command, chosen by the first byte, over an adapter that
// answers with the others. Replies, byte counts, member counts, texts and results are whatever they say.
#include "tests/fuzz/fuzzed_reply_stub.h"
#include "tests/fuzz/listings.h"
#include "tests/fuzz/scratch_file.h"
#include "tests/fuzz/word_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    [[maybe_unused]] static const bool silent = discardOutput();
    static WordTable table;
    clearWords(&table);
    randomReplies = {bytes, size};
    const auto choice = takeValue<std::uint8_t>(&randomReplies);
    runLine(&table, listings[choice % std::size(listings)]);
    return 0;
}
