// Command lines read by a table of options, and the help text made from it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

// One option. The manual pages are checked against these tables. -h and -V must have rows.
struct OptionRow {
    char shortName; // '\0': only the long form
    const char* name;
    const char* argument; // nullptr: none; in brackets: optional
    const char* help;
};

struct OptionTable {
    const char* program;
    const char* version;
    const char* summary; // what --help says before the options
    std::span<const OptionRow> rows;
    const char* notes; // and after them
};

enum class OptionsResult {
    run,   // the program may run
    done,  // --help or --version was answered
    usage, // the command line was refused with a message
};

// Parses the command line. Words other than options are appended to words, or refused if it is null. -h and
// -V are handled here. apply() gets each other option with its argument, which may be null.
using ApplyOption = std::function<OptionsResult(const OptionRow& row, const char* argument)>;
OptionsResult readOptionTable(const OptionTable& table, int argc, char** argv, const ApplyOption& apply,
                              std::vector<std::string>* words = nullptr);

// Prints the problem and a reference to --help. Returns usage.
OptionsResult refuseOptions(const OptionTable& table, const std::string& problem);

// Parses decimal digits; false for anything else, or a number above max. The number is valid only if true.
bool readNumber(const char* text, std::uint64_t max, std::uint64_t* number);
