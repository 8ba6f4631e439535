// Findings about lists with fewer or more objects than the controller counts. The state that is kept for the
// next run has been completed and no longer shows them, so that its file keeps the findings themselves.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/limits.h"

bool isCount(const Finding& finding);

// Those of a snapshot as it was read.
Findings countFindings(const Snapshot& snapshot, const Limits& limits);

// Those in the text of an earlier run's file, which is untrusted: what is none is left out.
Findings savedCounts(const std::string& text);

// Whether one may still apply although the present findings lack it, because something of its controller
// cannot be read now.
bool mayCountBeHidden(const Findings& now, const Finding& count);

// The earlier ones that still apply as far as is known, although the present run does not show them: it did
// not read their controller, or could not.
Findings carriedCounts(const Findings& earlier, const Snapshot& now, const Findings& findings);
