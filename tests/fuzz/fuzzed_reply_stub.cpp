// A stub adapter that takes every reply and every result code from fuzzedReplies.
#include "tests/fuzz/fuzzed_reply_stub.h"

#include "tests/stub_adapter.h"

Bytes fuzzedReplies;

static constexpr std::uint32_t kMaxCheckedControllers = 3; // listings visit all reported controllers

// Three of four results are 0, the others have either sign.
int respond(const char*, void* reply, std::size_t size) {
    if (reply != nullptr)
        takeBytes(&fuzzedReplies, reply, size);
    const auto result = takeValue<std::int8_t>(&fuzzedReplies);
    return result >= -32 && result < 96 ? 0 : result;
}

int respondWithList(const char* operation, void* reply, std::size_t size) {
    return respond(operation, reply, size);
}

int respondWithCount(const char*, std::uint32_t* count) {
    *count = takeValue<std::uint8_t>(&fuzzedReplies) % (kMaxCheckedControllers + 1);
    return 0;
}

int respondWithEvents(const char* operation, EventQuery* query, void* reply, std::size_t size) {
    query->count = takeValue<std::uint32_t>(&fuzzedReplies);
    return respond(operation, reply, size);
}

void recordDriveModel(const char*, const char*) {}
