// What a capture has to assume, and where in the world file it does.
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

// What the adapters do not report: not a fault of theirs.
void assume(const Place& place, const std::string& text);

// What they did not deliver, or what a world cannot hold.
void miss(const Place& place, const std::string& text);
