// The lying adapter's answers.
#include "tests/malformed/malformed_reply_stub.h"

#include <cstring>

#include "adapter/common.h"
#include "tests/stub_adapter.h"

MalformedReplyStub hostile;

int answer(const char* operation, void* reply, std::size_t size) {
    ++hostile.calls[operation];
    if (reply != nullptr && hostile.fill.has_value())
        std::memset(reply, *hostile.fill, size);
    return hostile.result;
}

int answerList(const char* operation, void* reply, std::size_t size) {
    const int result = answer(operation, reply, size);
    if (hostile.bytesUsed.has_value())
        std::memcpy(static_cast<char*>(reply) + offsetof(ReplyHeader, bytesUsed), &*hostile.bytesUsed,
                    sizeof *hostile.bytesUsed);
    return result;
}

int answerControllers(const char* operation, std::uint32_t* count) {
    *count = hostile.controllers;
    return answer(operation, nullptr, 0);
}

// It delivers as many as were wanted, which may be more than the size says.
int answerEvents(const char* operation, EventQuery* query, void* reply, std::size_t size) {
    const std::size_t wanted = sizeof(ReplyHeader) + query->count * sizeof(HBAEvent);
    const int result = answer(operation, reply, wanted > size ? wanted : size);
    query->count = hostile.eventsDelivered;
    return result;
}

void noteDrives(const char* model, const char* firmware) {
    hostile.model = model;
    hostile.firmware = firmware;
}
