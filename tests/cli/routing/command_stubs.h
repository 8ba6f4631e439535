// Stubs of all command functions, which only record that they were called.
#pragma once

#include <string>
#include <vector>

struct RecordedCall {
    std::string function; // empty if none was called
    int wordCount = -1;
    bool locked = false;            // whether the lock of changes was held
    std::vector<std::string> slots; // the whole word table
};

inline constexpr int kRecordedResult = 42; // of every stub

// Returns and clears the recorded call. After two calls, function contains both names.
RecordedCall takeRecordedCall();

// Whether the command function only lists: by convention, exactly these have names that begin with "List".
bool isListing(const std::string& function);
