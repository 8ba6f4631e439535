// Common to all operations: they check the address and the buffer, use the newest world, and let no
// exception escape.
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

// body(const Controller&, now) -> result
template <typename Body>
int withController(HbaAddress address, std::uint32_t reserved, Body body) noexcept {
    return catchAll([&] {
        const World* world = currentWorld();
        if (world == nullptr || !isValidAddress(address, reserved, *world))
            return kRefused;
        return body(world->controllers[address.controllerId], worldTime(*world));
    });
}

// body(Controller&, now) -> result; its changes are kept only when it returns 0.
template <typename Body>
int updateController(HbaAddress address, std::uint32_t reserved, Body body) noexcept {
    return catchAll([&] {
        return changeWorld([&](World& world, std::int64_t now) {
            if (!isValidAddress(address, reserved, world))
                return kRefused;
            return body(world.controllers[address.controllerId], now);
        });
    });
}

// Like withController, with a reply buffer of size bytes that must hold at least needed bytes. It is
// all zero before the body runs and after a refusal.
template <typename Body>
int fillReply(HbaAddress address, std::uint32_t reserved, void* reply, std::uint32_t size, std::size_t needed,
              Body body) noexcept {
    if (reply == nullptr)
        return kRefused;
    std::memset(reply, 0, size);
    const int result = size < needed ? kRefused : withController(address, reserved, body);
    if (result != kDone)
        std::memset(reply, 0, size);
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
