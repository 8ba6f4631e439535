// Which controller of a backup a present one was.
#pragma once

#include <string>

#include "snapshot/snapshot.h"

// Why the present controller is probably not the saved one with the same ID. IDs follow the order in which
// the adapters are found, which changes when one is added or removed; the serials of the drives show it.
// Empty: there is no doubt, or no drive in common.
std::string doubtAboutOrigin(const Snapshot& saved, const Snapshot& now, std::uint32_t id);
