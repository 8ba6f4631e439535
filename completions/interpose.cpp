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
int plainStrCmpNoCase(const char* a, const char* b);
const char* plainStrstrNoCase(const char* haystack, const char* needle);
bool plainKeySays(const char* item, const char* word);
Option plainTextOption(const char* letter, const char** word);
Option plainListOption(const char* letter, std::uint32_t* numbers, int* count, int room,
                       std::uint32_t typedFrom);

static constexpr int kPatience = 1000; // comparisons; no line that is read to its end takes near as many

static Heard heard;
static int comparisons;

void addNew(std::vector<std::string>* words, const std::vector<std::string>& more) {
    for (const std::string& word : more)
        if (std::find(words->begin(), words->end(), word) == words->end())
            words->push_back(word);
}

// A command that asks about the same word for ever is told in the end that it is the one.
int strCmpNoCase(const char* a, const char* b) {
    if (std::strcmp(a, kUnknownWord) != 0)
        return plainStrCmpNoCase(a, b);
    addNew(&heard.compared, {b});
    return ++comparisons > kPatience ? 0 : plainStrCmpNoCase(a, b);
}

static void hearSought(const char* text, const char* word) {
    if (std::strstr(text, kUnknownWord) != nullptr)
        addNew(&heard.sought, {word});
}

const char* strstrNoCase(const char* haystack, const char* needle) {
    hearSought(haystack, needle);
    return plainStrstrNoCase(haystack, needle);
}

bool keySays(const char* item, const char* word) {
    hearSought(item, word);
    return plainKeySays(item, word);
}

Option textOption(const char* letter, const char** word) {
    addNew(&heard.files, {letter});
    return plainTextOption(letter, word);
}

Option listOption(const char* letter, std::uint32_t* numbers, int* count, int room, std::uint32_t typedFrom) {
    addNew(&heard.lists, {letter});
    return plainListOption(letter, numbers, count, room, typedFrom);
}

Heard hear(const std::vector<std::string>& line, int count) {
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
