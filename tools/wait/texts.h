// How objects, activities and their progress are named.
#pragma once

#include "tools/wait/watch.h"

// "logical drive 0 Archive of controller 0", "drive 3 of controller 0"
std::string targetText(const Target& target);

// "rebuild of logical drive 0 Archive of controller 0"
std::string activityText(const Track& track);

// "controller 0: rebuild of logical drive 0 Archive", for lines whose end may be cut; controller and name may
// be left out.
std::string barLabel(const Track& track, bool withController, bool withName);

// "rebuild", "media patrol"; "activity" for several kinds
std::string kindsText(unsigned kinds);

std::string percentText(const Track& track);     // "45%"; "?%"
std::string durationText(std::int64_t duration); // "1:02:03" of milliseconds
std::string rateText(double rate);               // "1.2%/min", "3.4%/h" of percent per millisecond

// "14:32", or "Nov 24 14:32" when it is further away than half a day; in local time.
std::string endText(std::time_t now, std::int64_t left);
