// The option table of cli-status, and its reader.
#include "tools/status/options.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <vector>

static constexpr OptionRow kOptionRows[] = {
    {'i', "controller", "ID", "report on this controller only"},
    {'v', "verbose", nullptr, "list every object, and the section of the manual that says what to do"},
    {'q', "quiet", nullptr, "print problems only, nothing if there are none"},
    {'\0', "baseline", "FILE", "compare with an earlier --json"},
    {'\0', "changes", "FILE", "print what changed since the state kept in FILE, and keep the new one"},
    {'\0', "syslog", nullptr, "send the same lines to syslog"},
    {'\0', "limits", "FILE", "read thresholds from FILE"},
    {'\0', "json", nullptr, "print the whole state and the findings as JSON"},
    {'\0', "plugin", nullptr, "print monitoring plugin output"},
    {'\0', "metrics", "[FILE]", "print metrics for Prometheus, or write them to FILE"},
    {'\0', "page", "FILE", "write an HTML page to FILE"},
    {'h', "help", nullptr, "print this help"},
    {'V', "version", nullptr, "print the version"},
};

static constexpr int kFirstLong = 256; // getopt's value of a long option is this plus its row

std::span<const OptionRow> optionRows() {
    return kOptionRows;
}

static std::vector<option> longOptions() {
    std::vector<option> all;
    for (const OptionRow& row : kOptionRows) {
        const int argument = row.argument == nullptr  ? no_argument
                             : row.argument[0] == '[' ? optional_argument
                                                      : required_argument;
        all.push_back({row.name, argument, nullptr, kFirstLong + static_cast<int>(&row - kOptionRows)});
    }
    all.push_back({nullptr, 0, nullptr, 0});
    return all;
}

static std::string shortOptions() {
    std::string letters;
    for (const OptionRow& row : kOptionRows)
        if (row.letter != '\0')
            letters += std::string(1, row.letter) + (row.argument != nullptr ? ":" : "");
    return letters;
}

static void printHelp() {
    std::puts("Usage: cli-status [OPTION]...\n"
              "Reports whether controllers, drives and logical drives are healthy.\n");
    for (const OptionRow& row : kOptionRows) {
        std::string name = row.name;
        if (row.argument != nullptr)
            name += row.argument[0] == '[' ? "[=FILE]" : std::string("=") + row.argument;
        if (row.letter != '\0')
            std::printf("  -%c, --%-18s %s\n", row.letter, name.c_str(), row.help);
        else
            std::printf("      --%-18s %s\n", name.c_str(), row.help);
    }
    std::puts("\nExit status: 0 all well, 1 warning, 2 critical, 3 unknown.\n"
              "The manual is cli-status(8).");
}

static const OptionRow* findRow(int value) {
    if (value >= kFirstLong)
        return &kOptionRows[value - kFirstLong];
    for (const OptionRow& row : kOptionRows)
        if (row.letter != '\0' && row.letter == value)
            return &row;
    return nullptr;
}

static OptionsResult refuse(const std::string& problem) {
    std::fprintf(stderr, "cli-status: %s\nTry \"cli-status --help\".\n", problem.c_str());
    return OptionsResult::usage;
}

static OptionsResult readController(const char* text, Options* options) {
    std::uint32_t id = 0;
    const char* end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, id);
    if (error != std::errc() || stop != end || id > UINT16_MAX)
        return refuse(std::string("controller ID \"") + text + "\" is not a number from 0 to 65535");
    options->controller = id;
    return OptionsResult::run;
}

static OptionsResult setFormat(const OptionRow& row, Format format, const char* output, Options* options) {
    if (output != nullptr && *output == '\0')
        return refuse(std::string("--") + row.name + " needs the name of a file");
    if (options->format != Format::text && options->format != format)
        return refuse("only one of --json, --plugin, --metrics and --page can be given");
    options->format = format;
    options->output = output != nullptr ? output : "";
    return OptionsResult::run;
}

static OptionsResult setFile(const OptionRow& row, const char* name, std::string* file) {
    if (*name == '\0')
        return refuse(std::string("--") + row.name + " needs the name of a file");
    *file = name;
    return OptionsResult::run;
}

// By the option's name; a flag needs no more.
static OptionsResult applyOption(const OptionRow& row, const char* argument, Options* options) {
    const std::string_view name = row.name;
    if (name == "controller")
        return readController(argument, options);
    if (name == "baseline" || name == "changes" || name == "limits")
        return setFile(row, argument,
                       name == "baseline"  ? &options->baseline
                       : name == "changes" ? &options->changes
                                           : &options->limits);
    if (name == "json")
        return setFormat(row, Format::json, nullptr, options);
    if (name == "plugin")
        return setFormat(row, Format::plugin, nullptr, options);
    if (name == "metrics")
        return setFormat(row, Format::metrics, argument, options);
    if (name == "page")
        return setFormat(row, Format::page, argument, options);
    bool& flag = name == "verbose" ? options->verbose : name == "quiet" ? options->quiet : options->syslog;
    flag = true;
    return OptionsResult::run;
}

static OptionsResult answer(const OptionRow& row) {
    if (row.letter == 'h')
        printHelp();
    else
        std::puts("cli-status " CLI_STATUS_VERSION);
    return OptionsResult::done;
}

static OptionsResult checkTogether(const Options& options) {
    if (options.format != Format::text && !options.changes.empty())
        return refuse("--changes cannot be combined with --json, --plugin, --metrics or --page");
    if (options.format != Format::text && (options.verbose || options.quiet))
        return refuse("-v and -q apply to plain text only");
    if (options.verbose && !options.changes.empty())
        return refuse("-v cannot be combined with --changes");
    return OptionsResult::run;
}

OptionsResult readOptions(int argc, char** argv, Options* options) {
    const std::vector<option> all = longOptions();
    const std::string letters = shortOptions();
    for (int value; (value = getopt_long(argc, argv, letters.c_str(), all.data(), nullptr)) != -1;) {
        const OptionRow* row = findRow(value);
        if (row == nullptr) {
            std::fputs("Try \"cli-status --help\".\n", stderr);
            return OptionsResult::usage;
        }
        if (row->letter == 'h' || row->letter == 'V')
            return answer(*row);
        const OptionsResult result = applyOption(*row, optarg, options);
        if (result != OptionsResult::run)
            return result;
    }
    if (optind < argc)
        return refuse(std::string("unexpected argument \"") + argv[optind] + "\"");
    return checkTogether(*options);
}
