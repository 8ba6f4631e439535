// Rules and refusals of calls.
#include "simulator/operations/call.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "simulator/engine/rules.h"
#include "simulator/store/world_store.h"

namespace q5sim {

static std::string reason;

int refuse(const char* format, ...) {
    char text[256];
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    reason = text;
    return kRefused;
}

void beginCall() {
    reason.clear();
    beginReports();
}

void recordReason(const char* operation) {
    if (reason.empty())
        return;
    const std::string text = reason;
    changeWorld([&](World& world, std::int64_t now) {
        addRefusal(world, operation, text, now);
        return 0;
    });
}

static void sleepMilliseconds(long milliseconds) {
    const ::timespec time = {milliseconds / 1000, milliseconds % 1000 * 1000000};
    ::nanosleep(&time, nullptr);
}

static bool isStillSet(const Rule& hanging) {
    const World* world = currentWorld();
    return world != nullptr && std::any_of(world->rules.begin(), world->rules.end(), [&](const Rule& rule) {
               return rule.kind == kHangCall && rule.operation == hanging.operation;
           });
}

static Effect effectOf(const Rule& rule, std::size_t number) {
    switch (rule.kind) {
    case kDelayCall:
        sleepMilliseconds(static_cast<long>(rule.seconds) * 1000);
        return {};
    case kHangCall:
        while (isStillSet(rule))
            sleepMilliseconds(100);
        return {};
    case kZeroReply:
        return {true, kDone, false};
    case kShortReply:
        return {false, kDone, true};
    default:
        refuse("refused by rule %zu", number + 1);
        return {true, rule.result, false};
    }
}

Effect applyRules(const char* operation) {
    const World* world = storedWorld(); // the operation itself reports a world that cannot be written
    if (world == nullptr || !hasRuleFor(*world, operation))
        return {};
    std::size_t index = kNoRule;
    Rule rule;
    changeWorld([&](World& changed, std::int64_t) {
        index = countCall(changed, operation);
        if (index != kNoRule)
            rule = changed.rules[index];
        return 0;
    });
    return index == kNoRule ? Effect{} : effectOf(rule, index);
}

void shortenReply(void* reply, std::uint32_t size) {
    auto* bytes = static_cast<std::uint8_t*>(reply);
    std::uint32_t used = size;
    if (size >= sizeof(ReplyHeader)) {
        std::memcpy(&used, bytes + offsetof(ReplyHeader, bytesUsed), sizeof used);
        used = std::clamp<std::uint32_t>(used, sizeof(ReplyHeader), size);
        const std::uint32_t kept = static_cast<std::uint32_t>(sizeof(ReplyHeader)) +
                                   (used - static_cast<std::uint32_t>(sizeof(ReplyHeader))) / 2;
        std::memcpy(bytes + offsetof(ReplyHeader, bytesUsed), &kept, sizeof kept);
        used = kept;
    } else {
        used = size / 2;
    }
    std::memset(bytes + used, 0, size - used);
}

} // namespace q5sim
