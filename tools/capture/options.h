// The command line of cli-capture.
#pragma once

#include "tools/common/option_table.h"

struct CaptureOptions {
    std::string output; // empty: standard output
    bool anonymous = false;
};

OptionsResult readCaptureOptions(int argc, char** argv, CaptureOptions* options);
