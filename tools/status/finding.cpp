// Names of objects and severities, and the summary of findings.
#include "tools/status/finding.h"

#include <algorithm>

#include "snapshot/snapshot.h"
#include "snapshot/text.h"
#include "tools/status/rules.h"

const char* severityText(Severity severity) {
    static constexpr const char* words[] = {"info", "warning", "critical", "unknown"};
    return words[static_cast<std::size_t>(severity)];
}

const char* statusText(Severity worst) {
    return worst == Severity::info ? "ok" : severityText(worst);
}

const char* objectKindText(ObjectKind kind) {
    static constexpr const char* words[] = {"host",      "controller", "battery",
                                            "enclosure", "drive",      "logicalDrive"};
    return words[static_cast<std::size_t>(kind)];
}

std::string shortObjectText(const Object& object) {
    const std::string number = std::to_string(object.number);
    switch (object.kind) {
    case ObjectKind::controller:
        return "controller " + std::to_string(object.controller);
    case ObjectKind::battery:
        return "battery";
    case ObjectKind::enclosure:
        return "enclosure " + number;
    case ObjectKind::drive:
        return "drive " + number;
    case ObjectKind::logicalDrive:
        return "logical drive " + number + (object.name.empty() ? "" : " " + object.name);
    default:
        return "this host";
    }
}

std::string objectText(const Object& object) {
    if (object.kind == ObjectKind::host || object.kind == ObjectKind::controller)
        return shortObjectText(object);
    return shortObjectText(object) + " of controller " + std::to_string(object.controller);
}

bool isSameObject(const Object& left, const Object& right) {
    return left.kind == right.kind && left.controller == right.controller && left.number == right.number;
}

// The rank of a severity: unknown may hide a warning, but nothing worse than critical.
static int weight(Severity severity) {
    static constexpr int weights[] = {0, 1, 3, 2};
    return weights[static_cast<std::size_t>(severity)];
}

bool isWorse(Severity left, Severity right) {
    return weight(left) > weight(right);
}

Severity worseOf(Severity left, Severity right) {
    return isWorse(left, right) ? left : right;
}

Severity worstSeverity(const Findings& findings) {
    Severity worst = Severity::info;
    for (const Finding& finding : findings)
        worst = worseOf(worst, finding.rule->severity);
    return worst;
}

std::size_t countSeverity(const Findings& findings, Severity severity) {
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [&](const Finding& each) {
        return each.rule->severity == severity;
    }));
}

int exitStatus(Severity worst) {
    return static_cast<int>(worst);
}

static std::string allWell(const Snapshot& snapshot) {
    std::size_t drives = 0, logicalDrives = 0;
    for (const Controller& controller : snapshot.controllers) {
        drives += controller.drives.size();
        logicalDrives += controller.logicalDrives.size();
    }
    return "all well: " + counted(snapshot.controllers.size(), "controller") + ", " +
           counted(drives, "drive") + ", " + counted(logicalDrives, "logical drive");
}

static std::string share(std::size_t count, std::size_t all, const char* word) {
    if (count == 0)
        return "";
    return all == 1 ? std::string(", ") + word : ", " + std::to_string(count) + " of them " + word;
}

std::string summaryText(const Snapshot& snapshot, const Findings& findings) {
    const std::size_t problems = findings.size() - countSeverity(findings, Severity::info);
    if (problems == 0)
        return allWell(snapshot);
    return counted(problems, "problem") +
           share(countSeverity(findings, Severity::critical), problems, "critical") +
           share(countSeverity(findings, Severity::unknown), problems, "unknown");
}
