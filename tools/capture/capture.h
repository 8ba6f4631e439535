// Turns a snapshot of the adapters into a world file for the simulated ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "snapshot/snapshot.h"

struct Capture {
    std::string text;                 // the world file; empty: it could not be made
    std::string problem;              // why it could not be made
    std::vector<std::string> assumed; // what no operation reports, or could not be read; also in the file
    bool complete = true;             // false: something was refused, or does not fit into a world
};

// now: seconds since 1970 on the clock of the simulated adapters; activities and patrols continue from there.
Capture captureWorld(const Snapshot& snapshot, std::int64_t now);

// Replaces serials and the names of logical drives. Equal texts get equal replacements.
void makeAnonymous(Snapshot* snapshot);
