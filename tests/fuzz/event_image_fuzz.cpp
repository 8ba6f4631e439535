// Fuzzes the event file: reads its image, adds events, lists until nothing is left, and writes it again.
#include "adapter/reply.h"
#include "commands/event_buffer.h"
#include "tests/fuzz/scratch_file.h"
#include "tests/fuzz/word_table.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    [[maybe_unused]] static const bool silent = discardOutput();
    static WordTable table;
    clearWords(&table);
    HBAEvent event = {};
    g_EventBuffer = {};
    ReadEventBufferFromFile(scratchFile(bytes, size), &g_EventBuffer);
    WriteEventBufferToFile("/dev/null", &g_EventBuffer);
    for (std::size_t i = 0; i < size % 64; ++i)
        AddEventToBuffer(&event);
    runLine(&table, "event -v -c 3");
    for (std::uint32_t i = 0; i <= kEventSlots && GetEventFromBuffer(&event); ++i)
        std::printf("%.*s\n", FIELD_PRINTF_ARGS(event.description));
    runLine(&table, "event -c 50");
    if (GetEventFromBuffer(&event) != 0)
        std::abort(); // more events than there are slots
    return 0;
}
