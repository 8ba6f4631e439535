// Where the simulated adapters keep their state. Shared by the simulator and by the rehearsal
// program, whose event file stands beside it; needs nothing but libc.
#pragma once

#include <cstddef>

// Writes the path of the world file into path: $Q5SIM_WORLD, else
// ${XDG_STATE_HOME:-$HOME/.local/state}/q5sim/world.json. Returns false, with path empty, when no
// variable names a place or the path does not fit.
bool worldFilePath(char* path, std::size_t size);
