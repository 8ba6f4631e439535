// The directory of backups. A backup is a pair of files, HOST-YYYYMMDDTHHMMSSZ.json and the same with .cfg.
// The .json gets its name first and loses it last, so that a .cfg shows that its pair is complete.
#pragma once

#include <ctime>
#include <string>
#include <vector>

struct Store {
    std::string directory;
    std::string host;               // as in the names
    std::string work;               // where a new backup is made, inside the directory
    int lock = -1;                  // held as long as this process and its child work on the directory
    std::vector<std::string> stems; // of the complete backups, without suffix, oldest first
};

// This host's name, fit for a file name.
std::string hostForNames();

// The name of a backup of this time, or of the second after the newest one if the clock says earlier.
std::string stemFor(const Store& store, std::time_t now);

// Locks the directory, removes what an interrupted run left, and lists the backups. Returns what is wrong, or
// nothing.
std::string openStore(Store* store);
void closeStore(Store* store);

std::string pathOf(const Store& store, const std::string& stem, const char* suffix);
std::string workPath(const Store& store, const char* name);

// Gives the two finished files in the work directory their names. Returns what is wrong, or nothing; a
// backup is then there or not.
std::string publish(const Store& store, const std::string& stem);

// Removes a backup, so that at no time half of it counts.
std::string removeBackup(const Store& store, const std::string& stem);

// Writes back what the system has buffered of a file or directory. Returns what is wrong, or nothing.
std::string synchronize(const std::string& path);
