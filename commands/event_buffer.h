// The events fetched but not yet shown: a buffer that survives from one run to the next in a file.
#pragma once

#include <cstdint>

#include "adapter/event.h"

inline constexpr std::uint32_t kEventSlots = 50;

// The image of the event file, byte for byte. Whatever a file brought, the functions below stay
// inside the slots.
struct EventBuffer {
    std::uint32_t position; // slot of the most recently stored record
    std::uint32_t count;    // records held
    HBAEvent slot[kEventSlots];
};
ASSERT_SIZE(EventBuffer, 20408);
ASSERT_OFFSET(EventBuffer, slot, 8);

extern EventBuffer g_EventBuffer;

// Stores a copy, over the oldest record when all places are taken. 0 for a null record, else 1.
int AddEventToBuffer(const HBAEvent* event);

// Takes the most recent record out. 0 for a null target or an empty buffer, else 1.
int GetEventFromBuffer(HBAEvent* event);

std::uint32_t GetBufferEventCount();

// Reads the image; a shorter file fills only its length. 0 when it cannot be opened, else 1.
int ReadEventBufferFromFile(const char* path, EventBuffer* buffer);

// Writes the image over the file. 0 when it cannot be opened, else 1.
int WriteEventBufferToFile(const char* path, const EventBuffer* buffer);
