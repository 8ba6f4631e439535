// An adapter whose answers a test gives, without regard to what is asked: whoever links
// stub_adapter.cpp defines these functions.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adapter/event.h"

// The result of an operation by its name. reply, of size bytes, is null for one that brings none back.
int answer(const char* operation, void* reply, std::size_t size);

// The same for a list, in whose header the caller looks for its length.
int answerList(const char* operation, void* reply, std::size_t size);

int answerControllers(const char* operation, std::uint32_t* count);
int answerEvents(const char* operation, EventQuery* query, void* reply, std::size_t size);

// Which drives the 3 Gb/s option is asked of; its answer comes after.
void noteDrives(const char* model, const char* firmware);
