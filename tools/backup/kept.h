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
    Backup newest;   // the newest intact backup
    Backup complete; // the newest intact backup with all objects; if there is none, the same as newest
};

// Reads all backups. Adds a warning for each damaged one.
Kept readKept(const Store& store, Lines* warnings);

// Removes all backups but the newest ones. keep: how many of those stay. An older one stays as well if it is
// damaged, or has something that every newer intact and complete backup lacks. Returns an error message,
// empty on success.
std::string rotate(const Store& store, std::size_t keep);
