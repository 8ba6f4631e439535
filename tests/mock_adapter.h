// A mock of the adapter library, which it replaces at link time. A test plans the calls a command must
// make, in order, with every byte of their arguments, and the reply to each. A call that is unplanned,
// differs in a byte or is missing fails the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "adapter/common.h"

using Bytes = std::vector<std::uint8_t>;

// Appends size bytes from start.
void appendBytes(Bytes* bytes, const void* start, std::size_t size);

// The arguments of a call, concatenated as they are in memory: 8 bytes for an HbaAddress, 4 each for
// the reserved number and sizes, the contents of a record passed by pointer, and the characters of a
// text with its NUL. Pointers to output buffers are omitted.
template <typename... Arguments>
Bytes bytesOf(const Arguments&... arguments) {
    static_assert(((std::is_trivially_copyable_v<Arguments> && !std::is_pointer_v<Arguments>)&&...));
    Bytes bytes;
    (appendBytes(&bytes, &arguments, sizeof arguments), ...);
    return bytes;
}

// Concatenates arguments from bytesOf(), or the records of a reply.
Bytes concat(const std::vector<Bytes>& parts);

// Plans the next call. reply is copied into the call's output buffer, up to the size passed in; for an
// operation that returns a scalar (a count, a state, a mask), reply is that scalar. For q5_getHBAEvents
// reply is the updated EventQuery (8 bytes) followed by the reply buffer, which is copied regardless
// of the size.
void expectCall(const char* operation, const Bytes& arguments, const Bytes& reply = {}, int result = 0);

// The arguments of most queries: controller, the reserved 0, a record by pointer, the buffer size.
template <typename Query>
Bytes queryFor(std::uint32_t controller, const Query& query, std::uint32_t size) {
    return bytesOf(hbaAddress(controller), std::uint32_t{0}, query, size);
}

// The header of a reply with this byte count.
ReplyHeader replyHeader(std::size_t bytesUsed);

// A list reply with these records and the matching byte count.
template <typename Record>
Bytes listReply(const std::vector<Record>& records) {
    Bytes reply = bytesOf(replyHeader(sizeof(ReplyHeader) + records.size() * sizeof(Record)));
    for (const Record& record : records)
        appendBytes(&reply, &record, sizeof record);
    return reply;
}

// The result of a command function and everything it printed.
struct CommandOutcome {
    int result;
    std::string output;
};

void expectOutcome(const CommandOutcome& outcome, int result, const std::string& output);

// Splits a line at blanks. Quotes have no special meaning.
std::vector<std::string> splitWords(const std::string& line);

// Runs a command function on words. The slots of the word table after the last word hold the words of
// stale, the rest are empty. Each slot is a separate allocation, so that the sanitizer detects accesses
// out of bounds.
CommandOutcome run(int (*function)(int, char**), const std::vector<std::string>& words,
                   const std::vector<std::string>& stale = {});

// The same, with the outcome as one text: "result: output".
std::string outcomeOf(int (*function)(int, char**), const std::vector<std::string>& words,
                      const std::vector<std::string>& stale = {});
std::string outcomeOf(int (*function)(int, char**), const std::string& line,
                      const std::vector<std::string>& stale = {});

// Capture everything written to standard output between the two calls, which must not nest.
// Differences from the plan are reported when the capture ends.
void startCapture();
std::string endCapture();

// Runs a function and returns what it printed.
template <typename Function>
std::string outputOf(Function function) {
    startCapture();
    function();
    return endCapture();
}

// Reports each planned call that was not made as a failure, and clears the plan.
void expectAllCalled();

// Base class of tests with a mock adapter: each starts with an empty plan and fails if a planned call
// was not made.
class MockAdapterTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};
