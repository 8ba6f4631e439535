// Stubs of all command functions, which only record that they were called.
#pragma once

#include <string>
#include <vector>

struct RecordedCall {
    std::string function; // empty when none was called
    int wordCount = -1;
    bool locked = false;            // whether the lock of changes was held
    std::vector<std::string> slots; // all of the word table
};

inline constexpr int kRecordedResult = 42; // of every stub

// The call made since the last call of this; after two, function holds both names.
RecordedCall takeRecordedCall();
