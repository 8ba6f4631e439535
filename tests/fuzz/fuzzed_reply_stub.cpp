// An adapter that is out of its mind: every reply is filled, and every result taken, from randomReplies.
#include "tests/fuzz/fuzzed_reply_stub.h"

#include "tests/stub_adapter.h"

Bytes randomReplies;

static constexpr std::uint32_t kMaxCheckedControllers = 3; // listings go through all that are reported

// Three answers of four are 0, the others have either sign.
int answer(const char*, void* reply, std::size_t size) {
    if (reply != nullptr)
        takeBytes(&randomReplies, reply, size);
    const auto result = takeValue<std::int8_t>(&randomReplies);
    return result >= -32 && result < 96 ? 0 : result;
}

int answerList(const char* operation, void* reply, std::size_t size) {
    return answer(operation, reply, size);
}

int answerControllers(const char*, std::uint32_t* count) {
    *count = takeValue<std::uint8_t>(&randomReplies) % (kMaxCheckedControllers + 1);
    return 0;
}

int answerEvents(const char* operation, EventQuery* query, void* reply, std::size_t size) {
    query->count = takeValue<std::uint32_t>(&randomReplies);
    return answer(operation, reply, size);
}

void noteDrives(const char*, const char*) {}
