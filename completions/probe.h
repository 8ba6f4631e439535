// Asking the commands which words they take. Nothing is typed a second time here: a word that means
// nothing is put into a line, the line is run as a user's would be, and the words that the commands
// compare it with are heard.
#pragma once

#include <string>
#include <vector>

struct OptionWord {
    enum Kind { flag, value, file };

    std::string letter; // with its dash
    Kind kind = value;
    std::vector<std::string> values; // the words its value may be, when it takes but a few
};

struct SettingWord {
    std::string letter; // of the option whose value is the settings text
    std::string key;
    std::vector<std::string> values; // empty for numbers and names
};

// What may follow a command word, or a command word and an action.
struct Words {
    std::string action; // empty: none
    std::vector<OptionWord> options;
    std::vector<SettingWord> settings;
};

struct CommandWords {
    std::string name;
    bool promptOnly = false;         // never a command of the shell's line
    std::vector<std::string> topics; // the words that help takes
    std::vector<Words> uses;         // the one without an action first
};

// All commands, in the order of their table. Standard output is lost to the commands from here on.
std::vector<CommandWords> probeCommands();
