// Whole files: reading, and atomic replacement.
#pragma once

#include <string>

enum class ReadResult { done, missing, failed };
// Unless it is done, errno is the reason.
ReadResult readFile(const std::string& path, std::string* text);

// Replaces the file, or the file that a link leads to, atomically. Anything but a regular file, such as a
// pipe or a device, is written in place. Returns an error
// message, empty on success.
std::string replaceFile(const std::string& path, const std::string& text);
