// Fuzzes the handling of replies: runs one command, chosen by the first byte, with an adapter whose replies,
// byte counts, member counts, texts and result codes are the other bytes.
#include <iterator>

#include "tests/fuzz/fuzzed_reply_stub.h"
#include "tests/fuzz/listings.h"
#include "tests/fuzz/scratch_file.h"
#include "tests/fuzz/word_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    [[maybe_unused]] static const bool silent = discardOutput();
    static WordTable table;
    clearWords(&table);
    fuzzedReplies = {bytes, size};
    const auto choice = takeValue<std::uint8_t>(&fuzzedReplies);
    runLine(&table, listings[choice % std::size(listings)]);
    return 0;
}
