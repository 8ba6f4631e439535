// Controllers that were reported as missing, from one run to the next.
#include "tools/status/changes_missing.h"

#include <algorithm>
#include <string_view>

#include "tools/status/changes_match.h"
#include "tools/status/rules.h"

static bool isRule(const Rule& rule, std::string_view id) {
    return rule.id == id;
}

static Finding controllerFinding(std::string_view id, std::uint32_t controller, const char* text) {
    const std::span<const Rule> all = baselineRules();
    const auto rule =
        std::find_if(all.begin(), all.end(), [&](const Rule& each) { return isRule(each, id); });
    return {&*rule, {ObjectKind::controller, controller, controller, ""}, text, std::nullopt};
}

static Finding missingController(std::uint32_t controller) {
    return controllerFinding("controller-missing", controller, "is missing");
}

// One whose earlier state is known is back.
static Finding newController(const Snapshot& earlier, std::uint32_t controller) {
    const bool isKnown = findController(earlier, controller) != nullptr;
    return controllerFinding("controller-new", controller, isKnown ? "is back" : "is new");
}

static void addOnce(const Finding& finding, Findings* findings) {
    if (!persists(*findings, finding))
        findings->push_back(finding);
}

bool isMissingController(const Finding& finding) {
    return isRule(*finding.rule, "controller-missing");
}

Findings missingOf(const Findings& saved, const Snapshot* baseline) {
    Findings missing;
    for (const Finding& each : saved)
        if (isMissingController(each) && baseline != nullptr &&
            findController(*baseline, each.object.controller) != nullptr)
            addOnce(each, &missing);
    return missing;
}

// What the present state is compared with: without the controllers that were reported as missing and still
// are. If the library found none, but not all were reported, those that were not still count.
static Snapshot withoutMissing(Snapshot earlier, const Findings& saved, const Snapshot& now) {
    const auto wasMissing = [&](const Controller& each) {
        return persists(saved, missingController(each.id));
    };
    std::erase_if(earlier.controllers, [&](const Controller& each) {
        return wasMissing(each) && findController(now, each.id) == nullptr;
    });
    if (earlier.controllerCount == 0)
        for (const Controller& each : earlier.controllers)
            if (!wasMissing(each))
                earlier.controllerCount = each.id + 1;
    return earlier;
}

Findings compareWithKept(const Snapshot& earlier, const Findings& saved, const Snapshot& now,
                         const Snapshot& known) {
    Findings differences = compare(known, withoutMissing(earlier, saved, now));
    for (const Controller& each : now.controllers)
        if (persists(saved, missingController(each.id)))
            addOnce(newController(earlier, each.id), &differences);
    for (Finding& each : differences)
        if (isRule(*each.rule, "controller-new"))
            each = newController(earlier, each.object.controller);
    sortFindings(&differences);
    return differences;
}

// The controllers of the earlier state that this run has reported as missing.
static void addMissing(const Snapshot& earlier, const Snapshot& now, std::optional<std::uint32_t> chosen,
                       Findings* findings) {
    for (const Controller& each : earlier.controllers)
        if ((!chosen || each.id == *chosen) && findController(now, each.id) == nullptr)
            addOnce(missingController(each.id), findings);
}

// The library had found no controller and finds some again, of which only one was read. The others are new
// when they are read.
static void addUnseen(const Snapshot& earlier, const Snapshot& now, Findings* findings) {
    for (std::uint32_t id = 0; id < std::min(now.controllerCount, kMaxSnapshotControllers); ++id)
        if (findController(earlier, id) == nullptr && findController(now, id) == nullptr)
            addOnce(missingController(id), findings);
}

void keepMissing(const Snapshot& earlier, const Findings& saved, const Snapshot& now,
                 std::optional<std::uint32_t> chosen, Findings* findings) {
    for (const Finding& each : saved)
        if (isMissingController(each) && findController(now, each.object.controller) == nullptr)
            addOnce(each, findings);
    if (!now.faults.empty())
        return;
    addMissing(earlier, now, chosen, findings);
    if (earlier.controllerCount == 0 && earlier.faults.empty())
        addUnseen(earlier, now, findings);
}

bool isKnownController(const Snapshot& earlier, const Findings& saved, std::uint32_t id) {
    return findController(earlier, id) != nullptr || persists(saved, missingController(id));
}
