// Command lines read by a table of options, and the help text made from it.
#include "tools/common/option_table.h"

#include <getopt.h>

#include <charconv>
#include <cstdio>
#include <cstring>

static constexpr int kFirstLong = 256; // getopt's value of a long option is this plus its row

static std::vector<option> longOptions(const OptionTable& table) {
    std::vector<option> all;
    for (const OptionRow& row : table.rows) {
        const int argument = row.argument == nullptr  ? no_argument
                             : row.argument[0] == '[' ? optional_argument
                                                      : required_argument;
        all.push_back({row.name, argument, nullptr, kFirstLong + static_cast<int>(all.size())});
    }
    all.push_back({nullptr, 0, nullptr, 0});
    return all;
}

static std::string shortOptions(const OptionTable& table) {
    std::string letters;
    for (const OptionRow& row : table.rows)
        if (row.shortName != '\0')
            letters += std::string(1, row.shortName) + (row.argument != nullptr ? ":" : "");
    return letters;
}

static void printRow(const OptionRow& row) {
    std::string name = row.name;
    if (row.argument != nullptr && row.argument[0] == '[')
        name += "[=" + std::string(row.argument + 1);
    else if (row.argument != nullptr)
        name += std::string("=") + row.argument;
    if (row.shortName != '\0')
        std::printf("  -%c, --%-18s %s\n", row.shortName, name.c_str(), row.help);
    else
        std::printf("      --%-18s %s\n", name.c_str(), row.help);
}

static void printHelp(const OptionTable& table) {
    std::printf("%s\n", table.summary);
    for (const OptionRow& row : table.rows)
        printRow(row);
    std::printf("\n%s", table.notes);
}

static const OptionRow* findRow(const OptionTable& table, int value) {
    if (value >= kFirstLong)
        return &table.rows[static_cast<std::size_t>(value - kFirstLong)];
    for (const OptionRow& row : table.rows)
        if (row.shortName != '\0' && row.shortName == value)
            return &row;
    return nullptr;
}

static OptionsResult suggestHelp(const OptionTable& table) {
    std::fprintf(stderr, "Try \"%s --help\".\n", table.program);
    return OptionsResult::usage;
}

OptionsResult refuseOptions(const OptionTable& table, const std::string& problem) {
    std::fprintf(stderr, "%s: %s\n", table.program, problem.c_str());
    return suggestHelp(table);
}

static OptionsResult printHelpOrVersion(const OptionTable& table, const OptionRow& row) {
    if (row.shortName == 'h')
        printHelp(table);
    else
        std::printf("%s %s\n", table.program, table.version);
    return OptionsResult::done;
}

OptionsResult readOptionTable(const OptionTable& table, int argc, char** argv, const ApplyOption& apply,
                              std::vector<std::string>* words) {
    const std::vector<option> all = longOptions(table);
    const std::string letters = shortOptions(table);
    for (int value; (value = getopt_long(argc, argv, letters.c_str(), all.data(), nullptr)) != -1;) {
        const OptionRow* row = findRow(table, value);
        if (row == nullptr) // getopt has printed a message
            return suggestHelp(table);
        if (row->shortName == 'h' || row->shortName == 'V')
            return printHelpOrVersion(table, *row);
        const OptionsResult result = apply(*row, optarg);
        if (result != OptionsResult::run)
            return result;
    }
    for (; words != nullptr && optind < argc; ++optind)
        words->emplace_back(argv[optind]);
    if (optind < argc)
        return refuseOptions(table, std::string("unexpected word \"") + argv[optind] + "\"");
    return OptionsResult::run;
}

bool readNumber(const char* text, std::uint64_t max, std::uint64_t* number) {
    const char* end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, *number);
    return error == std::errc() && stop == end && *number <= max;
}
