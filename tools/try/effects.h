// What happened between two states of a copy, and what follows according to the model.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/world/world.h"

using TextLines = std::vector<std::string>;

struct Effects {
    q5sim::World before;   // the copy as captured
    q5sim::World expected; // when all its jobs have ended, without the commands
    q5sim::World end;      // the same with the commands
    TextLines started;     // jobs that the commands started or that follow from them
};

// after: the copy after the commands, at the time now.
Effects followEffects(const q5sim::World& before, const q5sim::World& after, std::int64_t now);

// Data that was captured and is gone, or can no longer be reached.
TextLines lostData(const Effects& effects);

// Redundancy that the data will no longer have.
TextLines riskedData(const Effects& effects);

// What the adapters of the copy have logged since it was captured.
TextLines loggedEvents(const q5sim::World& before, const q5sim::World& after);

// Changing operations that the model refused.
TextLines refusedOperations(const q5sim::World& world);

// "controller 0: logical drive 0 Archive"
std::string nameOf(std::size_t controller, const q5sim::LogicalDrive& drive);

// "400,000 MB"
std::string sizeText(std::uint64_t sectors);

// "3 minutes 16 seconds"
std::string durationText(std::int64_t seconds);
