// What happened between two states of a copy, and what follows according to the model.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/world/world.h"

using TextLines = std::vector<std::string>;

// A copy as captured, and when all jobs have ended, without and with the commands.
struct Effects {
    q5sim::World before;
    q5sim::World expected;
    q5sim::World end;
    TextLines started; // jobs that the commands started or that follow from them
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
