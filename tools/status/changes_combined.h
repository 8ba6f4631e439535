// Findings that combine what several operations report: a count with its list, spares with logical drives.
// They are judged only by what one run has read. The state that is kept for the next run mixes the facts of
// several runs, so that its file keeps these findings themselves.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/limits.h"

bool isCombined(const Finding& finding);

// Those of a snapshot as it was read.
Findings combinedFindings(const Snapshot& snapshot, const Limits& limits);

// Those in the text of an earlier run's file, which is untrusted: what is none is left out.
Findings savedCombined(const std::string& text);

// The earlier ones that the present run does not show, but does not disprove either: it did not read all that
// they combine. now and findings are those of the present run as it was read.
Findings carriedCombined(const Findings& earlier, const Snapshot& now, const Findings& findings);
