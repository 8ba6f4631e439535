// Atomic replacement of whole files.
#pragma once

#include <string>

// Replaces the file, or the file that a link leads to, atomically. Anything but a regular file, such as a
// pipe or a device, is written in place; a pipe that nothing reads is refused. Returns an error message,
// empty on success.
std::string replaceFile(const std::string& path, const std::string& text);

// Writes a file that must not exist, for its owner only. Returns an error message, empty on success.
std::string createFile(const std::string& path, const std::string& text);
