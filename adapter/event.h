// The adapters' event records and the operation that fetches them. It returns 0 on success; the argument
// called reserved is always 0.
#pragma once

#include "adapter/common.h"

struct EventQuery {
    std::int32_t first;  // -1: start with the newest
    std::uint32_t count; // in: events requested; out: events delivered
};
ASSERT_SIZE(EventQuery, 8);

struct HBAEvent {
    std::uint8_t reserved0[12];
    std::uint32_t eventId;
    std::uint8_t reserved16[68];
    char description[324];
};
ASSERT_SIZE(HBAEvent, 408);
ASSERT_OFFSET(HBAEvent, eventId, 12);
ASSERT_OFFSET(HBAEvent, description, 84);

extern "C" {
// reply: a Reply of query->count HBAEvent records; its byte count is not set.
int q5_getHBAEvents(HbaAddress address, std::uint32_t reserved, EventQuery* query, void* reply,
                    std::uint32_t size);
}
