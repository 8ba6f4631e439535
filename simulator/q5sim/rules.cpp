// The commands for rules.
#include "simulator/engine/rules.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fnmatch.h>

#include "simulator/q5sim/command.h"
#include "simulator/q5sim/operation_names.h"
#include "simulator/store/world_store.h"

namespace q5sim {

static std::string ruleText(const Rule& rule) {
    std::string text = std::string(ruleName(rule.kind)) + " " + rule.operation;
    if (rule.kind == kDelayCall)
        text += " " + std::to_string(rule.seconds);
    if (rule.times != 0)
        text += " --times " + std::to_string(rule.times);
    if (rule.after != 0)
        text += " --after " + std::to_string(rule.after);
    if (rule.kind == kRefuseCall && rule.result != 1)
        text += " --result " + std::to_string(rule.result);
    return text;
}

static bool matchesAny(const char* pattern) {
    return std::any_of(std::begin(kOperationNames), std::end(kOperationNames),
                       [&](const char* name) { return ::fnmatch(pattern, name, 0) == 0; });
}

static int addRule(Rule rule, const char* operation) {
    if (operation[0] == '\0' || std::strlen(operation) > 63)
        return usageError("the name of an operation has 1 to 63 characters");
    if (!matchesAny(operation))
        return refused(std::string("no operation matches ") + operation);
    rule.operation = operation;
    std::size_t number = 0;
    return changeWholeWorld([&] { return "rule " + std::to_string(number) + ": " + ruleText(rule); },
                            [&](World& world, std::int64_t) {
                                number = world.rules.size() + 1;
                                if (number > kMaxRules)
                                    return Reason("there are too many rules");
                                world.rules.push_back(rule);
                                return Reason();
                            });
}

int refuseCommand(const Arguments& arguments) {
    Rule rule;
    rule.kind = kRefuseCall;
    rule.times = arguments.options.times;
    rule.after = arguments.options.after;
    rule.result = arguments.options.result;
    if (rule.result == 0)
        return usageError("result 0 is not a refusal; see zero");
    return addRule(rule, arguments.words[0]);
}

int delayCommand(const Arguments& arguments) {
    std::int64_t seconds = 0;
    if (!readNumber(arguments.words[1], 86400, seconds))
        return usageError(std::string(arguments.words[1]) + " is not a number of seconds up to 86400");
    Rule rule;
    rule.kind = kDelayCall;
    rule.seconds = static_cast<std::uint32_t>(seconds);
    return addRule(rule, arguments.words[0]);
}

static int addPlainRule(const Arguments& arguments, RuleKind kind) {
    Rule rule;
    rule.kind = kind;
    return addRule(rule, arguments.words[0]);
}

int hangCommand(const Arguments& arguments) {
    return addPlainRule(arguments, kHangCall);
}

int zeroCommand(const Arguments& arguments) {
    return addPlainRule(arguments, kZeroReply);
}

int shortCommand(const Arguments& arguments) {
    return addPlainRule(arguments, kShortReply);
}

int rulesCommand(const Arguments&) {
    const World* world = openWorld() ? currentWorld() : nullptr;
    if (world == nullptr)
        return kRefusedStatus;
    for (std::size_t i = 0; i < world->rules.size(); i++)
        std::printf("%zu: %s (%u calls, %u hits)\n", i + 1, ruleText(world->rules[i]).c_str(),
                    world->rules[i].calls, world->rules[i].hits);
    if (world->rules.empty())
        std::puts("no rules");
    return 0;
}

int clearRulesCommand(const Arguments&) {
    std::size_t count = 0;
    return changeWholeWorld(
        [&] { return std::to_string(count) + (count == 1 ? " rule" : " rules") + " cleared"; },
        [&](World& world, std::int64_t) {
            count = world.rules.size();
            world.rules.clear();
            return Reason();
        });
}

} // namespace q5sim
