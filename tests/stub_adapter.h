// A stub of the adapter library. Its replies come from the functions below, which each program that
// links stub_adapter.cpp defines.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adapter/event.h"

// Returns the result of an operation. reply, of size bytes, is null if the operation has no output.
int answer(const char* operation, void* reply, std::size_t size);

// The same for a list, whose header holds its length.
int answerList(const char* operation, void* reply, std::size_t size);

int answerControllers(const char* operation, std::uint32_t* count);
int answerEvents(const char* operation, EventQuery* query, void* reply, std::size_t size);

// Called with the model and firmware of a 3 Gb/s option operation, before its answer().
void noteDrives(const char* model, const char* firmware);
