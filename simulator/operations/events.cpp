// Delivering the event list.
#include "adapter/event.h"

#include "simulator/operations/operation.h"

using namespace q5sim;

static constexpr std::int32_t kNewest = -1;

// Writes the newest events that fit, oldest first; returns their number.
static std::uint32_t deliver(const std::vector<Event>& events, std::uint32_t wanted, void* reply,
                             std::uint32_t size) {
    const std::size_t capacity = (size - sizeof(ReplyHeader)) / sizeof(HBAEvent);
    const std::size_t count = std::min({static_cast<std::size_t>(wanted), capacity, events.size()});
    auto* at = static_cast<std::uint8_t*>(reply) + sizeof(ReplyHeader);
    for (std::size_t i = events.size() - count; i < events.size(); i++, at += sizeof(HBAEvent)) {
        HBAEvent record = {};
        record.eventId = events[i].id;
        putText(record.description, events[i].text);
        std::memcpy(at, &record, sizeof record);
    }
    return static_cast<std::uint32_t>(count);
}

int q5_getHBAEvents(HbaAddress address, std::uint32_t reserved, EventQuery* query, void* reply,
                    std::uint32_t size) {
    const std::uint32_t wanted = query != nullptr ? query->count : 0;
    std::uint32_t delivered = 0;
    const int result = fillReply(address, reserved, reply, size, sizeof(ReplyHeader),
                                 [&](const Controller& controller, std::int64_t) {
                                     if (query == nullptr || query->first != kNewest)
                                         return refuse("events: the query is invalid");
                                     delivered = deliver(controller.events, wanted, reply, size);
                                     return kDone;
                                 });
    if (query != nullptr)
        query->count = delivered;
    return result;
}
