// Words for the adapters' codes. A function takes any value that the adapter may send; after the semicolon,
// what it returns for an unknown one.
#pragma once

#include <string>
#include <vector>

#include "snapshot/snapshot.h"

struct Field;
struct RecordType;

const char* raidLevelText(std::uint8_t level);    // "RAID5"; "unknown RAID level"
const char* activityText(ActivityBit kind);       // "rebuild"; "unknown activity"
const char* batteryStateText(std::uint8_t state); // of BatteryState; "in an unknown state"
const char* enclosureTypeText(std::uint8_t type); // "Traybox 400"; "unknown type"
const char* sensorTypeText(std::uint8_t type);    // "fan"; nullptr: no sensor
const char* patrolStateText(std::uint16_t state); // "running"; "idle"

// What an extent is used for, as cli's listing of extents says it.
const char* extentUseText(const ExtentEntry& extent);

// The words of a record's field that holds a code or bits.
struct FieldWords {
    const char* record;
    const char* field;
    bool isBits; // any number of words, one for each bit
    std::vector<std::string> (*words)(std::int64_t value);
};

// nullptr: the field is a plain number.
const FieldWords* wordsOf(const RecordType& type, const Field& field);

// The number of fields that have words.
std::size_t fieldWordsCount();
