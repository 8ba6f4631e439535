// What changed between two snapshots: objects added and removed, findings that are new or resolved.
#include "tools/status/changes.h"

#include <algorithm>
#include <charconv>

#include "tools/status/changes_combined.h"
#include "tools/status/changes_match.h"
#include "tools/status/changes_missing.h"
#include "tools/status/changes_unread.h"
#include "tools/status/facts.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

// Changes of logical drives have lines of their own.
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

// A more severe problem of the same thing is no good news of the other one.
static bool isReplacedByWorse(const Comparison& both, const Finding& finding) {
    return std::any_of(both.after.begin(), both.after.end(), [&](const Finding& each) {
        return concernSame(each, finding) && isWorse(each.rule->severity, finding.rule->severity) &&
               !isKnown(both.before, each);
    });
}

// An object that disappeared or moved has its own line, and its problem is not solved.
static bool isGone(const Comparison& both, const Object& object) {
    static constexpr std::string_view ids[] = {"array-missing", "drive-missing", "enclosure-missing",
                                               "battery-missing", "drive-moved"};
    return std::any_of(both.differences.begin(), both.differences.end(), [&](const Finding& each) {
        return isSameObject(each.object, object) &&
               std::find(std::begin(ids), std::end(ids), each.rule->id) != std::end(ids);
    });
}

// The drive's logical drive has lost it since.
static bool isNewlyLost(const Comparison& both, const Object& object) {
    return std::any_of(both.after.begin(), both.after.end(), [&](const Finding& each) {
        return std::string_view(each.rule->id) == "member-lost" && isSameObject(each.object, object) &&
               !persists(both.before, each);
    });
}

// Nor is the state of a logical drive that got worse, or a controller that disappeared.
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

static bool isOfBaseline(const Rule& rule) {
    const std::span<const Rule> all = baselineRules();
    return std::any_of(all.begin(), all.end(), [&](const Rule& each) { return &each == &rule; });
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
    if (!isOfBaseline(*wanted.rule) || isUncheckedRule(wanted) || isMissingController(wanted))
        return false;
    return wanted.object.kind == ObjectKind::controller ? !hasAllDrives(*controller) // its spares
                                                        : isUnchecked(both, wanted.object);
}

// A difference from the baseline that is also a change since the earlier snapshot has its line already.
static void addFindingChanges(const Comparison& both, Lines* lines) {
    for (const Finding& finding : both.after)
        if (!isArrayChange(finding) && !isKnown(both.before, finding) &&
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

// "counts 3 drives, but lists 2"
static void applyCount(const Finding& count, Controller* controller) {
    static constexpr std::string_view start = "counts ";
    const char* end = count.text.data() + count.text.size();
    std::uint16_t number = 0;
    if (count.text.starts_with(start) &&
        std::from_chars(count.text.data() + start.size(), end, number).ec == std::errc())
        (std::string_view(count.rule->id) == "drive-count" ? controller->info->diskCount
                                                           : controller->info->arrayCount) = number;
}

// The earlier state with the counts as its run has read them.
static Snapshot withCounts(Snapshot earlier, const Findings& combined) {
    for (Controller& controller : earlier.controllers)
        for (const Finding& each : combined)
            if (each.object.kind == ObjectKind::controller && each.object.controller == controller.id &&
                controller.info && !hasFault(controller, "q5_getControllerInfo"))
                applyCount(each, &controller);
    return earlier;
}

// A list that was short counts as complete in the state that was kept, but what could not be checked then was
// not checked.
static Findings earlierFindings(const Snapshot& earlier, const Limits& limits, const Snapshot* baseline,
                                const Findings& combined) {
    Findings findings = findingsOf(earlier, limits, baseline, combined);
    if (baseline == nullptr)
        return findings;
    std::erase_if(findings, isUncheckedRule);
    for (const Finding& each : compare(withCounts(earlier, combined), *baseline))
        if (isUncheckedRule(each))
            findings.push_back(each);
    sortFindings(&findings);
    return findings;
}

// The state that is kept has been completed: it needs no word about what it lacks.
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

static Findings combinedOf(Findings findings) {
    std::erase_if(findings, [](const Finding& finding) { return !isCombined(finding); });
    return findings;
}

Lines changeLines(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                  const Snapshot* baseline, const Findings* saved) {
    if (earlier == nullptr)
        return problemLines(evaluate(now, limits, baseline));
    Snapshot known = now;
    keepUnread(*earlier, &known);
    const Findings kept = saved != nullptr ? *saved : combinedFindings(*earlier, limits);
    const Findings missing = missingOf(kept, baseline);
    Findings after = combinedFindings(now, limits);
    carryCombined(kept, now, &after);
    const Comparison both = {
        *earlier, known, withMissing(earlierFindings(*earlier, limits, baseline, combinedOf(kept)), missing),
        withMissing(findingsOf(known, limits, baseline, after), now.faults.empty() ? Findings{} : missing),
        differencesOf(*earlier, kept, now, known)};
    Lines lines;
    addArrayChanges(*earlier, known, &lines);
    for (const Line& line : findingLines(both.differences))
        lines.push_back(line);
    addFindingChanges(both, &lines);
    return lines;
}
