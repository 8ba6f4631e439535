// Storing and taking events, and the file that keeps them between runs.
#include "commands/event_buffer.h"

#include <cstdio>
#include <cstring>

EventBuffer g_EventBuffer;

// Storing goes through the slots 1 .. 48 and 0; slot 49 only ever holds what a file brought.
int AddEventToBuffer(const HBAEvent* event) {
    if (event == nullptr)
        return 0;
    EventBuffer& buffer = g_EventBuffer;
    if (++buffer.position >= kEventSlots - 1)
        buffer.position = 0;
    if (buffer.count < kEventSlots)
        ++buffer.count;
    buffer.slot[buffer.position] = *event;
    return 1;
}

int GetEventFromBuffer(HBAEvent* event) {
    EventBuffer& buffer = g_EventBuffer;
    if (event == nullptr || buffer.count == 0)
        return 0;
    if (buffer.position >= kEventSlots)
        buffer.position = kEventSlots - 1;
    if (buffer.count > kEventSlots)
        buffer.count = kEventSlots;
    *event = buffer.slot[buffer.position];
    --buffer.count;
    buffer.position = buffer.position == 0 ? kEventSlots - 1 : buffer.position - 1;
    return 1;
}

std::uint32_t GetBufferEventCount() {
    return g_EventBuffer.count < kEventSlots ? g_EventBuffer.count : kEventSlots;
}

int ReadEventBufferFromFile(const char* path, EventBuffer* buffer) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr)
        return 0;
    // A short file, even an empty one, is taken as far as it goes.
    static_cast<void>(std::fread(buffer, 1, sizeof *buffer, file) == sizeof *buffer);
    std::fclose(file);
    return 1;
}

int WriteEventBufferToFile(const char* path, const EventBuffer* buffer) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr)
        return 0;
    // A full disk is not reported: the events stay with the adapter.
    static_cast<void>(std::fwrite(buffer, 1, sizeof *buffer, file) == sizeof *buffer);
    std::fclose(file);
    return 1;
}
