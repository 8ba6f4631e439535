// The replies of the stub.
#include "tests/malformed/malformed_reply_stub.h"

#include <cstring>

#include "adapter/common.h"
#include "tests/stub_adapter.h"

MalformedReplyStub malformedReply;

int respond(const char* operation, void* reply, std::size_t size) {
    ++malformedReply.calls[operation];
    if (reply != nullptr && malformedReply.fill.has_value())
        std::memset(reply, *malformedReply.fill, size);
    return malformedReply.result;
}

int respondWithList(const char* operation, void* reply, std::size_t size) {
    const int result = respond(operation, reply, size);
    if (malformedReply.bytesUsed.has_value())
        std::memcpy(static_cast<char*>(reply) + offsetof(ReplyHeader, bytesUsed), &*malformedReply.bytesUsed,
                    sizeof *malformedReply.bytesUsed);
    return result;
}

int respondWithCount(const char* operation, std::uint32_t* count) {
    *count = malformedReply.controllers;
    return respond(operation, nullptr, 0);
}

// Delivers the requested number of events, which may be more than the size says.
int respondWithEvents(const char* operation, EventQuery* query, void* reply, std::size_t size) {
    const std::size_t wanted = sizeof(ReplyHeader) + query->count * sizeof(HBAEvent);
    const int result = respond(operation, reply, wanted > size ? wanted : size);
    query->count = malformedReply.eventsDelivered;
    return result;
}

void recordDriveModel(const char* model, const char* firmware) {
    malformedReply.model = model;
    malformedReply.firmware = firmware;
}
