// The path of the event file of an installed program.
#include <cstdio>

#include "commands/event_path.h"

void GetEventBufferFilePath(char* path) {
    std::snprintf(path, kEventPathSize, "%s/%s", "/usr/sbin", "CLIEvent.dat");
}
