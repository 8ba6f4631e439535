// An adapter whose answers a test gives. Every operation that is called is noted.
#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>

// Answers one call: fills the reply of size bytes, which was all zero, and returns the result.
using Answer = std::function<int(const std::string& operation, void* reply, std::size_t size)>;

extern Answer giveAnswer;
extern std::set<std::string> calledOperations;
