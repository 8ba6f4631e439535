// The backup that is restored from.
#pragma once

#include <string>

#include "snapshot/snapshot.h"

struct Saved {
    std::string stem;     // the path without ".cfg" or ".json"
    std::string identity; // identifies the backup in the log
    Snapshot snapshot;
};

// Reads both files of a backup, by the name of either, and checks that they belong together. Returns an
// error message, empty on success.
std::string readSaved(const std::string& file, Saved* saved);
