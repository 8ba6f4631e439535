// An adapter that lies: every byte of every reply, every byte count and every result is what the test
// says. It never writes beyond the buffer it was offered, and counts its calls.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

// What the adapter does until a test says otherwise: it succeeds and leaves buffers cleared.
struct MalformedReplyStub {
    std::optional<std::uint8_t> fill;       // written to every byte of every reply
    std::optional<std::uint32_t> bytesUsed; // the byte count of list replies, whatever the fill
    std::uint32_t controllers = 1;
    std::uint32_t eventsDelivered = 0; // claimed; what is written reaches to the buffer's real end
    int result = 0;                    // of every operation
    std::map<std::string, int> calls;  // by operation
    std::string model, firmware;       // that the last operation of the 3 Gb/s option was handed
};
extern MalformedReplyStub hostile;
