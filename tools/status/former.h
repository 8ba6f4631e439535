// Controllers that the saved state knows, but under no present number: they disappeared, or their number
// cannot be known while drives cannot be listed. They keep their last known state until their drives are
// listed again, which identify them.
#pragma once

#include <vector>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"

struct FormerController {
    Controller controller; // its last known state, with its former number
    Findings findings;     // that were reported of it, with the same number
    bool missing = true;   // it was reported as missing; otherwise its number is unknown
};
using FormerControllers = std::vector<FormerController>; // the last to disappear first

// Adds an earlier controller with its findings. Returns false if it can never be recognized, because its
// drives have no serial numbers.
bool addFormer(const Controller& controller, const Findings& saved, bool missing, FormerControllers* former);

// Those to keep for the next run: also what the earlier state has, but the present one lacks. As many as may
// disappear at once, so that those that were replaced for good do not accumulate.
FormerControllers formerToKeep(FormerControllers former, const Snapshot& earlier, const Findings& saved,
                               const Snapshot& kept);

bool isFormer(const FormerControllers& former, std::uint32_t id);
