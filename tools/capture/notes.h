// What a capture assumes, and where in the world file.
#pragma once

#include <string>
#include <vector>

struct Notes {
    std::vector<std::string> lines;
    bool complete = true;
};

// A place in the world file, such as "controllers[0].drives[2]", and where its notes go.
struct Place {
    Notes* notes;
    std::string path;
};

Place below(const Place& place, const char* key);
Place below(const Place& place, const char* list, std::size_t position);

// What the adapters do not report, which is not a fault.
void noteAssumption(const Place& place, const std::string& text);

// What could not be read, or what a world cannot hold.
void noteMissing(const Place& place, const std::string& text);
