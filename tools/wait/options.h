// The command line of cli-wait.
#pragma once

#include <optional>

#include "tools/common/option_table.h"
#include "tools/wait/activity_kind.h"

struct Options {
    std::optional<std::uint32_t> controller;
    std::optional<std::uint32_t> logicalDrive; // of controller 0 unless another one is given
    unsigned kinds = kAllKinds;                // bits of what to wait for
    std::optional<std::int64_t> timeout;       // milliseconds
    std::optional<std::int64_t> limit;         // of one reading, in milliseconds
    std::int64_t every = 5000;                 // milliseconds between readings
    bool quiet = false;
    bool pausedToo = false;
};

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readOptions(int argc, char** argv, Options* options);
