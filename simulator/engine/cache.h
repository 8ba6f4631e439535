// The battery of a controller and what it means for the write cache.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// "is charging". state: BatteryState; "is missing" for any other value.
const char* batteryStateName(std::uint8_t state);

// When the battery changes its state; kNoDeadline: never.
std::int64_t batteryDueTime(const Controller& controller);

// Changes the state that ends at a time, and reports the next one.
void completeBatteryState(Controller& controller, std::int64_t at);

// Logs a new state of the battery and of the caches that depend on it.
void reportBattery(Controller& controller, std::int64_t now);

// The write policy bits in effect: write-back needs a working battery on controllers that have one.
std::uint8_t effectiveCacheFlags(const Controller& controller, const LogicalDrive& array);

// Whether a power cut loses the cached writes of the array.
bool losesCacheInPowerCut(const Controller& controller, const LogicalDrive& array);

} // namespace q5sim
