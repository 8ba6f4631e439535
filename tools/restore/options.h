// The command line of cli-restore.
#pragma once

#include <optional>

#include "tools/common/option_table.h"
#include "tools/restore/drive_map.h"

struct RestoreOptions {
    std::optional<std::uint32_t> controller;
    std::optional<std::uint32_t> from; // controller of the backup; empty: the one with the same ID
    std::string file;
    DriveMap drives;
    bool drivesGiven = false;
    bool apply = false;
    std::string log; // empty: in the directory of the backup
};

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readRestoreOptions(int argc, char** argv, RestoreOptions* options);

// Prints a usage error that shows only when the backup has been read.
void refuseRestore(const std::string& problem);
