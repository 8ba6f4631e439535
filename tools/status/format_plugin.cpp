// What a monitoring plugin prints: one line with performance data after "|", and the findings after it.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

// The text of a plugin ends at "|".
static std::string withoutBars(const std::string& text) {
    std::string result;
    for (const char character : text)
        result += character == '|' ? "\\x7c" : std::string(1, character);
    return result;
}

static std::string stateWord(Severity worst) {
    std::string word = statusText(worst);
    std::transform(word.begin(), word.end(), word.begin(), [](char letter) {
        return static_cast<char>(letter >= 'a' && letter <= 'z' ? letter - 'a' + 'A' : letter);
    });
    return word;
}

static std::string joined(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts)
        text += part;
    return text;
}

// One item: 'label'=value;warning;critical;least;most, the last ones left out when empty.
static std::string item(std::string_view label, std::string_view value, std::string_view limits) {
    return joined({" ", label, "=", value, limits});
}

// The start of the labels of a controller, and of its objects by their letter and ID.
static std::string prefix(const Controller& controller) {
    return joined({"c", std::to_string(controller.id), "_"});
}
static std::string prefix(const Controller& controller, const char* letter, std::uint32_t id) {
    return joined({prefix(controller), letter, std::to_string(id), "_"});
}

static std::string count(const char* label, std::size_t value) {
    return item(label, std::to_string(value), ";;;0");
}

static std::size_t countLostMembers(const Controller& controller) {
    std::size_t lost = 0;
    for (const LogicalDrive& drive : controller.logicalDrives)
        for (const Member& member : drive.members)
            lost += member.lost ? 1 : 0;
    return lost;
}

static std::string totals(const Report& report) {
    std::size_t drives = 0, logicalDrives = 0, lost = 0;
    for (const Controller& controller : report.snapshot.controllers) {
        drives += controller.drives.size();
        logicalDrives += controller.logicalDrives.size();
        lost += countLostMembers(controller);
    }
    return count("critical", countSeverity(report.findings, Severity::critical)) +
           count("warning", countSeverity(report.findings, Severity::warning)) +
           count("unknown", countSeverity(report.findings, Severity::unknown)) +
           count("controllers", report.snapshot.controllers.size()) + count("drives", drives) +
           count("logical_drives", logicalDrives) + count("lost_members", lost);
}

// Ranges that alert from the limit on, like the rules: "45" would alert below 0, and not at 45 itself.
static std::string alertsFrom(int warning, int critical) {
    return joined({";@", std::to_string(warning), ":;@", std::to_string(critical), ":"});
}

// The hottest sensor of an enclosure.
static std::string enclosureItem(const Report& report, const Controller& controller,
                                 const Enclosure& enclosure) {
    std::optional<std::int32_t> hottest;
    if (enclosure.status)
        for (const EnclosureSensor& sensor : enclosure.status->sensor)
            if (sensor.type == kTemperatureSensor)
                hottest = std::max(hottest.value_or(INT32_MIN), static_cast<std::int32_t>(sensor.reading));
    if (!hottest)
        return "";
    return item(prefix(controller, "e", enclosure.id) + "temperature", std::to_string(*hottest),
                alertsFrom(report.limits.enclosureWarmCelsius, report.limits.enclosureHotCelsius));
}

static std::string activityItems(const Controller& controller, const LogicalDrive& drive) {
    std::string items;
    for (const Activity& activity : drive.activities) {
        std::string name = activityText(activity.kind);
        std::replace(name.begin(), name.end(), ' ', '_');
        items += item(prefix(controller, "l", drive.info.logDrvId) + name,
                      std::to_string(activity.percent) + "%", ";;;0;100");
    }
    return items;
}

static std::string controllerItems(const Report& report, const Controller& controller) {
    std::string items;
    if (hasBattery(controller) && controller.battery->temperature != 0)
        items += item(prefix(controller) + "battery_temperature",
                      decimal(batteryTenthsCelsius(*controller.battery), 1),
                      alertsFrom(report.limits.batteryWarmCelsius, report.limits.batteryHotCelsius));
    for (const Enclosure& enclosure : controller.enclosures)
        items += enclosureItem(report, controller, enclosure);
    for (const LogicalDrive& drive : controller.logicalDrives)
        items += activityItems(controller, drive);
    return items;
}

std::string pluginProblem(const std::string& problem) {
    return "SATARAID UNKNOWN: " + withoutBars(problem);
}

std::string formatPlugin(const Report& report) {
    std::string text = "SATARAID " + stateWord(worstSeverity(report.findings)) + ": " +
                       summaryText(report.snapshot, report.findings) + " |" + totals(report);
    for (const Controller& controller : report.snapshot.controllers)
        text += controllerItems(report, controller);
    text += "\n";
    for (const Finding& finding : report.findings)
        text += withoutBars(std::string(severityText(finding.rule->severity)) + ": " + findingLine(finding)) +
                "\n";
    return text;
}
