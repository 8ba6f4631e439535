// Requests that name their members, and the creation of logical drives. All operations return 0 on
// success; the argument called reserved is always 0.
#pragma once

#include "adapter/common.h"

inline constexpr std::size_t kMaxRequestMembers = 257; // that a CreateArrayRequest has room for
inline constexpr std::size_t kMaxTypedMembers = 16;    // that an ID list of the user can name

// One member of a request: an extent of a drive.
struct RequestMember {
    std::uint32_t extent;
    std::uint32_t driveId; // from 0
};
RECORD_SIZE(RequestMember, 8);

struct CreateArrayRequest {
    std::uint32_t stripeSize; // KB
    std::uint32_t constant4;  // always 1
    std::uint8_t reserved8[8];
    std::uint64_t capacity; // MB (origin 0) or sectors (origin 1); 0: as large as the extents
    char name[64];
    std::uint16_t raidLevel;
    std::uint8_t initialization; // initialisation mode code
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
RECORD_SIZE(CreateArrayRequest, 2168);
RECORD_AT(CreateArrayRequest, constant4, 4);
RECORD_AT(CreateArrayRequest, capacity, 16);
RECORD_AT(CreateArrayRequest, name, 24);
RECORD_AT(CreateArrayRequest, raidLevel, 88);
RECORD_AT(CreateArrayRequest, initialization, 90);
RECORD_AT(CreateArrayRequest, constant91, 91);
RECORD_AT(CreateArrayRequest, rounding, 92);
RECORD_AT(CreateArrayRequest, allocation, 93);
RECORD_AT(CreateArrayRequest, memberCount, 94);
RECORD_AT(CreateArrayRequest, parityCount, 95);
RECORD_AT(CreateArrayRequest, symmetric, 96);
RECORD_AT(CreateArrayRequest, shift, 98);
RECORD_AT(CreateArrayRequest, subArrayCount, 100);
RECORD_AT(CreateArrayRequest, origin, 104);
RECORD_AT(CreateArrayRequest, sectorSize, 108);
RECORD_AT(CreateArrayRequest, member, 112);

enum ArrayAllocation : std::uint8_t {
    kAllocateGiven = 0,      // the extents are named, or the level is JBOD
    kAllocateByCapacity = 3, // the adapter picks the extents
};

enum ArrayOrigin : std::uint8_t {
    kOriginTyped = 0,
    kOriginImport = 1,
};

extern "C" {
int q5_addHBAArray(HbaAddress address, std::uint32_t reserved, const CreateArrayRequest* request);
int q5_activateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t arrayId);
}
