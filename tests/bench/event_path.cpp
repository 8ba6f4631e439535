// The event file of the measured program: in the current directory, never the real one.
#include <cstdio>

#include "commands/event_path.h"

void GetEventBufferFilePath(char* path) {
    std::snprintf(path, kEventPathSize, "%s/%s", ".", "CLIEvent.dat");
}
