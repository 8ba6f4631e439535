// The command line of cli-status.
#pragma once

#include <optional>
#include <string>

#include "tools/common/option_table.h"

enum class Format { text, json, plugin, metrics, page };

struct Options {
    std::optional<std::uint32_t> controller;
    bool verbose = false;
    bool quiet = false;
    bool syslog = false;
    Format format = Format::text;
    std::string output;   // of --metrics and --page: the file to write; empty: standard output
    std::string baseline; // files; empty: not given
    std::string changes;
    std::string limits;
};

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readOptions(int argc, char** argv, Options* options);
