// The background activities of arrays. An array has one at a time. Times are seconds of the world's clock.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

// "rebuild". kind: one ActivityBit.
const char* activityName(std::uint8_t kind);

// Starts the array's activity without an event; totalMb 0 counts as 1.
void startActivity(LogicalDrive& array, std::uint8_t kind, std::uint64_t totalMb, std::int64_t now);

// type: 1 quick, 2 foreground, 4 background. A redundant array is not synchronized until it ends.
void startInitialization(Controller& controller, LogicalDrive& array, std::uint8_t type, std::int64_t now);
void startSynchronization(Controller& controller, LogicalDrive& array, std::int64_t now);

// Completes the array's activity at a time, and starts the one that follows from it.
void finishActivity(Controller& controller, LogicalDrive& array, std::int64_t at);

// Ends the activity without its result. ending is the verb of the event, such as "stopped".
void abortActivity(Controller& controller, LogicalDrive& array, const char* ending, std::int64_t now);

// The parts of finishActivity and abortActivity for a migration.
void finishMigration(LogicalDrive& array);
void abortMigration(Controller& controller, LogicalDrive& array);

} // namespace q5sim
