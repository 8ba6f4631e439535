// What every operation of the library does before its own work: check the address and the buffer,
// look at the newest world, and let no exception out.
#pragma once

#include <algorithm>
#include <cstring>
#include <exception>

#include "adapter/common.h"
#include "simulator/store/world_store.h"

namespace q5sim {

inline constexpr int kDone = 0;
inline constexpr int kRefused = 1;

template <typename Body>
int guarded(Body body) noexcept {
    try {
        return body();
    } catch (const std::exception&) {
        return kRefused;
    }
}

inline bool namesController(HbaAddress address, std::uint32_t reserved, const World& world) {
    const bool plain = std::all_of(std::begin(address.reserved2), std::end(address.reserved2),
                                   [](std::uint8_t byte) { return byte == 0; });
    return plain && reserved == 0 && address.controllerId < world.controllers.size();
}

// body(const Controller&, now) -> result
template <typename Body>
int reading(HbaAddress address, std::uint32_t reserved, Body body) noexcept {
    return guarded([&] {
        const World* world = currentWorld();
        if (world == nullptr || !namesController(address, reserved, *world))
            return kRefused;
        return body(world->controllers[address.controllerId], worldTime(*world));
    });
}

// body(Controller&, now) -> result; what it changed is kept only when it returns 0.
template <typename Body>
int changing(HbaAddress address, std::uint32_t reserved, Body body) noexcept {
    return guarded([&] {
        return changeWorld([&](World& world, std::int64_t now) {
            if (!namesController(address, reserved, world))
                return kRefused;
            return body(world.controllers[address.controllerId], now);
        });
    });
}

// Like reading, with a reply buffer of size bytes that must hold at least needed: all zero before the
// body runs and after a refusal.
template <typename Body>
int replying(HbaAddress address, std::uint32_t reserved, void* reply, std::uint32_t size, std::size_t needed,
             Body body) noexcept {
    if (reply == nullptr)
        return kRefused;
    std::memset(reply, 0, size);
    const int result = size < needed ? kRefused : reading(address, reserved, body);
    if (result != kDone)
        std::memset(reply, 0, size);
    return result;
}

// Puts records one after the other behind a reply's header, as many as fit, and counts their bytes.
class RecordList {
public:
    RecordList(void* buffer, std::uint32_t bufferSize)
        : reply(static_cast<std::uint8_t*>(buffer)), size(bufferSize) {
        setUsed();
    }
    // Returns false when there is no room for another one.
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

// Whether an item is asked for by a first ID and a count; a count of 1 names exactly one item.
inline bool isWanted(std::uint32_t id, std::uint32_t first, std::uint32_t count) {
    return count == 1 ? id == first : id >= first;
}

// Fills a text field of a record; the rest of it is NUL.
template <std::size_t Size>
void putText(char (&field)[Size], const std::string& text) {
    const std::size_t length = text.size() < Size ? text.size() : Size - 1;
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), length);
}

// The text of a record's field, up to its NUL or its end. Bytes that no JSON text can hold become '?'.
std::string fieldText(const char* field, std::size_t size);

} // namespace q5sim
