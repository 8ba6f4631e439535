// Finds out which words each command accepts. No words are listed here: lines with an unknown word are run
// like a user's, and the words that the command compares it with are recorded.
#pragma once

#include <string>
#include <vector>

struct OptionWord {
    enum Kind { flag, value, file };

    std::string name; // with its dash
    Kind kind = value;
    std::vector<std::string> values; // all values, if the option has only a few
};

struct SettingWord {
    std::string option; // whose value is the settings text
    std::string key;
    std::vector<std::string> values; // empty for numbers and names
};

// What may follow a command word, or a command word and an action.
struct Usage {
    std::string action; // empty: none
    std::vector<OptionWord> options;
    std::vector<SettingWord> settings;
};

struct CommandGrammar {
    std::string name;
    bool promptOnly = false;         // not accepted as an argument of the program
    std::vector<std::string> topics; // the words that help accepts
    std::vector<Usage> usages;       // the one without an action first
};

// All commands, in the order of their table. Afterward standard output goes to /dev/null.
std::vector<CommandGrammar> probeCommands();
