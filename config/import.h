// The import command: shows a configuration file, or applies the selected blocks of it.
#pragma once

#include <cstdint>

// import [-k ctrls] [-p drives] [-l logical drives] [-a] -f file [-c] [-i]. Takes the word table and
// returns a result code.
int ImportFile(int wordCount, char** words);

// Displays every block of the file. Result::done, noFile, badKeyword or emptyFile.
int DisplayImportFile(const char* fileName);

// Reads the file, selects all blocks or those whose set indexes are listed, checks them against the
// adapters present and applies them. clear: delete the logical drives of the controllers and create
// them again from the file. Result::done, noFile, badKeyword, emptyFile, notFound or tooManyDrives.
int SetDataFromConfigFile(const char* fileName, bool all, bool clear, int ctrlCount,
                          const std::uint32_t* ctrlList, int pdCount, const std::uint32_t* pdList,
                          int ldCount, const std::uint32_t* ldList);
