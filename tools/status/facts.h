// Derives from the adapters' codes what the rules and the formats need.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "snapshot/state.h"
#include "snapshot/words.h"

// Whether a RAID level survives the loss of a member. level: RaidLevel.
bool isRedundant(std::uint8_t level);

// Whether an operation on the controller was refused, so that a list may lack objects.
bool isRefused(const Controller& controller, std::string_view operation);

// Whether a list is known to be complete. One that was refused halfway is if it has as many objects as the
// controller counts; without the count, none is.
bool hasAllDrives(const Controller& controller);
bool hasAllLogicalDrives(const Controller& controller);

// Enclosures are not counted: their list is complete if no call for one failed.
bool hasAllEnclosures(const Controller& controller);

// Whether a drive that is not listed may be there. A listing that was refused halfway has all drives up to
// its last one; one that is short may lack any.
bool mayBeUnlisted(const Controller& controller, std::uint32_t number);

bool hasBattery(const Controller& controller);                 // as far as it could be read
std::uint8_t batteryState(const Controller& controller);       // BatteryState; 0 if it could not be read
std::int32_t batteryTenthsCelsius(const BatteryInfo& battery); // tenths of a degree Celsius

// A drive's text without the blanks that pad it; "unknown" if nothing is left.
std::string knownText(std::string_view field);

// "channel 1, enclosure 0, serial TQ5A0041733"
std::string placeText(std::uint16_t channel, std::uint16_t enclosureId, std::string_view serial);
std::string placeText(const Drive& drive);

// "RAID5 of 400000 MB"
std::string shapeOf(const LogicalDrive& drive);

// "2.3.1.7"
std::string versionText(const VersionNumber& version);

// Whether an extent is an accessible spare that can replace a member of the logical drive: a global one or
// one dedicated to it, with enough sectors, on a drive that is neither one of its members nor being rebuilt
// as one. The other function counts the drives with such extents.
bool isSuitableSpare(const LogicalDrive& array, const Drive& drive, const ExtentEntry& extent,
                     std::uint64_t neededSectors);
std::size_t countSuitableSpares(const Controller& controller, const LogicalDrive& array);

inline bool isSpare(const ExtentEntry& extent) {
    return (extent.assignment & (kExtentGlobalSpare | kExtentDedicatedSpare)) != 0;
}
inline bool isAccessible(const ExtentEntry& extent) {
    return (extent.access & kExtentAccessible) != 0;
}
