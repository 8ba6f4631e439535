// The simulated physical drives and their extents. Sizes are in sectors of 512 bytes, times in
// seconds since the epoch on the world's clock.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adapter/mediapatrol.h"
#include "adapter/phydrv.h"

namespace q5sim {

inline constexpr std::uint64_t kMaxDriveSectors = std::uint64_t{1} << 48;

// kUseForeign: a member of an array that this controller does not know.
enum ExtentUse : std::uint8_t { kUseFree, kUseArray, kUseGlobalSpare, kUseDedicatedSpare, kUseForeign };

// A contiguous part of a drive. Its index is its position in the drive's list, sorted by start.
struct Extent {
    std::uint8_t use = kUseFree;
    std::uint16_t array = kNoArray; // array ID of a member, dedicated spare or foreign extent
    std::uint64_t start = 0;
    std::uint64_t size = 0;
    bool operator==(const Extent&) const = default;
};

// A running patrol had completed completedMb at the time since; progress follows from the clock.
struct Patrol {
    std::uint16_t state = 0; // MediaPatrolState, 0: idle
    std::int64_t since = 0;
    std::uint64_t completedMb = 0;
    std::uint16_t loops = 0;
    std::uint16_t errors = 0;
    bool operator==(const Patrol&) const = default;
};

// Adjacent unreadable sectors.
struct BadSectors {
    std::uint64_t start = 0;
    std::uint64_t count = 1;
    bool operator==(const BadSectors&) const = default;
};

struct Drive {
    std::uint16_t id = 0;
    std::uint16_t channel = 0;
    std::uint16_t enclosure = kNoEnclosureId;
    std::uint64_t sectors = 0;
    std::string model, serial, firmware;
    std::uint8_t dmaMode = 6;
    bool failed = false;
    bool failureReported = false; // its event has been logged
    bool smartFailure = false;
    bool smartReported = false; // its event has been logged
    bool writeCache = true;
    bool smartCheck = true;
    bool tcqSupported = false;
    bool ncqSupported = false;
    bool tcqEnabled = false;
    bool ncqEnabled = false;
    std::vector<BadSectors> badSectors; // sorted by start, without overlap
    std::int64_t locateUntil = 0;
    Patrol patrol;
    std::vector<Extent> extents;
    bool operator==(const Drive&) const = default;
};

} // namespace q5sim
