// Records and operations of the background activities on logical drives: initialization,
// synchronization, redundancy check, migration and rebuild. All operations return 0 on success; the
// argument called reserved is always 0.
#pragma once

#include "adapter/common.h"
#include "adapter/creation.h"
#include "adapter/logdrv.h"

// Selects the drive of a progress query, and of a migration's pause and resume.
struct ActivityQuery {
    std::uint32_t logDrvId;
    std::uint32_t kind; // kMigrationKind for migration, 0 for the others
};
ASSERT_SIZE(ActivityQuery, 8);
ASSERT_OFFSET(ActivityQuery, kind, 4);

inline constexpr std::uint32_t kMigrationKind = 1;

// The state byte of every progress record; any other value means running.
inline constexpr std::uint8_t kActivityPaused = 3;

struct InitProgress {
    ReplyHeader header;
    std::uint8_t reserved64[6];
    std::uint8_t state;
    std::uint8_t percent; // 0..100
    std::uint8_t reserved72[452];
};
ASSERT_SIZE(InitProgress, 524);
ASSERT_OFFSET(InitProgress, state, 70);
ASSERT_OFFSET(InitProgress, percent, 71);

// Starts an initialization; the same size as its progress record.
struct InitStartRequest {
    std::uint32_t logDrvId;
    std::uint8_t initType;
    std::uint8_t reserved5;
    std::uint16_t word6; // both always 0xFFFF
    std::uint16_t word8;
    std::uint8_t reserved10[514];
};
ASSERT_SIZE(InitStartRequest, 524);
ASSERT_OFFSET(InitStartRequest, initType, 4);
ASSERT_OFFSET(InitStartRequest, word6, 6);
ASSERT_OFFSET(InitStartRequest, word8, 8);

// Progress of a synchronization or a redundancy check.
struct SyncProgress {
    ReplyHeader header;
    std::uint8_t reserved64[6];
    std::uint8_t state;
    std::uint8_t percent; // 0..100
};
ASSERT_SIZE(SyncProgress, 72);
ASSERT_OFFSET(SyncProgress, state, 70);
ASSERT_OFFSET(SyncProgress, percent, 71);

struct MigrationProgress {
    ReplyHeader header;
    std::uint8_t reserved64[4];
    std::uint16_t percent; // 0..100
    std::uint8_t state;
    std::uint8_t reserved71[137];
};
ASSERT_SIZE(MigrationProgress, 208);
ASSERT_OFFSET(MigrationProgress, percent, 68);
ASSERT_OFFSET(MigrationProgress, state, 70);

struct RebuildProgress {
    ReplyHeader header;
    std::uint8_t state;
    std::uint8_t reserved65;
    std::uint8_t percent; // 0..100
    std::uint8_t reserved67[21];
};
ASSERT_SIZE(RebuildProgress, 88);
ASSERT_OFFSET(RebuildProgress, state, 64);
ASSERT_OFFSET(RebuildProgress, percent, 66);

// Selects the drive whose activity is stopped, paused, resumed or restarted.
struct LogDrvIdBlock {
    std::uint32_t logDrvId;
    std::uint8_t reserved4[4];
};
ASSERT_SIZE(LogDrvIdBlock, 8);

// Starts a redundancy check or, with noFix 0, a synchronization; the adapter decides which.
struct RedundancyCheckRequest {
    std::uint32_t logDrvId;
    std::uint8_t noFix; // 1: inconsistencies are counted but not repaired
    std::uint8_t zero5;
    std::uint8_t reserved6[2];
};
ASSERT_SIZE(RedundancyCheckRequest, 8);
ASSERT_OFFSET(RedundancyCheckRequest, noFix, 4);

struct MigrateRequest {
    std::uint16_t logDrvId;
    std::uint16_t memberCount;
    std::uint16_t raidLevel;
    std::uint16_t stripeSize;   // in the unit of LogDrvInfo's stripeBlocks, whose value is the default
    std::uint8_t subArrayCount; // target RAID50 only
    std::uint8_t parityCount;   // target RAIDMF only
    std::uint8_t reserved10[6];
    RequestMember member[kMaxTypedMembers];
};
ASSERT_SIZE(MigrateRequest, 144);
ASSERT_OFFSET(MigrateRequest, memberCount, 2);
ASSERT_OFFSET(MigrateRequest, raidLevel, 4);
ASSERT_OFFSET(MigrateRequest, stripeSize, 6);
ASSERT_OFFSET(MigrateRequest, subArrayCount, 8);
ASSERT_OFFSET(MigrateRequest, parityCount, 9);
ASSERT_OFFSET(MigrateRequest, member, 16);

// One extent to rebuild onto; the operation takes an array of them.
struct RebuildEntry {
    std::uint32_t logDrvId;
    std::uint32_t driveId; // from 0
    std::uint32_t extent;
    std::uint8_t reserved12[4];
};
ASSERT_SIZE(RebuildEntry, 16);
ASSERT_OFFSET(RebuildEntry, driveId, 4);
ASSERT_OFFSET(RebuildEntry, extent, 8);

extern "C" {
int q5_getLogDrvInitProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                             InitProgress* progress, std::uint32_t size);
int q5_startLogDrvInit(HbaAddress address, std::uint32_t reserved, const InitStartRequest* request,
                       std::uint32_t size);
int q5_pauseLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_resumeLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_stopLogDrvInit(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_getLogDrvSynchProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                              SyncProgress* progress, std::uint32_t size);
int q5_getRedundancyCheckProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                                  SyncProgress* progress, std::uint32_t size);
int q5_startRedundancyCheck(HbaAddress address, std::uint32_t reserved,
                            const RedundancyCheckRequest* request);
int q5_pauseRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_resumeRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_stopRedundancyCheck(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_getMigrationProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                            MigrationProgress* progress, std::uint32_t size);
int q5_migrateHBAArray(HbaAddress address, std::uint32_t reserved, const MigrateRequest* request);
int q5_PauseMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query);
int q5_ResumeMigration(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query);
int q5_getRebuildProgress(HbaAddress address, std::uint32_t reserved, const ActivityQuery* query,
                          RebuildProgress* progress, std::uint32_t size);
int q5_startHBARebuildExtent(HbaAddress address, std::uint32_t reserved, std::uint8_t entryCount,
                             const RebuildEntry* entries, const LogDrvInfo* drive);
int q5_pauseRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_resumeRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_restartRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
int q5_stopRebuild(HbaAddress address, std::uint32_t reserved, const LogDrvIdBlock* drive);
}
