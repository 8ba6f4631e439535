// The kept backups: reading them, comparing what they hold, and rotating them.
#pragma once

#include "snapshot/snapshot.h"
#include "tools/backup/store.h"
#include "tools/status/changes.h"

struct Backup {
    std::string stem; // empty: there is none
    Snapshot snapshot;
    std::string configuration;
};

// Reads one backup. Returns what is wrong with it, or nothing.
std::string readBackup(const Store& store, const std::string& stem, Backup* backup);

// The newest backup that can be read; a warning for each newer one that cannot.
Backup readNewest(const Store& store, Lines* warnings);

// What the snapshot has fewer of than the earlier one: controllers, or drives or logical drives of one of
// them.
Lines fewerLines(const Snapshot& now, const Snapshot& earlier);

// Removes old backups until only the given number is left. One that holds more than every newer one stays
// nevertheless. Returns what is wrong, or nothing.
std::string rotate(const Store& store, std::size_t keep);
