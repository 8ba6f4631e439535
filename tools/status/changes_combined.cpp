// Findings that combine what several operations report, from one run to the next.
#include "tools/status/changes_combined.h"

#include <algorithm>

#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/status/changes_match.h"
#include "tools/status/facts.h"
#include "tools/status/rules.h"

// A rule, what its findings are about, and whether all that it combines was read.
struct Combined {
    std::string_view id;
    ObjectKind kind;
    bool (*isRead)(const Controller& controller, const Object& object); // of a host: of each controller
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

static bool isFirmwareRead(const Controller& controller, const Object&) {
    return controller.version.has_value();
}

static bool isDriverRead(const Controller& controller, const Object&) {
    return controller.driver.has_value();
}

static constexpr Combined kCombined[] = {
    {"drive-count", ObjectKind::controller, areDrivesCounted},
    {"array-count", ObjectKind::controller, areArraysCounted},
    {"no-spare", ObjectKind::logicalDrive, areSparesRead},
    {"no-replacement", ObjectKind::logicalDrive, areSparesRead},
    {"write-back-unprotected", ObjectKind::logicalDrive, isCacheRead},
    {"firmware-differs", ObjectKind::host, isFirmwareRead},
    {"driver-differs", ObjectKind::host, isDriverRead},
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

Findings combinedFindings(const Snapshot& snapshot, const Limits& limits) {
    Findings findings = evaluate(snapshot, limits, nullptr);
    std::erase_if(findings, [](const Finding& finding) { return !isCombined(finding); });
    return findings;
}

static const Rule* findRule(std::string_view id) {
    for (const std::span<const Rule> table : {rules(), baselineRules()})
        for (const Rule& rule : table)
            if (id == rule.id)
                return &rule;
    return nullptr;
}

static std::string textOf(const Json& json, const char* key) {
    const auto text = json.find(key);
    return text != json.end() && text->is_string() ? text->get<std::string>() : "";
}

// Empty if the file has no such object.
static std::optional<Object> objectFrom(const Json& json, ObjectKind kind) {
    static constexpr std::uint64_t kMaxNumber = 0xFFFF; // of a logical drive
    if (kind == ObjectKind::host)
        return Object{};
    const auto object = json.find("object");
    if (object == json.end() || !object->is_object())
        return std::nullopt;
    const auto controller = object->find("controller"), number = object->find("number");
    if (controller == object->end() || number == object->end() || !controller->is_number_unsigned() ||
        !number->is_number_unsigned() || *controller >= kMaxSnapshotControllers || *number > kMaxNumber)
        return std::nullopt;
    return Object{kind, controller->get<std::uint32_t>(), number->get<std::uint32_t>(), ""};
}

// A line of the file starts with the object. The name of a logical drive may contain anything; the rest of
// the line names no controller.
static bool splitLine(const std::string& line, Object* object, std::string* text) {
    const std::string start = shortObjectText(*object);
    const std::string end = objectText(*object).substr(start.size()) + ": ";
    const std::size_t found =
        object->kind == ObjectKind::logicalDrive ? line.rfind(end) : line.find(end, start.size());
    if (!line.starts_with(start) || found == std::string::npos || found < start.size())
        return false;
    const std::string name = line.substr(start.size(), found - start.size());
    if (!name.empty() && (object->kind != ObjectKind::logicalDrive || name[0] != ' '))
        return false;
    object->name = name.empty() ? "" : name.substr(1);
    *text = line.substr(found + end.size());
    return true;
}

// What the findings of a rule are about. Others are not read from a file.
static std::optional<ObjectKind> savedKind(const Rule* rule) {
    if (rule == nullptr)
        return std::nullopt;
    if (std::string_view(rule->id) == "controller-missing")
        return ObjectKind::controller;
    const Combined* combined = findCombined(rule->id);
    return combined != nullptr ? std::optional(combined->kind) : std::nullopt;
}

Findings savedFindings(const std::string& text) {
    Findings findings;
    const Json json = Json::parse(text, nullptr, false);
    const auto list = json.find("findings");
    if (list == json.end() || !list->is_array())
        return findings;
    for (const Json& each : *list) {
        const Rule* rule = findRule(textOf(each, "rule"));
        const std::optional<ObjectKind> kind = savedKind(rule);
        std::optional<Object> object = kind ? objectFrom(each, *kind) : std::nullopt;
        std::string problem;
        if (object && splitLine(fromPrintable(textOf(each, "text")), &*object, &problem))
            findings.push_back({rule, *object, problem, std::nullopt});
    }
    return findings;
}

// A controller that the library no longer counts is missing.
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
