// The option table of cli-backup, and its reader.
#include "tools/backup/options.h"

#include <string_view>

static constexpr OptionRow kOptionRows[] = {
    {'d', "directory", "DIR", "keep the backups in DIR, not in /var/backups/cli"},
    {'\0', "keep", "N", "keep the last N backups, not 30"},
    {'\0', "cli", "PROGRAM", "export with PROGRAM, not with the cli in the same directory"},
    {'h', "help", nullptr, "print this help"},
    {'V', "version", nullptr, "print the version"},
};

static constexpr std::uint64_t kMaxKept = 100000;

static constexpr OptionTable kTable = {
    "cli-backup", TOOL_VERSION,
    "Usage: cli-backup [OPTION]...\n"
    "Saves the configuration and the state of all controllers if they have changed.\n",
    kOptionRows,
    "Exit status: 0 saved or unchanged, 1 saved or unchanged with a warning, 2 usage, 3 failed.\n"
    "The manual is cli-backup(8).\n"};

static OptionsResult setName(const OptionRow& row, const char* argument, std::string* name) {
    if (*argument == '\0')
        return refuseOptions(kTable, std::string("--") + row.name + " needs a name");
    *name = argument;
    return OptionsResult::run;
}

static OptionsResult apply(const OptionRow& row, const char* argument, BackupOptions* options) {
    const std::string_view name = row.name;
    if (name == "directory")
        return setName(row, argument, &options->directory);
    if (name == "cli")
        return setName(row, argument, &options->cli);
    if (!readNumber(argument, kMaxKept, &options->keep) || options->keep == 0)
        return refuseOptions(kTable, std::string("\"") + argument +
                                         "\" is not a number of backups from 1 to " +
                                         std::to_string(kMaxKept));
    return OptionsResult::run;
}

OptionsResult readBackupOptions(int argc, char** argv, BackupOptions* options) {
    return readOptionTable(kTable, argc, argv, [&](const OptionRow& row, const char* argument) {
        return apply(row, argument, options);
    });
}
