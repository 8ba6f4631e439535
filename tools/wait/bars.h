// The progress display of a terminal: one line for each activity, as wide as there is room.
#pragma once

#include <ctime>

#include "tools/wait/watch.h"

struct BarOptions {
    unsigned columns;    // lines are shorter than this
    unsigned rows;       // there are fewer lines than this
    bool withController; // name the controllers
};

// The lines, without line ends.
std::vector<std::string> progressBars(const Watch& watch, std::int64_t now, std::time_t clock,
                                      const BarOptions& options);

// Columns that a text takes at most: characters beyond the European scripts count as wide.
std::size_t columnsOf(std::string_view text);
