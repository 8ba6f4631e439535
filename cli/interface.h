// Splits a line into words and finds the handler of the command word. routes.cpp selects a function by the
// second word.
#pragma once

#include <array>

#include "cli/command_words.h"

struct Command {
    const char* name;
    int (*handler)(int wordCount, char** words);
};

// Sorted by name in the order of strCmpNoCase(). The rows come from cli/command_words.h.
extern const std::array<Command, kCommandCount> cmdTable;
extern const int numCmd;

// Splits line at spaces into the slots of a word table (util/words.h); a word that begins with
// a double quote ends at the next one. Words over 256 characters are cut into pieces of 256. More
// than kMaxWords words leave all slots unchanged; *wordCount is then kMaxWords, and the line must be
// refused. A line whose first word, or without a word the first slot, is "exit" in any case ends the
// loop.
enum LineKind { kExitLine = 0, kCommandLine = 1, kLongLine = 2 };
int processCmdLine(int* wordCount, char* line, char** words);

// Runs the command that words[0] names and returns its result; Result::unknownCommand, after
// "Invalid command!", if there is no such command.
int cli_parse_command(int wordCount, char** words);
