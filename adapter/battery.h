// Records and operations of a controller's battery and buzzer. All operations return 0 on success;
// the arguments called reserved are always 0.
#pragma once

#include "adapter/common.h"

struct BatteryQuery {
    std::uint16_t reserved0; // both always 0
    std::uint16_t reserved2;
};
ASSERT_SIZE(BatteryQuery, 4);

struct BatteryInfo {
    ReplyHeader header;
    std::uint8_t reserved64[36];
    std::uint16_t temperature; // tenths of a kelvin
    std::uint8_t reserved102[4];
    std::uint16_t voltage; // millivolts; kNoVoltage: no reading
    std::uint8_t reserved108[2];
    std::uint8_t status; // 0: no battery; else the low seven bits are the BatteryState
    std::uint8_t reserved111;
};
ASSERT_SIZE(BatteryInfo, 112);
ASSERT_OFFSET(BatteryInfo, temperature, 100);
ASSERT_OFFSET(BatteryInfo, voltage, 106);
ASSERT_OFFSET(BatteryInfo, status, 110);

inline constexpr std::uint16_t kNoVoltage = 0xCCCC;

enum BatteryState : std::uint8_t {
    kBatteryCharging = 0,
    kBatteryDischarging = 1,
    kBatteryFull = 2,
    kBatteryFailed = 3,
    kBatteryReconditioning = 4,
};

extern "C" {
int q5_getBatteryInfo(HbaAddress address, std::uint32_t reserved, const BatteryQuery* query,
                      BatteryInfo* info, std::uint32_t size);
// state: non-zero when the buzzer is enabled; size is 1. A failure means that the state is unknown.
int q5_getBuzzerStatus(HbaAddress address, std::uint32_t reserved, std::uint8_t* state, std::uint32_t size);
int q5_turnOnBuzzer(HbaAddress address, std::uint32_t reserved, std::uint32_t reserved2);
int q5_turnOffBuzzer(HbaAddress address, std::uint32_t reserved, std::uint32_t reserved2);
}
