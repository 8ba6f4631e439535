// Controllers that have another number than in an earlier snapshot. The library numbers those that it finds:
// when one is gone, the next start of the host moves those after it up. Their drives identify them.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"

struct NumberChange {
    std::uint32_t former;
    std::uint32_t now;
};

struct Renumbering {
    std::vector<NumberChange> changes; // of controllers that have another number now
    std::vector<Controller> missing;   // whose number another one has now
    Snapshot earlier;                  // in the present numbers, without the missing ones
};

// Returns nothing if every controller has kept its number, or if that is uncertain, because one of the
// snapshots is incomplete.
std::optional<Renumbering> findRenumbering(const Snapshot& earlier, const Snapshot& now);

// The controller that has most of the drives of another; nullptr if none has any.
const Controller* findByDrives(const Snapshot& snapshot, const Controller& wanted);

// The findings of the earlier snapshot, in the present numbers, without those of the missing controllers.
Findings inPresentNumbers(const Renumbering& renumbering, const Findings& findings);

// Those of one controller, in its present number.
Findings inPresentNumber(const NumberChange& change, const Findings& findings);
