// Events about the hardware: drives, spares, SMART and sensors. now: the time of the events.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// Logs a new state of the drive: failed, back, or a SMART warning.
void reportDrive(Controller& controller, Drive& drive, std::int64_t now);

// Logs drives that were removed or added in the world file, by the list of known drives.
void reportKnownDrives(Controller& controller, std::int64_t now);

// Updates the list of known drives of every controller.
void recordKnownDrives(World& world);

// Log the spares that are lost with the drive, or the arrays whose members on it are stale.
void reportLostSpares(Controller& controller, const Drive& drive, std::int64_t now);
void reportStaleMembers(Controller& controller, const Drive& drive, std::int64_t now);

// Logs sensors that left their range or are back in it.
void reportSensors(Controller& controller, std::int64_t now);

} // namespace q5sim
