// Finds out which words each command accepts: those that it compares unknown words with.
#include "completions/probe.h"

#include <algorithm>
#include <cstdio>
#include <functional>

#include "cli/command_words.h"
#include "completions/interpose.h"
#include "util/words.h"

using Line = std::vector<std::string>;

static const char kActionMarker[] = "-a"; // an action follows, if the command has actions

static Line operator+(Line line, const Line& more) {
    line.insert(line.end(), more.begin(), more.end());
    return line;
}

static bool isOption(const std::string& word) {
    return word.starts_with('-');
}

static bool contains(const Line& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// Runs the line followed by one unknown word, then by two, and so on: some commands read a line only if it
// has a certain number of words.
static Recording recordWithPadding(const Line& line) {
    Recording all;
    for (int count = static_cast<int>(line.size()) + 1; count <= kMaxWords; ++count) {
        const Recording recording = record(line, count);
        addNew(&all.compared, recording.compared);
        addNew(&all.searchedFor, recording.searchedFor);
        addNew(&all.files, recording.files);
        addNew(&all.lists, recording.lists);
    }
    return all;
}

// A value for an option whose value does not matter. No file of this name can be created.
static std::string anyValue(const Line& files, const std::string& option) {
    return contains(files, option) ? kUnknownWord : "1";
}

// Adds the options that the command compares further words with, after start and one of the first ones.
static Line probeOptions(const Line& start, Line first, Line options, Recording* all) {
    for (std::size_t i = 0; i < first.size(); ++i)
        for (const Line& words : {Line{first[i]}, Line{first[i], anyValue(all->files, first[i])}}) {
            const Recording recording = recordWithPadding(start + words);
            addNew(&all->files, recording.files);
            addNew(&all->lists, recording.lists);
            addNew(&options, recording.compared);
            addNew(&first, recording.compared);
        }
    return options;
}

namespace {
// What is known about a usage so far.
struct ProbeContext {
    Line start;
    Line options;
    Line files;
    Line lists;
};
} // namespace

// Runs lines that end in the option and the words in end, preceded by other options, until a recording is
// accepted: a command may require other options before it reads these.
static Recording recordUntil(const ProbeContext& context, const std::string& option, const Line& end,
                             const std::function<bool(const Recording&)>& isAccepted) {
    Line others;
    for (const std::string& other : context.options)
        if (other != option)
            others.push_back(other);
    for (unsigned chosen = 0; chosen < 1U << others.size(); ++chosen) {
        Line line = context.start;
        for (std::size_t i = 0; i < others.size(); ++i)
            if ((chosen >> i & 1U) != 0)
                line = line + Line{others[i], anyValue(context.files, others[i])};
        line = line + Line{option} + end;
        if (line.size() > kMaxWords)
            continue;
        Recording recording = record(line, static_cast<int>(line.size()));
        if (isAccepted(recording))
            return recording;
    }
    return {};
}

// After a flag the next word is compared with the options; after any other option it is the value.
static bool isFlag(const ProbeContext& context, const std::string& option) {
    const auto compared = [](const Recording& recording) { return !recording.compared.empty(); };
    return compared(recordUntil(context, option, {kUnknownWord}, compared));
}

static Line searchedWords(const ProbeContext& context, const std::string& option, const std::string& text) {
    return recordUntil(context, option, {text},
                       [](const Recording& recording) { return !recording.searchedFor.empty(); })
        .searchedFor;
}

// Whether the command continues with the next item. It stops at words of a table that it rejects.
static bool isAllowed(const ProbeContext& context, const std::string& option, const std::string& item) {
    std::string text = item;
    text.append(",").append(kUnknownWord);
    return !searchedWords(context, option, text).empty();
}

// The words other than keys that the command searches the value for.
static Line probeValues(const ProbeContext& context, const std::string& option, const std::string& key,
                        const Line& keys) {
    const std::string start = key + "=";
    Line values;
    for (const std::string& word : searchedWords(context, option, start + kUnknownWord))
        if (!contains(keys, word) && isAllowed(context, option, start + word))
            values.push_back(word);
    return values;
}

static void probeKeys(const ProbeContext& context, const std::string& option, Usage* usage) {
    const Line keys = searchedWords(context, option, kUnknownWord);
    for (const std::string& key : keys)
        usage->settings.push_back({option, key, probeValues(context, option, key, keys)});
}

// Whether the line creates a file that is not empty.
static bool writesFile(const Line& line, const std::string& path) {
    record(line, static_cast<int>(line.size()));
    std::FILE* file = std::fopen(path.c_str(), "r");
    const bool created = file != nullptr && std::fgetc(file) != EOF;
    if (file != nullptr)
        std::fclose(file);
    std::remove(path.c_str());
    return created;
}

// The numbers for which a command that writes a file writes anything.
static Line probeTypes(const ProbeContext& context, const std::string& option) {
    static const std::string path = "gen-completions.tmp";
    Line types;
    for (int number = 0; context.files.size() == 1 && number < 10; ++number) {
        const std::string type = std::to_string(number);
        if (writesFile(context.start + Line{option, type, context.files[0], path}, path))
            types.push_back(type);
    }
    return types;
}

static Usage probeAction(const Line& start, const Line& first, const Line& known, Recording recording) {
    const Line options = probeOptions(start, first, known, &recording);
    const ProbeContext context = {start, options, recording.files, recording.lists};
    Usage usage;
    for (const std::string& option : context.options) {
        if (contains(context.files, option))
            usage.options.push_back({option, OptionWord::file, {}});
        else if (isFlag(context, option))
            usage.options.push_back({option, OptionWord::flag, {}});
        else {
            usage.options.push_back({option, OptionWord::value, probeTypes(context, option)});
            if (!contains(context.lists, option)) // some commands search any last word for keys
                probeKeys(context, option, &usage);
        }
    }
    return usage;
}

static CommandGrammar probeCommand(const char* name) {
    CommandGrammar command = {name, false, {}, {}};
    Line options, actions;
    for (const std::string& word : recordWithPadding({name}).compared)
        (isOption(word) ? options : actions).push_back(word);
    if (!actions.empty())
        std::erase(options, kActionMarker);
    // Some commands route a word to a function that then rejects it as an option.
    command.usages.push_back(probeAction({name}, options, {}, {}));
    for (const std::string& action : actions) {
        const Line start = {name, kActionMarker, action};
        const Recording recording = recordWithPadding(start);
        command.usages.push_back(probeAction(start, recording.compared, recording.compared, recording));
        command.usages.back().action = action;
    }
    return command;
}

std::vector<CommandGrammar> probeCommands() {
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        return {};
    Line topics;
    for (const CommandWord& word : commandWords)
        topics.emplace_back(word.name);
    std::vector<CommandGrammar> commands;
    for (const CommandWord& word : commandWords) {
        if (word.handler == nullptr)
            commands.push_back({word.name, true, {}, {}});
        else if (word.handler == do_cmd_help)
            commands.push_back({word.name, false, topics, {}});
        else
            commands.push_back(probeCommand(word.name));
    }
    return commands;
}
