// Requests with a list of members, and the creation of logical drives. All operations return 0 on
// success; the argument called reserved is always 0.
#pragma once

#include "adapter/common.h"

inline constexpr std::size_t kMaxRequestMembers = 257; // capacity of a CreateArrayRequest
inline constexpr std::size_t kMaxTypedMembers = 16;    // in an ID list on the command line

// One member of a request: an extent of a drive.
struct RequestMember {
    std::uint32_t extent;
    std::uint32_t driveId; // from 0
};
ASSERT_SIZE(RequestMember, 8);

struct CreateArrayRequest {
    std::uint32_t stripeSize; // KB
    std::uint32_t constant4;  // always 1
    std::uint8_t reserved8[8];
    std::uint64_t capacity; // MB (origin 0) or sectors (origin 1); 0: the size of the extents
    char name[64];
    std::uint16_t raidLevel;
    std::uint8_t initialization; // initialization mode code
    std::uint8_t constant91;     // always 1
    std::uint8_t rounding;       // rounding scheme code
    std::uint8_t allocation;     // ArrayAllocation
    std::uint8_t memberCount;
    std::uint8_t parityCount;
    std::uint8_t symmetric;
    std::uint8_t reserved97;
    std::uint16_t shift;
    std::uint8_t subArrayCount;
    std::uint8_t reserved101[3];
    std::uint8_t origin; // ArrayOrigin
    std::uint8_t reserved105[3];
    std::uint32_t sectorSize; // bytes
    RequestMember member[kMaxRequestMembers];
};
ASSERT_SIZE(CreateArrayRequest, 2168);
ASSERT_OFFSET(CreateArrayRequest, constant4, 4);
ASSERT_OFFSET(CreateArrayRequest, capacity, 16);
ASSERT_OFFSET(CreateArrayRequest, name, 24);
ASSERT_OFFSET(CreateArrayRequest, raidLevel, 88);
ASSERT_OFFSET(CreateArrayRequest, initialization, 90);
ASSERT_OFFSET(CreateArrayRequest, constant91, 91);
ASSERT_OFFSET(CreateArrayRequest, rounding, 92);
ASSERT_OFFSET(CreateArrayRequest, allocation, 93);
ASSERT_OFFSET(CreateArrayRequest, memberCount, 94);
ASSERT_OFFSET(CreateArrayRequest, parityCount, 95);
ASSERT_OFFSET(CreateArrayRequest, symmetric, 96);
ASSERT_OFFSET(CreateArrayRequest, shift, 98);
ASSERT_OFFSET(CreateArrayRequest, subArrayCount, 100);
ASSERT_OFFSET(CreateArrayRequest, origin, 104);
ASSERT_OFFSET(CreateArrayRequest, sectorSize, 108);
ASSERT_OFFSET(CreateArrayRequest, member, 112);

enum ArrayAllocation : std::uint8_t {
    kAllocateGiven = 0,      // the request lists the extents, or the level is JBOD
    kAllocateByCapacity = 3, // the adapter selects the extents
};

enum ArrayOrigin : std::uint8_t {
    kOriginTyped = 0,
    kOriginImport = 1,
};

extern "C" {
int q5_addHBAArray(HbaAddress address, std::uint32_t reserved, const CreateArrayRequest* request);
int q5_activateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t arrayId);
}
