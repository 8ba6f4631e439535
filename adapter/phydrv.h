// Records and operations of physical drives. Drive IDs count from 0 here; users see them from 1. All
// operations return 0 on success; the argument called reserved is always 0.
#pragma once

#include <span>

#include "adapter/common.h"
#include "adapter/extent.h"

struct PhyDrvQuery {
    std::uint32_t firstDriveId;
    std::uint32_t count;
    std::uint16_t filter; // kAllDrives
    std::uint8_t reserved10[2];
};
ASSERT_SIZE(PhyDrvQuery, 12);
ASSERT_OFFSET(PhyDrvQuery, filter, 8);

inline constexpr std::uint16_t kAllDrives = 255;
inline constexpr std::uint16_t kNoEnclosureId = 255; // the drive is outside any enclosure
inline constexpr std::uint32_t kMaxDrives = 16;      // in one listing

struct PhyDrvInfo {
    std::uint8_t reserved0[4];
    std::uint16_t driveId;
    std::uint8_t reserved6[4];
    std::uint16_t channel;
    std::uint8_t reserved12[2];
    std::uint16_t enclosureId; // kNoEnclosureId: not in an enclosure
    std::uint8_t reserved16[8];
    std::uint64_t capacity; // sectors
    std::uint8_t reserved32[20];
    std::int32_t cylinders;
    std::uint16_t heads;
    std::uint16_t sectorsPerTrack;
    std::uint8_t reserved60[4];
    char model[22];
    char serial[24];
    char firmware[38];
    std::uint8_t dmaMode;
    std::uint8_t reserved149[2];
    std::uint8_t extentCount; // untrusted; see extents()
    ExtentEntry extent[kMaxExtents];
};
ASSERT_SIZE(PhyDrvInfo, 664);
ASSERT_OFFSET(PhyDrvInfo, driveId, 4);
ASSERT_OFFSET(PhyDrvInfo, channel, 10);
ASSERT_OFFSET(PhyDrvInfo, enclosureId, 14);
ASSERT_OFFSET(PhyDrvInfo, capacity, 24);
ASSERT_OFFSET(PhyDrvInfo, cylinders, 52);
ASSERT_OFFSET(PhyDrvInfo, heads, 56);
ASSERT_OFFSET(PhyDrvInfo, sectorsPerTrack, 58);
ASSERT_OFFSET(PhyDrvInfo, model, 64);
ASSERT_OFFSET(PhyDrvInfo, serial, 86);
ASSERT_OFFSET(PhyDrvInfo, firmware, 110);
ASSERT_OFFSET(PhyDrvInfo, dmaMode, 148);
ASSERT_OFFSET(PhyDrvInfo, extentCount, 151);
ASSERT_OFFSET(PhyDrvInfo, extent, 152);

// The extents of a drive entry, limited to its array's size.
inline std::span<const ExtentEntry> extents(const PhyDrvInfo& drive) {
    return {drive.extent, drive.extentCount < kMaxExtents ? drive.extentCount : kMaxExtents};
}

// Selects the drive of a drive-wide operation.
struct DriveSelector {
    std::uint32_t driveId;
    std::uint32_t count; // always 1
};
ASSERT_SIZE(DriveSelector, 8);

struct PhyDrvSelector {
    std::uint32_t driveId;
    std::uint32_t count;     // always 1 for a single drive
    std::uint16_t reserved8; // always 1
    std::uint8_t reserved10[2];
};
ASSERT_SIZE(PhyDrvSelector, 12);

// One drive's settings; they follow the ReplyHeader. Changed by read, modify, write.
struct PhyDrvSettings {
    std::uint8_t reserved0[4];
    std::uint16_t pdId;
    std::uint8_t reserved6[2];
    std::uint8_t writeCache;   // 1: enabled, 0: disabled
    std::uint8_t smartCheck;   // 1: enabled, 0: disabled
    std::uint8_t tcqSupported; // non-zero: the drive can queue tagged commands
    std::uint8_t ncqSupported; // non-zero: the drive can queue native commands
    std::uint8_t tcqEnabled;
    std::uint8_t ncqEnabled;
    std::uint8_t reserved14[2];
};
ASSERT_SIZE(PhyDrvSettings, 16);
ASSERT_OFFSET(PhyDrvSettings, pdId, 68 - 64);
ASSERT_OFFSET(PhyDrvSettings, writeCache, 72 - 64);
ASSERT_OFFSET(PhyDrvSettings, smartCheck, 73 - 64);
ASSERT_OFFSET(PhyDrvSettings, tcqSupported, 74 - 64);
ASSERT_OFFSET(PhyDrvSettings, ncqSupported, 75 - 64);
ASSERT_OFFSET(PhyDrvSettings, tcqEnabled, 76 - 64);
ASSERT_OFFSET(PhyDrvSettings, ncqEnabled, 77 - 64);

extern "C" {
// reply: a Reply of PhyDrvInfo records.
int q5_getPhyDrvInfo(HbaAddress address, std::uint32_t reserved, const PhyDrvQuery* query, void* reply,
                     std::uint32_t size);
// reply, settings: a Reply of PhyDrvSettings records, one of them to set.
int q5_getPhyDrvSettings(HbaAddress address, std::uint32_t reserved, const PhyDrvSelector* selector,
                         void* reply, std::uint32_t size);
int q5_setPhyDrvSettings(HbaAddress address, std::uint32_t reserved, const PhyDrvSelector* selector,
                         const void* settings, std::uint32_t size);
// state: non-zero if the drive's locate light is on.
int q5_getPhyDrvLocateStatus(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId,
                             std::uint8_t* state);
int q5_locatePhyDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId, std::uint32_t seconds);
int q5_stopLocatePhyDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId);
// Clears the drive's reserved configuration sectors.
int q5_removeHBADiskMDD(HbaAddress address, std::uint32_t reserved, const DriveSelector* drive);
// The 3 Gb/s option of all drives with this model and firmware; size is 4.
int q5_getDataTransferSpeed(HbaAddress address, std::uint32_t reserved, const char* model,
                            const char* firmware, int* setting, std::uint32_t size);
int q5_setDataTransferSpeed(HbaAddress address, std::uint32_t reserved, const char* model,
                            const char* firmware, const int* setting, std::uint32_t size);
}
