// Records and operations of the background activities on logical drives: initialisation,
// synchronisation, redundancy check, migration and rebuild. All operations return 0 on success; the
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
RECORD_SIZE(ActivityQuery, 8);
RECORD_AT(ActivityQuery, kind, 4);

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
RECORD_SIZE(InitProgress, 524);
RECORD_AT(InitProgress, state, 70);
RECORD_AT(InitProgress, percent, 71);

// Starts an initialisation; as large as its progress record.
struct InitStartRequest {
    std::uint32_t logDrvId;
    std::uint8_t initType;
    std::uint8_t reserved5;
    std::uint16_t word6; // both always 0xFFFF
    std::uint16_t word8;
    std::uint8_t reserved10[514];
};
RECORD_SIZE(InitStartRequest, 524);
RECORD_AT(InitStartRequest, initType, 4);
RECORD_AT(InitStartRequest, word6, 6);
RECORD_AT(InitStartRequest, word8, 8);

// Progress of a synchronisation or a redundancy check.
struct SyncProgress {
    ReplyHeader header;
    std::uint8_t reserved64[6];
    std::uint8_t state;
    std::uint8_t percent;
};
RECORD_SIZE(SyncProgress, 72);
RECORD_AT(SyncProgress, state, 70);
RECORD_AT(SyncProgress, percent, 71);

struct MigrationProgress {
    ReplyHeader header;
    std::uint8_t reserved64[4];
    std::uint16_t percent;
    std::uint8_t state;
    std::uint8_t reserved71[137];
};
RECORD_SIZE(MigrationProgress, 208);
RECORD_AT(MigrationProgress, percent, 68);
RECORD_AT(MigrationProgress, state, 70);

struct RebuildProgress {
    ReplyHeader header;
    std::uint8_t state;
    std::uint8_t reserved65;
    std::uint8_t percent;
    std::uint8_t reserved67[21];
};
RECORD_SIZE(RebuildProgress, 88);
RECORD_AT(RebuildProgress, state, 64);
RECORD_AT(RebuildProgress, percent, 66);

// Names the drive whose activity is stopped, paused, resumed or restarted.
struct LogDrvIdBlock {
    std::uint32_t logDrvId;
    std::uint8_t reserved4[4];
};
RECORD_SIZE(LogDrvIdBlock, 8);

// Starts a redundancy check or, with noFix 0, a synchronisation: which of them is the adapter's choice.
struct RedundancyCheckRequest {
    std::uint32_t logDrvId;
    std::uint8_t noFix; // 1: inconsistencies are counted but not mended
    std::uint8_t zero5;
    std::uint8_t reserved6[2];
};
RECORD_SIZE(RedundancyCheckRequest, 8);
RECORD_AT(RedundancyCheckRequest, noFix, 4);

struct MigrateRequest {
    std::uint16_t logDrvId;
    std::uint16_t memberCount;
    std::uint16_t raidLevel;
    std::uint16_t stripeSize;
    std::uint8_t subArrayCount; // target RAID50 only
    std::uint8_t parityCount;   // target RAIDMF only
    std::uint8_t reserved10[6];
    RequestMember member[kMaxTypedMembers];
};
RECORD_SIZE(MigrateRequest, 144);
RECORD_AT(MigrateRequest, memberCount, 2);
RECORD_AT(MigrateRequest, raidLevel, 4);
RECORD_AT(MigrateRequest, stripeSize, 6);
RECORD_AT(MigrateRequest, subArrayCount, 8);
RECORD_AT(MigrateRequest, parityCount, 9);
RECORD_AT(MigrateRequest, member, 16);

// One extent to rebuild onto; the operation takes an array of them.
struct RebuildEntry {
    std::uint32_t logDrvId;
    std::uint32_t driveId; // from 0
    std::uint32_t extent;
    std::uint8_t reserved12[4];
};
RECORD_SIZE(RebuildEntry, 16);
RECORD_AT(RebuildEntry, driveId, 4);
RECORD_AT(RebuildEntry, extent, 8);

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
