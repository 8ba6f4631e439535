// One call of an operation: the rules that apply to it and the reason of its refusal.
#pragma once

#include "adapter/common.h"

namespace q5sim {

inline constexpr int kDone = 0;
inline constexpr int kRefused = 1;

// The controller that an operation was called for, and the operation's symbol: that of the function in
// which an address becomes a Caller.
struct Caller {
    HbaAddress address;
    const char* operation;
    Caller(HbaAddress target, const char* symbol = __builtin_FUNCTION()) // NOLINT: implicit on purpose
        : address(target), operation(symbol) {}
};

// The effect of the rules on a call.
struct Effect {
    bool ends = false; // without doing anything
    int result = kDone;
    bool shortens = false; // the reply
};

// Counts the call and waits as long as a rule says.
Effect applyRules(const char* operation);

// Sets the reason of a refusal and returns kRefused.
[[gnu::format(printf, 1, 2)]] int refuse(const char* format, ...);

// Before the body of an operation: clears the reason and the reports of the previous call.
void beginCall();

// After a refusal: records its reason in the world.
void recordReason(const char* operation);

// Drops the second half of a reply's records.
void shortenReply(void* reply, std::uint32_t size);

} // namespace q5sim
