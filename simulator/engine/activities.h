// The background activities of arrays: one at a time for each.
#pragma once

#include "simulator/world/world.h"

namespace q5sim {

const char* activityName(std::uint8_t kind);

// Sets the array's one activity going; totalMb 0 counts as 1.
void startActivity(LogicalDrive& array, std::uint8_t kind, std::uint64_t totalMb, std::int64_t now);

// Initialises with type 1 (quick), 2 or 4. Until its end a redundant array counts as not synchronised.
void startInitialization(Controller& controller, LogicalDrive& array, std::uint8_t type, std::int64_t now);
void startSynchronization(Controller& controller, LogicalDrive& array, std::int64_t now);

// What the end of the array's activity brings, at the time it ended.
void finishActivity(Controller& controller, LogicalDrive& array, std::int64_t at);

// Ends the activity without its result; the event calls it ending.
void abortActivity(Controller& controller, LogicalDrive& array, const char* ending, std::int64_t now);

// Migration's own part of the two.
void finishMigration(LogicalDrive& array);
void abortMigration(Controller& controller, LogicalDrive& array);

} // namespace q5sim
