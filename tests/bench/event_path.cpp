// The event file of what is measured: in the folder it is started in, never the machine's own.
#include <cstdio>

#include "commands/event_path.h"

void GetEventBufferFilePath(char* path) {
    std::snprintf(path, kEventPathSize, "%s/%s", ".", "CLIEvent.dat");
}
