// Which findings of two runs are about the same problem.
#include "tools/status/changes_match.h"

#include <algorithm>

static bool hasPart(const Finding& finding, const std::string& part) {
    return std::find(finding.parts.begin(), finding.parts.end(), part) != finding.parts.end();
}

static bool shareParts(const Finding& left, const Finding& right) {
    return left.parts.empty() || right.parts.empty() ||
           std::any_of(left.parts.begin(), left.parts.end(),
                       [&](const std::string& part) { return hasPart(right, part); });
}

// Names are not compared: the object may have been renamed.
bool concernSame(const Finding& left, const Finding& right) {
    return isSameObject(left.object, right.object) && shareParts(left, right);
}

bool isSameProblem(const Finding& left, const Finding& right) {
    return left.rule == right.rule && concernSame(left, right);
}

bool persists(const Findings& findings, const Finding& wanted) {
    return std::any_of(findings.begin(), findings.end(),
                       [&](const Finding& each) { return isSameProblem(each, wanted); });
}

static bool contains(const Finding& finding, const Finding& wanted) {
    if (wanted.parts.empty())
        return finding.text == wanted.text;
    return std::all_of(wanted.parts.begin(), wanted.parts.end(),
                       [&](const std::string& part) { return hasPart(finding, part); });
}

bool isKnown(const Findings& findings, const Finding& wanted) {
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& each) {
        return each.rule == wanted.rule && isSameObject(each.object, wanted.object) && contains(each, wanted);
    });
}
