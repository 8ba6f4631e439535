// cli-status: reads everything from the adapters, evaluates it, and reports.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "snapshot/files.h"
#include "snapshot/json.h"
#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tools/common/regular_file.h"
#include "tools/status/changes.h"
#include "tools/status/changes_combined.h"
#include "tools/status/changes_missing.h"
#include "tools/status/changes_unread.h"
#include "tools/status/format.h"
#include "tools/status/log.h"
#include "tools/status/options.h"
#include "tools/status/page.h"
#include "tools/status/rules.h"

static constexpr int kUnknown = 3; // also of usage errors

// A monitoring system shows only what a plugin prints to standard output.
static int printError(const Options& options, const std::string& problem) {
    if (options.format == Format::plugin)
        std::puts(pluginProblem(problem).c_str());
    else
        std::fprintf(stderr, "cli-status: %s\n", problem.c_str());
    return kUnknown;
}

static std::string readLimits(const std::string& path, Limits* limits) {
    std::string text, problem;
    if (path.empty())
        return "";
    if (readRegularFile(path, &text, &problem) != RegularFile::read)
        return printable(problem);
    problem = applyLimits(text, limits);
    return problem.empty() ? "" : printable(path) + ": " + problem;
}

// An earlier snapshot. missing: the file does not exist; kept: see changes_combined.h, may be null.
static std::string readSnapshot(const std::string& path, Snapshot* snapshot, bool* missing,
                                Findings* kept = nullptr) {
    std::string text, problem;
    const RegularFile result = readRegularFile(path, &text, &problem);
    *missing = result == RegularFile::missing;
    if (result != RegularFile::read)
        return printable(problem);
    problem = snapshotFromText(text, snapshot);
    if (problem.empty() && kept != nullptr)
        *kept = savedFindings(text);
    return problem.empty() ? "" : printable(path) + ": " + problem;
}

// The part of an earlier snapshot that this run reads as well.
static Snapshot limitedTo(const Options& options, Snapshot snapshot) {
    if (options.controller)
        std::erase_if(snapshot.controllers,
                      [&](const Controller& each) { return each.id != *options.controller; });
    return snapshot;
}

static void takeSnapshot(const Options& options, Snapshot* snapshot) {
    if (openAdapters(snapshot) != OpenResult::opened)
        return;
    if (!options.controller)
        readControllers(snapshot);
    else if (*options.controller < snapshot->controllerCount)
        snapshot->controllers.push_back(readController(*options.controller));
    closeAdapters();
}

static TextStyle textStyle(const Options& options) {
    const char* noColor = std::getenv("NO_COLOR");
    const bool color = (noColor == nullptr || *noColor == '\0') && isatty(STDOUT_FILENO) != 0;
    return {options.verbose, options.quiet, color};
}

static std::string format(const Options& options, const Report& report) {
    switch (options.format) {
    case Format::json:
        return formatJson(report);
    case Format::plugin:
        return formatPlugin(report);
    case Format::metrics:
        return formatMetrics(report);
    case Format::page:
        return formatPage(report, pageOrigin());
    default:
        return formatText(report, textStyle(options));
    }
}

// To the file of the format's option, or to standard output. Returns an error message,
// empty on success.
static std::string writeOutput(const Options& options, const std::string& text) {
    if (!options.output.empty())
        return replaceFile(options.output, text);
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    return std::fflush(stdout) == 0 && written ? "" : "cannot write to standard output";
}

static std::string formatLines(const Lines& lines, bool quiet) {
    std::string text;
    for (const Line& line : lines)
        if (!quiet || line.severity != Severity::info)
            text += std::string(severityText(line.severity)) + ": " + line.text + "\n";
    return text;
}

static Severity worstLine(const Lines& lines) {
    Severity worst = Severity::info;
    for (const Line& line : lines)
        worst = worseOf(worst, line.severity);
    return worst;
}

static std::string keptText(const Options& options, const Report& report, const Snapshot* earlier,
                            const Findings& earlierFindings) {
    Findings findings = report.findings;
    carryCombined(earlierFindings, report.snapshot, &findings);
    if (earlier != nullptr)
        keepMissing(*earlier, earlierFindings, report.snapshot, options.controller, &findings);
    const Snapshot kept =
        earlier != nullptr ? stateToKeep(*earlier, report.snapshot, options.controller) : report.snapshot;
    return formatJson({kept, findings, report.limits});
}

// Prints what changed since the kept state, then keeps the new one.
static std::string reportChanges(const Options& options, const Report& report, const Snapshot* baseline,
                                 Severity* worst) {
    Snapshot saved;
    Findings findings; // of the earlier run
    bool missing = false;
    std::string problem = readSnapshot(options.changes, &saved, &missing, &findings);
    if (!problem.empty() && !missing)
        return problem;
    const Snapshot earlier = limitedTo(options, saved);
    const Lines lines =
        changeLines(missing ? nullptr : &earlier, report.snapshot, report.limits, baseline, &findings);
    *worst = worstLine(lines);
    problem = writeOutput(options, formatLines(lines, options.quiet));
    if (options.syslog)
        sendToSyslog(lines);
    if (!problem.empty())
        return problem;
    return replaceFile(options.changes, keptText(options, report, missing ? nullptr : &saved, findings));
}

static std::string reportState(const Options& options, const Report& report) {
    if (options.syslog)
        sendToSyslog(findingLines(report.findings));
    return writeOutput(options, format(options, report));
}

static int run(const Options& options) {
    Limits limits;
    Snapshot baseline, snapshot;
    bool missing = false;
    std::string problem = readLimits(options.limits, &limits);
    if (problem.empty() && !options.baseline.empty())
        problem = readSnapshot(options.baseline, &baseline, &missing);
    baseline = limitedTo(options, std::move(baseline));
    if (!problem.empty())
        return printError(options, problem);
    takeSnapshot(options, &snapshot);
    if (options.controller && snapshot.controllers.empty() && snapshot.faults.empty() &&
        baseline.controllers.empty())
        return printError(options, "there is no controller " + std::to_string(*options.controller));
    const Snapshot* compared = options.baseline.empty() ? nullptr : &baseline;
    const Findings findings = evaluate(snapshot, limits, compared);
    const Report report = {snapshot, findings, limits};
    Severity changed = Severity::info; // what disappeared is no finding of the present state
    problem = options.changes.empty() ? reportState(options, report)
                                      : reportChanges(options, report, compared, &changed);
    return problem.empty() ? exitStatus(worseOf(changed, worstSeverity(findings)))
                           : printError(options, problem);
}

// Also abbreviated, and with an argument that it does not take.
static bool isPluginOption(std::string_view word) {
    static constexpr std::string_view name = "--plugin", shortest = "--pl";
    word = word.substr(0, word.find('='));
    return word.size() >= shortest.size() && name.starts_with(word);
}

// The options were refused, so that the format may not be known.
static bool requestsPlugin(int argc, char** argv) {
    char** end = std::find_if(argv, argv + argc, [](std::string_view word) { return word == "--"; });
    return std::any_of(argv, end, isPluginOption);
}

int main(int argc, char** argv) {
    Options options;
    const OptionsResult result = readOptions(argc, argv, &options);
    if (result == OptionsResult::run)
        return run(options);
    if (result != OptionsResult::done && requestsPlugin(argc, argv))
        std::puts(pluginProblem("usage error, see cli-status --help").c_str());
    return result == OptionsResult::done ? 0 : kUnknown;
}
