// Shared by the tests with malformed replies: running command lines, an event buffer that starts empty, and
// the numbers that result from filling every byte.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>

#include "cli/interface.h"
#include "commands/event_buffer.h"
#include "tests/malformed/malformed_reply_stub.h"
#include "tests/mock_adapter.h"

class Malformed : public testing::Test {
protected:
    void SetUp() override {
        malformedReply = {};
        g_EventBuffer = {};
    }
    // A path for exports, removed with the test.
    const std::string& file() {
        if (path.empty())
            path = testing::TempDir() + "malformed_" + std::to_string(getpid()) + ".cfg";
        return path;
    }
    void TearDown() override {
        if (!path.empty())
            std::remove(path.c_str());
    }

private:
    std::string path;
};

inline CommandOutcome command(const std::string& line) {
    return run(cli_parse_command, splitWords(line));
}

inline constexpr int kFailures[] = {INT_MIN, -1, 1, INT_MAX};
inline constexpr int kResults[] = {INT_MIN, -1, 0, 1, INT_MAX};

inline std::string times(std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

// Right-justified as by printf: longer texts are not truncated.
inline std::string right(std::size_t width, const std::string& text) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

// One byte everywhere, and the resulting values of fields of each width.
struct Fill {
    std::uint8_t byte = 0;
    std::string u8 = {}, u16 = {}, next = {}; // next: the 16-bit number plus one
    std::string i32 = {}, u32 = {}, hex = {}, u64 = {};
    std::string megabytes =
        {}; // of u64 sectors, in units of 1,048,576 bytes; the byte count wraps at 64 bits
    std::string thousands = {}; // likewise in units of 1,000,000
    std::string members = {};   // a list of 32 IDs counted from 1, truncated to 80 characters
    std::string extents = {};   // likewise counted from 0
};

inline const Fill fills[] = {
    {0xFF, "255", "65535", "65536", "-1", "4294967295", "ffffffff", "18446744073709551615",
     "17592186044416.00", "18446744073709.5508", "(" + times(31, "-,") + "-)", "(" + times(31, "-,") + "-)"},
    {0x80, "128", "32896", "32897", "-2139062144", "2155905152", "80808080", "9259542123273814144",
     "68988964880.06", "72340172838.0764", "(" + times(18, "129,") + "129)",
     "(" + times(18, "128,") + "128)"},
    {'A', "65", "16705", "16706", "1094795585", "1094795585", "41414141", "4702111234474983745",
     "8968565434408.16", "9404222468949.9668", "(" + times(25, "66,") + "66)",
     "(" + times(25, "65,") + "65)"},
};

// A text field without a terminating NUL.
inline std::string full(const Fill& fill, std::size_t size) {
    return {std::string(size, static_cast<char>(fill.byte))};
}
