// Invariants of a world at rest and of its changes, for tests, fuzzers and q5sim status --check.
#pragma once

#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace q5sim {

// One line for each violation. The world must have been advanced to its time.
std::vector<std::string> findViolations(const World& world);

// Violations in the step from one world to a later one: changes of state without a new event.
std::vector<std::string> findStepViolations(const World& before, const World& after);

} // namespace q5sim
