// Tries a plan on simulated adapters with a copy of the real ones' state.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/restore/drive_map.h"

struct CopyRun {
    std::string program;    // cli-restore-rehearse
    std::string file;       // the backup
    std::string controller; // its ID
    std::string from;       // its ID in the backup
    std::string drives;     // the drive map; may be empty
};

// Fills in the settings of the controller that could not be read now with the saved ones. They stay as they
// are: with the saved ones in the copy, the plan has no steps for them there either.
void assumeSavedSettings(const Controller& saved, std::uint32_t id, const DriveMap& drives, Snapshot* now);

// Applies the backup to a copy of the present state. Returns the exit status, with the output of the program,
// or -1, with an error message in its place, if the program could not be run.
int applyToCopy(const CopyRun& run, const Snapshot& now, std::string* output);
