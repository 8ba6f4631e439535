// Maps saved drives to present ones. Drives are numbered from 1, as cli shows them.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

// From a drive of the backup to a present one. nullopt: the drive is left out. A drive that is not listed
// keeps its number and must have the saved serial.
using DriveMap = std::map<std::uint32_t, std::optional<std::uint32_t>>;

// Reads "2=5,3=6,7=-". Returns an error message, empty on success.
std::string readDriveMap(const std::string& text, DriveMap* drives);

// The map as such a text, in order of the saved drives.
std::string driveMapText(const DriveMap& drives);
