// Which controllers of the saved state are the present ones.
#pragma once

#include "snapshot/snapshot.h"
#include "tools/status/changes.h"
#include "tools/status/finding.h"
#include "tools/status/former.h"

// Gives the earlier state, with its findings, the controllers that are there now, in their present numbers,
// so that each is compared with itself. Those that are back come from the former ones; those that are gone or
// cannot be recognized are added there. Returns a line for each change.
Lines followControllers(const Snapshot& now, Snapshot* earlier, Findings* findings,
                        FormerControllers* former);
