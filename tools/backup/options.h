// The command line of cli-backup.
#pragma once

#include "tools/common/option_table.h"

inline constexpr char kDefaultDirectory[] = "/var/backups/cli";
inline constexpr std::uint64_t kDefaultKeep = 30;

struct BackupOptions {
    std::string directory;             // empty: kDefaultDirectory, which is created if it is missing
    std::uint64_t keep = kDefaultKeep; // backups, at least 1
    std::string cli;                   // the program that exports; empty: cli in the same directory
};

// Reads the command line. done: --help or --version was answered; usage: it was refused with a message.
OptionsResult readBackupOptions(int argc, char** argv, BackupOptions* options);
