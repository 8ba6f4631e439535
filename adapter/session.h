// Opening and closing the adapter library. All operations return 0 on success.
#pragma once

#include "adapter/common.h"

// Parameters for opening the library. Reserved fields are zero.
struct ApiInitRecord {
    std::uint64_t reserved0; // written explicitly as 0
    std::uint8_t reserved8[8];
    std::uint32_t signature; // identifies this layout: kApiSignature
    std::uint8_t mode;       // always 1
    std::uint8_t reserved21[3];
    std::uint32_t time; // a time value, always 60
    std::uint8_t reserved28[107];
    std::uint8_t flag; // written explicitly as 0
    std::uint8_t reserved136[128];
};
ASSERT_SIZE(ApiInitRecord, 264);
ASSERT_OFFSET(ApiInitRecord, signature, 16);
ASSERT_OFFSET(ApiInitRecord, mode, 20);
ASSERT_OFFSET(ApiInitRecord, time, 24);
ASSERT_OFFSET(ApiInitRecord, flag, 135);

inline constexpr std::uint32_t kApiSignature = 0xBABA0001;

extern "C" {
int q5_initialize(const ApiInitRecord* record); // first call of the program
int q5_discover(int always1);                   // scans the system for controllers
int q5_getNumberOfHBA(std::uint32_t* count);    // controllers have the IDs 0 .. count - 1
int q5_finalize();                              // last call of the program
}
