// Matching and counting of rules.
#include "simulator/engine/rules.h"

#include <algorithm>
#include <fnmatch.h>

namespace q5sim {

const char* ruleName(std::uint8_t kind) {
    static constexpr const char* names[] = {"refuse", "delay", "hang", "zero", "short"};
    return kind < std::size(names) ? names[kind] : "unknown";
}

static bool matches(const Rule& rule, const char* operation) {
    return ::fnmatch(rule.operation.c_str(), operation, 0) == 0;
}

bool hasRuleFor(const World& world, const char* operation) {
    return std::any_of(world.rules.begin(), world.rules.end(),
                       [&](const Rule& rule) { return matches(rule, operation); });
}

std::size_t countCall(World& world, const char* operation) {
    for (std::size_t i = 0; i < world.rules.size(); i++) {
        Rule& rule = world.rules[i];
        if (!matches(rule, operation) || rule.calls == UINT32_MAX)
            continue;
        rule.calls++;
        if (rule.calls <= rule.after || (rule.times != 0 && rule.hits >= rule.times))
            continue;
        rule.hits++;
        return i;
    }
    return kNoRule;
}

void addRefusal(World& world, const char* operation, const std::string& reason, std::int64_t now) {
    std::vector<Refusal>& refusals = world.refusals;
    if (!refusals.empty() && refusals.front().operation == operation && refusals.front().reason == reason)
        return;
    refusals.insert(refusals.begin(), {now, operation, reason});
    for (; refusals.size() > kMaxRefusals; refusals.pop_back())
        if (!isQuery(refusals.back()) && world.olderRefusals < UINT32_MAX)
            world.olderRefusals++;
}

bool isQuery(const Refusal& refusal) {
    return refusal.operation.starts_with("q5_get"); // true of all of them, and of no other
}

} // namespace q5sim
