// Creating logical drives: logdrv -a add [-i id] -p drives [-e extents] -z settings.
#pragma once

#include "adapter/creation.h"

// Turns the words into a request and the address it goes to. Result::done when the request is
// complete; otherwise, after a message, Result::badValue, badCount or badId.
int PhraseCreateLogDrvArg(int wordCount, char** words, HbaAddress* address, std::uint32_t* secondArgument,
                          CreateArrayRequest* request);

// Creates what the words ask for; every failure is Result::refused.
int CreateLogDrv(int wordCount, char** words);

// The same for a configuration import, whose capacity is in sectors.
int CreateLogDrv2(int wordCount, char** words);

// Brings an array online. Takes three words, of which the last is both the array's and the
// controller's ID. No command word leads here.
int ActivateArray(int wordCount, char** words);
