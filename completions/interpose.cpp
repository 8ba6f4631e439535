// Hearing what the commands compare an unknown word with.
#include "completions/interpose.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "cli/interface.h"
#include "commands/options.h"
#include "commands/settings_text.h"
#include "util/utils.h"
#include "util/words.h"

// What those below stand in for, under the names that the build gives them.
int realStrCmpNoCase(const char* a, const char* b);
const char* realStrstrNoCase(const char* haystack, const char* needle);
bool realKeyContains(const char* item, const char* word);
Option realTextOption(const char* letter, const char** word);
Option realListOption(const char* letter, std::uint32_t* numbers, int* count, int room,
                      std::uint32_t typedFrom);

static constexpr int kMaxComparisons =
    1000; // comparisons; no line that is read to its end takes near as many

static Recording heard;
static int comparisons;

void addNew(std::vector<std::string>* words, const std::vector<std::string>& more) {
    for (const std::string& word : more)
        if (std::find(words->begin(), words->end(), word) == words->end())
            words->push_back(word);
}

// A command that asks about the same word for ever is told in the end that it is the one.
int strCmpNoCase(const char* a, const char* b) {
    if (std::strcmp(a, kUnknownWord) != 0)
        return realStrCmpNoCase(a, b);
    addNew(&heard.compared, {b});
    return ++comparisons > kMaxComparisons ? 0 : realStrCmpNoCase(a, b);
}

static void recordSearch(const char* text, const char* word) {
    if (std::strstr(text, kUnknownWord) != nullptr)
        addNew(&heard.sought, {word});
}

const char* strstrNoCase(const char* haystack, const char* needle) {
    recordSearch(haystack, needle);
    return realStrstrNoCase(haystack, needle);
}

bool keyContains(const char* item, const char* word) {
    recordSearch(item, word);
    return realKeyContains(item, word);
}

Option textOption(const char* letter, const char** word) {
    addNew(&heard.files, {letter});
    return realTextOption(letter, word);
}

Option listOption(const char* letter, std::uint32_t* numbers, int* count, int room, std::uint32_t typedFrom) {
    addNew(&heard.lists, {letter});
    return realListOption(letter, numbers, count, room, typedFrom);
}

Recording hear(const std::vector<std::string>& line, int count) {
    static char slots[kMaxWords][kWordSize];
    static char* words[kMaxWords];
    for (std::size_t i = 0; i < kMaxWords; ++i) {
        std::snprintf(slots[i], kWordSize, "%s", i < line.size() ? line[i].c_str() : kUnknownWord);
        words[i] = slots[i];
    }
    heard = {};
    comparisons = 0;
    cli_parse_command(count, words);
    return heard;
}
