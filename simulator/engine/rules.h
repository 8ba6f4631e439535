// Rules that make operations fail, and the record of refusals.
#pragma once

#include <string>

#include "simulator/world/world.h"

namespace q5sim {

// "refuse". kind: RuleKind; "unknown" for any other value.
const char* ruleName(std::uint8_t kind);

// Whether a rule is about this operation, even if its counts are used up.
bool hasRuleFor(const World& world, const char* operation);

// Counts a call of the operation. Returns the index of the rule that applies to it, or kNoRule.
inline constexpr std::size_t kNoRule = SIZE_MAX;
std::size_t countCall(World& world, const char* operation);

// Whether the refused operation only reads.
bool isQuery(const Refusal& refusal);

// Puts a refusal first in the list, unless it repeats the newest one. Counts those of changing operations
// that the list cannot hold.
void addRefusal(World& world, const char* operation, const std::string& reason, std::int64_t now);

} // namespace q5sim
