// A stub of the adapter library. Each program that links stub_adapter.cpp defines the functions below, which
// supply the replies.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adapter/event.h"

// Returns the result of an operation. reply, of size bytes, is null if the operation has no output.
int respond(const char* operation, void* reply, std::size_t size);

// The same for a list, whose header contains its length.
int respondWithList(const char* operation, void* reply, std::size_t size);

int respondWithCount(const char* operation, std::uint32_t* count);
int respondWithEvents(const char* operation, EventQuery* query, void* reply, std::size_t size);

// Called with the model and firmware of a 3 Gb/s option operation, before its respond().
void recordDriveModel(const char* model, const char* firmware);
