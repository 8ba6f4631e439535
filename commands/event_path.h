// The path of the event file, and the directory of the program file.
#pragma once

#include <cstddef>

// Writes the path of the event file; path holds kEventPathSize bytes.
inline constexpr std::size_t kEventPathSize = 512;
void GetEventBufferFilePath(char* path);

// Returns the directory, with a trailing "/", of the program file or library whose code contains the
// address, according to the system's memory map. The caller frees it. Null if there is no such map or
// no such mapping.
char* br_locate(const void* address);
