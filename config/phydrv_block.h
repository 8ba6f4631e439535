// The physical drive block of the configuration file: its keys, reading, writing and display.
#pragma once

#include <cstdint>
#include <cstdio>

#include "adapter/phydrv.h"

inline constexpr char kPhyDrvMarker[] = "[PhyDrvSetIndex]";

struct PhyDrvConfigRecord {
    int setIndex;
    int controller;
    int driveId; // from 1, as in the file
    std::uint32_t writeCache;
    std::uint8_t tcq;
    std::uint8_t ncq;
};

// Formats the block's lines, without its section line, into text (kBlockTextSize bytes). Returns 0.
int PDSettingsToBuffer(int controller, const PhyDrvSettings* settings, char* text);

// Reads the block that follows its marker into the record. Returns 0.
int GetPhyDrvConfig(std::FILE* file, PhyDrvConfigRecord* record);

void DisplayPhyDrvConfig(PhyDrvConfigRecord record);
