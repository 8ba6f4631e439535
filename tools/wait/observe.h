// One reading of the adapters: the selected activities, and the objects they belong to.
#pragma once

#include <string>
#include <vector>

#include "snapshot/state.h"
#include "tools/wait/options.h"

// What only a migration changes of a logical drive.
struct ArrayShape {
    std::uint8_t level = kUnknownRaid;
    std::uint64_t sectors = 0;
    bool operator==(const ArrayShape&) const = default;
};

// A logical drive, or a drive for media patrol.
struct Target {
    std::uint32_t controller = 0;
    bool isDrive = false;
    std::uint32_t number = 0; // as cli shows it: drives from 1
    std::string name;         // of a logical drive, printable
    std::uint16_t array = 0;  // the array of a logical drive; another one that takes its number has another
    ArrayShape shape = {};    // of a logical drive
};

// Name and shape are not compared: a logical drive can be renamed or migrated while its activities continue.
inline bool operator==(const Target& left, const Target& right) {
    return left.controller == right.controller && left.isDrive == right.isDrive &&
           left.number == right.number && left.array == right.array;
}

struct SeenActivity {
    unsigned kind = 0; // one bit
    Target target;
    std::optional<unsigned> percent; // empty: could not be read
    bool paused = false;
};

struct SeenArray {
    Target target;
    ArrayState state = ArrayState::offline;
    bool isMigrating = false;
};

struct SeenDrive {
    Target target;
    std::uint16_t patrol = 0; // MediaPatrolState
};

// Everything selected, whether active or not.
struct View {
    std::vector<SeenActivity> activities;
    std::vector<SeenArray> arrays;
    std::vector<SeenDrive> drives;
    std::string problem; // why it could not be read completely; empty: it was
};

// The adapters must be open. Reads the logical drives, and the drives if media patrol is selected.
View observe(const Options& options, std::uint32_t controllerCount);

// Adds the selected objects and activities of one controller.
void addController(const Options& options, const Controller& controller, View* view);
