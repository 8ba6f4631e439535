// Which controllers of the saved state are the present ones.
#include "tools/status/follow.h"

#include <algorithm>

#include "snapshot/serials.h"
#include "snapshot/text.h"
#include "tools/status/changes_match.h"
#include "tools/status/changes_missing.h"
#include "tools/status/facts.h"
#include "tools/status/renumbered.h"
#include "tools/status/rules.h"

// The saved state, see state_file.h.
struct Saved {
    Snapshot* snapshot;
    Findings* findings;
    FormerControllers* former;
};

static void addLine(Severity severity, const Object& object, const std::string& text, Lines* lines) {
    lines->push_back({severity, printable(objectText(object) + ": " + text)});
}

// The former controller that has most of the drives; end() if none has any.
static FormerControllers::iterator findFormer(FormerControllers* former, const Controller& now) {
    auto best = former->end();
    std::size_t most = 0;
    for (auto each = former->begin(); each != former->end(); ++each) {
        const std::size_t shared = countSharedDrives(each->controller, now);
        if (shared > most || (shared > 0 && shared == most && each->controller.id == now.id)) {
            best = each;
            most = shared;
        }
    }
    return best;
}

// Whether the controller that had this number before is still there.
static bool isTaken(const Snapshot& earlier, const Snapshot& now, std::uint32_t id) {
    const Controller* same = findController(earlier, id);
    return same != nullptr && findByDrives(now, *same) != nullptr;
}

// Each has most of the drives of the other. Drives that were moved to another controller do not make it the
// former one.
static bool isSame(const Snapshot& earlier, const Snapshot& now, const Controller& former,
                   const Controller& present) {
    const Controller* known = findByDrives(earlier, present);
    return findByDrives(now, former) == &present && !isTaken(earlier, now, present.id) &&
           (known == nullptr || countSharedDrives(former, present) >= countSharedDrives(*known, present));
}

// Returns false if it cannot be recognized later. What was found of such a one stays with its number.
static bool makeFormer(const Controller& controller, bool missing, const Saved& saved) {
    if (!addFormer(controller, *saved.findings, missing, saved.former))
        return false;
    std::erase_if(*saved.findings, [&](const Finding& each) {
        return each.object.kind != ObjectKind::host && each.object.controller == controller.id;
    });
    return true;
}

// Another controller has this number now. Whether it is missing is not known before all are recognized.
static void removeEarlier(std::uint32_t id, const Saved& saved) {
    const Controller* controller = findController(*saved.snapshot, id);
    if (controller == nullptr)
        return;
    makeFormer(*controller, false, saved);
    std::erase_if(saved.snapshot->controllers, [id](const Controller& each) { return each.id == id; });
}

static void addController(Controller controller, std::uint32_t id, std::vector<Controller>* controllers) {
    controller.id = id;
    controllers->insert(std::find_if(controllers->begin(), controllers->end(),
                                     [id](const Controller& each) { return each.id > id; }),
                        controller);
}

// If the library found no controller, those of the earlier state do not count.
static void restore(const FormerController& former, std::uint32_t id, const Saved& saved) {
    const bool isCounted = findController(*saved.snapshot, id) != nullptr;
    removeEarlier(id, saved);
    addController(former.controller, id, &saved.snapshot->controllers);
    if (!isCounted && saved.snapshot->controllerCount > 0)
        ++saved.snapshot->controllerCount;
    for (const Finding& each : inPresentNumber({former.controller.id, id}, former.findings))
        if (!persists(*saved.findings, each))
            saved.findings->push_back(each);
}

static void addRestored(const FormerController& former, std::uint32_t id, Lines* lines) {
    const Object object = {ObjectKind::controller, id, id, ""};
    if (former.controller.id != id)
        addLine(Severity::info, object,
                "has another number; it was controller " + std::to_string(former.controller.id), lines);
    if (former.missing)
        addLine(Severity::info, object, "is back", lines);
}

static Lines restoreFormer(const Snapshot& now, const Saved& saved) {
    Lines lines;
    for (const Controller& present : now.controllers) {
        const auto found = findFormer(saved.former, present);
        if (found == saved.former->end() || !isSame(*saved.snapshot, now, found->controller, present))
            continue;
        const FormerController former = *found;
        saved.former->erase(found);
        restore(former, present.id, saved);
        addRestored(former, present.id, &lines);
    }
    return lines;
}

static bool isReadWhole(const Snapshot& now) {
    return now.faults.empty() && now.controllerCount > 0 && now.controllers.size() == now.controllerCount;
}

// A controller whose drives are not all listed may be any that was there before, unless some are its own.
static bool areIdentified(const Snapshot& earlier, const Snapshot& now) {
    return isReadWhole(now) &&
           std::all_of(now.controllers.begin(), now.controllers.end(), [&](const auto& each) {
               const Controller* same = findController(earlier, each.id);
               return hasAllDrives(each) || (same != nullptr && countSharedDrives(*same, each) > 0);
           });
}

static Lines reportMissing(const Snapshot& now, const Saved& saved) {
    Lines lines;
    if (areIdentified(*saved.snapshot, now))
        for (FormerController& each : *saved.former)
            if (!each.missing) {
                addLine(Severity::critical, {}, formerMissingText(each.controller), &lines);
                each.missing = true;
            }
    return lines;
}

// Whether the number of a controller that is not missing is unknown since an earlier run.
static bool hasUnknown(const FormerControllers& former) {
    return std::any_of(former.begin(), former.end(), [](const auto& each) { return !each.missing; });
}

static bool areListed(const std::vector<Controller>& controllers) {
    return std::all_of(controllers.begin(), controllers.end(), hasAllDrives);
}

// The number of controllers has changed, and not all can be recognized by their drives, or could before.
static bool isUncertain(const Saved& saved, const Snapshot& now) {
    const Snapshot& earlier = *saved.snapshot;
    return !earlier.controllers.empty() && isReadWhole(now) && countEarlier(earlier) != now.controllerCount &&
           (!areListed(now.controllers) || (hasUnknown(*saved.former) && !areListed(earlier.controllers)));
}

static bool isReportedMissing(const Findings& findings, std::uint32_t id) {
    return std::any_of(findings.begin(), findings.end(), [id](const Finding& each) {
        return isMissingController(each) && each.object.controller == id;
    });
}

// What could not be read stays with the number.
static void forgetProblems(std::uint32_t id, Findings* findings) {
    std::erase_if(*findings, [id](const Finding& each) {
        return each.object.kind != ObjectKind::host && each.object.controller == id &&
               each.rule->severity != Severity::unknown;
    });
}

// No controller can be compared with that of its number. One whose drives could not be listed may be one of
// those whose number is unknown; its problems are reported again when it is recognized. Returns whether all
// can be recognized later.
static bool forgetNumbers(const Saved& saved) {
    const bool anyUnknown = hasUnknown(*saved.former);
    const std::vector<Controller> controllers = saved.snapshot->controllers;
    bool all = true;
    for (auto each = controllers.rbegin(); each != controllers.rend(); ++each) {
        const bool mayBeUnknown = anyUnknown && !hasAllDrives(*each);
        if (mayBeUnknown)
            forgetProblems(each->id, saved.findings);
        all &= makeFormer(*each, isReportedMissing(*saved.findings, each->id), saved) || mayBeUnknown;
    }
    saved.snapshot->controllers.clear();
    std::erase_if(*saved.findings, isMissingController);
    return all;
}

// A controller that has got the number of a missing one is not that one.
static void followMissing(const Saved& saved) {
    std::erase_if(*saved.findings, [&](const Finding& each) {
        return isMissingController(each) &&
               findController(*saved.snapshot, each.object.controller) != nullptr;
    });
}

// If the library found no controller, all were reported as missing, and all that are there are back.
static Lines follow(const Snapshot& now, const Saved& saved) {
    const Findings findings = *saved.findings;
    const bool anyCounted = saved.snapshot->controllerCount > 0;
    std::vector<Controller> missing;
    Lines lines = followNumbers(now, saved.snapshot, saved.findings, &missing);
    for (auto each = missing.rbegin(); each != missing.rend(); ++each)
        addFormer(*each, findings, true, saved.former);
    if (anyCounted && !lines.empty())
        followMissing(saved);
    return lines;
}

// How many controllers there are, if not all were recognized, or if a former one was back before that.
static Lines countText(std::uint32_t before, bool allKnown, bool wereUnknown, const Snapshot& now) {
    Lines lines;
    const bool isFewer = now.controllerCount < before;
    if (!allKnown || (wereUnknown && !isFewer))
        addLine(isFewer ? Severity::critical : Severity::info, {},
                "has " + counted(now.controllerCount, "controller") + "; it had " + std::to_string(before) +
                    (allKnown ? "" : "; which of them is unknown until all drives can be listed"),
                &lines);
    return lines;
}

// A controller that was not recognized is new only if it cannot be one of those that were there before.
static Lines followUncertain(const Snapshot& now, const Saved& saved) {
    const std::uint32_t before = countEarlier(*saved.snapshot);
    const bool wereUnknown = hasUnknown(*saved.former), recognizable = forgetNumbers(saved);
    const Lines restored = restoreFormer(now, saved);
    Lines lines = reportMissing(now, saved);
    const bool allKnown = recognizable && (saved.former->empty() || areIdentified(*saved.snapshot, now));
    const std::size_t recognized = saved.snapshot->controllers.size();
    saved.snapshot->faults.clear();
    saved.snapshot->controllerCount = allKnown ? static_cast<std::uint32_t>(recognized) : now.controllerCount;
    addLines(countText(before, allKnown, wereUnknown, now), &lines);
    addLines(restored, &lines);
    return lines;
}

Lines followControllers(const Snapshot& now, Snapshot* earlier, Findings* findings,
                        FormerControllers* former) {
    const Saved saved = {earlier, findings, former};
    if (isUncertain(saved, now))
        return followUncertain(now, saved);
    Lines lines = follow(now, saved);
    const Lines restored = restoreFormer(now, saved);
    addLines(reportMissing(now, saved), &lines);
    addLines(restored, &lines);
    return lines;
}
