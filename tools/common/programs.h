// Running another program of the same installation.
#pragma once

#include <string>
#include <utility>
#include <vector>

// The path of a program that is in the same directory as this one; argument0 is what this one was started
// as. Empty when it is not found there.
std::string programBeside(const char* argument0, const char* name);

struct ProgramRun {
    std::string program;
    std::vector<std::string> words;
    std::string directory; // to run it in
    int inherited = -1;    // a file descriptor that it keeps open, besides the standard ones
    std::vector<std::pair<std::string, std::string>> variables = {}; // added to its environment
};

// Runs it to its end, without standard input, and collects its standard output and standard error. Returns
// its exit status, 128 plus the number of the signal that ended it, or -1 when it cannot be started.
int runProgram(const ProgramRun& run, std::string* output);
