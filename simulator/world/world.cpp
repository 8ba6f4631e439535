// Lookup by ID, free IDs, and the event list.
#include "simulator/world/world.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace q5sim {

// The first item whose field has this value.
template <typename List, typename Field>
static auto* findBy(List& list, Field field, std::uint32_t value) {
    const auto found =
        std::find_if(list.begin(), list.end(), [&](const auto& item) { return item.*field == value; });
    return found == list.end() ? nullptr : &*found;
}

Drive* findDrive(Controller& controller, std::uint32_t id) {
    return findBy(controller.drives, &Drive::id, id);
}

const Drive* findDrive(const Controller& controller, std::uint32_t id) {
    return findBy(controller.drives, &Drive::id, id);
}

const Enclosure* findEnclosure(const Controller& controller, std::uint32_t id) {
    return findBy(controller.enclosures, &Enclosure::id, id);
}

LogicalDrive* findLogicalDrive(Controller& controller, std::uint32_t logDrvId) {
    return findBy(controller.logicalDrives, &LogicalDrive::logDrvId, logDrvId);
}

const LogicalDrive* findLogicalDrive(const Controller& controller, std::uint32_t logDrvId) {
    return findBy(controller.logicalDrives, &LogicalDrive::logDrvId, logDrvId);
}

LogicalDrive* findArray(Controller& controller, std::uint32_t arrayId) {
    return findBy(controller.logicalDrives, &LogicalDrive::arrayId, arrayId);
}

const LogicalDrive* findArray(const Controller& controller, std::uint32_t arrayId) {
    return findBy(controller.logicalDrives, &LogicalDrive::arrayId, arrayId);
}

std::uint16_t lowestFreeId(const Controller& controller) {
    std::uint16_t id = 0;
    while (findArray(controller, id) != nullptr || findLogicalDrive(controller, id) != nullptr)
        id++;
    return id;
}

void addEvent(Controller& controller, std::int64_t time, const char* format, ...) {
    char text[256];
    std::va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    std::vector<Event>& events = controller.events;
    static constexpr std::uint32_t kLastId = 0xFFFFFFFE;
    const std::uint32_t id = events.empty() || events.back().id >= kLastId ? 1 : events.back().id + 1;
    if (events.size() >= kMaxEventsKept)
        events.erase(events.begin(), events.end() - (kMaxEventsKept - 1));
    events.push_back({id, time, text});
}

std::vector<Event> newEvents(const Controller& before, const Controller& after) {
    std::vector<Event> fresh;
    for (const Event& event : after.events)
        if (std::find(before.events.begin(), before.events.end(), event) == before.events.end())
            fresh.push_back(event);
    return fresh;
}

} // namespace q5sim
