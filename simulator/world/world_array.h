// The simulated logical drives (arrays) and their activities. Sizes are in sectors of 512 bytes, times
// in seconds since the epoch on the world's clock.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "adapter/activity.h"
#include "adapter/logdrv.h"

namespace q5sim {

inline constexpr std::uint8_t kStateNotReported = 255;

// A drive being rebuilt onto, and the position in the member list that it will take.
struct RebuildTarget {
    std::uint16_t drive = 0;
    std::uint8_t position = 0;
    bool operator==(const RebuildTarget&) const = default;
};

// The geometry of an array after its migration.
struct MigrationTarget {
    std::uint8_t level = 0;
    std::uint32_t stripe = 0;
    std::uint8_t parity = 0;
    std::uint8_t subArrays = 0;
    std::vector<std::uint16_t> members;
    bool operator==(const MigrationTarget&) const = default;
};

struct Activity {
    std::uint8_t kind = 0; // one ActivityBit; 0: none
    bool paused = false;
    std::int64_t since = 0; // while it runs: the time of completedMb
    std::uint64_t completedMb = 0;
    std::uint64_t totalMb = 1;
    std::uint64_t scannedMb = 0;        // of a rebuild or migration: bad sectors before it have been handled
    std::uint8_t initType = 0;          // of an initialization: 1 quick, 2 foreground, 4 background
    bool noFix = false;                 // of a redundancy check
    std::vector<RebuildTarget> targets; // of a rebuild
    MigrationTarget goal;               // of a migration
    bool operator==(const Activity&) const = default;
};

// An array. A member is lost when its drive is missing, has failed or holds no extent of the array.
struct LogicalDrive {
    std::uint16_t arrayId = 0;
    std::uint16_t logDrvId = 0;
    std::string name;
    std::uint8_t level = 0;
    std::uint32_t stripe = 64; // KB, as given at creation
    std::uint32_t sectorSize = 512;
    std::uint64_t sectors = 0;
    std::uint64_t memberSectors = 0; // share of each member
    std::uint8_t parity = 0;         // RAIDMF
    std::uint8_t symmetric = 0;      // RAIDMF
    std::int16_t shift = 0;          // RAIDMF
    std::uint8_t subArrays = 0;      // RAID50
    std::uint8_t cacheFlags = 1;
    bool consolidation = true;
    std::uint16_t lookahead = 4;
    bool active = true;
    bool synchronized = true;
    bool autoRebuildInhibited = false; // stopped by the user: not restarted automatically
    bool idle = false;                 // the host does not write to it
    bool captured = false;             // holds the data of the machine that it was captured from
    std::uint32_t inconsistencies = 0;
    std::uint32_t lostWrites = 0;  // inconsistencies from a lost cache, which only a check finds
    std::uint32_t lostStripes = 0; // unreadable on the last copy
    std::uint8_t reportedState = kStateNotReported; // functional status of the last event
    std::vector<std::uint16_t> members;
    std::vector<std::uint16_t> staleMembers; // drives that missed writes: lost until rebuilt
    Activity activity;
    bool operator==(const LogicalDrive&) const = default;
};

} // namespace q5sim
