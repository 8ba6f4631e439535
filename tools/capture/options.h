// The command line of cli-capture.
#pragma once

#include <getopt.h>

#include <span>
#include <string>

// One row of the option table, which the manual page is checked against.
struct OptionRow {
    char letter; // '\0': only the long form
    const char* name;
    const char* argument; // nullptr: none
    const char* help;
};
std::span<const OptionRow> optionRows();

struct Options {
    std::string output; // empty: standard output
    bool anonymous = false;
};

enum class OptionsResult { run, done, usage };

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readOptions(int argc, char** argv, Options* options);
