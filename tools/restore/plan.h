// The steps that restore a saved controller.
#pragma once

#include <string>
#include <vector>

#include "config/ctrl_block.h"
#include "config/logdrv_block.h"
#include "config/phydrv_block.h"
#include "snapshot/snapshot.h"
#include "tools/restore/drive_map.h"

// By the command function that a step calls.
enum class StepKind { controller, buzzer, drive, speed, split, create, array, spare };

struct Step {
    StepKind kind = StepKind::controller;
    std::string text;               // what it does
    std::vector<std::string> words; // of the command, for the kinds without a record
    CtrlConfigRecord controllerRecord = {};
    PhyDrvConfigRecord driveRecord = {};
    LogDrvConfigRecord arrayRecord = {};
};

struct Plan {
    std::vector<Step> steps;
    std::vector<std::string> obstacles; // any of these prevents the whole plan
    std::vector<std::string> notes;     // what will stay different
    std::vector<std::string> rebuilds;  // running ones: "logical drive 0 Archive onto drive 6"
    std::vector<std::string> impaired;  // "logical drive 0 Archive is critical", if it was not when saved
};

// A drive in the map that the backup does not have; nullopt: none. A lost member counts, even if its drive
// was gone.
std::optional<std::uint32_t> unknownDrive(const Controller& saved, const DriveMap& drives);

// Compares the saved controller with the present one. Nothing in the plan deletes or frees anything. After
// each step, a new plan consists of the remaining steps. Only steps that set a logical drive may change: the
// settings of one that is yet to be created are unknown, and may need no change.
Plan makePlan(const Controller& saved, const Controller& now, const DriveMap& drives);
