// A word table for fuzzers: slots of their own, and lines run as at the prompt.
#pragma once

#include <cstdio>
#include <cstring>

#include "cli/interface.h"
#include "util/utils.h"
#include "util/words.h"

struct WordTable {
    char slot[kMaxWords][kWordSize];
    char* words[kMaxWords];
};

// Set while a command runs; null_files.cpp then keeps it away from the machine's files.
inline bool commandRuns = false;

// A word that is no option makes this one fail without end, on purpose.
inline bool isEndless(int wordCount, char** words) {
    return wordCount > 3 && strCmpNoCase(words[0], "enclosure") == 0 &&
           (strCmpNoCase(words[1], "locate") == 0 || strCmpNoCase(words[2], "locate") == 0);
}

inline void runCommand(int wordCount, WordTable* table) {
    commandRuns = true;
    if (wordCount <= kMaxWords && !isEndless(wordCount, table->words))
        cli_parse_command(wordCount, table->words);
    commandRuns = false;
}

inline void clearWords(WordTable* table) {
    std::memset(table->slot, 0, sizeof table->slot);
    for (int i = 0; i < kMaxWords; ++i)
        table->words[i] = table->slot[i];
}

// Splits and runs one line, of which 4096 characters are looked at. False for a line that says exit.
inline bool runLine(WordTable* table, const char* text) {
    char line[4097];
    std::snprintf(line, sizeof line, "%s", text);
    int wordCount = 0;
    const bool goOn = processCmdLine(&wordCount, line, table->words) != 0;
    if (goOn)
        runCommand(wordCount, table);
    return goOn;
}

// Runs a command line with one further word, which may hold any characters but NUL.
inline void runWithWord(WordTable* table, const char* text, const char* word) {
    char line[4097];
    std::snprintf(line, sizeof line, "%s", text);
    int wordCount = 0;
    processCmdLine(&wordCount, line, table->words);
    std::snprintf(table->words[wordCount], kWordSize, "%s", word);
    runCommand(wordCount + 1, table);
}
