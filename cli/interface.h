// From a typed line to a command: splitting the line into words, and finding the word's handler.
// Which of a command's functions its second word asks for is in routes.h.
#pragma once

struct Command {
    const char* name;
    int (*handler)(int wordCount, char** words);
};

extern const Command cmdTable[19]; // sorted by name as strCmpNoCase() sorts
extern const int numCmd;

// Splits line at blanks (spaces alone) into the slots of a word table (util/words.h); a word that begins with
// a double quote runs to the next one. Words over 256 characters are cut into pieces of 256. More
// than kMaxWords words leave all slots as they are, and *wordCount tells how many there were.
// Returns 0 when the first slot says exit, else 1.
int processCmdLine(int* wordCount, char* line, char** words);

// Runs the command that words[0] names and returns its result; Result::unknownCommand, after
// "Invalid command!", when there is none of that name.
int cli_parse_command(int wordCount, char** words);
