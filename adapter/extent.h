// Extents, contiguous regions of a physical drive, and the operations that change them. All
// operations return 0 on success; the argument called reserved is always 0.
#pragma once

#include "adapter/common.h"

inline constexpr std::uint16_t kNoArray = 255; // the extent belongs to no array
inline constexpr std::size_t kMaxExtents = 16; // of one drive

enum ExtentAssignment : std::uint8_t {
    kExtentAssigned = 1,
    kExtentGlobalSpare = 2,
    kExtentDedicatedSpare = 4,
};
enum ExtentMaintenance : std::uint8_t {
    kExtentSynchronizing = 1,
    kExtentInitializing = 2,
    kExtentMigrating = 16,
};
enum ExtentAccess : std::uint8_t {
    kExtentSmartFailed = 2,
    kExtentFree = 32,
    kExtentAccessible = 64,
};
enum ExtentState : std::uint8_t {
    kExtentOnline = 1,
    kExtentRebuilding = 8,
};

// A region of a drive. start and size are in sectors of 512 bytes.
struct ExtentEntry {
    std::uint16_t index;
    std::uint16_t reserved2;
    std::uint8_t assignment;  // bits of ExtentAssignment
    std::uint8_t maintenance; // bits of ExtentMaintenance
    std::uint8_t access;      // bits of ExtentAccess
    std::uint8_t state;       // bits of ExtentState
    std::uint16_t arrayId;    // kNoArray: none
    std::uint8_t reserved10[6];
    std::uint64_t start;
    std::uint64_t size;
};
ASSERT_SIZE(ExtentEntry, 32);
ASSERT_OFFSET(ExtentEntry, assignment, 4);
ASSERT_OFFSET(ExtentEntry, maintenance, 5);
ASSERT_OFFSET(ExtentEntry, access, 6);
ASSERT_OFFSET(ExtentEntry, state, 7);
ASSERT_OFFSET(ExtentEntry, arrayId, 8);
ASSERT_OFFSET(ExtentEntry, start, 16);
ASSERT_OFFSET(ExtentEntry, size, 24);

// Makes an extent a spare or part of an array.
struct ExtentPlacement {
    std::uint16_t extent;
    std::uint16_t driveId;
    std::uint16_t logDrvId; // low byte only; kNoArray: a spare for any array
    std::uint16_t reserved6;
};
ASSERT_SIZE(ExtentPlacement, 8);
ASSERT_OFFSET(ExtentPlacement, driveId, 2);
ASSERT_OFFSET(ExtentPlacement, logDrvId, 4);

// Selects the extent to free, delete or split.
struct ExtentRef {
    std::uint32_t extent;
    std::uint32_t driveId;
};
ASSERT_SIZE(ExtentRef, 8);
ASSERT_OFFSET(ExtentRef, driveId, 4);

extern "C" {
int q5_spareHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement);
int q5_addHBAExtentToArray(HbaAddress address, std::uint32_t reserved, const ExtentPlacement* placement);
int q5_freeHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* extent);
int q5_deleteHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* extent);
int q5_splitHBAExtent(HbaAddress address, std::uint32_t reserved, const ExtentRef* extent,
                      std::uint32_t offset);
}
