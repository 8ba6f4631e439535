// Random starting worlds for the property test.
#pragma once

#include "simulator/world/world.h"

// One to three controllers with any mix of drives, arrays, spares, failures, stale members and activities.
// The same seed gives the same world. Every one is valid as a world file.
q5sim::World randomWorld(std::uint32_t seed, std::int64_t now);

// The drive IDs in them are below this.
inline constexpr std::uint32_t kRandomDrives = 10;
