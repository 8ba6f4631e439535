// What a snapshot lacks that an earlier one has.
#pragma once

#include "snapshot/snapshot.h"
#include "tools/status/changes.h"

// A line for each loss: fewer controllers; fewer drives or logical drives of a controller; a logical drive
// that is missing, has another level or size, is in a worse state, or has a member whose place is no longer
// known; settings that are zero now.
Lines lossLines(const Snapshot& now, const Snapshot& saved);
