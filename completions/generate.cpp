// gen-completions: runs the commands to find the words that they accept, and writes these for the
// completions of two shells, the word list of the prompt's line editor, and tests.
//
//     gen-completions <template directory> <output directory>
//
// writes grammar.txt, wordlist.txt (every word once, in the format of the line editor) and, from the
// templates, cli.bash and _cli. grammar.txt has one fact per line, in the order of the commands'
// tables, with words separated by single spaces:
//
//     <command>                                  accepted at the prompt and as an argument
//     <command> prompt                           accepted at the prompt only
//     <command> topic <word>                     a word that help accepts
//     <command> -a <action>
//     <command> [-a <action>] <option> <kind>    kind: flag, no value; value; file, a file name
//     <command> [-a <action>] <option> value <word>      one of the few values of an option
//     <command> [-a <action>] <option> <key>=            a key of the option's settings text
//     <command> [-a <action>] <option> <key>=<value>     one of the few values of a key
//
// "import -a flag" is an ordinary option: import has no actions. Words have the case of the tables; the
// program ignores case, except in migrate's keys.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "completions/probe.h"

static const char* kindText(OptionWord::Kind kind) {
    if (kind == OptionWord::flag)
        return "flag";
    return kind == OptionWord::file ? "file" : "value";
}

static void writeOption(std::ostream& grammar, const std::string& start, const OptionWord& option) {
    const std::string line = start + " " + option.name + " " + kindText(option.kind);
    grammar << line << "\n";
    for (const std::string& value : option.values)
        grammar << line << " " << value << "\n";
}

static void writeSetting(std::ostream& grammar, const std::string& start, const SettingWord& setting) {
    const std::string line = start + " " + setting.option + " " + setting.key + "=";
    grammar << line << "\n";
    for (const std::string& value : setting.values)
        grammar << line << value << "\n";
}

static void writeUsage(std::ostream& grammar, const std::string& name, const Usage& usage) {
    const std::string start = usage.action.empty() ? name : name + " -a " + usage.action;
    if (!usage.action.empty())
        grammar << start << "\n";
    for (const OptionWord& option : usage.options) {
        writeOption(grammar, start, option);
        for (const SettingWord& setting : usage.settings)
            if (setting.option == option.name)
                writeSetting(grammar, start, setting);
    }
}

static std::string grammarText(const std::vector<CommandGrammar>& commands) {
    std::ostringstream grammar;
    for (const CommandGrammar& command : commands) {
        grammar << command.name << (command.promptOnly ? " prompt\n" : "\n");
        for (const std::string& topic : command.topics)
            grammar << command.name << " topic " << topic << "\n";
        for (const Usage& usage : command.usages)
            writeUsage(grammar, command.name, usage);
    }
    return grammar.str();
}

// Whether the grammar lists values of the key. A key without values is at the end of each line that contains
// it.
static bool hasValues(const std::string& grammar, const std::string& key) {
    for (std::size_t at = grammar.find(" " + key); at != std::string::npos;
         at = grammar.find(" " + key, at + 1))
        if (grammar[at + 1 + key.size()] != '\n')
            return true;
    return false;
}

// Every word of the grammar that can be typed, once: commands, actions, options, keys and values. The line
// editor adds a space to a word with a single completion. A key must not get one, so it has a second
// completion, a placeholder for the value.
static std::string wordList(const std::string& grammar) {
    std::set<std::string> seen = {"flag", "value", "file", "prompt", "topic"};
    std::istringstream words(grammar);
    std::string list;
    for (std::string word; words >> word;) {
        if (std::isdigit(static_cast<unsigned char>(word[0])) || !seen.insert(word).second)
            continue;
        list += word + "\n";
        if (word.back() == '=' && !hasValues(grammar, word))
            list += word + "<value>\n";
    }
    return list;
}

static std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "gen-completions: cannot read %s\n", path.c_str());
        std::exit(1);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

static void writeFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        std::fprintf(stderr, "gen-completions: cannot write %s\n", path.c_str());
        std::exit(1);
    }
}

// The template with its line @WORDS@ replaced by the grammar.
static std::string expandTemplate(const std::string& path, const std::string& grammar) {
    static const std::string placeholder = "@WORDS@\n";
    std::string text = readFile(path);
    const std::size_t position = text.find(placeholder);
    if (position == std::string::npos) {
        std::fprintf(stderr, "gen-completions: no line @WORDS@ in %s\n", path.c_str());
        std::exit(1);
    }
    return text.replace(position, placeholder.size(), grammar);
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: gen-completions <template directory> <output directory>\n", stderr);
        return 1;
    }
    const std::string templates = std::string(argv[1]) + "/", output = std::string(argv[2]) + "/";
    const std::string grammar = grammarText(probeCommands());
    writeFile(output + "grammar.txt", grammar);
    writeFile(output + "wordlist.txt", wordList(grammar));
    writeFile(output + "cli.bash", expandTemplate(templates + "bash.in", grammar));
    writeFile(output + "_cli", expandTemplate(templates + "zsh.in", grammar));
    return 0;
}
