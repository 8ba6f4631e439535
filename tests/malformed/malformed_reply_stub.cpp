// The replies of the stub.
#include "tests/malformed/malformed_reply_stub.h"

#include <cstring>

#include "adapter/common.h"
#include "tests/stub_adapter.h"

MalformedReplyStub malformedReply;

int answer(const char* operation, void* reply, std::size_t size) {
    ++malformedReply.calls[operation];
    if (reply != nullptr && malformedReply.fill.has_value())
        std::memset(reply, *malformedReply.fill, size);
    return malformedReply.result;
}

int answerList(const char* operation, void* reply, std::size_t size) {
    const int result = answer(operation, reply, size);
    if (malformedReply.bytesUsed.has_value())
        std::memcpy(static_cast<char*>(reply) + offsetof(ReplyHeader, bytesUsed), &*malformedReply.bytesUsed,
                    sizeof *malformedReply.bytesUsed);
    return result;
}

int answerControllers(const char* operation, std::uint32_t* count) {
    *count = malformedReply.controllers;
    return answer(operation, nullptr, 0);
}

// Delivers the requested number of events, which may be more than the size says.
int answerEvents(const char* operation, EventQuery* query, void* reply, std::size_t size) {
    const std::size_t wanted = sizeof(ReplyHeader) + query->count * sizeof(HBAEvent);
    const int result = answer(operation, reply, wanted > size ? wanted : size);
    query->count = malformedReply.eventsDelivered;
    return result;
}

void noteDrives(const char* model, const char* firmware) {
    malformedReply.model = model;
    malformedReply.firmware = firmware;
}
