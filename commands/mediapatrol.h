// The mp command. Its functions take the word table and return a result code; all need seven words,
// mp -a <action> -p <drive> -i <controller>.
#pragma once

#include "adapter/mediapatrol.h"

int ListPhyDrvMediaPatrol(int wordCount, char** words);
int StartPhyDrvMediaPatrol(int wordCount, char** words);
int StopPhyDrvMediaPatrol(int wordCount, char** words);
int PausePhyDrvMediaPatrol(int wordCount, char** words);
int ResumePhyDrvMediaPatrol(int wordCount, char** words);

// Reads the progress of a drive's media patrol; all zero (idle) if the call fails.
MediaPatrolProgress readMediaPatrol(std::uint32_t controller, std::uint32_t drive);

// Prints the state, the progress of a running pass, and both counts.
void printMediaPatrol(const MediaPatrolProgress& patrol);
