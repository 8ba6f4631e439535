// The serial numbers of drives, which identify them and, together, their controller.
#pragma once

#include <cstddef>
#include <string_view>

#include "snapshot/snapshot.h"

// Without the blanks that pad it; empty if the drive reports none. Valid as long as the drive is.
std::string_view serialOf(const Drive& drive);

// How many drives of one controller are also drives of the other.
std::size_t countSharedDrives(const Controller& one, const Controller& other);
