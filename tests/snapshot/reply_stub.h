// An adapter whose replies a test provides. The names of the operations called are recorded.
#pragma once

#include <functional>
#include <set>
#include <string>

// Replies to one call: fills the reply of size bytes, which was all zero, and returns the result.
using Responder = std::function<int(const std::string& operation, void* reply, std::size_t size)>;

extern Responder respondInTest;
extern std::set<std::string> calledOperations;
