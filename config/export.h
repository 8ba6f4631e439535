// The export command: writes the settings of all adapters to a configuration file.
#pragma once

#include <cstdint>
#include <cstdio>

// export -t types -f file. Takes the word table and returns a result code.
int ExportFile(int wordCount, char** words);

// Write all blocks of one kind for the controllers 0 .. hbaCount - 1. Return 0; the caller checks
// the stream for write errors.
int WriteCtrlSettings(std::uint32_t hbaCount, std::FILE* stream);
int WritePDSettings(std::uint32_t hbaCount, std::FILE* stream);
int WriteLDSettings(std::uint32_t hbaCount, std::FILE* stream);

// Sets *count to the number of global spares in a controller block; 0 unless countGlobal. Returns 0.
int GetSpareInfo(std::uint32_t controller, int countGlobal, int* count);
