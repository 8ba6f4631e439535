// A word table for fuzzers with its own slots, and running lines as at the prompt.
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

// Set while a command runs; null_files.cpp then redirects its files.
inline bool commandRuns = false;

// Compatibility: this command repeats its error message endlessly for a word that is not an option.
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

// Splits and runs one line, of which 4096 characters are used. False for an exit command.
inline bool runLine(WordTable* table, const char* text) {
    char line[4097];
    std::snprintf(line, sizeof line, "%s", text);
    int wordCount = 0;
    const bool proceed = processCmdLine(&wordCount, line, table->words) != 0;
    if (proceed)
        runCommand(wordCount, table);
    return proceed;
}

// Runs a command line with one additional word, which may contain any characters but NUL.
inline void runWithWord(WordTable* table, const char* text, const char* word) {
    char line[4097];
    std::snprintf(line, sizeof line, "%s", text);
    int wordCount = 0;
    processCmdLine(&wordCount, line, table->words);
    std::snprintf(table->words[wordCount], kWordSize, "%s", word);
    runCommand(wordCount + 1, table);
}
