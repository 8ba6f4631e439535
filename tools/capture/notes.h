// What a capture assumes or lacks, and where in the world file.
#pragma once

#include <string>
#include <vector>

struct Notes {
    std::vector<std::string> lines; // "controllers[0].drives[2].locateUntil: an hour from now"
    bool complete = true;           // false: something is missing
};

// A place in the world file, such as "controllers[0].drives[2]", and where its notes go.
struct Place {
    Notes* notes;
    std::string path;
};

// A key of the object at a place, or an element of its list.
Place below(const Place& place, const char* key);
Place below(const Place& place, const char* list, std::size_t position);

// Notes what the adapters never report; the capture stays complete. An empty path: about the whole world.
void noteAssumption(const Place& place, const std::string& text);

// Notes what could not be read, or what a world cannot hold.
void noteMissing(const Place& place, const std::string& text);
