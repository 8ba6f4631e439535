// Trying a plan on simulated adapters, which get a copy of the real ones' state.
#pragma once

#include <string>

#include "snapshot/snapshot.h"

struct CopyRun {
    std::string program;    // cli-restore-rehearse
    std::string file;       // the backup
    std::string controller; // its ID
    std::string drives;     // the drive map; may be empty
};

// Applies the backup to a copy of the present state. Returns the exit status of that, and what it printed; -1
// with the reason if it could not be tried.
int applyToCopy(const CopyRun& run, const Snapshot& now, std::string* output);
