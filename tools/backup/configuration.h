// The configuration file that cli exports, next to a snapshot of the same adapters.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/changes.h"

// Compares the text of an exported file with a snapshot: every block, their number and their order. Returns
// the first difference, or nothing.
std::string compareConfiguration(const std::string& text, const Snapshot& snapshot);

// What the snapshot could not read and an export therefore writes as zeros, or leaves out.
Lines unreadableLines(const Snapshot& snapshot);

// A line for each setting that is different in two files, blocks of one and the same object compared.
Lines configurationChanges(const std::string& earlier, const std::string& now);

// A line for each drive whose extents or speed differ: the files do not hold them.
Lines layoutChanges(const Snapshot& earlier, const Snapshot& now);
