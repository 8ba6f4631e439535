// The directory of backups. A backup is a pair of files, HOST-YYYYMMDDTHHMMSSZ.json and the same with .cfg.
// The .json is renamed first and removed last: a .cfg exists only while its pair is complete.
#pragma once

#include <ctime>
#include <string>
#include <vector>

struct Store {
    std::string directory;
    std::string host;               // as in the names
    std::string work;               // a subdirectory, in which a new backup is made
    int lock = -1;                  // held as long as this process and its child work on the directory
    std::vector<std::string> stems; // of the complete backups, without suffix, oldest first
};

// This host's name, made safe for a file name.
std::string hostForNames();

// The stem of a new backup: of the time now or, if the newest backup is not older, of the second after that
// one. Returns an error message, empty on success.
std::string nameBackup(const Store& store, std::time_t now, std::string* stem);

// Locks the directory, removes what an interrupted run left, and lists the backups. Returns an error message,
// empty on success.
std::string openStore(Store* store);

// Empties the work directory and releases the lock. Also for a store that could not be opened.
void closeStore(Store* store);

// The path of a file of a backup, or of a file in the work directory.
std::string pathOf(const Store& store, const std::string& stem, const char* suffix);
std::string workPath(const Store& store, const char* name);

// Moves the two finished files from the work directory to their names. Returns an error message, empty on
// success; after an error the backup may exist.
std::string publish(const Store& store, const std::string& stem);

// Removes a backup, first the .cfg, which marks it as complete. Returns an error message, empty on success.
std::string removeBackup(const Store& store, const std::string& stem);

// Synchronizes a file or directory with the disk. Returns an error message, empty on success.
std::string synchronize(const std::string& path);
