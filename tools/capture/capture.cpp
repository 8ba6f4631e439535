// Converts a whole snapshot, and checks that the simulated adapters can read the result.
#include "tools/capture/capture.h"

#include "simulator/engine/reports.h"
#include "simulator/file/world_json.h"
#include "tools/capture/convert.h"
#include "tools/capture/fit.h"

// What no operation reports, by the keys of the world file.
static constexpr const char* kNeverReported[] = {
    "controllers[*].events: none, since fetching events might consume them",
    "controllers[*].pulledDrives, pulledEnclosures: none",
    "controllers[*].rebuildOnError: skip",
    "controllers[*].battery.since: 0, the state lasts",
    "controllers[*].drives[*].badSectors: none",
    "controllers[*].drives[*].extents[*].array: none, where the extent is free or a global spare",
    "controllers[*].logicalDrives[*].memberSectors: the capacity divided among the members",
    "controllers[*].logicalDrives[*].synchronized: true, unless an activity shows otherwise",
    "controllers[*].logicalDrives[*].idle: false",
    "controllers[*].logicalDrives[*].inconsistencies, lostWrites, lostStripes: 0",
    "rules: none",
};

static void convertControllers(const Snapshot& snapshot, std::int64_t now, q5sim::World* world,
                               Notes* notes) {
    const Place whole = {notes, ""};
    for (const char* line : kNeverReported)
        noteAssumption(whole, line);
    noteFaults(whole, snapshot.faults);
    for (const Controller& controller : snapshot.controllers) {
        if (world->controllers.size() >= q5sim::kMaxControllers) {
            noteMissing(below(whole, "controllers"), "a world has no room for the others");
            return;
        }
        const Place place = below(whole, "controllers", world->controllers.size());
        if (controller.id != world->controllers.size())
            noteMissing(place, "this is controller " + std::to_string(controller.id));
        world->controllers.push_back(convertController(controller, place, now));
    }
}

Capture captureWorld(const Snapshot& snapshot, std::int64_t now) {
    Notes notes;
    q5sim::World world;
    convertControllers(snapshot, now, &world, &notes);
    fitWorld(&world, &notes);
    q5sim::recordKnownDrives(world);
    world.assumed = notes.lines;
    Capture capture = {q5sim::worldToJson(world), "", notes.lines, notes.complete};
    q5sim::World read;
    q5sim::ValidationError error;
    if (!q5sim::worldFromJson(capture.text, read, error)) {
        capture.problem = error.reason;
        capture.text.clear();
    }
    return capture;
}
