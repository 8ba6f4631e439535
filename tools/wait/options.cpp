// The option table of cli-wait, and its reader.
#include "tools/wait/options.h"

#include <cstring>

static constexpr OptionRow kOptionRows[] = {
    {'i', "controller", "ID", "wait for activities of this controller only"},
    {'l', "logical-drive", "ID", "wait for this logical drive only; of controller 0 without -i"},
    {'\0', "for", "KIND", "wait for init, sync, rc, migrate, rb or mp only; default: any"},
    {'\0', "timeout", "SECONDS", "give up after this time"},
    {'\0', "limit", "SECONDS", "give up if one reading of the adapters takes longer"},
    {'\0', "every", "SECONDS", "read the adapters this often; default: 5"},
    {'q', "quiet", nullptr, "print errors only"},
    {'\0', "paused-too", nullptr, "wait for paused activities as well"},
    {'h', "help", nullptr, "print this help"},
    {'V', "version", nullptr, "print the version"},
};

static constexpr OptionTable kTable = {
    "cli-wait", TOOL_VERSION,
    "Usage: cli-wait [OPTION]...\n"
    "Waits until background activities of logical drives and drives have ended.\n",
    kOptionRows,
    "Exit status: 0 finished and online, 1 finished but not online, 2 usage, 3 timeout,\n"
    "4 only paused activities are left, 5 the adapters cannot be read.\n"
    "The manual is cli-wait(8).\n"};

static constexpr std::uint64_t kMaxTimeout = 1'000'000'000;
static constexpr std::uint64_t kMaxLimit = 86'400;
static constexpr std::uint64_t kMaxEvery = 86'400;
static constexpr std::int64_t kMinEvery = 100; // milliseconds

static OptionsResult refuseValue(const OptionRow& row, const char* value, const std::string& expected) {
    return refuseOptions(kTable, std::string("--") + row.name + ": \"" + value + "\" is not " + expected);
}

static OptionsResult readId(const OptionRow& row, const char* text, std::optional<std::uint32_t>* id) {
    std::uint64_t number = 0;
    if (!readNumber(text, UINT16_MAX, &number))
        return refuseValue(row, text, "a number from 0 to 65535");
    *id = static_cast<std::uint32_t>(number);
    return OptionsResult::run;
}

static OptionsResult readKind(const OptionRow& row, const char* text, unsigned* kinds) {
    static constexpr struct {
        const char* word;
        unsigned kinds;
    } words[] = {{"init", kInitializing}, {"sync", kSynchronizing}, {"rc", kRedundancyChecking},
                 {"migrate", kMigrating}, {"rb", kRebuilding},      {"mp", kMediaPatrol},
                 {"any", kAllKinds}};
    for (const auto& each : words)
        if (std::strcmp(each.word, text) == 0) {
            *kinds = each.kinds;
            return OptionsResult::run;
        }
    return refuseValue(row, text, "init, sync, rc, migrate, rb, mp or any");
}

// Parses seconds with up to three decimals, from 0.1 to 86400.
static bool readMilliseconds(const std::string& text, std::int64_t* milliseconds) {
    const std::size_t point = text.find('.');
    std::string decimals = point == std::string::npos ? "" : text.substr(point + 1);
    std::uint64_t seconds = 0, thousandths = 0;
    if (point != std::string::npos && (decimals.empty() || decimals.size() > 3))
        return false;
    decimals.resize(3, '0');
    if (!readNumber(text.substr(0, point).c_str(), kMaxEvery, &seconds) ||
        !readNumber(decimals.c_str(), 999, &thousandths))
        return false;
    *milliseconds = static_cast<std::int64_t>(seconds * 1000 + thousandths);
    return *milliseconds >= kMinEvery && *milliseconds <= static_cast<std::int64_t>(kMaxEvery * 1000);
}

static OptionsResult readTimeout(const OptionRow& row, const char* text, Options* options) {
    std::uint64_t seconds = 0;
    if (!readNumber(text, kMaxTimeout, &seconds))
        return refuseValue(row, text, "a whole number of seconds from 0 to 1000000000");
    options->timeout = static_cast<std::int64_t>(seconds * 1000);
    return OptionsResult::run;
}

static OptionsResult readLimit(const OptionRow& row, const char* text, Options* options) {
    std::uint64_t seconds = 0;
    if (!readNumber(text, kMaxLimit, &seconds) || seconds == 0)
        return refuseValue(row, text, "a whole number of seconds from 1 to 86400");
    options->limit = static_cast<std::int64_t>(seconds * 1000);
    return OptionsResult::run;
}

static OptionsResult applyOption(const OptionRow& row, const char* argument, Options* options) {
    const std::string_view name = row.name;
    if (name == "controller")
        return readId(row, argument, &options->controller);
    if (name == "logical-drive")
        return readId(row, argument, &options->logicalDrive);
    if (name == "for")
        return readKind(row, argument, &options->kinds);
    if (name == "timeout")
        return readTimeout(row, argument, options);
    if (name == "limit")
        return readLimit(row, argument, options);
    if (name == "every")
        return readMilliseconds(argument, &options->every)
                   ? OptionsResult::run
                   : refuseValue(row, argument, "a number of seconds from 0.1 to 86400");
    (name == "quiet" ? options->quiet : options->pausedToo) = true;
    return OptionsResult::run;
}

// Media patrol belongs to drives: a logical drive has none.
static OptionsResult checkTogether(Options* options) {
    if (!options->logicalDrive)
        return OptionsResult::run;
    if (options->kinds == kMediaPatrol)
        return refuseOptions(kTable, "media patrol belongs to drives: --for mp does not go with -l");
    options->kinds &= kAnyActivity;
    if (!options->controller)
        options->controller = 0;
    return OptionsResult::run;
}

OptionsResult readOptions(int argc, char** argv, Options* options) {
    const OptionsResult result =
        readOptionTable(kTable, argc, argv, [options](const OptionRow& row, const char* argument) {
            return applyOption(row, argument, options);
        });
    return result == OptionsResult::run ? checkTogether(options) : result;
}
