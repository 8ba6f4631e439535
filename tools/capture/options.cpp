// The option table of cli-capture, and its reader.
#include "tools/capture/options.h"

static constexpr OptionRow kOptionRows[] = {
    {'o', "output", "FILE", "write the world to FILE instead of standard output"},
    {'a', "anonymous", nullptr, "replace serials and names of logical drives"},
    {'h', "help", nullptr, "print this help"},
    {'V', "version", nullptr, "print the version"},
};

static constexpr OptionTable kTable = {
    "cli-capture", TOOL_VERSION,
    "Usage: cli-capture [OPTION]...\n"
    "Copies the state of the adapters into a world for the simulated adapters.\n",
    kOptionRows,
    "Exit status: 0 captured, 1 captured in part, 2 usage, 3 not captured.\n"
    "The manual is cli-capture(8).\n"};

OptionsResult readCaptureOptions(int argc, char** argv, CaptureOptions* options) {
    return readOptionTable(kTable, argc, argv, [&](const OptionRow& row, const char* argument) {
        if (row.shortName == 'a')
            options->anonymous = true;
        else if (*argument != '\0')
            options->output = argument;
        else
            return refuseOptions(kTable, "--output needs the name of a file");
        return OptionsResult::run;
    });
}
