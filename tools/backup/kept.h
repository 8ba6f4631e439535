// The kept backups: reading them, comparing what they hold, and rotating them.
#pragma once

#include "snapshot/snapshot.h"
#include "tools/backup/store.h"
#include "tools/status/changes.h"

struct Backup {
    std::string stem; // empty: no backup
    Snapshot snapshot;
    std::string configuration;
};

// Reads one backup and compares its two files. Returns an error message, empty on success.
std::string readBackup(const Store& store, const std::string& stem, Backup* backup);

struct Kept {
    Backup newest;   // intact one
    Backup complete; // the newest that also has all objects; if there is none, the newest
};

// Adds a warning for each damaged backup, newer or older.
Kept readKept(const Store& store, Lines* warnings);

// Removes old backups until only the given number is left. One that has something that every newer one that
// is intact and complete lacks is kept, and so is a damaged one. Returns an error message, empty on success.
std::string rotate(const Store& store, std::size_t keep);
