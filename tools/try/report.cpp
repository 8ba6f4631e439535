// cli-try-report: compares a copy of the adapters before and after commands. For cli-try.
//
//     cli-try-report [--incomplete] BEFORE AFTER REFUSED
//     cli-try-report --refused WORLD
//
// REFUSED has a line for each refused operation.
// --incomplete: the copy lacks something, so that a loss may not be seen.
// --refused: prints the operations that were refused, and removes them from the world, which has room for
// few. Exit status: 0 no data is lost, 1 data is lost, 2 none is lost but an operation was refused, 3 the
// files cannot be read.
#include <cstdio>
#include <cstring>
#include <sstream>

#include "simulator/engine/clock.h"
#include "simulator/file/world_file.h"
#include "simulator/file/world_json.h"
#include "tools/try/effects.h"

enum ExitStatus { kNothingLost = 0, kLost = 1, kRefused = 2, kUnreadable = 3 };

static bool readWorld(const char* path, q5sim::World* world) {
    std::string text;
    q5sim::ValidationError error;
    if (q5sim::readFile(path, q5sim::kMaxWorldSize, text) && q5sim::worldFromJson(text, *world, error))
        return true;
    std::fprintf(stderr, "cli-try-report: cannot read %s\n", path);
    return false;
}

static void printLines(const char* title, const TextLines& lines, const char* none) {
    if (lines.empty() && none == nullptr)
        return;
    std::printf("\n%s:\n", title);
    for (const std::string& line : lines)
        std::printf("  %s\n", line.c_str());
    if (lines.empty())
        std::printf("  %s\n", none);
}

// Removes the refusals, so that those of the next command are reported separately.
static int drainRefusals(const char* path) {
    q5sim::World world;
    if (!readWorld(path, &world))
        return kUnreadable;
    for (const std::string& line : refusedOperations(world))
        std::printf("%s\n", line.c_str());
    if (world.refusals.empty())
        return kNothingLost;
    world.refusals.clear();
    world.olderRefusals = 0;
    return q5sim::replaceFile(path, q5sim::worldToJson(world)) ? kNothingLost : kUnreadable;
}

static bool readLines(const char* path, TextLines* lines) {
    std::string text;
    if (!q5sim::readFile(path, q5sim::kMaxWorldSize, text))
        return false;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines->push_back(line);
    return true;
}

static int report(const q5sim::World& before, const q5sim::World& after, const TextLines& refused,
                  bool incomplete) {
    const Effects effects = followEffects(before, after, q5sim::scaledTime(after, q5sim::currentRealTime()));
    const TextLines lost = lostData(effects);
    printLines("What the adapters would log", loggedEvents(before, after), nullptr);
    printLines("What would be refused", refused, nullptr);
    printLines("What would be started, and its time in the model", effects.started, "nothing");
    printLines("What would be at risk", riskedData(effects), nullptr);
    printLines("Data that would be lost", lost,
               incomplete ? "unknown, since the adapters could not be read completely" : "none");
    if (!lost.empty())
        return kLost;
    return refused.empty() ? kNothingLost : kRefused;
}

int main(int argc, char** argv) {
    if (argc == 3 && std::strcmp(argv[1], "--refused") == 0)
        return drainRefusals(argv[2]);
    const bool incomplete = argc == 5 && std::strcmp(argv[1], "--incomplete") == 0;
    char** const files = argv + (incomplete ? 2 : 1);
    q5sim::World before, after;
    TextLines refused;
    if ((argc != 4 && !incomplete) || !readWorld(files[0], &before) || !readWorld(files[1], &after) ||
        !readLines(files[2], &refused))
        return kUnreadable;
    return report(before, after, refused, incomplete);
}
