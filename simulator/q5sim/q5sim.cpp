// Works on the simulated hardware from outside: breaks and exchanges drives, lets time pass, starts
// over. Drive numbers are those that the command line shows, from 1.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "simulator/engine/fault_injection.h"
#include "simulator/store/world_store.h"

using namespace q5sim;

static constexpr unsigned long long kMaxAdvance = 1ull << 40;

static int fail(const char* message) {
    std::fprintf(stderr, "%s\n", message);
    return 1;
}

static int usage() {
    return fail("Usage: q5sim fail-drive <ctrl ID> <drive ID>\n"
                "       q5sim replace-drive <ctrl ID> <drive ID>\n"
                "       q5sim advance <seconds>\n"
                "       q5sim reset");
}

// Reads plain decimal digits up to a limit.
static bool readNumber(const char* text, unsigned long long limit, unsigned long long& number) {
    char* end = nullptr;
    if (text[0] < '0' || text[0] > '9')
        return false;
    number = std::strtoull(text, &end, 10);
    return *end == '\0' && number <= limit;
}

// What changeWorld never returns: the reason for it has not been printed yet.
static constexpr int kNoSuchDrive = 2;

static int changeDrive(char** words, bool replace) {
    unsigned long long controller = 0, drive = 0;
    if (!readNumber(words[2], kMaxControllers, controller) || !readNumber(words[3], kMaxDriveId + 1, drive) ||
        drive == 0)
        return fail("A controller ID and a drive ID are expected");
    if (!openWorld())
        return 1;
    const int result = changeWorld([&](World& world, std::int64_t now) {
        if (controller >= world.controllers.size())
            return kNoSuchDrive;
        Controller& place = world.controllers[controller];
        const auto id = static_cast<std::uint32_t>(drive - 1);
        return (replace ? replaceDrive(place, id, now) : failDrive(place, id)) ? 0 : kNoSuchDrive;
    });
    if (result != kNoSuchDrive)
        return result;
    return fail(replace ? "There is no failed drive with this ID" : "There is no working drive with this ID");
}

static int advance(const char* text) {
    unsigned long long seconds = 0;
    if (!readNumber(text, kMaxAdvance, seconds))
        return fail("A number of seconds is expected");
    if (!openWorld())
        return 1;
    return changeWorld([&](World& world, std::int64_t) {
        world.clockOffset += static_cast<std::int64_t>(seconds);
        return world.clockOffset <= static_cast<std::int64_t>(kMaxAdvance) ? 0 : 1;
    });
}

int main(int count, char** words) {
    if (count == 2 && std::strcmp(words[1], "reset") == 0)
        return resetWorld() ? 0 : 1;
    if (count == 3 && std::strcmp(words[1], "advance") == 0)
        return advance(words[2]);
    if (count == 4 && std::strcmp(words[1], "fail-drive") == 0)
        return changeDrive(words, false);
    if (count == 4 && std::strcmp(words[1], "replace-drive") == 0)
        return changeDrive(words, true);
    return usage();
}
