// The event file of cli-rehearse: next to the world file, so that the machine's real event file is
// never touched, not even by root.
#include <cstring>

#include "commands/event_path.h"
#include "simulator/file/world_path.h"

void GetEventBufferFilePath(char* path) {
    static const char name[] = "CLIEvent.dat";
    if (!worldFilePath(path, kEventPathSize))
        return;
    char* slash = std::strrchr(path, '/');
    char* file = slash != nullptr ? slash + 1 : path;
    const std::size_t capacity = kEventPathSize - static_cast<std::size_t>(file - path);
    if (sizeof name > capacity)
        path[0] = '\0';
    else
        std::memcpy(file, name, sizeof name);
}
