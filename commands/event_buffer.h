// Events fetched but not yet shown, stored in a file between runs.
#pragma once

#include <cstdint>

#include "adapter/event.h"

inline constexpr std::uint32_t kEventSlots = 50;

// The exact contents of the event file. The functions below stay within the slots even if the file was
// corrupt.
struct EventBuffer {
    std::uint32_t position; // slot of the most recently stored record
    std::uint32_t count;    // records in use
    HBAEvent slot[kEventSlots];
};
ASSERT_SIZE(EventBuffer, 20408);
ASSERT_OFFSET(EventBuffer, slot, 8);

extern EventBuffer g_EventBuffer;

// Stores a copy of an event, replacing the oldest when the buffer is full. Returns 0 for a null event,
// else 1.
int AddEventToBuffer(const HBAEvent* event);

// Removes the most recent event. Returns 0 for a null target or an empty buffer, else 1.
int GetEventFromBuffer(HBAEvent* event);

std::uint32_t GetBufferEventCount();

// For merging sessions that use one event file at the same time: what this session has changed in the buffer
// since forgetEventHistory().
void forgetEventHistory();

// Copies the stored records that are still in the buffer, newest first, and returns their number. events
// holds kEventSlots.
std::uint32_t copyNewEvents(HBAEvent* events);

// Whether the record that the slot originally contained has been removed.
bool wasEventRemoved(std::uint32_t slot);

// Removes the newest record that equals this one, if any. The order of the others does not change.
void RemoveEventFromBuffer(const HBAEvent* event);

// Reads the file into buffer; a short file fills only its length. Returns 0 if it cannot be opened, else
// 1.
int ReadEventBufferFromFile(const char* path, EventBuffer* buffer);

// Overwrites the file with the buffer. Returns 0 if it cannot be opened, else 1.
int WriteEventBufferToFile(const char* path, const EventBuffer* buffer);
