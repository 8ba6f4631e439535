// The parts of the conversion of one controller.
#pragma once

#include "simulator/world/world.h"
#include "snapshot/snapshot.h"
#include "tools/capture/notes.h"

// A controller that is being converted. Drives and logical drives have the same positions as in the
// lists of the source, in order of ID.
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

// Notes where the model differs from what the adapters reported.
void compareWithModel(Conversion& conversion);

// The record that an object was converted from; nullptr: none.
const Drive* sourceOf(const Controller& controller, const q5sim::Drive& drive);
const LogicalDrive* sourceOf(const Controller& controller, const q5sim::LogicalDrive& drive);

// Notes the faults of an object.
void noteFaults(const Place& place, const Faults& faults);

bool contains(const std::vector<std::uint16_t>& ids, std::uint32_t id);

// Whether the adapter reports the member with this drive ID, from 0 to 31, as lost.
bool isReportedLost(const LogicalDrive& from, std::uint16_t id);

// The fewest megabytes at which a job of this size, in megabytes, shows this percentage. More than 100
// percent counts as 100.
std::uint64_t megabytesAt(std::uint64_t percent, std::uint64_t total);
