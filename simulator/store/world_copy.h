// Copies of the world in files of the user's choice.
#pragma once

#include <string>

#include "simulator/world/world.h"

namespace q5sim {

// Both return an error message, empty on success.
std::string readWorldCopy(const std::string& path, World& world);
std::string writeWorldCopy(const std::string& path, const World& world);

} // namespace q5sim
