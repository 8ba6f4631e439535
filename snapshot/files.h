// Writing whole files: replaced atomically, or newly created.
#pragma once

#include <string>

// Replaces the file, or the file that a link leads to, atomically. Anything but a regular file, such as a
// pipe or a device, is written in place; a pipe that nothing reads is refused. Returns an error message,
// empty on success.
std::string replaceFile(const std::string& path, const std::string& text);

// Creates a file, which must not exist yet, with mode 0600, and synchronizes it with the disk. Returns an
// error message, empty on success.
std::string createFile(const std::string& path, const std::string& text);
