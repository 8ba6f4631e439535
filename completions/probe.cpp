// Finding out which words each command takes, from what it compares unknown words with.
#include "completions/probe.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <span>

#include "cli/cmddef.h"
#include "cli/interface.h"
#include "completions/interpose.h"
#include "util/words.h"

using Line = std::vector<std::string>;

static const char kMarker[] = "-a"; // an action stands behind it, where a command has actions

static Line operator+(Line line, const Line& more) {
    line.insert(line.end(), more.begin(), more.end());
    return line;
}

static bool isLetter(const std::string& word) {
    return word.starts_with('-');
}

static bool holds(const Line& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

// Runs the line with one unknown word behind it, then with two, and so on: some commands look at a line
// only when it has as many words as they want.
static Recording recordWithPadding(const Line& line) {
    Recording all;
    for (int count = static_cast<int>(line.size()) + 1; count <= kMaxWords; ++count) {
        const Recording heard = hear(line, count);
        addNew(&all.compared, heard.compared);
        addNew(&all.sought, heard.sought);
        addNew(&all.files, heard.files);
        addNew(&all.lists, heard.lists);
    }
    return all;
}

// A value for an option whose value does not matter here. No file is made of it.
static std::string anyValue(const Line& files, const std::string& letter) {
    return holds(files, letter) ? kUnknownWord : "1";
}

// The letters that the command looks for behind start and one of the first; letters are known already.
static Line probeOptions(const Line& start, Line first, Line letters, Recording* all) {
    for (std::size_t i = 0; i < first.size(); ++i)
        for (const Line& option : {Line{first[i]}, Line{first[i], anyValue(all->files, first[i])}}) {
            const Recording heard = recordWithPadding(start + option);
            addNew(&all->files, heard.files);
            addNew(&all->lists, heard.lists);
            addNew(&letters, heard.compared);
            addNew(&first, heard.compared);
        }
    return letters;
}

namespace {
// What is known of a command's use while it is being asked.
struct ProbeContext {
    Line start;
    Line letters;
    Line files;
    Line lists;
};
} // namespace

// Runs the line that ends in the given words, with any of the other options before them, until one is
// heard out: a line may have to name things before the command looks at its end.
static Recording recordUntil(const ProbeContext& asked, const std::string& letter, const Line& end,
                             const std::function<bool(const Recording&)>& enough) {
    Line others;
    for (const std::string& other : asked.letters)
        if (other != letter)
            others.push_back(other);
    for (unsigned chosen = 0; chosen < 1U << others.size(); ++chosen) {
        Line line = asked.start;
        for (std::size_t i = 0; i < others.size(); ++i)
            if ((chosen >> i & 1U) != 0)
                line = line + Line{others[i], anyValue(asked.files, others[i])};
        line = line + Line{letter} + end;
        if (line.size() > kMaxWords)
            continue;
        Recording heard = hear(line, static_cast<int>(line.size()));
        if (enough(heard))
            return heard;
    }
    return {};
}

// Behind a flag the next word is compared with the options; behind any other it is the value.
static bool isFlag(const ProbeContext& asked, const std::string& letter) {
    const auto compared = [](const Recording& heard) { return !heard.compared.empty(); };
    return compared(recordUntil(asked, letter, {kUnknownWord}, compared));
}

static Line soughtIn(const ProbeContext& asked, const std::string& letter, const std::string& text) {
    return recordUntil(asked, letter, {text}, [](const Recording& heard) { return !heard.sought.empty(); })
        .sought;
}

// Whether the item behind this one is still looked at: some words of a table end the command.
static bool isTaken(const ProbeContext& asked, const std::string& letter, const std::string& item) {
    std::string text = item;
    text.append(",").append(kUnknownWord);
    return !soughtIn(asked, letter, text).empty();
}

// The words sought in a key's value that are no keys.
static Line askSettingValues(const ProbeContext& asked, const std::string& letter, const std::string& key,
                             const Line& keys) {
    const std::string start = key + "=";
    Line values;
    for (const std::string& word : soughtIn(asked, letter, start + kUnknownWord))
        if (!holds(keys, word) && isTaken(asked, letter, start + word))
            values.push_back(word);
    return values;
}

static void probeKeys(const ProbeContext& asked, const std::string& letter, Words* words) {
    const Line keys = soughtIn(asked, letter, kUnknownWord);
    for (const std::string& key : keys)
        words->settings.push_back({letter, key, askSettingValues(asked, letter, key, keys)});
}

// Whether the line makes a file of any length.
static bool writesFile(const Line& line, const std::string& path) {
    hear(line, static_cast<int>(line.size()));
    std::FILE* file = std::fopen(path.c_str(), "r");
    const bool written = file != nullptr && std::fgetc(file) != EOF;
    if (file != nullptr)
        std::fclose(file);
    std::remove(path.c_str());
    return written;
}

// Of a command that writes a file: the numbers that make it write any.
static Line probeTypes(const ProbeContext& asked, const std::string& letter) {
    static const std::string path = "cli-words.tmp";
    Line types;
    for (int number = 0; asked.files.size() == 1 && number < 10; ++number) {
        const Line option = {letter, std::to_string(number), asked.files[0], path};
        if (writesFile(asked.start + option, path))
            types.push_back(std::to_string(number));
    }
    return types;
}

static Words probeAction(const Line& start, const Line& first, const Line& known, Recording heard) {
    const Line letters = probeOptions(start, first, known, &heard);
    const ProbeContext asked = {start, letters, heard.files, heard.lists};
    Words words;
    for (const std::string& letter : asked.letters) {
        if (holds(asked.files, letter))
            words.options.push_back({letter, OptionWord::file, {}});
        else if (isFlag(asked, letter))
            words.options.push_back({letter, OptionWord::flag, {}});
        else {
            words.options.push_back({letter, OptionWord::value, probeTypes(asked, letter)});
            if (!holds(asked.lists, letter)) // some commands look for keys in any last word
                probeKeys(asked, letter, &words);
        }
    }
    return words;
}

static CommandWords askCommand(const char* name) {
    CommandWords command = {name, false, {}, {}};
    Line letters, actions;
    for (const std::string& word : recordWithPadding({name}).compared)
        (isLetter(word) ? letters : actions).push_back(word);
    if (!actions.empty())
        std::erase(letters, kMarker);
    // Not all that may follow the command word is then taken as an option.
    command.uses.push_back(probeAction({name}, letters, {}, {}));
    for (const std::string& action : actions) {
        const Line start = {name, kMarker, action};
        const Recording heard = recordWithPadding(start);
        command.uses.push_back(probeAction(start, heard.compared, heard.compared, heard));
        command.uses.back().action = action;
    }
    return command;
}

static const Command* findCommand(const char* name) {
    for (const Command& command : cmdTable)
        if (std::string(command.name) == name)
            return &command;
    return nullptr;
}

std::vector<CommandWords> probeCommands() {
    static_cast<void>(std::freopen("/dev/null", "w", stdout));
    Line topics;
    for (const CommandDefinition& definition : ls_icdCmdDefs)
        topics.emplace_back(definition.name);
    std::vector<CommandWords> commands;
    for (const CommandDefinition& definition : ls_icdCmdDefs) {
        const Command* command = findCommand(definition.name);
        if (command == nullptr)
            commands.push_back({definition.name, true, {}, {}});
        else if (command->handler == do_cmd_help)
            commands.push_back({definition.name, false, topics, {}});
        else
            commands.push_back(askCommand(definition.name));
    }
    return commands;
}
