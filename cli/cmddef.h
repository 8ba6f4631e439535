// The command definitions and the help command. The texts themselves are in help_texts.h.
#pragma once

#include <cstdint>

struct CommandDefinition {
    std::uint32_t id;
    const char* name;
    const char* shortHelp;
    const char* longHelp; // null until initCommandDefinition()
};

extern CommandDefinition ls_icdCmdDefs[20];
extern const std::uint32_t ls_u32NumberOfCommands;
extern const CommandDefinition ls_icdUnknownCmdDef;

// Attaches the long help texts to their rows; may be called again.
void initCommandDefinition();

// Looks word up, exact but for case, and sets all three outputs: those of the unknown command, with
// id 0, when there is no such word. The texts are constants.
void getCommandDefinition(const char* word, unsigned* id, const char** longHelp, const char** shortHelp);

// Stores and returns the main help text.
const char* getCommandHelpDefinition(const char** text);

// help and ?: prints both texts of the second word, or of the command word when it stands alone.
// Always Result::badCount.
int do_cmd_help(int wordCount, char** words);
