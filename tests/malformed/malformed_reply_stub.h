// A stub adapter with malformed replies: the test sets every byte of every reply, every byte count and every
// result. It never writes past the end of a buffer, and counts its calls.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

// By default every operation succeeds and leaves the buffers cleared.
struct MalformedReplyStub {
    std::optional<std::uint8_t> fill;       // written to every byte of every reply
    std::optional<std::uint32_t> bytesUsed; // the byte count of list replies, instead of the fill
    std::uint32_t controllers = 1;
    std::uint32_t eventsDelivered = 0; // as reported; the buffer is filled to its actual end
    int result = 0;                    // of every operation
    std::map<std::string, int> calls;  // by operation
    std::string model, firmware;       // arguments of the last operation of the 3 Gb/s option
};
extern MalformedReplyStub malformedReply;
