// Which fields of the adapters' records hold codes or bits, and what they mean.
#include <iterator>
#include <string_view>

#include "snapshot/fields.h"
#include "snapshot/words.h"

using Words = std::vector<std::string>;

struct BitWord {
    std::int64_t bit;
    const char* word;
};

template <std::size_t count>
static Words wordsOfBits(const BitWord (&bits)[count], std::int64_t value) {
    Words words;
    for (const BitWord& row : bits)
        if ((value & row.bit) != 0)
            words.emplace_back(row.word);
    return words;
}

static Words flagWord(std::int64_t value) {
    return {value != 0 ? "enabled" : "disabled"};
}

static Words yesNoWord(std::int64_t value) {
    return {value != 0 ? "yes" : "no"};
}

static Words memoryWord(std::int64_t value) {
    return {value == 1 ? "ECC" : "non-ECC"};
}

static Words raidWord(std::int64_t value) {
    return {raidLevelText(static_cast<std::uint8_t>(value))};
}

static Words batteryWord(std::int64_t value) {
    return {value == 0 ? "no battery" : batteryStateText(value & 0x7F)};
}

static Words enclosureWord(std::int64_t value) {
    return {enclosureTypeText(static_cast<std::uint8_t>(value))};
}

static Words sensorWord(std::int64_t value) {
    const char* word = sensorTypeText(static_cast<std::uint8_t>(value));
    return {word != nullptr ? word : "no sensor"};
}

static Words patrolWord(std::int64_t value) {
    return {patrolStateText(static_cast<std::uint16_t>(value))};
}

static Words activityWords(std::int64_t value) {
    static constexpr ActivityBit bits[] = {kRebuilding, kInitializing, kRedundancyChecking, kSynchronizing,
                                           kMigrating};
    Words words;
    for (const ActivityBit bit : bits)
        if ((value & bit) != 0)
            words.emplace_back(activityText(bit));
    return words;
}

static Words functionalWords(std::int64_t value) {
    static constexpr BitWord bits[] = {{kOnline, "online"}, {kCritical, "critical"}, {kDegraded, "degraded"}};
    return wordsOfBits(bits, value);
}

static Words cacheWords(std::int64_t value) {
    static constexpr BitWord bits[] = {
        {kWriteBack, "write back"}, {kBypass, "bypass"}, {kAutoMode, "automatic"}};
    return wordsOfBits(bits, value);
}

static Words assignmentWords(std::int64_t value) {
    static constexpr BitWord bits[] = {{kExtentAssigned, "assigned"},
                                       {kExtentGlobalSpare, "global spare"},
                                       {kExtentDedicatedSpare, "dedicated spare"}};
    return wordsOfBits(bits, value);
}

static Words maintenanceWords(std::int64_t value) {
    static constexpr BitWord bits[] = {{kExtentSynchronizing, "synchronizing"},
                                       {kExtentInitializing, "initializing"},
                                       {kExtentMigrating, "migrating"}};
    return wordsOfBits(bits, value);
}

static Words accessWords(std::int64_t value) {
    static constexpr BitWord bits[] = {
        {kExtentSmartFailed, "SMART failure"}, {kExtentFree, "free"}, {kExtentAccessible, "accessible"}};
    return wordsOfBits(bits, value);
}

static Words stateWords(std::int64_t value) {
    static constexpr BitWord bits[] = {{kExtentOnline, "online"}, {kExtentRebuilding, "rebuilding"}};
    return wordsOfBits(bits, value);
}

static constexpr FieldWords kFieldWords[] = {
    {"ControllerInfo", "autoRebuild", false, flagWord},
    {"ControllerInfo", "smartCheck", false, flagWord},
    {"ControllerInfo", "memoryType", false, memoryWord},
    {"ControllerSettings", "autoRebuild", false, flagWord},
    {"ControllerSettings", "smartCheck", false, flagWord},
    {"ControllerSettings", "rebuildPolicy", false, flagWord},
    {"BatteryInfo", "status", false, batteryWord},
    {"EnclosureEntry", "type", false, enclosureWord},
    {"EnclosureSensor", "type", false, sensorWord},
    {"ExtentEntry", "assignment", true, assignmentWords},
    {"ExtentEntry", "maintenance", true, maintenanceWords},
    {"ExtentEntry", "access", true, accessWords},
    {"ExtentEntry", "state", true, stateWords},
    {"PhyDrvSettings", "writeCache", false, flagWord},
    {"PhyDrvSettings", "smartCheck", false, flagWord},
    {"PhyDrvSettings", "tcqSupported", false, yesNoWord},
    {"PhyDrvSettings", "ncqSupported", false, yesNoWord},
    {"PhyDrvSettings", "tcqEnabled", false, flagWord},
    {"PhyDrvSettings", "ncqEnabled", false, flagWord},
    {"MediaPatrolProgress", "state", false, patrolWord},
    {"LogDrvInfo", "raidLevel", false, raidWord},
    {"LogDrvInfo", "activityStatus", true, activityWords},
    {"LogDrvInfo", "functionalStatus", true, functionalWords},
    {"LogDrvInfo", "writeCacheMode", true, cacheWords},
    {"LogDrvSettings", "cacheFlags", true, cacheWords},
    {"LogDrvSettings", "consolidation", false, flagWord},
};

const FieldWords* wordsOf(const RecordType& type, const Field& field) {
    for (const FieldWords& row : kFieldWords)
        if (std::string_view(row.record) == type.name && std::string_view(row.field) == field.name)
            return &row;
    return nullptr;
}

std::size_t fieldWordsCount() {
    return std::size(kFieldWords);
}
