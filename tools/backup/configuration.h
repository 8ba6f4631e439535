// Compares the configuration file that cli exports with a snapshot of the same adapters.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/backup/settings.h"

// Compares the text of an exported file with a snapshot: every block, their number and their order. Returns
// the first difference; empty if there is none.
std::string compareConfiguration(const std::string& text, const Snapshot& snapshot);

// Removes the settings of drives that are no answer: all zero, and the exported file has no block of any
// drive of the controller.
void removeClearedSettings(const std::string& text, Snapshot* snapshot);

// A warning for each listing that could not be read, or contradicts the controller's count: the backup lacks
// objects.
Lines incompleteLines(const Snapshot& snapshot);

// A line for each setting that differs between the blocks of the same object in two files. unread: those that
// could not be read for one of the files, which has zeros in their place, or no block.
Lines configurationChanges(const std::string& earlier, const std::string& now,
                           const std::vector<Settings>& unread);

// A line for each drive whose extents or speed differ, which are not in the files. A speed that could not be
// read does not differ.
Lines layoutChanges(const Snapshot& earlier, const Snapshot& now);

// The blocks of the drives beyond the first listing, which an export leaves out.
std::string furtherDriveBlocks(const Snapshot& snapshot);

// A line for each value of a snapshot that differs, apart from sensor readings and progress.
Lines stateChanges(const Snapshot& earlier, const Snapshot& now);
