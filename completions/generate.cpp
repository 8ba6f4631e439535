// cli-words: writes the words that the commands take, asked from the commands themselves, for whoever
// wants to know them: the completions of two shells, the word list of the prompt's line editor, tests.
//
//     cli-words <folder of the templates> <folder to write to>
//
// writes grammar.txt, wordlist.txt (every word once, as the line editor wants them) and, out of the
// templates, cli.bash and _cli. grammar.txt says one thing on a line, in the order of the commands'
// own tables, its words separated by single blanks:
//
//     <command>                                  typed at the prompt and on the shell's line
//     <command> prompt                           typed at the prompt alone
//     <command> topic <word>                     a word that help takes
//     <command> -a <action>
//     <command> [-a <action>] <option> <kind>    kind: flag, no value; value; file, a file's name
//     <command> [-a <action>] <option> value <word>      one of the few values of an option
//     <command> [-a <action>] <option> <key>=            a key of the settings text behind the option
//     <command> [-a <action>] <option> <key>=<value>     one of the words that the key's value may be
//
// "import -a flag" is an option like any other: import has no actions. The words are in the case of the
// tables; the program takes them in any, but for migrate's keys.
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

static void tellOption(std::ostream& table, const std::string& start, const OptionWord& option) {
    const std::string line = start + " " + option.letter + " " + kindText(option.kind);
    table << line << "\n";
    for (const std::string& value : option.values)
        table << line << " " << value << "\n";
}

static void tellSetting(std::ostream& table, const std::string& start, const SettingWord& setting) {
    const std::string line = start + " " + setting.letter + " " + setting.key + "=";
    table << line << "\n";
    for (const std::string& value : setting.values)
        table << line << value << "\n";
}

static void tellUse(std::ostream& table, const std::string& name, const Words& use) {
    const std::string start = use.action.empty() ? name : name + " -a " + use.action;
    if (!use.action.empty())
        table << start << "\n";
    for (const OptionWord& option : use.options) {
        tellOption(table, start, option);
        for (const SettingWord& setting : use.settings)
            if (setting.letter == option.letter)
                tellSetting(table, start, setting);
    }
}

static std::string tableText(const std::vector<CommandWords>& commands) {
    std::ostringstream table;
    for (const CommandWords& command : commands) {
        table << command.name << (command.promptOnly ? " prompt\n" : "\n");
        for (const std::string& topic : command.topics)
            table << command.name << " topic " << topic << "\n";
        for (const Words& use : command.uses)
            tellUse(table, command.name, use);
    }
    return table.str();
}

// Every word of the table that can be typed, once: commands, actions, options, keys and values.
static std::string listText(const std::string& table) {
    std::set<std::string> told = {"flag", "value", "file", "prompt", "topic"};
    std::istringstream words(table);
    std::string list;
    for (std::string word; words >> word;)
        if (told.insert(word).second && !std::isdigit(static_cast<unsigned char>(word[0])))
            list += word + "\n";
    return list;
}

static std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "cli-words: cannot read %s\n", path.c_str());
        std::exit(1);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

static void writeFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        std::fprintf(stderr, "cli-words: cannot write %s\n", path.c_str());
        std::exit(1);
    }
}

// The template with the table in the place of its line @WORDS@.
static std::string filledIn(const std::string& path, const std::string& table) {
    static const std::string mark = "@WORDS@\n";
    std::string text = readFile(path);
    const std::size_t place = text.find(mark);
    if (place == std::string::npos) {
        std::fprintf(stderr, "cli-words: no place for the words in %s\n", path.c_str());
        std::exit(1);
    }
    return text.replace(place, mark.size(), table);
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: cli-words <folder of the templates> <folder to write to>\n", stderr);
        return 1;
    }
    const std::string templates = std::string(argv[1]) + "/", folder = std::string(argv[2]) + "/";
    const std::string table = tableText(probeCommands());
    writeFile(folder + "grammar.txt", table);
    writeFile(folder + "wordlist.txt", listText(table));
    writeFile(folder + "cli.bash", filledIn(templates + "bash.in", table));
    writeFile(folder + "_cli", filledIn(templates + "zsh.in", table));
    return 0;
}
