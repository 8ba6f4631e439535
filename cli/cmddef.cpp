// The command definitions that the help command looks words up in.
#include "cli/cmddef.h"

#include <cstdio>

#include "cli/find_word.h"
#include "cli/help_texts.h"
#include "util/result.h"

// Sorted by name without regard to case, so that it can be searched by halving. The long texts come
// with initCommandDefinition().
CommandDefinition ls_icdCmdDefs[20] = {
    {2, "?", CLICMD_SHORT_HELP, nullptr},           {34, "battery", CLICMD_SHORT_BATTERY, nullptr},
    {24, "bga", CLICMD_SHORT_BGA, nullptr},         {35, "buzz", CLICMD_SHORT_BUZZ, nullptr},
    {21, "ctrl", CLICMD_SHORT_CTRL, nullptr},       {32, "enclosure", CLICMD_SHORT_ENCLOSURE, nullptr},
    {31, "event", CLICMD_SHORT_EVENT, nullptr},     {12, "exit", CLICMD_SHORT_EXIT, nullptr},
    {36, "export", CLICMD_SHORT_EXPORT, nullptr},   {33, "extent", CLICMD_SHORT_EXTENT, nullptr},
    {1, "help", CLICMD_SHORT_HELP, nullptr},        {37, "import", CLICMD_SHORT_IMPORT, nullptr},
    {27, "init", CLICMD_SHORT_INIT, nullptr},       {22, "logdrv", CLICMD_SHORT_LOGDRV, nullptr},
    {30, "migrate", CLICMD_SHORT_MIGRATE, nullptr}, {25, "mp", CLICMD_SHORT_MP, nullptr},
    {23, "phydrv", CLICMD_SHORT_PHYDRV, nullptr},   {26, "rb", CLICMD_SHORT_RB, nullptr},
    {29, "rc", CLICMD_SHORT_RC, nullptr},           {28, "sync", CLICMD_SHORT_SYNC, nullptr},
};
const std::uint32_t ls_u32NumberOfCommands = 20;

#define UNKNOWN_COMMAND_HELP "Invalid Command\nPlease use help to display all the valid commands.\n"
const CommandDefinition ls_icdUnknownCmdDef = {0, "unknown", UNKNOWN_COMMAND_HELP, UNKNOWN_COMMAND_HELP};

void initCommandDefinition() {
    static const char* const longHelps[20] = {
        // in the order of ls_icdCmdDefs
        CLICMD_HELP_HELP,
        CLICMD_HELP_BATTERY,
        CLICMD_HELP_BGA,
        CLICMD_HELP_BUZZER,
        CLICMD_HELP_CONTROLLER,
        CLICMD_HELP_ENCLOSURE,
        CLICMD_HELP_EVENT,
        CLICMD_SHORT_EXIT,
        CLICMD_HELP_EXPORT,
        CLICMD_HELP_EXTENT,
        CLICMD_HELP_HELP,
        CLICMD_HELP_IMPORT,
        CLICMD_HELP_LDINIT,
        CLICMD_HELP_LOGDRIVE,
        CLICMD_HELP_MIGRATION,
        CLICMD_HELP_MEDIAPATROL,
        CLICMD_HELP_PHYDRIVE,
        CLICMD_HELP_REBUILD,
        CLICMD_HELP_REDUNDANCY_CHECK,
        CLICMD_HELP_LDSYNCH,
    };
    for (std::uint32_t i = 0; i < ls_u32NumberOfCommands; ++i)
        ls_icdCmdDefs[i].longHelp = longHelps[i];
}

void getCommandDefinition(const char* word, unsigned* id, const char** longHelp, const char** shortHelp) {
    *id = ls_icdUnknownCmdDef.id;
    *longHelp = ls_icdUnknownCmdDef.longHelp;
    *shortHelp = ls_icdUnknownCmdDef.shortHelp;
    const CommandDefinition* row = findWord<CommandDefinition>({ls_icdCmdDefs, ls_u32NumberOfCommands}, word);
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
