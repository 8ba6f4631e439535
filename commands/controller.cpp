// The ctrl command: lists the controllers and changes their settings.
#include "commands/controller.h"

#include <cstdio>

#include "adapter/battery.h"
#include "adapter/controller.h"
#include "adapter/enclosure.h"
#include "adapter/reply.h"
#include "adapter/session.h"
#include "commands/options.h"
#include "commands/settings_text.h"
#include "commands/vocabulary.h"
#include "util/result.h"
#include "util/utils.h"

namespace {
// Everything a listing shows about one controller; zero where a call failed.
struct ControllerReport {
    std::uint32_t controllerId;
    DiscoverPathInfo path;
    ControllerInfo info;
    ControllerVersionInfo version;
    ControllerSettings settings;
    BatteryInfo battery;
    int enclosureCount;
};

struct VersionText {
    char text[48]; // four numbers of at most 11 characters, their dots and the NUL
};
} // namespace

static VersionText versionText(const VersionNumber& version) {
    VersionText result;
    std::snprintf(result.text, sizeof result.text, "%d.%d.%d.%d", version.major, version.minor, version.third,
                  version.fourth);
    return result;
}

static const char* memoryText(const ControllerInfo& info) {
    return info.memoryType == 1 ? "ECC" : "Non-ECC";
}

static int countEnclosures(std::uint32_t controller) {
    int count = 0;
    for (std::uint16_t id = 0; id < kMaxEnclosures; ++id) {
        const EnclosureQuery query = {id, 1};
        Reply<EnclosureEntry, 1> reply = {};
        q5_getEnclosureInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
        count += reply.record[0].type != kNoEnclosure;
    }
    return count;
}

static ControllerReport readController(std::uint32_t controller) {
    ControllerReport report = {};
    report.controllerId = controller;
    const HbaAddress address = hbaAddress(controller);
    const ControllerQuery general = {controller, 1, kGeneralInfo, {}};
    const ControllerQuery version = {controller, 1, kVersionInfo, {}};
    const ControllerQuery settings = {controller, 1, kGeneralInfo, {}};
    const BatteryQuery battery = {};
    q5_getDiscoverPath(address, &report.path, sizeof report.path);
    q5_getControllerInfo(address, 0, &general, &report.info, sizeof report.info);
    q5_getControllerInfo(address, 0, &version, &report.version, sizeof report.version);
    q5_getControllerSettings(address, 0, &settings, &report.settings, sizeof report.settings);
    q5_getBatteryInfo(address, 0, &battery, &report.battery, sizeof report.battery);
    report.enclosureCount = countEnclosures(controller);
    return report;
}

static void printRow(const ControllerReport& report, const VersionText& driver) {
    std::printf("%2d %12s %5d MB %4d %6d %10d %12s %12s\n", static_cast<int>(report.controllerId),
                memoryText(report.info), report.info.memorySize, report.info.diskCount,
                report.info.arrayCount, report.enclosureCount, versionText(report.info.biosVersion).text,
                driver.text);
}

static void printPath(const DiscoverPathInfo& path) {
    std::printf("IRQ : %d\n", path.irq);
    std::printf("Logical slot number : %d\n", path.logicalSlot);
    std::printf("Bus master base : %d\n", path.busMasterBase);
    std::printf("BIOs memory start : %d\n", static_cast<int>(path.biosMemoryStart));
    std::printf("BIOs memory range : %d\n", path.biosMemoryRange);
    std::printf("Base address ATA : 0x%x\n", path.baseAddressAta);
    std::printf("Base address XOR : 0x%x\n", path.baseAddressXor);
    std::printf("Base address SEQ : 0x%x\n", path.baseAddressSeq);
    std::printf("Base address MMIO : 0x%x\n", path.baseAddressMmio);
    std::printf("Base address SDRAM : 0x%x\n", path.baseAddressSdram);
}

// Rates, intervals and flags come from the controller's information record; only the rebuild policy
// comes from its settings record.
static void printRates(const ControllerInfo& info, const ControllerSettings& settings) {
    std::printf("Rebuild rate : %d\n", info.rebuildRate);
    std::printf("Synchronization rate : %d\n", info.syncRate);
    std::printf("Migration rate : %d\n", info.migrateRate);
    std::printf("Initialization rate : %d\n", info.initRate);
    std::printf("Media patrol rate : %d\n", info.mpRate);
    std::printf("Smart check polling interval : %d\n", info.smartPollInterval);
    std::printf("Enclosure polling interval : %d\n", info.encPollInterval);
    std::printf("Smart check : %s\n", enableText(info.smartCheck));
    std::printf("Auto rebuild : %s\n", enableText(info.autoRebuild));
    std::printf("Rebuild policy : %s\n", enableText(settings.rebuildPolicy));
}

static void printBlock(const ControllerReport& report, const VersionText& driver) {
    const ControllerInfo& info = report.info;
    std::puts("******************************");
    std::printf("Controller ID : %d\n", static_cast<int>(report.controllerId));
    std::printf("BIOs Version : %s\n", versionText(info.biosVersion).text);
    std::printf("Driver Version : %s\n", driver.text);
    printPath(report.path);
    std::printf("Memory type : %s\n", memoryText(info));
    std::printf("Memory size : %d MB\n", info.memorySize);
    std::printf("Maximum extents supported in each disk : %d\n", info.maxExtentsPerDisk);
    std::printf("Number of disks : %d\n", info.diskCount);
    std::printf("Number of arrays : %d\n", info.arrayCount);
    std::printf("Number of enclosure : %d\n", report.enclosureCount);
    std::printf("Battery installed : %s\n", report.battery.status != 0 ? "Yes" : "No");
    printRates(info, report.settings);
    std::printf("Max port supported in each controller : %d\n", info.maxPorts);
    std::printf("Firmware version : %s\n", versionText(report.version.firmwareVersion).text);
}

int ListControllerInfo(int wordCount, char** words) {
    std::uint32_t found = 0;
    q5_getNumberOfHBA(&found);
    if (found == 0)
        return fail(Result::notFound, "No controller is existed");

    std::uint32_t first = 0, count = found;
    bool verbose = false;
    const Option options[] = {
        flagOption("-v", &verbose),
        numberOption("-i", "controller ID", &first, Result::badId),
        countOption("-c", "controller count", &count, found - 1),
    };
    if (const int result = readOptions(wordCount, words, firstOption(wordCount, words), options,
                                       "Invalid parameters defined"))
        return result;

    // Compatibility: the ID is compared with the count, so ID 1 with count 1 is rejected although it may
    // exist.
    if (count <= first) {
        std::printf("No controller with ID #%d is existed!\n", static_cast<int>(first));
        return Result::notFound;
    }
    DriverInfo driver = {};
    q5_getDriverInfo(hbaAddress(first), 0, &driver);
    const VersionText driverVersion = versionText(driver.driverVersion);
    if (!verbose)
        std::printf("%2s %12s %8s %4s %6s %10s %12s %12s\n", "ID", "MemType", "MemSize", "Disks", "Arrays",
                    "Enclosures", "BIOS Ver", "Driver Ver");
    // Compatibility: the count is not reduced by the first ID; controllers past the last show as zeros.
    for (std::uint32_t id = first; id < first + count; ++id)
        (verbose ? printBlock : printRow)(readController(id), driverVersion);
    return Result::done;
}

namespace {
// A settings key. The first row whose key occurs in an item wins, so "smartpoll" precedes "smart".
struct SettingKey {
    const char* key;
    std::uint8_t ControllerSettings::*field;
    const char* outOfRange; // of a number 1..255; null for a switch
};
} // namespace

static const SettingKey settingKeys[] = {
    {"rebuildrate", &ControllerSettings::rebuildRate, "rebuild rate is out of range!"},
    {"syncrate", &ControllerSettings::syncRate, "syncrate is out of range!"},
    {"initrate", &ControllerSettings::initRate, "initrate is out of range!"},
    {"migraterate", &ControllerSettings::migrateRate, "migraterate is out of range!"},
    {"mprate", &ControllerSettings::mpRate, "mprate is out of range!"},
    {"smartpoll", &ControllerSettings::smartPollInterval, "smartpoll is out of range!"},
    {"encpoll", &ControllerSettings::encPollInterval, "encpoll is out of range!"},
    {"smart", &ControllerSettings::smartCheck, nullptr},
    {"autorebuild", &ControllerSettings::autoRebuild, nullptr},
    {"rebuildpolicy", &ControllerSettings::rebuildPolicy, nullptr},
};

static const SettingKey* findSettingKey(const char* item) {
    for (const SettingKey& row : settingKeys)
        if (itemContains(item, row.key))
            return &row;
    return nullptr;
}

// Stores a number 1..255. Prints a message for any other number, but not for a missing value.
static ItemResult parseRate(const char* item, std::uint8_t* field, const char* outOfRange) {
    const char* value = itemValue(item);
    if (value == nullptr)
        return ItemResult::invalid;
    const int number = atoiText(value);
    if (number < 1 || number > 255) {
        std::puts(outOfRange);
        return ItemResult::invalid;
    }
    *field = static_cast<std::uint8_t>(number);
    return ItemResult::ok;
}

static ItemResult changeSetting(ControllerSettings* settings, const char* item) {
    const SettingKey* row = findSettingKey(item);
    if (row == nullptr)
        return abortItems("Invalid parameters for \"ctrl\"!");
    std::uint8_t* field = &(settings->*row->field);
    return row->outOfRange != nullptr ? parseRate(item, field, row->outOfRange) : parseSwitch(item, field);
}

int SetControllerSettings(int wordCount, char** words) {
    if (wordCount <= 4)
        return fail(Result::badCount, "Invalid numbers of parameter in command \"ctrl -a mod\" ");
    std::uint32_t controller = 0;
    int settingsOption = 3;
    if (strCmpNoCase(words[3], "-i") == 0) {
        if (wordCount <= 6)
            return fail(Result::badCount, "Invalid numbers of parameter in command \"ctrl -a mod\"");
        if (!TranslateStr2Int("controller ID", words[4], &controller))
            return Result::badId;
        settingsOption = 5;
    }
    if (strCmpNoCase(words[settingsOption], "-s") != 0)
        return fail(Result::badValue, "Invalid parameters defined");

    const ControllerQuery query = {controller, 1, kGeneralInfo, {}};
    ControllerSettings settings = {};
    q5_getControllerSettings(hbaAddress(controller), 0, &query, &settings, sizeof settings);
    if (const int result =
            applyItems(words[settingsOption + 1], &settings, changeSetting, "Incorrect parameters!"))
        return result;
    const ControllerQuery target = {controller, 1, kGeneralInfo, {}};
    q5_setControllerSettings(hbaAddress(controller), 0, &target, &settings, sizeof settings);
    return Result::done;
}
