// The session's world: opened once, read again when the file has changed, and changed under a lock, so
// that several programs can share it.
#pragma once

#include <functional>

#include "simulator/world/world.h"

namespace q5sim {

// Opens the world; creates the file from the built-in world when it is missing. On failure returns
// false, prints one line on standard error and leaves the file unchanged.
bool openWorld();
void closeWorld();
bool isWorldOpen();

// Whether this path, without links, is that of the open world.
bool isWorldFile(const std::string& path);

// The world at the current time. nullptr when no world is open or the file can no longer be read.
// Valid until the next call of a function in this header.
const World* currentWorld();

// The world as the file has it, without the time that has passed since. nullptr: it cannot be read.
const World* storedWorld();

// Runs change on a copy of the newest world, under the lock. The copy is stored when change returns 0,
// and dropped otherwise. Returns the result of change, or 1 when the file cannot be read or written.
// now is the world's time.
using Change = std::function<int(World& world, std::int64_t now)>;
int changeWorld(const Change& change);

// Called at the beginning of an operation: however often it uses the file, it reports the same failure once.
void beginReports();

// The world's time: $Q5SIM_NOW, else the real time, plus the world's offset.
std::int64_t worldTime(const World& world);

// Lets the world's clock run speed times as fast as the real one from now on.
void setClockSpeed(World& world, std::int64_t speed);

// Replace the file by another world or the built-in one, even if its content is invalid. Return false, after
// a line on standard error, on failure. For q5sim.
bool replaceWorld(const World& world);
bool resetWorld();

} // namespace q5sim
