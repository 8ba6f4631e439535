// The command definitions, which the help command searches. Their rows come from cli/command_words.h.
#pragma once

#include <array>
#include <cstdint>

#include "cli/command_words.h"

struct CommandDefinition {
    std::uint32_t id;
    const char* name;
    const char* shortHelp;
    const char* longHelp; // null until initCommandDefinition()
};

extern std::array<CommandDefinition, kCommandWordCount> ls_icdCmdDefs;
extern const std::uint32_t ls_u32NumberOfCommands;
extern const CommandDefinition ls_icdUnknownCmdDef;

// Attaches the long help texts to their rows; may be called again.
void initCommandDefinition();

// Looks up the whole word, ignoring case, and sets all three outputs: those of the unknown command, with
// id 0, if there is no such word. The texts are constants.
void getCommandDefinition(const char* word, unsigned* id, const char** longHelp, const char** shortHelp);

// Stores and returns the main help text.
const char* getCommandHelpDefinition(const char** text);
