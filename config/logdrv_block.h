// The logical drive block of the configuration file: its keys, reading, writing and display.
#pragma once

#include <cstdint>
#include <cstdio>

#include "adapter/logdrv.h"

inline constexpr char kLogDrvMarker[] = "[LogDrvSetIndex]";

inline constexpr int kConfigMembers = 128;

struct LogDrvConfigRecord {
    int setIndex;
    int logDrvId;
    int controller;
    char name[132]; // at most 127 characters, including the blank after the key
    std::uint64_t sectorCount;
    int sectorSize;
    double sizeMB; // of 1,000,000 bytes
    int stripeSize;
    int raidLevel;
    int writeMode;
    int memberCount;               // as in the file; see configMembers()
    int memberIds[kConfigMembers]; // from 1, as in the file
    int extents[kConfigMembers];
    int initMode;
    int lookahead;
    int consolidation;
    int parityCount;
    int symmetric;
    int shift;
    int subArrayCount;
};

// The number of members in the record, limited to kConfigMembers.
int configMembers(const LogDrvConfigRecord& record);

// Formats the block's lines, without its section line, into text (kBlockTextSize bytes). extents has
// an entry for each member the record names. Returns 0.
int LDSettingsToBuffer(int controller, const LogDrvInfo* drive, const LogDrvSettings* settings,
                       const std::uint8_t* extents, char* text);

// Reads the block that follows its marker into the record. Returns 0.
int GetLogDrvConfig(std::FILE* file, LogDrvConfigRecord* record);

void DisplayLogDrvConfig(LogDrvConfigRecord record);
