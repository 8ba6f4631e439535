// Plain text: a line for each controller, a line for each finding, and a summary line.
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

static const char* colorOf(Severity severity) {
    static constexpr const char* colors[] = {"\x1b[36m", "\x1b[33m", "\x1b[1;31m", "\x1b[35m"};
    return colors[static_cast<std::size_t>(severity)];
}

static std::string colored(const std::string& word, Severity severity, const TextStyle& style) {
    return style.color ? colorOf(severity) + word + "\x1b[0m" : word;
}

std::string findingLine(const Finding& finding) {
    std::string line = objectText(finding.object) + ": " + finding.text;
    if (finding.percent)
        line += ", " + std::to_string(*finding.percent) + "%";
    return printable(line);
}

static std::string batteryText(const Controller& controller) {
    if (!controller.battery)
        return "battery unknown";
    return hasBattery(controller) ? std::string("battery ") + batteryStateText(batteryState(controller))
                                  : "no battery";
}

// A refused list is not an empty one.
static std::string listedText(const Controller& controller, std::size_t count, const char* object,
                              const char* operation) {
    return count == 0 && hasFault(controller, operation) ? std::string(object) + "s unknown"
                                                         : counted(count, object);
}

static std::string controllerLine(const Controller& controller) {
    return "controller " + std::to_string(controller.id) + ": " +
           listedText(controller, controller.drives.size(), "drive", "q5_getPhyDrvInfo") + ", " +
           listedText(controller, controller.logicalDrives.size(), "logical drive", "q5_getLogDrvInfo") +
           ", " + listedText(controller, controller.enclosures.size(), "enclosure", "q5_getEnclosureInfo") +
           ", " + batteryText(controller) + "\n";
}

std::string formatText(const Report& report, const TextStyle& style) {
    std::string text;
    for (const Controller& controller : report.snapshot.controllers) {
        if (!style.quiet)
            text += controllerLine(controller);
        if (style.verbose && !style.quiet)
            text += formatObjects(controller);
    }
    for (const Finding& finding : report.findings) {
        const Severity severity = finding.rule->severity;
        if (style.quiet && severity == Severity::info)
            continue;
        text += colored(severityText(severity), severity, style) + ": " + findingLine(finding) + "\n";
        if (style.verbose)
            text += std::string("  rule ") + finding.rule->id + "; see \"" + finding.rule->action +
                    "\" in cli-status(8)\n";
    }
    return style.quiet ? text : text + summaryText(report.snapshot, report.findings) + "\n";
}
