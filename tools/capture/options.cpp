// The option table of cli-capture, and its reader.
#include "tools/capture/options.h"

#include <cstdio>

static constexpr OptionRow kOptionRows[] = {
    {'o', "output", "FILE", "write the world to FILE instead of standard output"},
    {'a', "anonymous", nullptr, "replace serials and names of logical drives"},
    {'h', "help", nullptr, "print this help"},
    {'V', "version", nullptr, "print the version"},
};

static constexpr option kLongOptions[] = {
    {"output", required_argument, nullptr, 'o'},
    {"anonymous", no_argument, nullptr, 'a'},
    {"help", no_argument, nullptr, 'h'},
    {"version", no_argument, nullptr, 'V'},
    {nullptr, 0, nullptr, 0},
};

std::span<const OptionRow> optionRows() {
    return kOptionRows;
}

static OptionsResult printHelp() {
    std::puts("Usage: cli-capture [OPTION]...\n"
              "Copies the state of the adapters into a world for the simulated adapters.\n");
    for (const OptionRow& row : kOptionRows) {
        const std::string name = row.name + (row.argument != nullptr ? std::string("=") + row.argument : "");
        std::printf("  -%c, --%-18s %s\n", row.letter, name.c_str(), row.help);
    }
    std::puts("\nExit status: 0 captured, 1 captured in part, 2 usage, 3 not captured.\n"
              "The manual is cli-capture(8).");
    return OptionsResult::done;
}

static OptionsResult printVersion() {
    std::puts("cli-capture " CLI_CAPTURE_VERSION);
    return OptionsResult::done;
}

static OptionsResult advise() {
    std::fputs("Try \"cli-capture --help\".\n", stderr);
    return OptionsResult::usage;
}

static OptionsResult refuse(const std::string& problem) {
    std::fprintf(stderr, "cli-capture: %s\n", problem.c_str());
    return advise();
}

OptionsResult readOptions(int argc, char** argv, Options* options) {
    for (int value; (value = getopt_long(argc, argv, "o:ahV", kLongOptions, nullptr)) != -1;) {
        switch (value) {
        case 'o':
            options->output = optarg;
            if (options->output.empty())
                return refuse("--output needs the name of a file");
            break;
        case 'a':
            options->anonymous = true;
            break;
        case 'h':
            return printHelp();
        case 'V':
            return printVersion();
        default: // getopt has said what is wrong
            return advise();
        }
    }
    return optind < argc ? refuse(std::string("unexpected word \"") + argv[optind] + "\"")
                         : OptionsResult::run;
}
