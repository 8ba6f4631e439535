// The table of rules, and its walk.
#include "tools/status/rules.h"

#include <algorithm>

#include "tools/status/rule_finders.h"

static constexpr Rule kRules[] = {
    {"array-offline", Severity::critical, "a logical drive is offline", "OFFLINE", findOfflineArrays},
    {"array-critical", Severity::critical, "a logical drive has no redundancy left", "LOST MEMBERS",
     findCriticalArrays},
    {"array-degraded", Severity::warning, "a logical drive has lost part of its redundancy", "LOST MEMBERS",
     findDegradedArrays},
    {"member-lost", Severity::warning, "a logical drive has lost a member", "LOST MEMBERS", findLostMembers},
    {"no-replacement", Severity::warning, "nothing will replace a lost member by itself", "SPARES",
     findMissingReplacements},
    {"drive-inaccessible", Severity::warning,
     "a drive that belongs to a logical drive cannot be accessed, and is not reported as lost",
     "LOST MEMBERS", findInaccessibleDrives},
    {"spare-inaccessible", Severity::warning, "a spare is on a drive that cannot be accessed", "SPARES",
     findInaccessibleSpares},
    {"smart-failure", Severity::warning, "a drive predicts its failure", "SMART", findSmartFailures},
    {"patrol-errors", Severity::warning, "media patrol has found errors on a drive", "SMART",
     findPatrolErrors},
    {"battery-failed", Severity::critical, "the battery does not work", "BATTERY", findFailedBatteries},
    {"battery-discharging", Severity::warning, "the battery is discharging", "BATTERY",
     findDischargingBatteries},
    {"battery-reconditioning", Severity::info, "the battery is being reconditioned", "BATTERY",
     findReconditioningBatteries},
    {"battery-hot", Severity::critical, "the battery is hot", "BATTERY", findHotBatteries},
    {"battery-warm", Severity::warning, "the battery is warm", "BATTERY", findWarmBatteries},
    {"write-back-unprotected", Severity::warning,
     "a logical drive's settings ask for write-back, and no battery protects it", "BATTERY",
     findUnprotectedWriteBack},
    {"fan-stopped", Severity::critical, "a fan of an enclosure has stopped", "ENCLOSURES", findStoppedFans},
    {"enclosure-hot", Severity::critical, "an enclosure is hot", "ENCLOSURES", findHotEnclosures},
    {"enclosure-warm", Severity::warning, "an enclosure is warm", "ENCLOSURES", findWarmEnclosures},
    {"voltage-critical", Severity::critical, "a voltage of an enclosure is far off", "ENCLOSURES",
     findVoltagesFarOff},
    {"voltage-warning", Severity::warning, "a voltage of an enclosure is off", "ENCLOSURES", findVoltagesOff},
    {"activity-paused", Severity::warning, "a background activity is paused", "ACTIVITIES",
     findPausedActivities},
    {"activity-running", Severity::info, "a background activity is running", "ACTIVITIES",
     findRunningActivities},
    {"no-spare", Severity::info, "a redundant logical drive has no spare", "SPARES", findArraysWithoutSpare},
    {"firmware-differs", Severity::info, "controllers of this host have different firmware", "VERSIONS",
     findFirmwareDifferences},
    {"driver-differs", Severity::info, "controllers of this host report different drivers", "VERSIONS",
     findDriverDifferences},
    {"drive-count", Severity::info, "a controller counts more or fewer drives than it lists", "UNREADABLE",
     findDriveCountDifferences},
    {"unreadable", Severity::unknown, "the adapter refused an operation or returned nonsense", "UNREADABLE",
     findUnreadableObjects},
    {"no-controller", Severity::unknown, "the library finds no controller", "UNREADABLE", findNoController},
    {"detail-unreadable", Severity::info, "the adapter refused to report a detail that no rule depends on",
     "UNREADABLE", findUnreadableDetails},
};

// These compare with a baseline.
static constexpr Rule kBaselineRules[] = {
    {"controller-missing", Severity::critical, "a controller is missing", "BASELINE", findMissingControllers},
    {"array-missing", Severity::critical, "a logical drive is missing", "BASELINE", findMissingArrays},
    {"drive-missing", Severity::warning, "a drive is missing", "BASELINE", findMissingDrives},
    {"spare-missing", Severity::warning, "a controller has fewer spares", "BASELINE", findMissingSpares},
    {"enclosure-missing", Severity::warning, "an enclosure is missing", "BASELINE", findMissingEnclosures},
    {"battery-missing", Severity::warning, "a battery is missing", "BASELINE", findMissingBatteries},
    {"drive-replaced", Severity::info, "a drive was replaced by another one", "BASELINE", findReplacedDrives},
    {"drive-moved", Severity::info, "a drive is in another place", "BASELINE", findMovedDrives},
    {"drive-new", Severity::info, "a drive is new", "BASELINE", findNewDrives},
    {"spare-new", Severity::info, "a controller has more spares", "BASELINE", findNewSpares},
    {"array-changed", Severity::info, "a logical drive has another RAID level or size", "BASELINE",
     findChangedArrays},
    {"array-new", Severity::info, "a logical drive is new", "BASELINE", findNewArrays},
    {"enclosure-new", Severity::info, "an enclosure is new", "BASELINE", findNewEnclosures},
    {"battery-new", Severity::info, "a battery is new", "BASELINE", findNewBatteries},
};

std::span<const Rule> rules() {
    return kRules;
}

std::span<const Rule> baselineRules() {
    return kBaselineRules;
}

static int rank(const Finding& finding) {
    static constexpr int ranks[] = {3, 2, 0, 1};
    return ranks[static_cast<std::size_t>(finding.rule->severity)];
}

static void apply(std::span<const Rule> table, Evaluation* evaluation) {
    for (const Rule& rule : table) {
        evaluation->rule = &rule;
        rule.find(evaluation);
    }
}

static void sortBySeverity(Findings* findings) {
    std::stable_sort(findings->begin(), findings->end(),
                     [](const Finding& left, const Finding& right) { return rank(left) < rank(right); });
}

Findings evaluate(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline) {
    Evaluation evaluation = {snapshot, limits, baseline};
    apply(kRules, &evaluation);
    if (baseline != nullptr)
        apply(kBaselineRules, &evaluation);
    sortBySeverity(&evaluation.findings);
    return evaluation.findings;
}

Findings compare(const Snapshot& snapshot, const Snapshot& baseline) {
    const Limits limits;
    Evaluation evaluation = {snapshot, limits, &baseline};
    apply(kBaselineRules, &evaluation);
    sortBySeverity(&evaluation.findings);
    return evaluation.findings;
}

void addFinding(Evaluation* evaluation, const Object& object, const std::string& text,
                std::optional<std::uint32_t> percent) {
    evaluation->findings.push_back({evaluation->rule, object, text, percent});
}

Object objectOf(const Controller& controller) {
    return {ObjectKind::controller, controller.id, controller.id, ""};
}

Object objectOf(const Controller& controller, const Drive& drive) {
    return {ObjectKind::drive, controller.id, drive.number, ""};
}

Object objectOf(const Controller& controller, const LogicalDrive& drive) {
    return {ObjectKind::logicalDrive, controller.id, drive.info.logDrvId,
            std::string(fieldText(drive.info.name))};
}

Object objectOf(const Controller& controller, const Enclosure& enclosure) {
    return {ObjectKind::enclosure, controller.id, enclosure.id, ""};
}

Object batteryOf(const Controller& controller) {
    return {ObjectKind::battery, controller.id, controller.id, ""};
}
