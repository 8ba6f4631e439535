// The world of memory_world.cpp, for its fuzzers to look at and change.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

extern World fuzzedWorld;

} // namespace q5sim
