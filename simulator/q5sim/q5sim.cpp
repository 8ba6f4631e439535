// Fault injection tool: fails and replaces drives, injects other faults and advances the clock. Drive
// IDs are those that cli shows, from 1.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <getopt.h>
#include <string>

#include "simulator/q5sim/command.h"

using namespace q5sim;

// Values of the long options, as bits of the options that a command accepts.
enum OptionBit : unsigned {
    kBlank = 1,
    kForeign = 2,
    kSame = 4,
    kAt = 8,
    kCelsius = 16,
    kUntilIdle = 32,
    kLimit = 64,
    kCheck = 128,
    kTimes = 256,
    kAfter = 512,
    kResult = 1024,
    kHelp = 2048,
};

static const ::option longOptions[] = {{"blank", no_argument, nullptr, kBlank},
                                       {"foreign", no_argument, nullptr, kForeign},
                                       {"same", no_argument, nullptr, kSame},
                                       {"at", required_argument, nullptr, kAt},
                                       {"celsius", required_argument, nullptr, kCelsius},
                                       {"until-idle", no_argument, nullptr, kUntilIdle},
                                       {"limit", required_argument, nullptr, kLimit},
                                       {"check", no_argument, nullptr, kCheck},
                                       {"times", required_argument, nullptr, kTimes},
                                       {"after", required_argument, nullptr, kAfter},
                                       {"result", required_argument, nullptr, kResult},
                                       {"help", no_argument, nullptr, kHelp},
                                       {nullptr, 0, nullptr, 0}};

struct Command {
    const char* name;
    const char* synopsis; // of its arguments
    std::size_t minWords, maxWords;
    unsigned options; // bits of OptionBit
    int (*run)(const Arguments& arguments);
};

static const Command commands[] = {
    {"status", "[--check]", 0, 0, kCheck, statusCommand},
    {"why", "", 0, 0, 0, whyCommand},
    {"save", "FILE", 1, 1, 0, saveCommand},
    {"load", "FILE", 1, 1, 0, loadCommand},
    {"reset", "", 0, 0, 0, resetCommand},
    {"advance", "SECONDS | --until-idle [--limit SECONDS]", 0, 1, kUntilIdle | kLimit, advanceCommand},
    {"speed", "N", 1, 1, 0, speedCommand},
    {"fail-drive", "CTRL DRIVE", 2, 2, 0, failDriveCommand},
    {"pull-drive", "CTRL DRIVE", 2, 2, 0, pullDriveCommand},
    {"insert-drive", "CTRL DRIVE [--blank | --foreign | --same]", 2, 2, kBlank | kForeign | kSame,
     insertDriveCommand},
    {"replace-drive", "CTRL DRIVE", 2, 2, 0, replaceDriveCommand},
    {"media-errors", "CTRL DRIVE N [--at PERCENT]", 3, 3, kAt, mediaErrorsCommand},
    {"smart-fail", "CTRL DRIVE", 2, 2, 0, smartFailCommand},
    {"smart-ok", "CTRL DRIVE", 2, 2, 0, smartOkCommand},
    {"battery", "CTRL charging|discharging|full|failed|missing [--celsius T]", 2, 2, kCelsius,
     batteryCommand},
    {"sensor", "CTRL ENCLOSURE fan|temperature|5v|12v VALUE", 4, 4, 0, sensorCommand},
    {"pull-enclosure", "CTRL ENCLOSURE", 2, 2, 0, pullEnclosureCommand},
    {"insert-enclosure", "CTRL ENCLOSURE", 2, 2, 0, insertEnclosureCommand},
    {"swap-controller", "CTRL", 1, 1, 0, swapControllerCommand},
    {"power-cut", "", 0, 0, 0, powerCutCommand},
    {"refuse", "OPERATION [--times N] [--after N] [--result R]", 1, 1, kTimes | kAfter | kResult,
     refuseCommand},
    {"delay", "OPERATION SECONDS", 2, 2, 0, delayCommand},
    {"hang", "OPERATION", 1, 1, 0, hangCommand},
    {"zero", "OPERATION", 1, 1, 0, zeroCommand},
    {"short", "OPERATION", 1, 1, 0, shortCommand},
    {"rules", "", 0, 0, 0, rulesCommand},
    {"clear-rules", "", 0, 0, 0, clearRulesCommand},
};

static void printUsage(std::FILE* stream, const Command& command, const char* start = "Usage:") {
    std::fprintf(stream, "%s q5sim %s%s%s\n", start, command.name, command.synopsis[0] != '\0' ? " " : "",
                 command.synopsis);
}

static int printHelp() {
    std::puts("Usage: q5sim COMMAND [ARGUMENT ...]");
    for (const Command& command : commands)
        printUsage(stdout, command, "      ");
    return 0;
}

static const Command* findCommand(const char* name) {
    for (const Command& command : commands)
        if (std::strcmp(command.name, name) == 0)
            return &command;
    return nullptr;
}

// Stores a number with one of the functions that read it.
template <typename Number>
static bool store(bool (*read)(const char*, std::int64_t, std::int64_t&), const char* text,
                  std::int64_t limit, Number& value) {
    std::int64_t number = 0;
    const bool valid = read(text, limit, number);
    value = static_cast<Number>(number);
    return valid;
}

// Stores the value of an option; false: it is invalid.
static bool storeValue(int option, const char* value, Options& options) {
    switch (option) {
    case kAt:
        return store(readNumber, value, 100, options.atPercent);
    case kCelsius:
        options.hasCelsius = true;
        return store(readSigned, value, 100, options.celsius);
    case kLimit:
        return readNumber(value, kMaxAdvance, options.limit);
    case kTimes:
        return store(readNumber, value, INT32_MAX, options.times);
    case kAfter:
        return store(readNumber, value, INT32_MAX, options.after);
    case kResult:
        return store(readSigned, value, INT32_MAX, options.result);
    default:
        return true;
    }
}

static void storeFlag(int option, Options& options) {
    if (option == kBlank)
        options.newDrive = NewDrive::blank;
    else if (option == kForeign)
        options.newDrive = NewDrive::foreign;
    else if (option == kUntilIdle)
        options.untilIdle = true;
    else if (option == kCheck)
        options.check = true;
}

static int commandError(const Command& command, const std::string& reason) {
    const int status = usageError(std::string(command.name) + ": " + reason);
    printUsage(stderr, command);
    return status;
}

// Whether the command accepts the option, and none that excludes it is present.
static bool fits(const Command& command, unsigned present, unsigned option) {
    const unsigned kinds = kBlank | kForeign | kSame;
    return (command.options & option) != 0 && ((option & kinds) == 0 || (present & kinds & ~option) == 0);
}

static bool isNegativeNumber(const char* word) {
    return word[0] == '-' && word[1] >= '0' && word[1] <= '9';
}

static int runCommand(const Command& command, int count, char** words) {
    Arguments arguments;
    unsigned present = 0;
    ::opterr = 0;
    // A negative reading of a sensor is not an option.
    const bool negative = command.options == 0 && count > 1 && isNegativeNumber(words[count - 1]);
    count -= negative ? 1 : 0;
    for (int option; (option = ::getopt_long(count, words, ":", longOptions, nullptr)) != -1;) {
        if (option == kHelp)
            return printUsage(stdout, command), 0;
        if (option == '?' || option == ':')
            return commandError(command,
                                option == ':' ? "an option lacks its value" : "an option is unknown");
        if (!fits(command, present, static_cast<unsigned>(option)))
            return commandError(command, "an option does not fit here");
        storeFlag(option, arguments.options);
        if (!storeValue(option, ::optarg, arguments.options))
            return commandError(command, std::string("the value ") + ::optarg + " of an option is invalid");
        present |= static_cast<unsigned>(option);
    }
    arguments.words.assign(words + ::optind, words + count + (negative ? 1 : 0));
    if (arguments.words.size() < command.minWords || arguments.words.size() > command.maxWords)
        return commandError(command, "wrong number of arguments");
    const int status = command.run(arguments);
    if (status == kUsageStatus)
        printUsage(stderr, command);
    return status;
}

int main(int count, char** words) {
    if (count < 2 || std::strcmp(words[1], "--help") == 0 || std::strcmp(words[1], "help") == 0)
        return count < 2 ? usageError("a command is missing; see q5sim --help") : printHelp();
    const Command* command = findCommand(words[1]);
    if (command == nullptr)
        return usageError("there is no command " + std::string(words[1]) + "; see q5sim --help");
    const int status = runCommand(*command, count - 1, words + 1);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    return refused(std::string("standard output: ") + std::strerror(errno));
}
