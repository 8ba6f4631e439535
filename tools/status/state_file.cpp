// The file of --changes.
#include "tools/status/state_file.h"

#include <algorithm>

#include "snapshot/files.h"
#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/common/regular_file.h"
#include "tools/status/changes_match.h"
#include "tools/status/changes_missing.h"
#include "tools/status/changes_unread.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

static const Rule* findRule(std::string_view id) {
    for (const std::span<const Rule> table : {rules(), baselineRules()})
        for (const Rule& rule : table)
            if (id == rule.id)
                return &rule;
    return nullptr;
}

static std::string textOf(const Json& json, const char* key) {
    return json.is_object() ? textFrom(json, key).value_or("") : "";
}

static std::optional<ObjectKind> kindOf(const Json& object) {
    static constexpr ObjectKind kinds[] = {ObjectKind::host,    ObjectKind::controller,
                                           ObjectKind::battery, ObjectKind::enclosure,
                                           ObjectKind::drive,   ObjectKind::logicalDrive};
    for (const ObjectKind kind : kinds)
        if (textOf(object, "kind") == objectKindText(kind))
            return kind;
    return std::nullopt;
}

// Empty if the file has no such object.
static std::optional<Object> objectFrom(const Json& json) {
    static constexpr std::uint64_t kMaxNumber = 0xFFFF; // of a logical drive
    const std::optional<ObjectKind> kind = kindOf(json);
    if (!kind || *kind == ObjectKind::host)
        return kind ? std::optional(Object{}) : std::nullopt;
    const auto controller = json.find("controller"), number = json.find("number");
    if (controller == json.end() || number == json.end() || !controller->is_number_unsigned() ||
        !number->is_number_unsigned() || *controller >= kMaxSnapshotControllers || *number > kMaxNumber)
        return std::nullopt;
    return Object{*kind, controller->get<std::uint32_t>(), number->get<std::uint32_t>(),
                  textOf(json, "name")};
}

static std::vector<std::string> partsFrom(const Json& json) {
    std::vector<std::string> parts;
    const auto list = json.find("parts");
    if (list != json.end() && list->is_array())
        for (const Json& each : *list)
            if (each.is_string())
                parts.push_back(each.get<std::string>());
    return parts;
}

// A line of the file starts with the object.
static std::optional<Finding> findingFrom(const Json& json) {
    const Rule* rule = findRule(textOf(json, "rule"));
    const auto named = json.find("object");
    const std::optional<Object> object = named != json.end() ? objectFrom(*named) : std::nullopt;
    if (rule == nullptr || !object)
        return std::nullopt;
    const std::string line = fromPrintable(textOf(json, "text")), start = objectText(*object) + ": ";
    if (!line.starts_with(start))
        return std::nullopt;
    return Finding{rule, *object, line.substr(start.size()), std::nullopt, partsFrom(json)};
}

static Findings findingsFrom(const Json& json) {
    Findings findings;
    const auto list = json.find("findings");
    if (list == json.end() || !list->is_array())
        return findings;
    for (const Json& each : *list)
        if (std::optional<Finding> finding = findingFrom(each))
            findings.push_back(std::move(*finding));
    return findings;
}

// Each is like a state with one controller. Returns an error message, empty on success.
static std::string formerFrom(const Json& json, FormerController* former) {
    Snapshot snapshot;
    std::string problem = snapshotFromJson(json, &snapshot);
    if (!problem.empty())
        return problem;
    const auto missing = json.find("missing");
    if (snapshot.controllers.size() != 1 || missing == json.end() || !missing->is_boolean())
        return "\"formerControllers\" is not a list of controllers";
    *former = {snapshot.controllers.front(), findingsFrom(json), missing->get<bool>()};
    return "";
}

// An earlier version has not written them.
static std::string formerFrom(const Json& json, FormerControllers* former) {
    const auto list = json.find("formerControllers");
    if (list == json.end())
        return "";
    if (!list->is_array())
        return "\"formerControllers\" is not a list";
    std::string problem;
    for (const Json& each : *list) {
        former->emplace_back();
        if (problem.empty())
            problem = formerFrom(each, &former->back());
    }
    return problem;
}

static std::string stateFrom(const std::string& text, SavedState* state) {
    std::string problem = snapshotFromText(text, &state->snapshot);
    if (!problem.empty())
        return problem;
    const Json json = Json::parse(text, nullptr, false);
    state->findings = findingsFrom(json);
    return formerFrom(json, &state->former);
}

// Whether the text starts like that of formatState(), however early it was cut off.
static bool isOwn(const std::string& text) {
    static constexpr std::string_view start = "{\n  \"format\": ";
    return text.starts_with(start.substr(0, text.size()));
}

SavedState readSavedState(const std::string& path) {
    SavedState state;
    std::string text, problem;
    const RegularFile result = readRegularFile(path, &text, &problem);
    if (result == RegularFile::missing)
        return state;
    state.result = StateResult::unusable;
    state.problem = printable(problem);
    if (result != RegularFile::read)
        return state;
    state.result = StateResult::read;
    problem = stateFrom(text, &state);
    if (problem.empty())
        return state;
    return {isOwn(text) ? StateResult::damaged : StateResult::unusable,
            {},
            {},
            {},
            printable(path) + ": " + problem};
}

bool isKnownController(const SavedState& state, std::uint32_t id) {
    return isKnownController(state.snapshot, state.findings, id) || isFormer(state.former, id);
}

static std::string setAside(const std::string& path) {
    std::string text, problem;
    if (readRegularFile(path, &text, &problem) == RegularFile::read)
        problem = createFile(path + ".damaged", text);
    return printable(problem);
}

// Whether the finding is about a controller that this run has not read, and that stays in the kept state.
static bool isUnread(const Finding& finding, const Snapshot& now, const Snapshot& kept) {
    const std::uint32_t id = finding.object.controller;
    return finding.object.kind != ObjectKind::host && !isMissingController(finding) &&
           findController(now, id) == nullptr && findController(kept, id) != nullptr;
}

static Findings findingsToKeep(const SavedState& earlier, const RunResult& run, const Snapshot& kept) {
    Findings findings = run.known;
    for (const Finding& each : earlier.findings)
        if (isUnread(each, run.snapshot, kept) && !persists(run.known, each))
            findings.push_back(each);
    keepMissing(earlier.snapshot, earlier.findings, run.snapshot, run.chosen, &findings);
    sortFindings(&findings);
    return findings;
}

static std::string writeState(const std::string& path, const SavedState& earlier, const RunResult& run) {
    if (earlier.result != StateResult::read)
        return replaceFile(path, formatState({run.snapshot, run.known, run.limits}, {}));
    const Snapshot kept = stateToKeep(earlier.snapshot, run.snapshot, run.chosen);
    const Findings findings = findingsToKeep(earlier, run, kept);
    const FormerControllers former = formerToKeep(earlier.former, earlier.snapshot, earlier.findings, kept);
    return replaceFile(path, formatState({kept, findings, run.limits}, former));
}

std::string keepState(const std::string& path, const SavedState& earlier, const RunResult& run) {
    if (earlier.result == StateResult::unusable)
        return earlier.problem;
    std::string note = earlier.problem;
    if (earlier.result == StateResult::damaged) {
        const std::string failure = setAside(path);
        if (!failure.empty())
            return note + "; " + failure;
        note += "; saved as " + printable(path) + ".damaged";
    }
    const std::string failure = writeState(path, earlier, run);
    return failure.empty() ? note : printable(failure);
}
