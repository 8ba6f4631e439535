// The battery of a controller and what it means for the write cache.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

inline constexpr std::int64_t kChargeSeconds = 4 * 3600;
inline constexpr std::int64_t kDischargeSeconds = 2 * 3600;
inline constexpr std::int64_t kReconditionSeconds = 6 * 3600;

const char* batteryStateName(std::uint8_t state);

// When the battery changes its state; kNoDeadline: never.
std::int64_t batteryDueTime(const Controller& controller);
void completeBatteryState(Controller& controller, std::int64_t at);

// Logs a new state of the battery and of the caches that depend on it.
void reportBattery(Controller& controller, std::int64_t now);

// The write policy bits in effect: write-back needs a working battery on controllers that have one.
std::uint8_t effectiveCacheFlags(const Controller& controller, const LogicalDrive& array);

// Whether a power cut loses the cached writes of the array.
bool losesCacheInPowerCut(const Controller& controller, const LogicalDrive& array);

} // namespace q5sim
