// Findings that combine what several operations report, from one run to the next.
#include "tools/status/changes_combined.h"

#include <algorithm>

#include "tools/status/changes_match.h"
#include "tools/status/facts.h"
#include "tools/status/rules.h"

// A rule, and whether all that it combines was read; the object of a host is that of each controller.
struct Combined {
    std::string_view id;
    bool (*isRead)(const Controller& controller, const Object& object);
};

static bool areDrivesCounted(const Controller& controller, const Object&) {
    return controller.info && !hasFault(controller, "q5_getPhyDrvInfo");
}

static bool areArraysCounted(const Controller& controller, const Object&) {
    return controller.info && !hasFault(controller, "q5_getLogDrvInfo");
}

static bool isArrayRead(const Controller& controller, const Object& object) {
    return findLogicalDrive(controller, object.number) != nullptr || hasAllLogicalDrives(controller);
}

static bool areSparesRead(const Controller& controller, const Object& object) {
    return hasAllDrives(controller) && isArrayRead(controller, object);
}

static bool isCacheRead(const Controller& controller, const Object& object) {
    const LogicalDrive* drive = findLogicalDrive(controller, object.number);
    return controller.battery && isArrayRead(controller, object) && (drive == nullptr || drive->settings);
}

static bool areSensorsRead(const Controller& controller, const Object& object) {
    const Enclosure* enclosure = findEnclosure(controller, object.number);
    return enclosure != nullptr ? enclosure->status.has_value() : hasAllEnclosures(controller);
}

static bool isFirmwareRead(const Controller& controller, const Object&) {
    return controller.version.has_value();
}

static bool isDriverRead(const Controller& controller, const Object&) {
    return controller.driver.has_value();
}

static constexpr Combined kCombined[] = {
    {"drive-count", areDrivesCounted},
    {"array-count", areArraysCounted},
    {"no-spare", areSparesRead},
    {"no-replacement", areSparesRead},
    {"write-back-unprotected", isCacheRead},
    {"sensor-missing", areSensorsRead},
    {"firmware-differs", isFirmwareRead},
    {"driver-differs", isDriverRead},
};

static const Combined* findCombined(std::string_view id) {
    for (const Combined& each : kCombined)
        if (each.id == id)
            return &each;
    return nullptr;
}

bool isCombined(const Finding& finding) {
    return findCombined(finding.rule->id) != nullptr;
}

bool isCombinedRead(const Controller& controller, const Finding& finding) {
    const Combined* combined = findCombined(finding.rule->id);
    return combined == nullptr || combined->isRead(controller, finding.object);
}

Findings combinedFindings(const Snapshot& snapshot, const Limits& limits, const Snapshot* baseline) {
    Findings findings = evaluate(snapshot, limits, baseline);
    std::erase_if(findings, [](const Finding& finding) { return !isCombined(finding); });
    return findings;
}

// Whether the run has read all that an earlier finding combines, or the controller is missing.
static bool isDisproved(const Snapshot& now, const Finding& finding) {
    const Combined& combined = *findCombined(finding.rule->id);
    const Object& object = finding.object;
    if (object.kind == ObjectKind::host)
        return now.controllerCount > 0 && now.controllers.size() == now.controllerCount &&
               std::all_of(now.controllers.begin(), now.controllers.end(),
                           [&](const Controller& each) { return combined.isRead(each, object); });
    const Controller* controller = findController(now, object.controller);
    if (controller == nullptr)
        return object.controller >= now.controllerCount && now.controllerCount > 0 && now.faults.empty();
    return combined.isRead(*controller, object);
}

void carryCombined(const Findings& earlier, const Snapshot& now, Findings* findings) {
    for (const Finding& each : earlier)
        if (isCombined(each) && !isDisproved(now, each)) {
            std::erase_if(*findings, [&](const Finding& present) { return isSameProblem(present, each); });
            findings->push_back(each);
        }
}
