// Where the event file stands.
#include <cstdio>

#include "commands/event_buffer.h"

void GetEventBufferFilePath(char* path) {
    std::snprintf(path, kEventPathSize, "%s/%s", "/usr/sbin", "CLIEvent.dat");
}
