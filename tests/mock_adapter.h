// A scripted adapter: replaces the closed library at link time. A test plans the calls a command must
// make, in order, with every byte it hands over, and says what each one answers. A call that was not
// planned, differs in a byte, or never comes fails the test.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "adapter/common.h"

using Bytes = std::vector<std::uint8_t>;

// Adds size bytes as they lie in memory from start on.
void appendBytes(Bytes* bytes, const void* start, std::size_t size);

// What a call hands over: its arguments one after the other as they lie in memory. An HbaAddress
// counts 8 bytes, the reserved number and sizes 4 each, a record passed in by pointer its own bytes,
// a text its characters and the NUL. Pointers to buffers that the adapter fills count nothing.
template <typename... Arguments>
Bytes bytesOf(const Arguments&... arguments) {
    static_assert(((std::is_trivially_copyable_v<Arguments> && !std::is_pointer_v<Arguments>)&&...));
    Bytes bytes;
    (appendBytes(&bytes, &arguments, sizeof arguments), ...);
    return bytes;
}

// Joins what bytesOf() made of single arguments, or the records of a reply.
Bytes joined(const std::vector<Bytes>& parts);

// Plans the next call. reply is copied into the buffer the call offers, as far as the size it states
// reaches; an operation that fills a scalar (a count, a state, a mask) takes that scalar's bytes.
// q5_getHBAEvents takes the 8 bytes of the EventQuery it leaves, then the reply buffer, and writes
// all of that: it delivers as many events as were wanted, whatever the size says.
void expectCall(const char* operation, const Bytes& handedOver, const Bytes& reply = {}, int result = 0);

// The arguments of most calls: controller, the reserved 0, a record by pointer, the buffer's size.
template <typename Query>
Bytes asks(std::uint32_t controller, const Query& query, std::uint32_t size) {
    return bytesOf(hbaAddress(controller), std::uint32_t{0}, query, size);
}

// The header of a reply that uses so many bytes.
ReplyHeader headerOf(std::size_t bytesUsed);

// A list reply that holds these records, its byte count saying so.
template <typename Record>
Bytes listReply(const std::vector<Record>& records) {
    Bytes reply = bytesOf(headerOf(sizeof(ReplyHeader) + records.size() * sizeof(Record)));
    for (const Record& record : records)
        appendBytes(&reply, &record, sizeof record);
    return reply;
}

// What a command function did: its result and everything it printed.
struct CommandOutcome {
    int result;
    std::string output;
};

void expectOutcome(const CommandOutcome& outcome, int result, const std::string& output);

// The words of a line, which blanks separate; quotes mean nothing here.
std::vector<std::string> typed(const std::string& line);

// Runs a command function on words, given as the user would type them but already split; the word
// table's other slots are empty, or hold what stale says from the slot after the last word on. Each
// slot is an allocation of its own, so that the sanitizer sees whoever leaves it.
CommandOutcome run(int (*function)(int, char**), const std::vector<std::string>& words,
                   const std::vector<std::string>& stale = {});

// Everything written to standard output between the two, whose calls may not nest. Differences from
// the plan are reported when the capture ends.
void startCapture();
std::string endCapture();

// Runs anything that prints, and returns what it printed.
template <typename Function>
std::string printed(Function function) {
    startCapture();
    function();
    return endCapture();
}

// Fails for each planned call that has not come by now, and forgets them.
void expectAllCalled();

// Base of the tests that script the adapter: each starts with an empty plan and fails when a planned
// call did not come.
class Scripted : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
};
