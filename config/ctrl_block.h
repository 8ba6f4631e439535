// The controller block of the configuration file: its keys, reading, writing and display.
#pragma once

#include <cstdint>
#include <cstdio>

#include "adapter/controller.h"

inline constexpr char kCtrlMarker[] = "[CrtlSetIndex]";

struct CtrlConfigRecord {
    int setIndex;
    std::uint8_t autoRebuild;
    int syncRate;
    int initRate;
    int mpRate;
    int migrateRate;
    int rebuildRate;
    std::uint8_t smartCheck;
    int smartPollInterval;
    int encPollInterval;
    std::uint8_t buzzer;
    std::uint8_t rebuildPolicy;
    int globalSpareCount;
};

// Formats the block's lines, without its section line, into text (kBlockTextSize bytes). Returns 0.
int CtrlSettingsToBuffer(const ControllerSettings* settings, std::uint8_t buzzer, int globalSpareCount,
                         char* text);

// Reads the block that follows its marker into the record. Returns 0.
int GetControllerConfig(std::FILE* file, CtrlConfigRecord* record);

void DisplayControllerConfig(CtrlConfigRecord record);
