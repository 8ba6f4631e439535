// What changed between two snapshots: objects added and removed, findings that are new or resolved.
#include "tools/status/changes.h"

#include <algorithm>

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

// Texts about drives and logical drives are stable; those about sensors contain readings.
static bool isSameFinding(const Finding& left, const Finding& right) {
    const bool steady = left.object.kind == ObjectKind::drive || left.object.kind == ObjectKind::logicalDrive;
    return left.rule == right.rule && left.object.kind == right.object.kind &&
           left.object.controller == right.object.controller && left.object.number == right.object.number &&
           (!steady || left.text == right.text);
}

static bool contains(const Findings& findings, const Finding& wanted) {
    return std::any_of(findings.begin(), findings.end(),
                       [&](const Finding& each) { return isSameFinding(each, wanted); });
}

static bool isAboutSame(const Findings& findings, const Finding& wanted) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& each) {
        return each.rule == wanted.rule && each.object == wanted.object;
    });
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

// Whether the finding may still apply although it cannot be seen, because something cannot be read now.
static bool mayBeHidden(const Findings& now, const Finding& wanted) {
    static constexpr std::string_view unreadable = "unreadable";
    return wanted.rule->id != unreadable && std::any_of(now.begin(), now.end(), [&](const Finding& each) {
               return each.rule->id == unreadable &&
                      (each.object.kind == ObjectKind::host || wanted.object.kind == ObjectKind::host ||
                       each.object.controller == wanted.object.controller);
           });
}

static bool hasText(const Lines& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(), [&](const Line& line) { return line.text == text; });
}

// A finding of which only the text changed is not resolved. A difference from the baseline that is also a
// change since the earlier snapshot has its line already.
static void addFindingChanges(const Findings& earlier, const Findings& now, Lines* lines) {
    for (const Finding& finding : now)
        if (!isArrayChange(finding) && !contains(earlier, finding) && !hasText(*lines, findingLine(finding)))
            lines->push_back({finding.rule->severity, findingLine(finding)});
    for (const Finding& finding : earlier)
        if (!isArrayChange(finding) && !isAboutSame(now, finding) && !mayBeHidden(now, finding))
            lines->push_back({Severity::info, "no longer: " + findingLine(finding)});
}

// Without the number of drives in a list that was not read, which says nothing.
static Findings certainFindings(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline) {
    Findings findings = evaluate(snapshot, limits, baseline);
    std::erase_if(findings, [&](const Finding& finding) {
        const Controller* controller = findController(snapshot, finding.object.controller);
        return std::string_view(finding.rule->id) == "drive-count" && controller != nullptr &&
               (isRefused(*controller, "q5_getPhyDrvInfo") || isRefused(*controller, "q5_getControllerInfo"));
    });
    return findings;
}

Lines changeLines(const Snapshot* earlier, const Snapshot& now, const Limits& limits,
                  const Snapshot* baseline) {
    if (earlier == nullptr)
        return problemLines(evaluate(now, limits, baseline));
    Snapshot known = now;
    keepUnread(*earlier, &known);
    Lines lines;
    addArrayChanges(*earlier, known, &lines);
    for (const Line& line : findingLines(compare(known, *earlier)))
        lines.push_back(line);
    addFindingChanges(certainFindings(*earlier, limits, baseline), certainFindings(known, limits, baseline),
                      &lines);
    return lines;
}
