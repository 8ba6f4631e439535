// Finds the directory of the program file in the system's memory map.
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "commands/event_path.h"

// Whether a line of the map describes a code mapping that contains the address. If so, *path points to
// the path of the mapped file.
static bool containsAddress(char* line, std::uintptr_t address, char** path) {
    if (std::strstr(line, " r-xp ") == nullptr)
        return false;
    *path = std::strchr(line, '/');
    unsigned long start = 0, end = 0;
    return *path != nullptr && std::sscanf(line, "%lx-%lx ", &start, &end) == 2 && start <= address &&
           address < end;
}

char* br_locate(const void* address) {
    std::FILE* maps = std::fopen("/proc/self/maps", "r");
    if (maps == nullptr)
        return nullptr;
    char line[5001];
    char* directory = nullptr;
    while (directory == nullptr && std::fgets(line, sizeof line, maps) != nullptr) {
        char* path = nullptr;
        if (containsAddress(line, reinterpret_cast<std::uintptr_t>(address), &path)) {
            std::strrchr(path, '/')[1] = '\0';
            directory = strdup(path);
        }
    }
    std::fclose(maps);
    return directory;
}
