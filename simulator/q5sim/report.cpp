// Parsing of arguments, and reports of a fault and its consequences.
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "simulator/q5sim/command.h"
#include "simulator/store/world_store.h"

namespace q5sim {

int refused(const std::string& reason) {
    std::fprintf(stderr, "q5sim: %s\n", reason.c_str());
    return kRefusedStatus;
}

int usageError(const std::string& reason) {
    std::fprintf(stderr, "q5sim: %s\n", reason.c_str());
    return kUsageStatus;
}

bool readNumber(const char* text, std::int64_t limit, std::int64_t& number) {
    char* end = nullptr;
    if (text[0] < '0' || text[0] > '9' || std::strlen(text) > 18)
        return false;
    number = std::strtoll(text, &end, 10);
    return *end == '\0' && number <= limit;
}

bool readSigned(const char* text, std::int64_t limit, std::int64_t& number) {
    const bool negative = text[0] == '-';
    const bool valid = readNumber(negative ? text + 1 : text, limit, number);
    number = negative ? -number : number;
    return valid;
}

// An event in the middle of a sentence, with the name of its logical drive.
static std::string clause(const Controller& controller, const std::string& event) {
    static constexpr char start[] = "Logical drive ";
    std::string text = event;
    text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    if (event.compare(0, sizeof start - 1, start) != 0)
        return text;
    char* end = nullptr;
    const auto id = std::strtoul(event.c_str() + sizeof start - 1, &end, 10);
    const LogicalDrive* array = findLogicalDrive(controller, static_cast<std::uint32_t>(id));
    if (array == nullptr || array->name.empty())
        return text;
    return "logical drive " + std::to_string(id) + " " + array->name + end;
}

// Drops the name of a logical drive that the previous clause was about.
static std::string shortened(const std::string& text, const std::string& previous) {
    const std::size_t colon = text.find(": ");
    const bool repeats = text.starts_with("logical drive ") && colon != std::string::npos &&
                         previous.starts_with(text.substr(0, colon));
    return repeats ? text.substr(colon + 2) : text;
}

static std::string describeChange(const World& before, const World& after, std::size_t id, bool skipFirst) {
    std::string text, previous;
    bool skip = skipFirst;
    for (const Event& event : newEvents(before.controllers[id], after.controllers[id])) {
        const std::string next = clause(after.controllers[id], event.text);
        if (!skip)
            text += "; " + shortened(next, previous);
        skip = false;
        previous = next;
    }
    return text;
}

int changeController(const char* controllerWord, const std::string& headline, bool skipFirst,
                     const Fault& inject) {
    std::int64_t id = 0;
    if (!readNumber(controllerWord, INT32_MAX, id))
        return usageError(std::string(controllerWord) + " is not a controller ID");
    if (!openWorld())
        return kRefusedStatus;
    std::string reason;
    World before;
    const auto index = static_cast<std::size_t>(id);
    const int result = changeWorld([&](World& world, std::int64_t now) {
        before = world;
        if (index >= world.controllers.size())
            reason = "there is no controller " + std::to_string(id);
        else if (reason = inject(world.controllers[index], now); !reason.empty())
            reason += " on controller " + std::to_string(id);
        return reason.empty() ? 0 : 1;
    });
    if (!reason.empty())
        return refused(reason);
    const World* after = result == 0 ? currentWorld() : nullptr;
    if (after == nullptr)
        return kRefusedStatus;
    std::printf("%s%s\n", headline.c_str(), describeChange(before, *after, index, skipFirst).c_str());
    return 0;
}

int changeWholeWorld(const std::function<std::string()>& headline, const WorldFault& inject) {
    if (!openWorld())
        return kRefusedStatus;
    std::string reason;
    World before;
    const int result = changeWorld([&](World& world, std::int64_t now) {
        before = world;
        reason = inject(world, now);
        return reason.empty() ? 0 : 1;
    });
    if (!reason.empty())
        return refused(reason);
    const World* after = result == 0 ? currentWorld() : nullptr;
    if (after == nullptr)
        return kRefusedStatus;
    std::printf("%s\n", headline().c_str());
    for (std::size_t id = 0; id < after->controllers.size(); id++)
        for (const Event& event : newEvents(before.controllers[id], after->controllers[id]))
            std::printf("controller %zu: %s\n", id, clause(after->controllers[id], event.text).c_str());
    return 0;
}

} // namespace q5sim
