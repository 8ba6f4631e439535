// Reading a snapshot from the adapters.
#pragma once

#include "snapshot/reading.h"

enum class OpenResult { opened, failed, noController };

// Opens the library and counts the controllers. If it is opened, closeAdapters() must follow.
OpenResult openAdapters(Snapshot* snapshot);
void closeAdapters();

// Reads one controller, or the first kMaxSnapshotControllers of those that openAdapters() counted, in one
// pass. What could not be read is empty in the result, and a fault says why.
Controller readController(std::uint32_t id);
void readControllers(Snapshot* snapshot);

// The parts of readController().
void readEnclosures(Controller* controller);
void readDrives(Controller* controller);
void readLogicalDrives(Controller* controller);
