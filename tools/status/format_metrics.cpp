// The Prometheus text format, and the metrics of the whole host.
#include "snapshot/text.h"
#include "tools/status/metrics.h"
#include "tools/status/rules.h"

static std::string escapedLabel(const std::string& value) {
    std::string escaped;
    for (const char character : printable(value)) {
        if (character == '\\' || character == '"')
            escaped += '\\';
        escaped += character;
    }
    return escaped;
}

void addSeries(Series* series, const Labels& labels, const std::string& value) {
    std::string& line = *series->text;
    line += series->family;
    char separator = '{';
    for (const auto& [name, text] : labels) {
        line += separator;
        line.append(name).append("=\"").append(escapedLabel(text)).append("\"");
        separator = ',';
    }
    line.append(labels.empty() ? " " : "} ").append(value).append("\n");
}

Labels controllerLabels(const Controller& controller) {
    return {{"controller", std::to_string(controller.id)}};
}

std::string yesNo(bool value) {
    return value ? "1" : "0";
}

std::string ratio(std::uint32_t percent) {
    return decimal(percent, 2);
}

// A value of 1 for the state that holds, 0 for the others.
static void addStatus(const Report& report, Series* series) {
    static constexpr const char* states[] = {"ok", "warning", "critical", "unknown"};
    const std::string now = statusText(worstSeverity(report.findings));
    for (const char* state : states)
        addSeries(series, {{"state", state}}, yesNo(now == state));
}

static void addFindingCounts(const Report& report, Series* series) {
    for (const Severity severity : {Severity::info, Severity::warning, Severity::critical, Severity::unknown})
        addSeries(series, {{"severity", severityText(severity)}},
                  std::to_string(countSeverity(report.findings, severity)));
}

static void addRuleCounts(const Report& report, Series* series, std::span<const Rule> table) {
    for (const Rule& rule : table) {
        std::size_t count = 0;
        for (const Finding& finding : report.findings)
            count += finding.rule == &rule ? 1 : 0;
        addSeries(series, {{"rule", rule.id}, {"severity", severityText(rule.severity)}},
                  std::to_string(count));
    }
}

static void addAllRuleCounts(const Report& report, Series* series) {
    addRuleCounts(report, series, rules());
    addRuleCounts(report, series, baselineRules());
}

static void addControllerCount(const Report& report, Series* series) {
    addSeries(series, {}, std::to_string(report.snapshot.controllers.size()));
}

std::span<const MetricFamily> hostMetrics() {
    static constexpr MetricFamily families[] = {
        {"sataraid_status",
         "Whether this is the state of the host: 1 for one of the states, 0 for the others.", addStatus},
        {"sataraid_findings", "Findings of this severity.", addFindingCounts},
        {"sataraid_rule_findings", "Findings of this rule.", addAllRuleCounts},
        {"sataraid_controllers", "Controllers that were read.", addControllerCount},
    };
    return families;
}

static void addFamilies(const Report& report, std::span<const MetricFamily> families, std::string* text) {
    for (const MetricFamily& family : families) {
        std::string lines;
        Series series = {family.name, &lines};
        family.add(report, &series);
        if (!lines.empty())
            *text += std::string("# HELP ") + family.name + " " + family.help + "\n# TYPE " + family.name +
                     " gauge\n" + lines;
    }
}

std::string formatMetrics(const Report& report) {
    std::string text;
    for (const auto families : {hostMetrics(), controllerMetrics(), driveMetrics(), logicalDriveMetrics()})
        addFamilies(report, families, &text);
    return text;
}
