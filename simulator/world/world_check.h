// Consistency of a world: what a hand-edited file can get wrong beyond single values.
#pragma once

#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace q5sim {

// Where a value is: keys of the world file, and list positions as decimal digits.
using FieldPath = std::vector<std::string>;

// Thrown for an invalid value; never leaves worldFromJson.
struct WorldError {
    FieldPath path;
    std::string reason;
};

// Throws a WorldError when parts of the world contradict each other.
void checkWorld(const World& world);

} // namespace q5sim
