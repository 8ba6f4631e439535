// The plan of a test and its comparison with the actual calls, the word tables for commands, and the
// capture of their output. The operations are in mock_operations.cpp.
#include "tests/mock_adapter.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <deque>
#include <memory>
#include <sstream>

#include "tests/mock_call.h"
#include "util/words.h"

namespace {
struct PlannedCall {
    std::string operation;
    Bytes arguments;
    Bytes reply;
    int result;
};

// The file that captures standard output, and the original standard output.
struct Capture {
    std::FILE* file = nullptr;
    int standardOutput = -1;
};
} // namespace

static std::deque<PlannedCall> plan;
static Capture capture;
static std::vector<std::string> differences; // deferred until the capture ends

// Failures print to standard output, so a capture would mix them with the command's output.
static void reportDifference(const std::string& text) {
    if (capture.file != nullptr)
        differences.push_back(text);
    else
        ADD_FAILURE() << text;
}

static std::string hex(const Bytes& bytes) {
    std::string text;
    char byte[8];
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::snprintf(byte, sizeof byte, "%s%02x", i == 0 ? "" : i % 4 == 0 ? "  " : " ", bytes[i]);
        text += byte;
    }
    return text.empty() ? "(nothing)" : text;
}

// The first byte that differs, for records too long to compare by eye.
static std::string firstDifference(const Bytes& left, const Bytes& right) {
    std::size_t at = 0;
    while (at < left.size() && at < right.size() && left[at] == right[at])
        ++at;
    return "first difference at byte " + std::to_string(at);
}

void appendBytes(Bytes* bytes, const void* start, std::size_t size) {
    const auto* first = static_cast<const std::uint8_t*>(start);
    bytes->insert(bytes->end(), first, first + size);
}

Bytes concat(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts)
        appendBytes(&all, part.data(), part.size());
    return all;
}

ReplyHeader replyHeader(std::size_t bytesUsed) {
    ReplyHeader header = {};
    header.bytesUsed = static_cast<std::uint32_t>(bytesUsed);
    return header;
}

void expectCall(const char* operation, const Bytes& arguments, const Bytes& reply, int result) {
    plan.push_back({operation, arguments, reply, result});
}

PlannedReply nextPlannedReply(const char* operation, const Bytes& arguments) {
    if (plan.empty()) {
        reportDifference(std::string("unplanned call ") + operation + "\n  arguments " + hex(arguments));
        return {{}, 1};
    }
    const PlannedCall planned = plan.front();
    plan.pop_front();
    if (planned.operation != operation)
        reportDifference("planned call " + planned.operation + ", but got " + operation + "\n  planned " +
                         hex(planned.arguments) + "\n  got     " + hex(arguments));
    else if (planned.arguments != arguments)
        reportDifference(planned.operation + " has other arguments, " +
                         firstDifference(planned.arguments, arguments) + "\n  planned " +
                         hex(planned.arguments) + "\n  got     " + hex(arguments));
    return {planned.reply, planned.result};
}

void expectAllCalled() {
    for (const PlannedCall& planned : plan)
        ADD_FAILURE() << "planned call " << planned.operation << " was not made\n  planned "
                      << hex(planned.arguments);
    plan.clear();
}

void MockAdapterTest::SetUp() {
    plan.clear();
}

void MockAdapterTest::TearDown() {
    expectAllCalled();
}

void startCapture() {
    std::fflush(stdout);
    capture.file = std::tmpfile();
    capture.standardOutput = dup(STDOUT_FILENO);
    if (capture.file == nullptr || dup2(fileno(capture.file), STDOUT_FILENO) < 0) {
        std::perror("standard output cannot be captured");
        std::abort();
    }
}

std::string endCapture() {
    std::fflush(stdout);
    dup2(capture.standardOutput, STDOUT_FILENO);
    close(capture.standardOutput);
    std::rewind(capture.file);
    std::string output;
    for (int c; (c = std::getc(capture.file)) != EOF;)
        output += static_cast<char>(c);
    std::fclose(capture.file);
    capture = {};
    for (const std::string& difference : differences)
        ADD_FAILURE() << difference << "\n  after the output\n" << output;
    differences.clear();
    return output;
}

void expectOutcome(const CommandOutcome& outcome, int result, const std::string& output) {
    EXPECT_EQ(outcome.result, result);
    EXPECT_EQ(outcome.output, output);
}

std::vector<std::string> splitWords(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

CommandOutcome run(int (*function)(int, char**), const std::vector<std::string>& words,
                   const std::vector<std::string>& stale) {
    std::vector<std::string> texts = words;
    texts.insert(texts.end(), stale.begin(), stale.end());
    if (texts.size() > kMaxWords) {
        ADD_FAILURE() << "the word table has " << kMaxWords << " slots, not " << texts.size();
        texts.resize(kMaxWords);
    }
    texts.resize(kMaxWords);

    std::array<std::unique_ptr<char[]>, kMaxWords> slots;
    char* table[kMaxWords];
    for (std::size_t i = 0; i < kMaxWords; ++i) {
        slots[i] = std::make_unique<char[]>(kWordSize);
        table[i] = slots[i].get();
        std::snprintf(table[i], kWordSize, "%s", texts[i].c_str());
    }
    startCapture();
    const int result = function(static_cast<int>(words.size()), table);
    return {result, endCapture()};
}

std::string outcomeOf(int (*function)(int, char**), const std::vector<std::string>& words,
                      const std::vector<std::string>& stale) {
    const CommandOutcome outcome = run(function, words, stale);
    return std::to_string(outcome.result) + ": " + outcome.output;
}

std::string outcomeOf(int (*function)(int, char**), const std::string& line,
                      const std::vector<std::string>& stale) {
    return outcomeOf(function, splitWords(line), stale);
}
