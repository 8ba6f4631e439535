// Looks up command words in the definitions; the help command.
#include "cli/cmddef.h"

#include <cstdio>

#include "cli/find_word.h"
#include "util/result.h"

static constexpr char unknownHelp[] = "Invalid Command\nPlease use help to display all the valid commands.\n";
const CommandDefinition ls_icdUnknownCmdDef = {0, "unknown", unknownHelp, unknownHelp};

static consteval auto longHelpColumn() {
    std::array<const char*, kCommandWordCount> texts = {};
    for (std::size_t i = 0; i < texts.size(); ++i)
        texts[i] = commandWords[i].longHelp;
    return texts;
}

void initCommandDefinition() {
    static constexpr auto longHelps = longHelpColumn();
    for (std::size_t i = 0; i < longHelps.size(); ++i)
        ls_icdCmdDefs[i].longHelp = longHelps[i];
}

void getCommandDefinition(const char* word, unsigned* id, const char** longHelp, const char** shortHelp) {
    *id = ls_icdUnknownCmdDef.id;
    *longHelp = ls_icdUnknownCmdDef.longHelp;
    *shortHelp = ls_icdUnknownCmdDef.shortHelp;
    const CommandDefinition* row = findWord<CommandDefinition>(ls_icdCmdDefs, word);
    if (row == nullptr)
        return;
    *id = row->id;
    if (row->longHelp != nullptr)
        *longHelp = row->longHelp;
    if (row->shortHelp != nullptr)
        *shortHelp = row->shortHelp;
}

const char* getCommandHelpDefinition(const char** text) {
    *text = CLICMD_HELP_HELP;
    return *text;
}

int do_cmd_help(int wordCount, char** words) {
    initCommandDefinition();
    unsigned id = 0;
    const char *longHelp = nullptr, *shortHelp = nullptr;
    getCommandDefinition(words[wordCount > 1 ? 1 : 0], &id, &longHelp, &shortHelp);
    std::puts(shortHelp);
    std::fputs(longHelp, stdout);
    return Result::badCount;
}
