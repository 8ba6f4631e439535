// Reading a snapshot from the adapters.
#pragma once

#include "snapshot/reading.h"

enum class OpenResult { opened, failed, noController };

// Opens the library and counts the controllers. Once opened, closeAdapters() must follow.
OpenResult openAdapters(Snapshot* snapshot);
void closeAdapters();

// Reads one controller, or all that openAdapters() counted, in one pass.
Controller readController(std::uint32_t id);
void readControllers(Snapshot* snapshot);

// The parts of readController().
void readEnclosures(Controller* controller);
void readDrives(Controller* controller);
void readLogicalDrives(Controller* controller);
