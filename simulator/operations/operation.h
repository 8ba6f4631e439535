// What all operations share: they check the address and the buffer, use the newest world, and catch all
// exceptions.
#pragma once

#include <algorithm>
#include <cstring>
#include <exception>

#include "adapter/common.h"
#include "simulator/engine/rules.h"
#include "simulator/operations/call.h"
#include "simulator/store/world_store.h"

namespace q5sim {

// Returns the result of the body, or kRefused if it throws.
template <typename Body>
int catchAll(Body body) noexcept {
    try {
        return body();
    } catch (const std::exception&) {
        return kRefused;
    }
}

inline bool isValidAddress(HbaAddress address, std::uint32_t reserved, const World& world) {
    const bool plain = std::all_of(std::begin(address.reserved2), std::end(address.reserved2),
                                   [](std::uint8_t byte) { return byte == 0; });
    return plain && reserved == 0 && address.controllerId < world.controllers.size();
}

inline int refuseAddress(HbaAddress address) {
    return refuse("there is no controller %u, or the address is invalid", unsigned{address.controllerId});
}

// Runs the body and records the reason of a refusal.
template <typename Body>
int runCall(const Caller& caller, Body body) noexcept {
    return catchAll([&] {
        beginCall();
        const int result = body();
        if (result != kDone)
            recordReason(caller.operation);
        return result;
    });
}

// Runs body(const Controller&, now), which returns the result, unless a rule ends the call. effect: what the
// rules do to the call.
template <typename Body>
int readController(const Caller& caller, std::uint32_t reserved, Effect& effect, Body body) noexcept {
    return runCall(caller, [&] {
        const World* world = currentWorld();
        if (world != nullptr && hasRuleFor(*world, caller.operation)) {
            effect = applyRules(caller.operation);
            world = currentWorld();
        }
        if (effect.ends)
            return effect.result;
        if (world == nullptr)
            return kRefused;
        if (!isValidAddress(caller.address, reserved, *world))
            return refuseAddress(caller.address);
        return body(world->controllers[caller.address.controllerId], worldTime(*world));
    });
}

// The same, where no rule affects a reply.
template <typename Body>
int withController(const Caller& caller, std::uint32_t reserved, Body body) noexcept {
    Effect effect;
    return readController(caller, reserved, effect, body);
}

// Runs body(Controller&, now), which returns the result; its changes are kept only if that is 0.
template <typename Body>
int updateController(const Caller& caller, std::uint32_t reserved, Body body) noexcept {
    return runCall(caller, [&] {
        bool checkRules = true, hasRule = false;
        const auto change = [&](World& world, std::int64_t now) {
            hasRule = checkRules && hasRuleFor(world, caller.operation);
            if (hasRule)
                return kRefused;
            if (!isValidAddress(caller.address, reserved, world))
                return refuseAddress(caller.address);
            return body(world.controllers[caller.address.controllerId], now);
        };
        const int result = changeWorld(change);
        if (!hasRule)
            return result;
        checkRules = false;
        const Effect effect = applyRules(caller.operation);
        return effect.ends ? effect.result : changeWorld(change);
    });
}

// Like withController, with a reply buffer of size bytes that must hold at least needed bytes. It is
// all zero before the body runs and after a refusal.
template <typename Body>
int fillReply(const Caller& caller, std::uint32_t reserved, void* reply, std::uint32_t size,
              std::size_t needed, Body body) noexcept {
    if (reply == nullptr)
        return kRefused;
    std::memset(reply, 0, size);
    Effect effect;
    const int result = size < needed ? kRefused : readController(caller, reserved, effect, body);
    if (result != kDone || effect.ends)
        std::memset(reply, 0, size);
    else if (effect.shortens)
        shortenReply(reply, size);
    return result;
}

// Appends records after a reply's header and counts their bytes.
class RecordList {
public:
    RecordList(void* buffer, std::uint32_t bufferSize)
        : reply(static_cast<std::uint8_t*>(buffer)), size(bufferSize) {
        setUsed();
    }
    // Returns false when the buffer is full.
    template <typename Record>
    bool add(const Record& record) {
        if (size - used < sizeof record)
            return false;
        std::memcpy(reply + used, &record, sizeof record);
        used += sizeof record;
        setUsed();
        return true;
    }

private:
    std::uint8_t* reply;
    std::size_t size;
    std::size_t used = sizeof(ReplyHeader);

    void setUsed() {
        const auto count = static_cast<std::uint32_t>(used);
        std::memcpy(reply + offsetof(ReplyHeader, bytesUsed), &count, sizeof count);
    }
};

// Whether a query by first ID and count selects an item; a count of 1 selects exactly that ID.
inline bool isWanted(std::uint32_t id, std::uint32_t first, std::uint32_t count) {
    return count == 1 ? id == first : id >= first;
}

// Fills a text field of a record, padded with NUL.
template <std::size_t Size>
void putText(char (&field)[Size], const std::string& text) {
    const std::size_t length = text.size() < Size ? text.size() : Size - 1;
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), length);
}

// The text of a field, up to its NUL or its end. Bytes that are not UTF-8 become '?'.
std::string fieldText(const char* field, std::size_t size);

} // namespace q5sim
