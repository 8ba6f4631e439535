// The parts of the conversion of one controller.
#pragma once

#include "simulator/world/world.h"
#include "snapshot/snapshot.h"
#include "tools/capture/notes.h"

// A controller that is being converted. Drives and logical drives stand at the positions of the place's
// lists, in the order of their IDs.
struct Conversion {
    const Controller& from;
    q5sim::Controller& to;
    Place place;
    std::int64_t now;
};

q5sim::Controller convertController(const Controller& controller, const Place& place, std::int64_t now);

// In this order: drives lack extents until the logical drives are known.
void convertDrives(Conversion& conversion);
void convertLogicalDrives(Conversion& conversion);
void convertExtents(Conversion& conversion);
void convertShares(Conversion& conversion);
void convertActivities(Conversion& conversion);
void inferStates(Conversion& conversion);

// Notes where the model shows something else than the adapters reported.
void compareWithModel(Conversion& conversion);

// The record that a converted object comes from; nullptr: there is none.
const Drive* sourceOf(const Controller& controller, const q5sim::Drive& drive);
const LogicalDrive* sourceOf(const Controller& controller, const q5sim::LogicalDrive& drive);

// What the fault of an object was, for each of them.
void noteFaults(const Place& place, const Faults& faults);

bool contains(const std::vector<std::uint16_t>& ids, std::uint32_t id);

// The smallest amount of megabytes of a job of this size at which it shows this percentage.
std::uint64_t megabytesAt(std::uint64_t percent, std::uint64_t total);
