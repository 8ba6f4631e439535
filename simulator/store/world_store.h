// The world file: opened once per session, looked at again before each operation, and changed under
// a lock, so that several programs can work on one world at the same time.
#pragma once

#include <functional>

#include "simulator/world/world.h"

namespace q5sim {

// Opens the world, creating the file from the built-in one when there is none. Returns false, with
// one line of reason on standard error, when that is impossible. The file is then left as it is.
bool openWorld();
void closeWorld();
bool worldIsOpen();

// The world as it is now, transitions that have ended included. nullptr when no world is open or the
// file can no longer be read. Valid until the next call of this header.
const World* currentWorld();

// Runs change on a copy of the newest world, under the lock. When it returns 0 the copy becomes the
// world, in the file as well; otherwise nothing changes. Returns change's result, or 1 when the file
// cannot be read or written. now is the world's time.
using Change = std::function<int(World& world, std::int64_t now)>;
int changeWorld(const Change& change);

// The world's time: $Q5SIM_NOW or else the real time, and the world's own offset.
std::int64_t worldTime(const World& world);

// Puts the built-in world into the file, whatever the file holds. For the rehearsal's tool.
bool resetWorld();

} // namespace q5sim
