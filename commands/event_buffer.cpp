// The event buffer, and the file that stores it between runs.
#include "commands/event_buffer.h"

#include <cstdio>
#include <cstring>

EventBuffer g_EventBuffer;

static bool storedInSlot[kEventSlots], removedFromSlot[kEventSlots];

// Compatibility: events are stored in slots 1 .. 48, then 0; slot 49 is only ever filled from the file.
int AddEventToBuffer(const HBAEvent* event) {
    if (event == nullptr)
        return 0;
    EventBuffer& buffer = g_EventBuffer;
    if (++buffer.position >= kEventSlots - 1)
        buffer.position = 0;
    if (buffer.count < kEventSlots)
        ++buffer.count;
    buffer.slot[buffer.position] = *event;
    storedInSlot[buffer.position] = true;
    return 1;
}

static std::uint32_t olderSlot(std::uint32_t slot) {
    return slot == 0 ? kEventSlots - 1 : slot - 1;
}

static std::uint32_t newestSlot() {
    return g_EventBuffer.position < kEventSlots ? g_EventBuffer.position : kEventSlots - 1;
}

int GetEventFromBuffer(HBAEvent* event) {
    EventBuffer& buffer = g_EventBuffer;
    if (event == nullptr || buffer.count == 0)
        return 0;
    const std::uint32_t slot = newestSlot();
    *event = buffer.slot[slot];
    if (!storedInSlot[slot])
        removedFromSlot[slot] = true;
    buffer.count = GetBufferEventCount() - 1;
    buffer.position = olderSlot(slot);
    return 1;
}

std::uint32_t GetBufferEventCount() {
    return g_EventBuffer.count < kEventSlots ? g_EventBuffer.count : kEventSlots;
}

void forgetEventHistory() {
    std::memset(storedInSlot, 0, sizeof storedInSlot);
    std::memset(removedFromSlot, 0, sizeof removedFromSlot);
}

std::uint32_t copyNewEvents(HBAEvent* events) {
    std::uint32_t copied = 0, slot = newestSlot();
    for (std::uint32_t held = GetBufferEventCount(); held > 0; --held, slot = olderSlot(slot))
        if (storedInSlot[slot])
            events[copied++] = g_EventBuffer.slot[slot];
    return copied;
}

bool wasEventRemoved(std::uint32_t slot) {
    return removedFromSlot[slot];
}

// Moves every newer record one slot back, over the one to remove.
void RemoveEventFromBuffer(const HBAEvent* event) {
    HBAEvent newer = {};
    std::uint32_t slot = newestSlot();
    std::uint32_t held = GetBufferEventCount();
    for (; held > 0 && std::memcmp(&g_EventBuffer.slot[slot], event, sizeof *event) != 0; --held)
        slot = olderSlot(slot);
    if (held == 0)
        return;
    for (std::uint32_t to = newestSlot();; to = olderSlot(to)) {
        const HBAEvent moved = g_EventBuffer.slot[to];
        g_EventBuffer.slot[to] = newer;
        newer = moved;
        if (to == slot)
            break;
    }
    g_EventBuffer.position = olderSlot(newestSlot());
    g_EventBuffer.count = GetBufferEventCount() - 1;
}

int ReadEventBufferFromFile(const char* path, EventBuffer* buffer) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr)
        return 0;
    // A short or empty file is accepted.
    static_cast<void>(std::fread(buffer, 1, sizeof *buffer, file) == sizeof *buffer);
    std::fclose(file);
    return 1;
}

int WriteEventBufferToFile(const char* path, const EventBuffer* buffer) {
    std::FILE* file = std::fopen(path, "wb");
    if (file == nullptr)
        return 0;
    // A write error is not reported: the adapter still has the events.
    static_cast<void>(std::fwrite(buffer, 1, sizeof *buffer, file) == sizeof *buffer);
    std::fclose(file);
    return 1;
}
