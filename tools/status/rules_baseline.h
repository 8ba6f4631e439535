// What the rules that compare with an earlier snapshot share.
#pragma once

#include "tools/status/rules.h"

// The same controller in both snapshots.
struct Pair {
    const Controller& earlier;
    const Controller& now;
};

// apply(pair)
template <typename Apply>
void forEachPair(const Evaluation& evaluation, Apply apply) {
    if (evaluation.baseline == nullptr)
        return;
    for (const Controller& earlier : evaluation.baseline->controllers)
        if (const Controller* now = findController(evaluation.snapshot, earlier.id))
            apply(Pair{earlier, *now});
}

// Whether an earlier drive may be in the part of a list that could not be read. rules_baseline_drives.cpp
bool isUncheckedDrive(const Evaluation& evaluation, const Pair& pair, const Drive& drive);
