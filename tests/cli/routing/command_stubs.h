// Stand-ins for all command functions, which only note that they were called.
#pragma once

#include <string>
#include <vector>

struct RecordedCall {
    std::string function; // empty when none was called
    int wordCount = -1;
    std::vector<std::string> slots; // all of the word table
};

inline constexpr int kRecordedResult = 42; // what every stand-in returns

// The call since the last time; a second one in between makes the function's name both names.
RecordedCall takeRecordedCall();
