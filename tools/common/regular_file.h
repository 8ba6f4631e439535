// Reading regular files that the user names, or that are in directories where others can write.
#pragma once

#include <string>

enum class RegularFile { read, missing, notRegular, failed };

// Reads a whole file of up to 64 MiB, which is more than these programs write. Nothing but a regular file is
// read: opening a pipe can block, and a device may have no end. Unless the result is read, problem is
// "cannot read PATH: REASON", and the text is not to be used.
RegularFile readRegularFile(const std::string& path, std::string* text, std::string* problem);
