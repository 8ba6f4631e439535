// The world of memory_world.cpp.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

extern World fuzzedWorld;

} // namespace q5sim
