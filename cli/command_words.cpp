// The tables built from the command words, and the compile-time checks of the rows.
#include "cli/command_words.h"

#include "cli/cmddef.h"
#include "cli/interface.h"

static constexpr char upperCase(char c) {
    return static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

// The order of strCmpNoCase(), which cannot run at compile time.
static constexpr bool sortsBefore(const char* a, const char* b) {
    while (*a != '\0' && upperCase(*a) == upperCase(*b))
        ++a, ++b;
    return static_cast<unsigned char>(upperCase(*a)) < static_cast<unsigned char>(upperCase(*b));
}

static constexpr bool isSorted(std::uint32_t row) {
    return row == 0 || sortsBefore(commandWords[row - 1].name, commandWords[row].name);
}

static constexpr bool hasHandler(std::uint32_t row) {
    const char* name = commandWords[row].name;
    const bool isExit = !sortsBefore(name, "exit") && !sortsBefore("exit", name);
    return (commandWords[row].handler == nullptr) == isExit;
}

static constexpr bool isHelpText(const char* text) {
    if (text == nullptr || *text == '\0')
        return false;
    while (text[1] != '\0')
        ++text;
    return *text == '\n';
}

static constexpr bool hasShortHelp(std::uint32_t row) {
    return isHelpText(commandWords[row].shortHelp);
}

static constexpr bool hasLongHelp(std::uint32_t row) {
    return isHelpText(commandWords[row].longHelp);
}

static constexpr bool hasUniqueId(std::uint32_t row) {
    for (std::uint32_t earlier = 0; earlier < row; ++earlier)
        if (commandWords[earlier].id == commandWords[row].id)
            return false;
    return commandWords[row].id != 0; // 0 is the unknown command
}

// The number of rows before the first one that fails the check.
static consteval std::uint32_t rowsThatPass(bool (*check)(std::uint32_t row)) {
    std::uint32_t row = 0;
    while (row < kCommandWordCount && check(row))
        ++row;
    return row;
}

// When one fails, g++ adds a comparison: its first number is the row, counted from 0.
static_assert(rowsThatPass(isSorted) == kCommandWordCount,
              "commandWords: a row is out of order, or its word is in the table twice");
static_assert(rowsThatPass(hasHandler) == kCommandWordCount,
              "commandWords: a row has no do_cmd_ handler (only exit has none)");
static_assert(rowsThatPass(hasShortHelp) == kCommandWordCount,
              "commandWords: a row has no short help text, or one without a final newline");
static_assert(rowsThatPass(hasLongHelp) == kCommandWordCount,
              "commandWords: a row has no long help text, or one without a final newline");
static_assert(rowsThatPass(hasUniqueId) == kCommandWordCount,
              "commandWords: the id of a row is 0 or belongs to an earlier row");

static consteval auto commandRows() {
    std::array<Command, kCommandCount> rows = {};
    std::size_t count = 0;
    for (const CommandWord& word : commandWords)
        if (word.handler != nullptr)
            rows[count++] = {word.name, word.handler};
    return rows;
}

static consteval auto definitionRows() {
    std::array<CommandDefinition, kCommandWordCount> rows = {};
    for (std::size_t i = 0; i < rows.size(); ++i)
        rows[i] = {commandWords[i].id, commandWords[i].name, commandWords[i].shortHelp, nullptr};
    return rows;
}

constinit const std::array<Command, kCommandCount> cmdTable = commandRows();
const int numCmd = kCommandCount;

constinit std::array<CommandDefinition, kCommandWordCount> ls_icdCmdDefs = definitionRows();
const std::uint32_t ls_u32NumberOfCommands = kCommandWordCount;
