// The options of cli-status.
#include "tools/status/options.h"

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

static constexpr OptionTable kTable = {
    "cli-status", TOOL_VERSION,
    "Usage: cli-status [OPTION]...\n"
    "Reports whether controllers, drives and logical drives are healthy.\n",
    kOptionRows,
    "Exit status: 0 all well, 1 warning, 2 critical, 3 unknown.\n"
    "The manual is cli-status(8).\n"};

static OptionsResult refuse(const std::string& problem) {
    return refuseOptions(kTable, problem);
}

static OptionsResult readController(const char* text, Options* options) {
    std::uint64_t id = 0;
    if (!readNumber(text, UINT16_MAX, &id))
        return refuse(std::string("controller ID \"") + text + "\" is not a number from 0 to 65535");
    options->controller = static_cast<std::uint32_t>(id);
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
    const OptionsResult result =
        readOptionTable(kTable, argc, argv, [options](const OptionRow& row, const char* argument) {
            return applyOption(row, argument, options);
        });
    return result == OptionsResult::run ? checkTogether(*options) : result;
}
