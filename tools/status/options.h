// The command line of cli-status.
#pragma once

#include <getopt.h>

#include <optional>
#include <span>
#include <string>

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

// One row of the option table, which the manual page is checked against.
struct OptionRow {
    char letter; // '\0': only the long form
    const char* name;
    const char* argument; // nullptr: none; in brackets: may be left out
    const char* help;
};
std::span<const OptionRow> optionRows();

enum class OptionsResult { run, done, usage };

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readOptions(int argc, char** argv, Options* options);
