// The command line of cli-capture.
#pragma once

#include <string>

#include "tools/common/option_table.h"

struct CaptureOptions {
    std::string output; // empty: standard output
    bool anonymous = false;
};

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readCaptureOptions(int argc, char** argv, CaptureOptions* options);
