// What a snapshot lacks that an earlier one has.
#pragma once

#include "snapshot/snapshot.h"
#include "tools/status/changes.h"

// A line for each kind of object of which there are fewer than before, controllers, or drives or logical
// drives of one of them; for each logical drive that is missing, has another level or size, is in a worse
// state, or of which the place of a member is no longer known; and for all settings that are zero now.
Lines lossLines(const Snapshot& now, const Snapshot& saved);
