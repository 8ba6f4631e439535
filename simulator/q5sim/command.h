// The commands of the fault injection tool: their arguments and how they report.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simulator/engine/fault_injection.h"
#include "simulator/world/world.h"

namespace q5sim {

inline constexpr int kRefusedStatus = 1;
inline constexpr int kUsageStatus = 2;

inline constexpr std::int64_t kMaxAdvance = std::int64_t{1} << 40; // seconds

// The options of all commands; a command accepts only its own.
struct Options {
    NewDrive newDrive = NewDrive::same;
    int atPercent = -1; // -1: not given
    bool hasCelsius = false;
    std::int32_t celsius = 0;
    bool untilIdle = false;
    std::int64_t limit = 0; // seconds; 0: the default
    bool check = false;
    std::uint32_t times = 0;
    std::uint32_t after = 0;
    std::int32_t result = 1;
};

struct Arguments {
    std::vector<const char*> words; // without the command
    Options options;
};

// Print the reason on standard error; return the exit status of a refusal or of a usage error.
int refused(const std::string& reason);
int usageError(const std::string& reason);

// Parse decimal digits from 0 to limit, or a number from -limit to limit; false: the word is not such a
// number.
bool readNumber(const char* text, std::int64_t limit, std::int64_t& number);
bool readSigned(const char* text, std::int64_t limit, std::int64_t& number);

// Changes one controller, prints the headline and what followed. The first event of the controller only
// repeats the headline when skipFirst is set.
using Fault = std::function<Reason(Controller& controller, std::int64_t now)>;
int changeController(const char* controllerWord, const std::string& headline, bool skipFirst,
                     const Fault& inject);

// Changes the world, prints the headline and then each event on a separate line.
using WorldFault = std::function<Reason(World& world, std::int64_t now)>;
int changeWholeWorld(const std::function<std::string()>& headline, const WorldFault& inject);

// drives.cpp
int failDriveCommand(const Arguments& arguments);
int pullDriveCommand(const Arguments& arguments);
int insertDriveCommand(const Arguments& arguments);
int replaceDriveCommand(const Arguments& arguments);
int mediaErrorsCommand(const Arguments& arguments);
int smartFailCommand(const Arguments& arguments);
int smartOkCommand(const Arguments& arguments);
// environment.cpp
int batteryCommand(const Arguments& arguments);
int sensorCommand(const Arguments& arguments);
int pullEnclosureCommand(const Arguments& arguments);
int insertEnclosureCommand(const Arguments& arguments);
int swapControllerCommand(const Arguments& arguments);
int powerCutCommand(const Arguments& arguments);
// worlds.cpp
int statusCommand(const Arguments& arguments);
int whyCommand(const Arguments& arguments);
int saveCommand(const Arguments& arguments);
int loadCommand(const Arguments& arguments);
int resetCommand(const Arguments& arguments);
int advanceCommand(const Arguments& arguments);
int speedCommand(const Arguments& arguments);
// rules.cpp
int refuseCommand(const Arguments& arguments);
int delayCommand(const Arguments& arguments);
int hangCommand(const Arguments& arguments);
int zeroCommand(const Arguments& arguments);
int shortCommand(const Arguments& arguments);
int rulesCommand(const Arguments& arguments);
int clearRulesCommand(const Arguments& arguments);

} // namespace q5sim
