// Records what the commands compare an unknown word with.
#include "completions/interpose.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "cli/interface.h"
#include "commands/options.h"
#include "commands/settings_text.h"
#include "util/utils.h"
#include "util/words.h"

// The original functions, renamed in CMakeLists.txt.
int realStrCmpNoCase(const char* a, const char* b);
const char* realStrstrNoCase(const char* haystack, const char* needle);
bool realKeyContains(const char* item, const char* word);
Option realTextOption(const char* name, const char** word);
Option realListOption(const char* name, std::uint32_t* numbers, int* count, int capacity, std::uint32_t base);

// The limit for one line. A command that reads its line to the end makes far fewer.
static constexpr int kMaxComparisons = 1000;

static Recording recording;
static int comparisons;

void addNew(std::vector<std::string>* words, const std::vector<std::string>& more) {
    for (const std::string& word : more)
        if (std::find(words->begin(), words->end(), word) == words->end())
            words->push_back(word);
}

// After kMaxComparisons the words compare equal, which ends a command that repeats the same comparison.
int strCmpNoCase(const char* a, const char* b) {
    if (std::strcmp(a, kUnknownWord) != 0)
        return realStrCmpNoCase(a, b);
    addNew(&recording.compared, {b});
    return ++comparisons > kMaxComparisons ? 0 : realStrCmpNoCase(a, b);
}

static void recordSearch(const char* text, const char* word) {
    if (std::strstr(text, kUnknownWord) != nullptr)
        addNew(&recording.searchedFor, {word});
}

const char* strstrNoCase(const char* haystack, const char* needle) {
    recordSearch(haystack, needle);
    return realStrstrNoCase(haystack, needle);
}

bool keyContains(const char* item, const char* word) {
    recordSearch(item, word);
    return realKeyContains(item, word);
}

Option textOption(const char* name, const char** word) {
    addNew(&recording.files, {name});
    return realTextOption(name, word);
}

Option listOption(const char* name, std::uint32_t* numbers, int* count, int capacity, std::uint32_t base) {
    addNew(&recording.lists, {name});
    return realListOption(name, numbers, count, capacity, base);
}

Recording record(const std::vector<std::string>& line, int count) {
    static char slots[kMaxWords][kWordSize];
    static char* words[kMaxWords];
    for (std::size_t i = 0; i < kMaxWords; ++i) {
        std::snprintf(slots[i], kWordSize, "%s", i < line.size() ? line[i].c_str() : kUnknownWord);
        words[i] = slots[i];
    }
    recording = {};
    comparisons = 0;
    cli_parse_command(count, words);
    return recording;
}
