// The command line of cli-restore.
#pragma once

#include <optional>

#include "tools/common/option_table.h"
#include "tools/restore/drive_map.h"

struct RestoreOptions {
    std::optional<std::uint32_t> controller;
    std::optional<std::uint32_t> from; // of the backup; that with the same ID if it is not given
    std::string file;
    DriveMap drives;
    bool drivesGiven = false;
    bool apply = false;
    std::string log; // empty: in the directory of the backup
};

OptionsResult readRestoreOptions(int argc, char** argv, RestoreOptions* options);

// Prints a usage error that only the backup shows.
void refuseRestore(const std::string& problem);
