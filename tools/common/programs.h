// Finding and running other programs of the same installation.
#pragma once

#include <string>
#include <utility>
#include <vector>

// The path of a program in the same directory as this one, whose argv[0] is argument0, or as the target of
// the link that it was started through. Empty if it is not found there.
std::string siblingProgram(const char* argument0, const char* name);

struct ProgramRun {
    std::string program;
    std::vector<std::string> words;
    std::string directory; // working directory
    int inherited = -1;    // a file descriptor that it keeps open, besides the standard ones
    std::vector<std::pair<std::string, std::string>> variables = {}; // added to its environment
};

// Runs it to completion with /dev/null as its standard input, and collects its standard output and standard
// error. Returns its exit status, 128 plus the number of the signal that ended it, or -1 if it cannot be
// started.
int runProgram(const ProgramRun& run, std::string* output);
