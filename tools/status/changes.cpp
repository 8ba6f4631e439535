// What changed between two snapshots: objects added and removed, findings that are new or resolved.
#include "tools/status/changes.h"

#include <algorithm>

#include "tools/status/changes_counts.h"
#include "tools/status/changes_match.h"
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

// Nor is the state of a logical drive that got worse, or a controller that disappeared.
static bool isSuperseded(const Comparison& both, const Finding& finding) {
    const Object& object = finding.object;
    if (object.kind != ObjectKind::host && findController(both.now, object.controller) == nullptr)
        return true;
    return isReplacedByWorse(both, finding) || isGone(both, object) ||
           (object.kind == ObjectKind::logicalDrive &&
            hasWorsened(both.earlier, both.now, object.controller, object.number));
}

static bool isOfBaseline(const Rule& rule) {
    const std::span<const Rule> all = baselineRules();
    return std::any_of(all.begin(), all.end(), [&](const Rule& each) { return &each == &rule; });
}

// Whether objects that no earlier run has listed either may have what a finding is about. Whatever was listed
// before has been completed with what could not be read.
static bool mayBeUncertain(const Controller& controller, const Finding& finding) {
    switch (finding.object.kind) {
    case ObjectKind::drive:
        return isOfBaseline(*finding.rule) && !hasAllDrives(controller);
    case ObjectKind::logicalDrive: // its spares as well
        return !hasAllDrives(controller) || !hasAllLogicalDrives(controller);
    case ObjectKind::enclosure:
        return !hasAllEnclosures(controller);
    default: // its spares
        return !hasAllDrives(controller);
    }
}

// Whether a finding may still apply although the present ones lack it. An operation that works again is known
// to.
static bool mayBeHidden(const Comparison& both, const Finding& wanted) {
    if (isCount(wanted))
        return mayCountBeHidden(both.after, wanted);
    const Controller* controller = findController(both.now, wanted.object.controller);
    if (wanted.rule->severity == Severity::unknown || wanted.object.kind == ObjectKind::host ||
        controller == nullptr)
        return false;
    if (wanted.object.kind == ObjectKind::battery)
        return batteryState(*controller) > kBatteryReconditioning;
    return mayBeUncertain(*controller, wanted);
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

// The findings of a snapshot that was completed, with the counts of the lists as they were read.
static Findings findingsOf(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline,
                           const Findings& counts) {
    Findings findings = evaluate(snapshot, limits, baseline);
    std::erase_if(findings, isCount);
    const auto first = std::find_if(findings.begin(), findings.end(), [](const Finding& each) {
        return each.rule->severity != Severity::critical;
    });
    findings.insert(first, counts.begin(), counts.end());
    return findings;
}

Lines changeLines(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                  const Snapshot* baseline, const Findings* earlierCounts) {
    if (earlier == nullptr)
        return problemLines(evaluate(now, limits, baseline));
    Snapshot known = now;
    keepUnread(*earlier, &known);
    Lines lines;
    addArrayChanges(*earlier, known, &lines);
    const Findings differences = compare(known, *earlier);
    for (const Line& line : findingLines(differences))
        lines.push_back(line);
    const Findings before = earlierCounts != nullptr ? *earlierCounts : countFindings(*earlier, limits);
    addFindingChanges({*earlier, known, findingsOf(*earlier, limits, baseline, before),
                       findingsOf(known, limits, baseline, countFindings(now, limits)), differences},
                      &lines);
    return lines;
}
