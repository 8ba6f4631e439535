// The table of rules, and its evaluation.
#include "tools/status/rules.h"

#include <algorithm>
#include <utility>

#include "tools/status/rule_finders.h"

static constexpr Rule kRules[] = {
    {"array-offline", Severity::critical, "a logical drive is offline", "Offline", findOfflineArrays},
    {"array-critical", Severity::critical, "a logical drive has no redundancy left", "Lost members",
     findCriticalArrays},
    {"array-degraded", Severity::warning, "a logical drive has lost part of its redundancy", "Lost members",
     findDegradedArrays},
    {"member-lost", Severity::warning, "a logical drive has lost a member", "Lost members", findLostMembers},
    {"no-replacement", Severity::warning, "a lost member will not be replaced automatically", "Spares",
     findMissingReplacements},
    {"drive-inaccessible", Severity::warning,
     "a drive that belongs to a logical drive cannot be accessed, and is not reported as lost",
     "Lost members", findInaccessibleDrives},
    {"spare-inaccessible", Severity::warning, "a spare is on a drive that cannot be accessed", "Spares",
     findInaccessibleSpares},
    {"unused-inaccessible", Severity::warning, "a drive that nothing uses cannot be accessed",
     "Failed drives", findInaccessibleUnused},
    {"smart-failure", Severity::warning, "a drive predicts its failure", "SMART", findSmartFailures},
    {"patrol-errors", Severity::warning, "media patrol has found errors on a drive", "SMART",
     findPatrolErrors},
    {"battery-failed", Severity::critical, "the battery does not work", "Battery", findFailedBatteries},
    {"battery-discharging", Severity::warning, "the battery is discharging", "Battery",
     findDischargingBatteries},
    {"battery-reconditioning", Severity::info, "the battery is being reconditioned", "Battery",
     findReconditioningBatteries},
    {"battery-hot", Severity::critical, "the battery is hot", "Battery", findHotBatteries},
    {"battery-warm", Severity::warning, "the battery is warm", "Battery", findWarmBatteries},
    {"write-back-unprotected", Severity::warning,
     "a logical drive's settings request write-back, and no battery protects it", "Battery",
     findUnprotectedWriteBack},
    {"fan-stopped", Severity::critical, "a fan of an enclosure has stopped", "Enclosures", findStoppedFans},
    {"enclosure-hot", Severity::critical, "an enclosure is hot", "Enclosures", findHotEnclosures},
    {"enclosure-warm", Severity::warning, "an enclosure is warm", "Enclosures", findWarmEnclosures},
    {"voltage-critical", Severity::critical, "a voltage of an enclosure is far off", "Enclosures",
     findVoltagesFarOff},
    {"voltage-warning", Severity::warning, "a voltage of an enclosure is off", "Enclosures", findVoltagesOff},
    {"activity-paused", Severity::warning, "a background activity is paused", "Activities",
     findPausedActivities},
    {"activity-running", Severity::info, "a background activity is running", "Activities",
     findRunningActivities},
    {"no-spare", Severity::info, "a redundant logical drive has no spare", "Spares", findArraysWithoutSpare},
    {"firmware-differs", Severity::info, "controllers of this host have different firmware", "Versions",
     findFirmwareDifferences},
    {"driver-differs", Severity::info, "controllers of this host report different drivers", "Versions",
     findDriverDifferences},
    {"drive-count", Severity::unknown, "a controller counts more or fewer drives than it lists", "Unreadable",
     findDriveCountDifferences},
    {"array-count", Severity::unknown, "a controller counts more or fewer logical drives than it lists",
     "Unreadable", findArrayCountDifferences},
    {"unreadable", Severity::unknown, "the adapter refused an operation or returned bad data", "Unreadable",
     findUnreadableObjects},
    {"no-controller", Severity::unknown, "the library finds no controller", "Unreadable", findNoController},
    {"detail-unreadable", Severity::info, "the adapter refused to report a detail that no rule depends on",
     "Unreadable", findUnreadableDetails},
};

// These compare with a baseline.
static constexpr Rule kBaselineRules[] = {
    {"controller-missing", Severity::critical, "a controller is missing", "Baseline", findMissingControllers},
    {"former-controller-missing", Severity::critical,
     "a controller is missing, and another one has its number now", "Baseline", findMissingFormerControllers},
    {"array-missing", Severity::critical, "a logical drive is missing", "Baseline", findMissingArrays},
    {"drive-missing", Severity::warning, "a drive is missing", "Baseline", findMissingDrives},
    {"spare-missing", Severity::warning, "a controller has fewer spares", "Baseline", findMissingSpares},
    {"enclosure-missing", Severity::warning, "an enclosure is missing", "Baseline", findMissingEnclosures},
    {"sensor-missing", Severity::warning, "an enclosure reports fewer sensors", "Baseline",
     findMissingSensors},
    {"battery-missing", Severity::warning, "a battery is missing", "Baseline", findMissingBatteries},
    {"baseline-unchecked", Severity::unknown, "objects of the baseline may be in a part that cannot be read",
     "Unreadable", findUncheckedObjects},
    {"drive-replaced", Severity::info, "a drive was replaced by another one", "Baseline", findReplacedDrives},
    {"drive-moved", Severity::info, "a drive is in another place", "Baseline", findMovedDrives},
    {"drive-new", Severity::info, "a drive is new", "Baseline", findNewDrives},
    {"spare-new", Severity::info, "a controller has more spares", "Baseline", findNewSpares},
    {"spare-moved", Severity::info, "a spare is on another drive", "Baseline", findMovedSpares},
    {"array-changed", Severity::info, "a logical drive has another RAID level, size or name", "Baseline",
     findChangedArrays},
    {"array-moved", Severity::info, "a logical drive is on other drives", "Baseline", findMovedArrays},
    {"array-new", Severity::info, "a logical drive is new", "Baseline", findNewArrays},
    {"enclosure-replaced", Severity::info, "an enclosure is of another type", "Baseline",
     findReplacedEnclosures},
    {"enclosure-new", Severity::info, "an enclosure is new", "Baseline", findNewEnclosures},
    {"battery-new", Severity::info, "a battery is new", "Baseline", findNewBatteries},
    {"controller-renumbered", Severity::info, "a controller has another number", "Baseline",
     findRenumberedControllers},
    {"controller-new", Severity::info, "a controller is new", "Baseline", findNewControllers},
};

std::span<const Rule> rules() {
    return kRules;
}

std::span<const Rule> baselineRules() {
    return kBaselineRules;
}

static void apply(std::span<const Rule> table, Evaluation* evaluation) {
    for (const Rule& rule : table) {
        evaluation->rule = &rule;
        rule.find(evaluation);
    }
}

static std::ptrdiff_t position(const Rule* rule) {
    const auto isRule = [&](const Rule& each) { return &each == rule; };
    const std::ptrdiff_t index = std::find_if(std::begin(kRules), std::end(kRules), isRule) - kRules;
    if (index < std::ssize(kRules))
        return index;
    return index +
           (std::find_if(std::begin(kBaselineRules), std::end(kBaselineRules), isRule) - kBaselineRules);
}

void sortFindings(Findings* findings) {
    std::stable_sort(findings->begin(), findings->end(), [](const Finding& left, const Finding& right) {
        const Severity one = left.rule->severity, other = right.rule->severity;
        return one != other ? isWorse(one, other) : position(left.rule) < position(right.rule);
    });
}

static Findings applyAll(std::initializer_list<std::span<const Rule>> tables, Evaluation evaluation) {
    std::optional<Renumbering> renumbering;
    if (evaluation.baseline != nullptr)
        renumbering = findRenumbering(*evaluation.baseline, evaluation.snapshot);
    if (renumbering) {
        evaluation.baseline = &renumbering->earlier;
        evaluation.renumbering = &*renumbering;
    }
    for (const std::span<const Rule> table : tables)
        apply(table, &evaluation);
    sortFindings(&evaluation.findings);
    return evaluation.findings;
}

Findings evaluate(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline) {
    if (baseline == nullptr)
        return applyAll({kRules}, {snapshot, limits, nullptr});
    return applyAll({kRules, kBaselineRules}, {snapshot, limits, baseline});
}

Findings compare(const Snapshot& snapshot, const Snapshot& baseline) {
    const Limits limits;
    return applyAll({kBaselineRules}, {snapshot, limits, &baseline});
}

void addFinding(Evaluation* evaluation, const Object& object, const std::string& text,
                std::optional<std::uint32_t> percent) {
    evaluation->findings.push_back({evaluation->rule, object, text, percent});
}

void addFindingOf(Evaluation* evaluation, const Object& object, std::vector<std::string> parts,
                  const std::string& text) {
    evaluation->findings.push_back({evaluation->rule, object, text, std::nullopt, std::move(parts)});
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
