// The command line of cli-capture.
#pragma once

#include <string>

#include "tools/common/option_table.h"

struct Options {
    std::string output; // empty: standard output
    bool anonymous = false;
};

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readOptions(int argc, char** argv, Options* options);
