// Fault injection: changes to the hardware that no operation of the adapters can make. The consequences
// follow with advanceTo(). IDs of drives and enclosures count from 0; now is the time of the world's clock.
#pragma once

#include <string>

#include "simulator/world/world.h"

namespace q5sim {

// Why a fault cannot be injected, in lower case; empty: it was injected.
using Reason = std::string;

Reason failDrive(Controller& controller, std::uint32_t driveId);

// Replaces a failed drive by a new, empty one of the same model.
Reason replaceDrive(Controller& controller, std::uint32_t driveId, std::int64_t now);

// Removes a drive, which can be inserted again.
Reason pullDrive(Controller& controller, std::uint32_t driveId, std::int64_t now);

// What is inserted into an empty slot: the drive that was pulled last, an empty one, or one with the
// configuration of another controller.
enum class NewDrive { same, blank, foreign };
Reason insertDrive(Controller& controller, std::uint32_t driveId, NewDrive kind, std::int64_t now);

// Adds bad sectors from a percentage of the drive on, 0 to 100, or spread over it if that is negative. added:
// how many are new.
Reason addMediaErrors(Controller& controller, std::uint32_t driveId, std::uint64_t count, int percent,
                      std::int64_t now, std::uint64_t& added);

// Whether SMART predicts a failure of the drive.
Reason setSmartFailure(Controller& controller, std::uint32_t driveId, bool failure);

// Sets the state of the battery, a BatteryState or kBatteryMissing; a controller without a battery gets one.
Reason setBattery(Controller& controller, std::uint8_t state, std::int64_t now);

// Sets the first sensor of a type, an EnclosureSensorType, in the units of the adapters: rpm, degrees Celsius
// or millivolts.
Reason setSensor(Controller& controller, std::uint32_t enclosureId, std::uint8_t type, std::int32_t reading);

// An enclosure with all its drives.
Reason pullEnclosure(Controller& controller, std::uint32_t enclosureId, std::int64_t now);
Reason insertEnclosure(Controller& controller, std::uint32_t enclosureId, std::int64_t now);

// Replaces the controller by a new one of the same model, with default settings, which finds the
// configuration on the drives.
void swapController(Controller& controller, std::int64_t now);

// Power is lost and restored at once, on all controllers.
void cutPower(World& world, std::int64_t now);

} // namespace q5sim
