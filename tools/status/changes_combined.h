// Findings that combine what several operations report: a count with its list, spares with logical drives;
// and sensors with a baseline, since those that are no longer listed are completed. They are judged only by
// what one run has read. The state that is kept for the next run mixes the facts of several runs, so that its
// file keeps these findings themselves.
#pragma once

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/limits.h"

bool isCombined(const Finding& finding);

// Whether all that the finding combines was read of a controller; also true of any other finding.
bool isCombinedRead(const Controller& controller, const Finding& finding);

// Those of a snapshot as it was read.
Findings combinedFindings(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline);

// Adds to the present findings the earlier ones that the present run cannot disprove, because it did not read
// all that they combine. They replace present findings about the same problems. now: the present run as it
// was read.
void carryCombined(const Findings& earlier, const Snapshot& now, Findings* findings);
