// Words for the adapters' codes.
#include "snapshot/words.h"

// A code and its word.
struct CodeWord {
    int code;
    const char* word;
};

template <std::size_t count>
static const char* wordOf(const CodeWord (&words)[count], int code, const char* otherwise) {
    for (const CodeWord& row : words)
        if (row.code == code)
            return row.word;
    return otherwise;
}

const char* raidLevelText(std::uint8_t level) {
    static constexpr CodeWord words[] = {{kRaid0, "RAID0"},  {kRaid1, "RAID1"},   {kRaid5, "RAID5"},
                                         {kJbod, "JBOD"},    {kRaid10, "RAID10"}, {kRaid50, "RAID50"},
                                         {kRaidMf, "RAIDMF"}};
    return wordOf(words, level, "unknown RAID level");
}

const char* activityText(ActivityBit kind) {
    static constexpr CodeWord words[] = {{kRebuilding, "rebuild"},
                                         {kInitializing, "initialization"},
                                         {kRedundancyChecking, "redundancy check"},
                                         {kSynchronizing, "synchronization"},
                                         {kMigrating, "migration"}};
    return wordOf(words, kind, "unknown activity");
}

const char* batteryStateText(std::uint8_t state) {
    static constexpr CodeWord words[] = {{kBatteryCharging, "charging"},
                                         {kBatteryDischarging, "discharging"},
                                         {kBatteryFull, "fully charged"},
                                         {kBatteryFailed, "not functioning"},
                                         {kBatteryReconditioning, "reconditioning"}};
    return wordOf(words, state, "in an unknown state");
}

const char* enclosureTypeText(std::uint8_t type) {
    static constexpr CodeWord words[] = {{kTraybox400, "Traybox 400"},
                                         {kTraybox100, "Traybox 100"},
                                         {kOemA, "OEM-A"},
                                         {kOemB, "OEM-B"},
                                         {kOemC, "OEM-C"},
                                         {kTraybox400R, "Traybox 400R"}};
    return wordOf(words, type, "unknown type");
}

const char* sensorTypeText(std::uint8_t type) {
    static constexpr CodeWord words[] = {{kFanSensor, "fan"},
                                         {kRail5VSensor, "5 V rail"},
                                         {kRail12VSensor, "12 V rail"},
                                         {kTemperatureSensor, "temperature"}};
    return wordOf(words, type, nullptr);
}

const char* patrolStateText(std::uint16_t state) {
    static constexpr CodeWord words[] = {{kPatrolRunning, "running"},
                                         {kPatrolAborted, "aborted"},
                                         {kPatrolPaused, "paused"},
                                         {kPatrolStopped, "stopped"}};
    return wordOf(words, state, "idle");
}

// The order is that of cli's listing of extents.
const char* extentUseText(const ExtentEntry& extent) {
    if ((extent.access & kExtentAccessible) == 0)
        return "no access";
    if ((extent.assignment & kExtentAssigned) != 0)
        return "assigned";
    if ((extent.assignment & kExtentGlobalSpare) != 0)
        return "global spare";
    if ((extent.assignment & kExtentDedicatedSpare) != 0)
        return "dedicated spare";
    return (extent.access & kExtentFree) != 0 ? "free" : "unknown";
}
