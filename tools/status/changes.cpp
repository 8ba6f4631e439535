// What changed between two snapshots: objects added and removed, findings that are new or resolved.
#include "tools/status/changes.h"

#include <algorithm>

#include "tools/status/changes_combined.h"
#include "tools/status/changes_match.h"
#include "tools/status/changes_missing.h"
#include "tools/status/changes_unread.h"
#include "tools/status/facts.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

// Whether addArrayChanges() reports what the finding is about.
static bool isArrayChange(const Finding& finding) {
    static constexpr std::string_view ids[] = {"array-offline", "array-critical",  "array-degraded",
                                               "member-lost",   "activity-paused", "activity-running"};
    return std::find(std::begin(ids), std::end(ids), finding.rule->id) != std::end(ids);
}

Lines findingLines(const Findings& findings) {
    Lines lines;
    for (const Finding& finding : findings)
        lines.push_back({finding.rule->severity, findingLine(finding)});
    return lines;
}

static Lines problemLines(const Findings& findings) {
    Lines lines = findingLines(findings);
    std::erase_if(lines, [](const Line& line) { return line.severity == Severity::info; });
    return lines;
}

static bool hasText(const Lines& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(), [&](const Line& line) { return line.text == text; });
}

// Two states and what they show.
struct Comparison {
    const Snapshot& earlier;
    const Snapshot& now;
    const Findings before;
    const Findings after;
    const Findings differences; // of the objects
};

// Whether a new, more severe problem of the same object replaces the finding. That the lesser problem is gone
// is then not reported.
static bool isReplacedByWorse(const Comparison& both, const Finding& finding) {
    return std::any_of(both.after.begin(), both.after.end(), [&](const Finding& each) {
        return concernSame(each, finding) && isWorse(each.rule->severity, finding.rule->severity) &&
               !isKnown(both.before, each);
    });
}

// Whether the object disappeared or moved. That is reported separately, and its problem is not resolved.
static bool isGone(const Comparison& both, const Object& object) {
    static constexpr std::string_view ids[] = {"array-missing", "drive-missing", "enclosure-missing",
                                               "battery-missing", "drive-moved"};
    return std::any_of(both.differences.begin(), both.differences.end(), [&](const Finding& each) {
        return isSameObject(each.object, object) &&
               std::find(std::begin(ids), std::end(ids), each.rule->id) != std::end(ids);
    });
}

// Whether a logical drive has lost the drive since.
static bool isNewlyLost(const Comparison& both, const Object& object) {
    return std::any_of(both.after.begin(), both.after.end(), [&](const Finding& each) {
        return std::string_view(each.rule->id) == "member-lost" && isSameObject(each.object, object) &&
               !persists(both.before, each);
    });
}

// Whether the finding is gone only because something worse has happened, so that it is not resolved.
static bool isSuperseded(const Comparison& both, const Finding& finding) {
    const Object& object = finding.object;
    if (object.kind != ObjectKind::host && findController(both.now, object.controller) == nullptr)
        return true;
    return isReplacedByWorse(both, finding) || isGone(both, object) || isNewlyLost(both, object) ||
           (object.kind == ObjectKind::logicalDrive &&
            hasWorsened(both.earlier, both.now, object.controller, object.number));
}

static bool isUncheckedRule(const Finding& finding) {
    return std::string_view(finding.rule->id) == "baseline-unchecked";
}

static bool isOfBaseline(const Finding& finding) {
    const std::span<const Rule> all = baselineRules();
    return std::any_of(all.begin(), all.end(), [&](const Rule& each) { return &each == finding.rule; });
}

// Whether the present run cannot check the object of the baseline.
static bool isUnchecked(const Comparison& both, const Object& object) {
    const std::string part = shortObjectText({object.kind, object.controller, object.number, ""});
    return std::any_of(both.after.begin(), both.after.end(), [&](const Finding& each) {
        return isUncheckedRule(each) && each.object.controller == object.controller &&
               std::find(each.parts.begin(), each.parts.end(), part) != each.parts.end();
    });
}

// Whether a finding may still apply although the present ones lack it. Whatever was listed before has been
// completed with what could not be read; only objects that no earlier run has listed either may hide one.
static bool mayBeHidden(const Comparison& both, const Finding& wanted) {
    const Controller* controller = findController(both.now, wanted.object.controller);
    if (wanted.object.kind == ObjectKind::host || controller == nullptr)
        return false;
    if (wanted.object.kind == ObjectKind::battery)
        return wanted.rule->severity != Severity::unknown &&
               batteryState(*controller) > kBatteryReconditioning;
    if (!isOfBaseline(wanted) || isUncheckedRule(wanted) || isMissingController(wanted))
        return false;
    return wanted.object.kind == ObjectKind::controller ? !hasAllDrives(*controller) // its spares
                                                        : isUnchecked(both, wanted.object);
}

static bool isNewController(const Comparison& both, std::uint32_t id) {
    return std::any_of(both.differences.begin(), both.differences.end(), [&](const Finding& each) {
        return std::string_view(each.rule->id) == "controller-new" && each.object.controller == id;
    });
}

// Whether an earlier run has read what the finding is about, or it was not there.
static bool wasRead(const Comparison& both, const Controller& controller, const Finding& finding) {
    const Controller* earlier = findController(both.earlier, controller.id);
    if (earlier == nullptr)
        return isNewController(both, controller.id);
    return finding.object.kind == ObjectKind::host || isCombinedRead(*earlier, finding);
}

// Whether a new finding is reported. As in a first run, an informational one is not if no earlier run has
// read what it is about.
static bool isReported(const Comparison& both, const Finding& finding) {
    const auto& all = both.now.controllers;
    return finding.rule->severity != Severity::info ||
           std::all_of(all.begin(), all.end(), [&](const Controller& each) {
               return (finding.object.kind != ObjectKind::host && finding.object.controller != each.id) ||
                      wasRead(both, each, finding);
           });
}

// Adds the new and the resolved findings. A difference from the baseline that is also a change since the
// earlier snapshot has its line already.
static void addFindingChanges(const Comparison& both, Lines* lines) {
    for (const Finding& finding : both.after)
        if (!isArrayChange(finding) && isReported(both, finding) && !isKnown(both.before, finding) &&
            !hasText(*lines, findingLine(finding)))
            lines->push_back({finding.rule->severity, findingLine(finding)});
    for (const Finding& finding : both.before)
        if (!isArrayChange(finding) && !persists(both.after, finding) && !mayBeHidden(both, finding) &&
            !isSuperseded(both, finding))
            lines->push_back({Severity::info, "no longer: " + findingLine(finding)});
}

// The findings of a snapshot that was completed, with the combined ones of what was read.
static Findings findingsOf(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline,
                           const Findings& combined) {
    Findings findings = evaluate(snapshot, limits, baseline);
    std::erase_if(findings, isCombined);
    findings.insert(findings.end(), combined.begin(), combined.end());
    sortFindings(&findings);
    return findings;
}

// Keeps an earlier finding while the reading is near its limit, so that a reading that swings around the
// limit is not reported each time.
static Findings withLingering(Findings after, const Findings& before, const Findings& near) {
    Findings lingering;
    for (const Finding& each : before)
        if (!each.parts.empty() && !persists(after, each) && persists(near, each))
            lingering.push_back(each);
    std::erase_if(after, [&](const Finding& lesser) {
        return std::any_of(lingering.begin(), lingering.end(), [&](const Finding& each) {
            return concernSame(each, lesser) && isWorse(each.rule->severity, lesser.rule->severity);
        });
    });
    after.insert(after.end(), lingering.begin(), lingering.end());
    sortFindings(&after);
    return after;
}

// What was reported before. A run without a baseline says nothing about the differences from one.
static Findings earlierFindings(const Snapshot& earlier, const Limits& limits, const Snapshot* baseline,
                                const Findings* saved) {
    if (saved == nullptr)
        return evaluate(earlier, limits, baseline);
    Findings findings = *saved;
    std::erase_if(findings, [&](const Finding& each) {
        return isMissingController(each) || (baseline == nullptr && isOfBaseline(each));
    });
    return findings;
}

// The differences of the objects. The kept state has been completed, so that what could not be compared is
// not reported.
static Findings differencesOf(const Snapshot& earlier, const Findings& saved, const Snapshot& now,
                              const Snapshot& known) {
    Findings differences = compareWithKept(earlier, saved, now, known);
    std::erase_if(differences, isUncheckedRule);
    return differences;
}

// The missing controllers were reported before, and stay missing while the controllers cannot be counted.
static Findings withMissing(Findings findings, const Findings& missing) {
    for (const Finding& each : missing)
        if (!persists(findings, each))
            findings.push_back(each);
    sortFindings(&findings);
    return findings;
}

// All findings that a later run must not report as new: the present ones, those that may be hidden and, if
// this run has no baseline, the differences from one that the earlier runs found.
static Findings knownFindings(const Comparison& both, const Findings& saved, const Snapshot* baseline) {
    Findings findings = both.after;
    for (const Finding& each : both.before)
        if (!persists(both.after, each) && mayBeHidden(both, each))
            findings.push_back(each);
    for (const Finding& each : saved)
        if (baseline == nullptr && isOfBaseline(each) && !isMissingController(each))
            findings.push_back(each);
    return findings;
}

static Lines linesOf(const Comparison& both) {
    Lines lines;
    addArrayChanges(both.earlier, both.now, &lines);
    for (const Line& line : findingLines(both.differences))
        lines.push_back(line);
    addFindingChanges(both, &lines);
    return lines;
}

Changes findChanges(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                    const Snapshot* baseline, const Findings* saved) {
    if (earlier == nullptr) {
        const Findings findings = evaluate(now, limits, baseline);
        return {problemLines(findings), findings};
    }
    Snapshot known = now;
    keepUnread(*earlier, &known);
    const Findings kept = saved != nullptr ? *saved : combinedFindings(*earlier, limits, baseline);
    const Findings missing = missingOf(kept, baseline);
    Findings combined = combinedFindings(now, limits, baseline);
    carryCombined(kept, now, &combined);
    if (baseline == nullptr)
        std::erase_if(combined, isOfBaseline);
    const Findings before = withMissing(earlierFindings(*earlier, limits, baseline, saved), missing);
    const Findings after =
        withMissing(findingsOf(known, limits, baseline, combined), now.faults.empty() ? Findings{} : missing);
    const Findings near = evaluate(known, withMargins(limits), nullptr);
    const Comparison both = {*earlier, known, before, withLingering(after, before, near),
                             differencesOf(*earlier, kept, now, known)};
    return {linesOf(both), knownFindings(both, kept, baseline)};
}

static bool isAboutNumbers(const Finding& finding) {
    const std::string_view id = finding.rule->id;
    return id == "former-controller-missing" || id == "controller-renumbered";
}

std::uint32_t countEarlier(const Snapshot& earlier) {
    return earlier.controllerCount == 0 || !earlier.faults.empty()
               ? static_cast<std::uint32_t>(earlier.controllers.size())
               : earlier.controllerCount;
}

static Snapshot withAllCounted(Snapshot earlier) {
    earlier.controllerCount = countEarlier(earlier);
    earlier.faults.clear();
    return earlier;
}

Lines followNumbers(const Snapshot& now, Snapshot* earlier, Findings* saved,
                    std::vector<Controller>* missing) {
    const Snapshot complete = withAllCounted(*earlier);
    const std::optional<Renumbering> renumbering = findRenumbering(complete, now);
    if (!renumbering)
        return {};
    Findings differences = compare(now, complete);
    std::erase_if(differences, [](const Finding& each) { return !isAboutNumbers(each); });
    *saved = inPresentNumbers(*renumbering, *saved);
    *earlier = renumbering->earlier;
    *missing = renumbering->missing;
    return findingLines(differences);
}

void addLines(const Lines& added, Lines* lines) {
    for (const Line& line : added)
        if (!hasText(*lines, line.text))
            lines->push_back(line);
}

Lines changeLines(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                  const Snapshot* baseline) {
    if (earlier == nullptr)
        return findChanges(nullptr, now, limits, baseline, nullptr).lines;
    Snapshot followed = *earlier;
    Findings none;
    std::vector<Controller> missing;
    Lines lines = followNumbers(now, &followed, &none, &missing);
    addLines(findChanges(&followed, now, limits, baseline, nullptr).lines, &lines);
    return lines;
}
