// Turns a snapshot of the adapters into a world file for the simulated ones.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "snapshot/snapshot.h"

struct Capture {
    std::string text; // the world file; empty: see problem
    std::string problem;
    std::vector<std::string> assumed; // what no operation reports, or could not be read; also in the file
    bool complete = true;             // false: something was refused, or does not fit into a world
};

// now: on the clock of the simulated adapters; activities and patrols continue from there.
Capture captureWorld(const Snapshot& snapshot, std::int64_t now);

// The time at which the simulated adapters start: Q5SIM_NOW, or the real time.
std::int64_t captureTime();

// Replaces serials and the names of logical drives. Equal texts get equal replacements.
void makeAnonymous(Snapshot* snapshot);
