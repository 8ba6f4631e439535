// The whole state of the simulated adapters, as plain records. IDs are those of the adapters: drives,
// extents, arrays and controllers count from 0. Sizes are in sectors of 512 bytes unless named
// otherwise, times in seconds since the epoch on the world's clock.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adapter/battery.h"
#include "adapter/enclosure.h"
#include "simulator/world/world_array.h"
#include "simulator/world/world_drive.h"

namespace q5sim {

inline constexpr std::uint64_t kSectorsPerMb = 2048;
inline constexpr std::size_t kMaxControllers = 16;
inline constexpr std::uint16_t kMaxDriveId = 31; // the mask of lost drives has a bit for each
inline constexpr std::size_t kMaxEventsKept = 256;
inline constexpr std::size_t kMaxSpeedOptions = 64;
inline constexpr std::size_t kMaxRules = 64;
inline constexpr std::size_t kMaxRefusals = 16;
inline constexpr std::size_t kMaxBadRanges = 1024;
inline constexpr std::size_t kMaxAssumed = 1024;
inline constexpr std::size_t kMaxAssumedLength = 255;
inline constexpr std::int64_t kMaxSpeed = 1000000;

struct Sensor {
    std::uint8_t type = 0; // EnclosureSensorType
    std::int32_t reading = 0;
    bool alarm = false;  // its event "out of range" has been logged
    bool steady = false; // does not drift: a reading taken from other adapters
    bool operator==(const Sensor&) const = default;
};

struct Enclosure {
    std::uint16_t id = 0;
    std::uint8_t type = 0; // EnclosureType
    std::vector<Sensor> sensors;
    bool operator==(const Enclosure&) const = default;
};

// Battery states besides those of the adapters. Missing: the controller had a battery and has lost it; one
// that never had one has no battery in its record.
inline constexpr std::uint8_t kBatteryMissing = 5;
inline constexpr std::uint8_t kBatteryUnreported = 255;

struct Battery {
    std::int32_t temperature = 250; // tenths of a degree Celsius
    std::int32_t voltage = -1;      // millivolts; -1: no reading
    std::uint8_t state = 0;         // BatteryState or kBatteryMissing
    std::uint8_t reportedState = kBatteryUnreported;
    std::int64_t since = 0; // start of the state; 0: it does not change by itself
    bool operator==(const Battery&) const = default;
};

struct Version {
    std::int32_t part[4] = {};
    bool operator==(const Version&) const = default;
};

struct BusLocation {
    std::int32_t irq = 0;
    std::int32_t slot = 0;
    std::uint32_t biosMemoryStart = 0;
    std::int32_t biosMemoryRange = 0;
    std::uint8_t busMasterBase = 0;
    std::uint32_t ata = 0, xorEngine = 0, sequencer = 0, mmio = 0, sdram = 0;
    bool operator==(const BusLocation&) const = default;
};

struct Rates {
    std::uint8_t rebuild = 128, sync = 128, patrol = 128, init = 128, migrate = 128; // 1..255
    bool operator==(const Rates&) const = default;
};

// The 3 Gb/s option of all drives with this model and firmware.
struct SpeedOption {
    std::string model, firmware;
    std::int32_t setting = 0;
    bool operator==(const SpeedOption&) const = default;
};

struct Event {
    std::uint32_t id = 0;
    std::int64_t time = 0;
    std::string text;
    bool operator==(const Event&) const = default;
};

// What a rebuild or migration does at a sector that is unreadable on the last copy.
enum RebuildOnError : std::uint8_t { kSkipOnError, kAbortOnError };

struct Controller {
    Version bios, firmware, driver;
    bool ecc = false;
    std::int32_t memoryMb = 0;
    std::uint16_t maxExtentsPerDisk = kMaxExtents;
    std::uint8_t maxPorts = 8;
    BusLocation busLocation;
    Rates rates;
    bool autoRebuild = false;
    std::uint8_t rebuildOnError = kSkipOnError; // RebuildOnError
    bool rebuildPolicy = false;
    bool smartCheck = true;
    std::uint8_t smartPoll = 10; // minutes
    std::uint8_t encPoll = 1;    // minutes
    bool buzzer = true;
    bool writeThroughForced = false; // by the battery; its event has been logged
    bool hasBattery = false;
    Battery battery;
    std::vector<Enclosure> enclosures;
    std::vector<Drive> drives;
    std::vector<Drive> pulledDrives; // the last one of each slot
    std::vector<Enclosure> pulledEnclosures;
    std::vector<std::uint16_t> knownDrives; // IDs at the last change; empty: not recorded yet
    std::vector<LogicalDrive> logicalDrives;
    std::vector<SpeedOption> speedOptions;
    std::vector<Event> events; // oldest first
    bool operator==(const Controller&) const = default;
};

// What the simulated adapters do to a call of an operation.
enum RuleKind : std::uint8_t { kRefuseCall, kDelayCall, kHangCall, kZeroReply, kShortReply };

struct Rule {
    std::uint8_t kind = kRefuseCall;
    std::string operation;   // symbol or glob
    std::uint32_t times = 0; // hits until the rule ends; 0: no limit
    std::uint32_t after = 0; // calls that pass first
    std::int32_t result = 1;
    std::uint32_t seconds = 0;
    std::uint32_t calls = 0; // matching calls so far
    std::uint32_t hits = 0;
    bool operator==(const Rule&) const = default;
};

struct Refusal {
    std::int64_t time = 0;
    std::string operation, reason;
    bool operator==(const Refusal&) const = default;
};

struct World {
    std::int64_t clockOffset = 0; // seconds that the world's clock is ahead of the real one
    std::int64_t speed = 1;       // of the world's clock
    std::int64_t speedSince = 0;  // real time from which speed applies
    std::vector<Rule> rules;
    std::vector<Refusal> refusals;    // newest first
    std::uint32_t olderRefusals = 0;  // changing operations that were refused before those
    std::vector<std::string> assumed; // what a captured world assumes; informational
    std::vector<Controller> controllers;
    bool operator==(const World&) const = default;
};

// The world that a new world file starts with. No event in it is later than now.
World builtinWorld(std::int64_t now);

// Lookup by ID; nullptr: not found.
Drive* findDrive(Controller& controller, std::uint32_t id);
const Drive* findDrive(const Controller& controller, std::uint32_t id);
const Enclosure* findEnclosure(const Controller& controller, std::uint32_t id);
LogicalDrive* findLogicalDrive(Controller& controller, std::uint32_t logDrvId);
const LogicalDrive* findLogicalDrive(const Controller& controller, std::uint32_t logDrvId);
LogicalDrive* findArray(Controller& controller, std::uint32_t arrayId);
const LogicalDrive* findArray(const Controller& controller, std::uint32_t arrayId);

// The lowest ID that neither an array nor a logical drive of the controller has.
std::uint16_t lowestFreeId(const Controller& controller);

// Appends an event with the next ID. Keeps the newest kMaxEventsKept.
[[gnu::format(printf, 3, 4)]] void addEvent(Controller& controller, std::int64_t time, const char* format,
                                            ...);

// The events that the controller has logged since, also when it started a new list.
std::vector<Event> newEvents(const Controller& before, const Controller& after);

} // namespace q5sim
