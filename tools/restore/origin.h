// Which controller of a backup a present one was.
#pragma once

#include <string>

#include "snapshot/snapshot.h"

// Why the present controller is probably not the saved one with its ID: IDs follow the order in which
// adapters are found, which an added or removed one changes. The serials of the drives show it. Empty: there
// is no doubt, or nothing to go by.
std::string doubtAboutOrigin(const Snapshot& saved, const Snapshot& now, std::uint32_t id);
