// Controllers that were reported as missing. The state that is kept for the next run may still contain them,
// to be compared with when they are back, so that its file keeps these findings as well.
#pragma once

#include <optional>
#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"

bool isMissingController(const Finding& finding);

// Those of the saved findings that concern a controller of the baseline, which may be null.
Findings missingOf(const Findings& saved, const Snapshot* baseline);

// The differences of the objects since the earlier snapshot. A controller that was reported as missing is
// not missing once more, and is new when it is back.
Findings compareWithKept(const Snapshot& earlier, const Findings& saved, const Snapshot& now,
                         const Snapshot& known);

// Adds to the findings to keep which controllers are missing, or were not read since the library found any.
void keepMissing(const Snapshot& earlier, const Findings& saved, const Snapshot& now,
                 std::optional<std::uint32_t> chosen, Findings* findings);

// Whether a run has read the controller, or reported it as missing.
bool isKnownController(const Snapshot& earlier, const Findings& saved, std::uint32_t id);
