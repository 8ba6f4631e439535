// Records and operations of logical drives (arrays): listing, settings, deletion and locating.
// Creation is in creation.h, the background activities are in activity.h. All operations return 0 on
// success; the argument called reserved is always 0.
#pragma once

#include "adapter/common.h"

inline constexpr std::uint32_t kMaxLogDrvs = 128;   // of one controller
inline constexpr std::size_t kMaxArrayMembers = 32; // in a LogDrvInfo

enum RaidLevel : std::uint8_t {
    kRaid0 = 0,
    kRaid1 = 1,
    kRaid5 = 5,
    kJbod = 10,
    kRaid10 = 16,
    kRaid50 = 80,
    kRaidMf = 96,
    kUnknownRaid = 255,
};

enum ActivityBit : std::uint8_t {
    kRebuilding = 1,
    kInitializing = 2,
    kRedundancyChecking = 4,
    kSynchronizing = 8,
    kMigrating = 16,
    kAnyActivity = 31,
};

enum FunctionalBit : std::uint8_t { // no bit: offline
    kOnline = 1,
    kCritical = 2,
    kDegraded = 4,
};

enum WriteCacheBit : std::uint8_t { // none of the three: write through
    kWriteBack = 1,
    kBypass = 4,
    kAutoMode = 8,
    kWritePolicyMask = 13,
};

struct LogDrvQuery {
    std::uint32_t logDrvId; // first one requested
    std::uint32_t count;
};
ASSERT_SIZE(LogDrvQuery, 8);

struct LogDrvInfo {
    std::uint16_t arrayId; // the array's identifier; usually equal to logDrvId
    std::uint8_t raidLevel;
    std::uint8_t reserved3[2];
    std::uint8_t activityStatus; // bits of ActivityBit
    std::uint8_t reserved6;
    std::uint8_t functionalStatus; // bits of FunctionalBit
    std::uint32_t writeCacheMode;
    std::uint8_t reserved12[4];
    std::uint64_t sectorCount;
    std::uint8_t reserved24[18];
    std::uint16_t diskCount; // untrusted; see boundedMemberCount()
    std::uint8_t reserved44[4];
    std::uint32_t stripeBlocks;
    std::uint16_t logDrvId; // the ID that users see
    std::uint8_t reserved54[2];
    char name[88];
    std::uint8_t memberIds[kMaxArrayMembers]; // physical drive IDs from 0
    std::uint8_t parityCount;                 // RAIDMF only
    std::uint8_t symmetric;                   // RAIDMF only
    std::int16_t shift;                       // RAIDMF only
    std::uint8_t subArrayCount;               // RAID50 only
    std::uint8_t reserved181[11];
    std::uint32_t sectorSize; // bytes
    std::uint8_t reserved196[12];
};
ASSERT_SIZE(LogDrvInfo, 208);
ASSERT_OFFSET(LogDrvInfo, raidLevel, 2);
ASSERT_OFFSET(LogDrvInfo, activityStatus, 5);
ASSERT_OFFSET(LogDrvInfo, functionalStatus, 7);
ASSERT_OFFSET(LogDrvInfo, writeCacheMode, 8);
ASSERT_OFFSET(LogDrvInfo, sectorCount, 16);
ASSERT_OFFSET(LogDrvInfo, diskCount, 42);
ASSERT_OFFSET(LogDrvInfo, stripeBlocks, 48);
ASSERT_OFFSET(LogDrvInfo, logDrvId, 52);
ASSERT_OFFSET(LogDrvInfo, name, 56);
ASSERT_OFFSET(LogDrvInfo, memberIds, 144);
ASSERT_OFFSET(LogDrvInfo, parityCount, 176);
ASSERT_OFFSET(LogDrvInfo, symmetric, 177);
ASSERT_OFFSET(LogDrvInfo, shift, 178);
ASSERT_OFFSET(LogDrvInfo, subArrayCount, 180);
ASSERT_OFFSET(LogDrvInfo, sectorSize, 192);

// The number of members in a record, limited to its array's size.
inline int boundedMemberCount(const LogDrvInfo& drive) {
    return drive.diskCount < kMaxArrayMembers ? drive.diskCount : static_cast<int>(kMaxArrayMembers);
}

// One logical drive's settings; they follow the ReplyHeader. Changed by read, modify, write.
struct LogDrvSettings {
    std::uint8_t reserved0[4];
    std::uint8_t cacheFlags; // kWritePolicyMask holds the policy; the other bits are preserved
    std::uint8_t reserved5[11];
    char name[32];
    std::uint8_t consolidation; // non-zero: enabled
    std::uint8_t reserved49;
    std::uint16_t lookahead;
    std::uint8_t reserved52[64];
};
ASSERT_SIZE(LogDrvSettings, 116);
ASSERT_OFFSET(LogDrvSettings, cacheFlags, 4);
ASSERT_OFFSET(LogDrvSettings, name, 16);
ASSERT_OFFSET(LogDrvSettings, consolidation, 48);
ASSERT_OFFSET(LogDrvSettings, lookahead, 50);

// Selects the array to delete; the size argument is 8.
struct DeleteArrayRequest {
    std::uint32_t count; // always 1
    std::uint32_t arrayId;
};
ASSERT_SIZE(DeleteArrayRequest, 8);

extern "C" {
// reply: a Reply of LogDrvInfo records.
int q5_getLogDrvInfo(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query, void* reply,
                     std::uint32_t size);
// reply, settings: a Reply of LogDrvSettings records, one of them to set.
int q5_getLogDrvSettings(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query, void* reply,
                         std::uint32_t size);
int q5_setLogDrvSettings(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query,
                         const void* settings, std::uint32_t size);
// lostMask: bit n is set if the member with ID n has failed.
int q5_getAryLostDisk(HbaAddress address, std::uint32_t reserved, std::uint8_t logDrvId,
                      std::uint32_t* lostMask);
int q5_delDiskArray(HbaAddress address, std::uint32_t reserved, const DeleteArrayRequest* request,
                    std::uint32_t size);
// Blinks the lights of all members.
int q5_locateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t logDrvId,
                    std::uint32_t seconds);
int q5_stopLocateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t logDrvId);
}
