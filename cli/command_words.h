// The table of all commands. The compiler builds cmdTable (cli/interface.h) and ls_icdCmdDefs
// (cli/cmddef.h) from it and checks its rows.
#pragma once

#include <cstdint>
#include <iterator>

#include "cli/help_texts.h"
#include "cli/routes.h"

struct CommandWord {
    std::uint32_t id; // unique; never printed
    const char* name;
    int (*handler)(int wordCount, char** words); // null only for exit, which the prompt handles
    const char* shortHelp;
    const char* longHelp;
};

// Sorted by name without regard to case.
inline constexpr CommandWord commandWords[] = {
    {2, "?", do_cmd_help, CLICMD_SHORT_HELP, CLICMD_HELP_HELP},
    {34, "battery", do_cmd_battery, CLICMD_SHORT_BATTERY, CLICMD_HELP_BATTERY},
    {24, "bga", do_cmd_bga, CLICMD_SHORT_BGA, CLICMD_HELP_BGA},
    {35, "buzz", do_cmd_buzz, CLICMD_SHORT_BUZZ, CLICMD_HELP_BUZZER},
    {21, "ctrl", do_cmd_controller, CLICMD_SHORT_CTRL, CLICMD_HELP_CONTROLLER},
    {32, "enclosure", do_cmd_enclosure, CLICMD_SHORT_ENCLOSURE, CLICMD_HELP_ENCLOSURE},
    {31, "event", do_cmd_event, CLICMD_SHORT_EVENT, CLICMD_HELP_EVENT},
    {12, "exit", nullptr, CLICMD_SHORT_EXIT, CLICMD_SHORT_EXIT},
    {36, "export", do_cmd_export, CLICMD_SHORT_EXPORT, CLICMD_HELP_EXPORT},
    {33, "extent", do_cmd_extent, CLICMD_SHORT_EXTENT, CLICMD_HELP_EXTENT},
    {1, "help", do_cmd_help, CLICMD_SHORT_HELP, CLICMD_HELP_HELP},
    {37, "import", do_cmd_import, CLICMD_SHORT_IMPORT, CLICMD_HELP_IMPORT},
    {27, "init", do_cmd_init, CLICMD_SHORT_INIT, CLICMD_HELP_LDINIT},
    {22, "logdrv", do_cmd_logdrv, CLICMD_SHORT_LOGDRV, CLICMD_HELP_LOGDRIVE},
    {30, "migrate", do_cmd_migrate, CLICMD_SHORT_MIGRATE, CLICMD_HELP_MIGRATION},
    {25, "mp", do_cmd_mediapatrol, CLICMD_SHORT_MP, CLICMD_HELP_MEDIAPATROL},
    {23, "phydrv", do_cmd_phydrv, CLICMD_SHORT_PHYDRV, CLICMD_HELP_PHYDRIVE},
    {26, "rb", do_cmd_rebuild, CLICMD_SHORT_RB, CLICMD_HELP_REBUILD},
    {29, "rc", do_cmd_redundancyCheck, CLICMD_SHORT_RC, CLICMD_HELP_REDUNDANCY_CHECK},
    {28, "sync", do_cmd_sync, CLICMD_SHORT_SYNC, CLICMD_HELP_LDSYNCH},
};

inline constexpr std::uint32_t kCommandWordCount = std::size(commandWords);
inline constexpr int kCommandCount = kCommandWordCount - 1; // all but exit
