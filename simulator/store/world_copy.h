// Copies of the world in files of the user's choice.
#pragma once

#include <string>

#include "simulator/world/world.h"

namespace q5sim {

// Both return an empty text, or why the file cannot be used.
std::string readWorldCopy(const std::string& path, World& world);
std::string writeWorldCopy(const std::string& path, const World& world);

} // namespace q5sim
