// What changed between two snapshots, one line for each change.
#pragma once

#include <string>
#include <vector>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/limits.h"

struct Line {
    Severity severity;
    std::string text; // printable
};
using Lines = std::vector<Line>;

// What changed since the earlier snapshot; if it is null, all present problems are new. What cannot be
// read now has not changed. With a baseline, which may be null, also which differences from it are new or
// resolved.
Lines changeLines(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                  const Snapshot* baseline = nullptr);

// What changed from one run to the next.
struct Changes {
    Lines lines;
    Findings findings; // that are known now, to be passed to the next run
};

// saved: the findings that the earlier run has left (see state_file.h), possibly with other limits or
// another baseline; null: those that the earlier snapshot shows. It was completed with what could not be
// read.
Changes findChanges(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                    const Snapshot* baseline, const Findings* saved);

// Gives the earlier state and its findings the present numbers of the controllers. Returns which have
// changed; missing: whose number another one has now.
Lines followNumbers(const Snapshot& now, Snapshot* earlier, Findings* saved,
                    std::vector<Controller>* missing);

// How many controllers there were. A run that found none, or could not count them, has kept those before.
std::uint32_t countEarlier(const Snapshot& earlier);

// Adds the lines that are not there yet.
void addLines(const Lines& added, Lines* lines);

// A line for each finding.
Lines findingLines(const Findings& findings);

// Used by changes.cpp: state, members and activities of the logical drives.
void addArrayChanges(const Snapshot& earlier, const Snapshot& now, Lines* lines);

// Used by changes.cpp: whether the state of a logical drive is worse than it was.
bool hasWorsened(const Snapshot& earlier, const Snapshot& now, std::uint32_t controller,
                 std::uint32_t logDrvId);
