// The file of --changes: the last known state, in which what a run could not read is kept from earlier ones,
// and the findings that were reported with it. The findings are kept, not derived again: they depend on the
// limits, the baseline and the controller that were chosen.
#pragma once

#include <optional>
#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/former.h"
#include "tools/status/limits.h"

enum class StateResult {
    read,
    missing,
    damaged,  // it was written by this program
    unusable, // it may be another file
};

// Findings of an untrusted file that no run can have written are left out.
struct SavedState {
    StateResult result = StateResult::missing;
    Snapshot snapshot;
    Findings findings;
    FormerControllers former;
    std::string problem; // unless it was read or is missing
};

SavedState readSavedState(const std::string& path);

// Whether an earlier run has read the controller, or reported it as missing.
bool isKnownController(const SavedState& state, std::uint32_t id);

// What a run leaves for the next one.
struct RunResult {
    const Snapshot& snapshot;
    const Findings& known;               // see changes.h
    std::optional<std::uint32_t> chosen; // the controller that was read, if not all were
    const Limits& limits;
};

// Replaces the file atomically. An unusable one stays, and the content of a damaged one is kept in
// PATH.damaged, which must not exist. Returns the problem with either state, empty if there is none.
std::string keepState(const std::string& path, const SavedState& earlier, const RunResult& run);
