// The whole snapshot and the findings as JSON. docs/cli-status.schema.json describes it.
#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

static Json objectToJson(const Object& object) {
    Json json = {{"kind", objectKindText(object.kind)}};
    json["controller"] = object.kind == ObjectKind::host ? Json() : Json(object.controller);
    json["number"] = object.kind == ObjectKind::host ? Json() : Json(object.number);
    addText(&json, "name", object.name);
    return json;
}

static Json findingToJson(const Finding& finding) {
    return {{"rule", finding.rule->id},
            {"severity", severityText(finding.rule->severity)},
            {"object", objectToJson(finding.object)},
            {"text", findingLine(finding)},
            {"percent", finding.percent ? Json(*finding.percent) : Json()},
            {"action", finding.rule->action}};
}

static Json reportToJson(const Report& report) {
    const Severity worst = worstSeverity(report.findings);
    Json json = {{"format", kJsonFormat},
                 {"status", statusText(worst)},
                 {"exitStatus", exitStatus(worst)},
                 {"summary", summaryText(report.snapshot, report.findings)},
                 {"findings", Json::array()}};
    for (const Finding& finding : report.findings)
        json["findings"].push_back(findingToJson(finding));
    json.update(snapshotToJson(report.snapshot));
    return json;
}

static std::string documentOf(const Json& json) {
    return json.dump(2) + "\n";
}

std::string formatJson(const Report& report) {
    return documentOf(reportToJson(report));
}

static Json findingsWithParts(const Findings& findings) {
    Json list = Json::array();
    for (const Finding& each : findings) {
        list.push_back(findingToJson(each));
        if (!each.parts.empty())
            list.back()["parts"] = each.parts;
    }
    return list;
}

static Json formerToJson(const FormerController& former) {
    Json json = {{"missing", former.missing}, {"findings", findingsWithParts(former.findings)}};
    json.update(snapshotToJson({1, {former.controller}, {}}));
    return json;
}

std::string formatState(const Report& report, const FormerControllers& former) {
    Json json = reportToJson(report);
    json["findings"] = findingsWithParts(report.findings);
    for (const FormerController& each : former)
        json["formerControllers"].push_back(formerToJson(each));
    return documentOf(json);
}
