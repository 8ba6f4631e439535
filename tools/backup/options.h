// The command line of cli-backup.
#pragma once

#include "tools/common/option_table.h"

inline constexpr char kDefaultDirectory[] = "/var/backups/cli";
inline constexpr std::uint64_t kDefaultKeep = 30;

struct BackupOptions {
    std::string directory; // empty: the default one, which is created
    std::uint64_t keep = kDefaultKeep;
    std::string cli; // the program that exports; empty: cli in the same directory
};

OptionsResult readBackupOptions(int argc, char** argv, BackupOptions* options);
