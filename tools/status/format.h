// The output formats. Each is one function from a report to text.
#pragma once

#include <string>

#include "snapshot/snapshot.h"
#include "tools/status/finding.h"
#include "tools/status/former.h"
#include "tools/status/limits.h"

struct Report {
    const Snapshot& snapshot;
    const Findings& findings;
    const Limits& limits;
};

struct TextStyle {
    bool verbose = false;
    bool quiet = false;
    bool color = false;
};

std::string formatText(const Report& report, const TextStyle& style);
std::string formatJson(const Report& report);
std::string formatPlugin(const Report& report);
std::string pluginProblem(const std::string& problem); // the line printed when there is no report
std::string formatMetrics(const Report& report);

// For a later run: the same with the parts of the findings, and the former controllers.
std::string formatState(const Report& report, const FormerControllers& former);

// Every object of a controller, a line each.
std::string formatObjects(const Controller& controller);

// "drive 2 of controller 0: predicts its failure (SMART); channel 1, serial X", printable
std::string findingLine(const Finding& finding);
