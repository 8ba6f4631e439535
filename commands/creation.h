// Creating logical drives: logdrv -a add [-i id] -p drives [-e extents] -z settings.
#pragma once

#include "adapter/creation.h"

// Parses the words into a request and the address to send it to. Returns Result::done, or after a
// message Result::badValue, badCount or badId.
int PhraseCreateLogDrvArg(int wordCount, char** words, HbaAddress* address, std::uint32_t* secondArgument,
                          CreateArrayRequest* request);

// Creates a logical drive from the words. Returns Result::done, or Result::refused for any failure.
int CreateLogDrv(int wordCount, char** words);

// The same for a configuration import: the capacity is in sectors.
int CreateLogDrv2(int wordCount, char** words);

// Brings an array online. Takes three words; the last is both the array ID and the controller ID. No
// command calls this.
int ActivateArray(int wordCount, char** words);
