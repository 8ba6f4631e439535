// Command lines read by a table of options, and the help text made from it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

// One row of a table. The manual pages are checked against these tables.
struct OptionRow {
    char letter; // '\0': only the long form
    const char* name;
    const char* argument; // nullptr: none; in brackets: may be left out
    const char* help;
};

struct OptionTable {
    const char* program;
    const char* version;
    const char* summary; // what --help says before the options
    std::span<const OptionRow> rows;
    const char* notes; // and after them
};

enum class OptionsResult { run, done, usage };

// Reads the command line; words that are no options go to words, or are refused without it. -h and -V are
// answered here. apply() gets each other option with its argument, nullptr if there is none.
using ApplyOption = std::function<OptionsResult(const OptionRow& row, const char* argument)>;
OptionsResult readOptionTable(const OptionTable& table, int argc, char** argv, const ApplyOption& apply,
                              std::vector<std::string>* words = nullptr);

// Prints what is wrong with the command line, and where to look.
OptionsResult refuseOptions(const OptionTable& table, const std::string& problem);

// A number of decimal digits only, up to the given one.
bool readNumber(const char* text, std::uint64_t most, std::uint64_t* number);
