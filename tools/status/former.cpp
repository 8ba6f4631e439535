// Controllers that the saved state knows, but under no present number.
#include "tools/status/former.h"

#include <algorithm>

#include "snapshot/serials.h"
#include "tools/status/changes_missing.h"
#include "tools/status/renumbered.h"

static bool hasSerials(const Controller& controller) {
    return countSharedDrives(controller, controller) > 0;
}

bool addFormer(const Controller& controller, const Findings& saved, bool missing, FormerControllers* former) {
    if (!hasSerials(controller))
        return false;
    Findings findings = inPresentNumber({controller.id, controller.id}, saved);
    std::erase_if(findings, isMissingController);
    former->insert(former->begin(), {controller, findings, missing});
    return true;
}

FormerControllers formerToKeep(FormerControllers former, const Snapshot& earlier, const Findings& saved,
                               const Snapshot& kept) {
    for (const Controller& each : earlier.controllers)
        if (findController(kept, each.id) == nullptr)
            addFormer(each, saved, true, &former);
    if (former.size() > kMaxSnapshotControllers)
        former.resize(kMaxSnapshotControllers);
    return former;
}

bool isFormer(const FormerControllers& former, std::uint32_t id) {
    return std::any_of(former.begin(), former.end(),
                       [id](const FormerController& each) { return each.controller.id == id; });
}
