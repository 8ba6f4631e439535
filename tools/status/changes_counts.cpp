// Findings about lists with fewer or more objects than the controller counts, from one run to the next.
#include "tools/status/changes_counts.h"

#include <algorithm>

#include "snapshot/json.h"
#include "tools/status/changes_match.h"
#include "tools/status/rules.h"

static bool isCountRule(std::string_view id) {
    return id == "drive-count" || id == "array-count";
}

bool isCount(const Finding& finding) {
    return isCountRule(finding.rule->id);
}

Findings countFindings(const Snapshot& snapshot, const Limits& limits) {
    Findings findings = evaluate(snapshot, limits, nullptr);
    std::erase_if(findings, [](const Finding& finding) { return !isCount(finding); });
    return findings;
}

static std::string textOf(const Json& json, const char* key) {
    const auto text = json.find(key);
    return text != json.end() && text->is_string() ? text->get<std::string>() : "";
}

static const Rule* findCountRule(const std::string& id) {
    for (const Rule& rule : rules())
        if (isCountRule(id) && id == rule.id)
            return &rule;
    return nullptr;
}

// The text in the file starts with the object.
static void addSaved(const Json& json, std::uint32_t controller, Findings* findings) {
    const Object object = {ObjectKind::controller, controller, controller, ""};
    const std::string start = objectText(object) + ": ", text = textOf(json, "text");
    const Rule* rule = findCountRule(textOf(json, "rule"));
    if (rule != nullptr && text.starts_with(start))
        findings->push_back({rule, object, text.substr(start.size()), std::nullopt});
}

Findings savedCounts(const std::string& text) {
    Findings findings;
    const Json json = Json::parse(text, nullptr, false);
    const auto list = json.find("findings");
    if (list == json.end() || !list->is_array())
        return findings;
    for (const Json& each : *list) {
        const auto object = each.find("object");
        if (object == each.end() || !object->is_object())
            continue;
        const auto number = object->find("number");
        if (number != object->end() && number->is_number_unsigned() &&
            number->get<std::uint64_t>() < kMaxSnapshotControllers)
            addSaved(each, number->get<std::uint32_t>(), &findings);
    }
    return findings;
}

// The list may lack objects that the controller counts because of what could not be read.
bool mayCountBeHidden(const Findings& now, const Finding& count) {
    return std::any_of(now.begin(), now.end(), [&](const Finding& each) {
        return each.rule->severity == Severity::unknown && !isCount(each) &&
               (each.object.kind == ObjectKind::host || each.object.controller == count.object.controller);
    });
}

Findings carriedCounts(const Findings& earlier, const Snapshot& now, const Findings& findings) {
    Findings carried;
    for (const Finding& each : earlier) {
        const bool unread =
            findController(now, each.object.controller) == nullptr || mayCountBeHidden(findings, each);
        if (unread && !persists(findings, each))
            carried.push_back(each);
    }
    return carried;
}
