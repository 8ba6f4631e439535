// The option table of cli-restore, and its reader.
#include "tools/restore/options.h"

#include <string_view>

static constexpr OptionRow kOptionRows[] = {
    {'i', "controller", "ID", "restore this controller"},
    {'\0', "from", "ID", "restore it from this controller of the backup"},
    {'\0', "drives", "MAP", "use other drives: 2=5,3=6 puts 5 in the place of 2, 7=- leaves 7 out"},
    {'\0', "apply", nullptr, "change the controller; without it the plan is only printed"},
    {'\0', "log", "FILE", "log what --apply does in FILE, not next to the backup"},
    {'h', "help", nullptr, "print this help"},
    {'V', "version", nullptr, "print the version"},
};

static constexpr OptionTable kTable = {
    "cli-restore", TOOL_VERSION,
    "Usage: cli-restore -i ID [--from ID] [--drives MAP] [--apply] FILE\n"
    "Plans the restore of a controller from a backup of cli-backup, or applies the plan.\n",
    kOptionRows,
    "Exit status: 0 nothing left to do, 1 the plan can be applied, 2 usage, 3 cannot read or log,\n"
    "4 something prevents the plan, 5 stopped at a step.\n"
    "The manual is cli-restore(8).\n"};

static OptionsResult readId(const char* text, std::optional<std::uint32_t>* id) {
    std::uint64_t number = 0;
    if (!readNumber(text, UINT16_MAX, &number))
        return refuseOptions(kTable, std::string("\"") + text + "\" is not a controller ID");
    *id = static_cast<std::uint32_t>(number);
    return OptionsResult::run;
}

static OptionsResult apply(const OptionRow& row, const char* argument, RestoreOptions* options) {
    const std::string_view name = row.name;
    if (name == "controller")
        return readId(argument, &options->controller);
    if (name == "from")
        return readId(argument, &options->from);
    if (name == "drives") {
        options->drives.clear();
        std::string problem = readDriveMap(argument, &options->drives);
        if (!problem.empty())
            return refuseOptions(kTable, problem);
        options->drivesGiven = true;
    } else if (name == "log") {
        if (*argument == '\0')
            return refuseOptions(kTable, "--log needs a name");
        options->log = argument;
    } else {
        options->apply = true;
    }
    return OptionsResult::run;
}

OptionsResult readRestoreOptions(int argc, char** argv, RestoreOptions* options) {
    std::vector<std::string> words;
    const OptionsResult result = readOptionTable(
        kTable, argc, argv,
        [&](const OptionRow& row, const char* argument) { return apply(row, argument, options); }, &words);
    if (result != OptionsResult::run)
        return result;
    if (!options->controller)
        return refuseOptions(kTable, "-i and the controller's ID are needed");
    if (words.size() != 1 || words[0].empty())
        return refuseOptions(kTable, "one backup is needed");
    options->file = words[0];
    return OptionsResult::run;
}

void refuseRestore(const std::string& problem) {
    refuseOptions(kTable, problem);
}
