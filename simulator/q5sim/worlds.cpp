// The commands for the world as a whole: saving and loading it, its clock, refusals.
#include <algorithm>
#include <cstdio>

#include "simulator/engine/advance.h"
#include "simulator/engine/progress.h"
#include "simulator/q5sim/command.h"
#include "simulator/store/world_copy.h"
#include "simulator/store/world_store.h"

namespace q5sim {

static constexpr std::int64_t kDefaultLimit = 365 * 86400; // seconds

int whyCommand(const Arguments&) {
    const World* world = openWorld() ? currentWorld() : nullptr;
    if (world == nullptr)
        return kRefusedStatus;
    for (const Refusal& refusal : world->refusals)
        std::printf("%s (%s)\n", refusal.reason.c_str(), refusal.operation.c_str());
    if (world->refusals.empty())
        std::puts("nothing has been refused");
    return 0;
}

int saveCommand(const Arguments& arguments) {
    const World* world = openWorld() ? currentWorld() : nullptr;
    if (world == nullptr)
        return kRefusedStatus;
    const std::string problem = writeWorldCopy(arguments.words[0], *world);
    if (!problem.empty())
        return refused(problem);
    std::printf("world saved in %s\n", arguments.words[0]);
    return 0;
}

int loadCommand(const Arguments& arguments) {
    World world;
    const std::string problem = readWorldCopy(arguments.words[0], world);
    if (!problem.empty())
        return refused(problem);
    if (!replaceWorld(world))
        return kRefusedStatus;
    std::printf("world loaded from %s\n", arguments.words[0]);
    return 0;
}

int resetCommand(const Arguments&) {
    if (!resetWorld())
        return kRefusedStatus;
    std::puts("world replaced by the built-in one");
    return 0;
}

static Reason moveClock(World& world, std::int64_t seconds) {
    if (seconds > kMaxAdvance - world.clockOffset)
        return "the clock cannot be advanced any further";
    world.clockOffset += seconds;
    return "";
}

// Advances from one completion to the next until nothing runs. Returns the seconds that passed.
static std::int64_t runUntilIdle(World& world, std::int64_t now, std::int64_t limit) {
    World trial = world;
    std::int64_t at = now;
    for (std::int64_t next = nextActivityTime(trial); next != kNoDeadline; next = nextActivityTime(trial)) {
        if (next > now + limit)
            return limit;
        at = std::max(at, next);
        advanceTo(trial, at);
    }
    return at - now;
}

static std::string passed(std::int64_t seconds) {
    return std::to_string(seconds) + (seconds == 1 ? " second has passed" : " seconds have passed");
}

int advanceCommand(const Arguments& arguments) {
    const Options& options = arguments.options;
    std::int64_t seconds = 0;
    if (options.untilIdle != arguments.words.empty())
        return usageError("advance: either a number of seconds or --until-idle is required");
    if (!options.untilIdle && options.limit != 0)
        return usageError("advance: --limit needs --until-idle");
    if (!options.untilIdle && !readNumber(arguments.words[0], kMaxAdvance, seconds))
        return usageError(std::string("advance: ") + arguments.words[0] + " is not a number of seconds");
    return changeWholeWorld([&] { return passed(seconds); },
                            [&](World& world, std::int64_t now) {
                                if (options.untilIdle)
                                    seconds = runUntilIdle(
                                        world, now, options.limit != 0 ? options.limit : kDefaultLimit);
                                return moveClock(world, seconds);
                            });
}

int speedCommand(const Arguments& arguments) {
    std::int64_t speed = 0;
    if (!readNumber(arguments.words[0], kMaxSpeed, speed) || speed == 0)
        return usageError(std::string(arguments.words[0]) + " is not a speed from 1 to 1000000");
    return changeWholeWorld(
        [&] {
            return speed == 1 ? std::string("the clock runs at its normal speed")
                              : "the clock runs " + std::to_string(speed) + " times as fast";
        },
        [&](World& world, std::int64_t) {
            setClockSpeed(world, speed);
            return Reason();
        });
}

} // namespace q5sim
