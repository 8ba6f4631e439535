// Reading regular files that are named by the user, or lie where others can write.
#pragma once

#include <string>

enum class RegularFile { read, missing, notRegular, failed };

// Reads a whole file. Opening a pipe could wait, and a device may have no end: neither is read, nor is a
// file larger than any that these programs write. problem: "cannot read PATH: REASON", unless it is read.
RegularFile readRegularFile(const std::string& path, std::string* text, std::string* problem);
