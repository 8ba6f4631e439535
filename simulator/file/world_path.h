// Path of the world file. Shared by the simulator and cli-rehearse, whose event file is next to it;
// needs nothing but libc.
#pragma once

#include <cstddef>

// Writes the path of the world file into path: $Q5SIM_WORLD, else
// ${XDG_STATE_HOME:-$HOME/.local/state}/q5sim/world.json; a relative $XDG_STATE_HOME is ignored. Returns
// false, with path empty, when no variable is set or the path does not fit.
bool worldFilePath(char* path, std::size_t size);
