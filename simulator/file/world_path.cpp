// Path of the world file.
#include "simulator/file/world_path.h"

#include <cstdio>
#include <cstdlib>

// An environment variable's value; nullptr: unset or empty.
static const char* setting(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && value[0] != '\0' ? value : nullptr;
}

// $XDG_STATE_HOME; a relative path is to be ignored.
static const char* stateDirectory() {
    const char* state = setting("XDG_STATE_HOME");
    return state != nullptr && state[0] == '/' ? state : nullptr;
}

bool worldFilePath(char* path, std::size_t size) {
    int length = -1;
    if (const char* world = setting("Q5SIM_WORLD"))
        length = std::snprintf(path, size, "%s", world);
    else if (const char* state = stateDirectory())
        length = std::snprintf(path, size, "%s/q5sim/world.json", state);
    else if (const char* home = setting("HOME"))
        length = std::snprintf(path, size, "%s/.local/state/q5sim/world.json", home);
    if (length >= 0 && static_cast<std::size_t>(length) < size)
        return true;
    path[0] = '\0';
    return false;
}
