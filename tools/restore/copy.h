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

// Fills in the settings of the controller that could not be read now, and thus stay, with the saved ones: a
// copy has all settings, and has nothing left to do about these.
void assumeSavedSettings(const Controller& saved, std::uint32_t id, const DriveMap& drives, Snapshot* now);

// Applies the backup to a copy of the present state. Returns the exit status and the output; -1 with
// an error message if it could not be tried.
int applyToCopy(const CopyRun& run, const Snapshot& now, std::string* output);
