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
#include "tools/common/standard_streams.h"
#include "tools/status/changes.h"
#include "tools/status/follow.h"
#include "tools/status/format.h"
#include "tools/status/log.h"
#include "tools/status/options.h"
#include "tools/status/page.h"
#include "tools/status/rules.h"
#include "tools/status/state_file.h"

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

static std::string readBaseline(const std::string& path, Snapshot* snapshot) {
    std::string text, problem;
    if (path.empty())
        return "";
    if (readRegularFile(path, &text, &problem) != RegularFile::read)
        return printable(problem);
    problem = snapshotFromText(text, snapshot);
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

// Writes to the file of the format's option, or to standard output. Returns an error message, empty on
// success.
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

// Prints what changed since the kept state, then keeps the new one. changed: the worst change.
static std::string reportChanges(const Options& options, SavedState saved, const Report& report,
                                 const Snapshot* baseline, Severity* changed) {
    Lines lines = followControllers(report.snapshot, &saved.snapshot, &saved.findings, &saved.former);
    const Snapshot earlier = limitedTo(options, saved.snapshot);
    const bool first = saved.result != StateResult::read;
    const Changes changes =
        findChanges(first ? nullptr : &earlier, report.snapshot, report.limits, baseline, &saved.findings);
    addLines(changes.lines, &lines);
    *changed = worstLine(lines);
    std::string problem = writeOutput(options, formatLines(lines, options.quiet));
    if (options.syslog)
        sendToSyslog(lines);
    if (!problem.empty())
        return problem;
    return keepState(options.changes, saved,
                     {report.snapshot, changes.findings, options.controller, report.limits});
}

static std::string reportState(const Options& options, const Report& report) {
    if (options.syslog)
        sendToSyslog(findingLines(report.findings));
    return writeOutput(options, format(options, report));
}

// Whether the chosen controller is neither there nor in the baseline. If the library failed, that is reported
// instead.
static bool isAbsent(const Options& options, const Snapshot& snapshot, const Snapshot& baseline) {
    return options.controller && snapshot.controllers.empty() && snapshot.faults.empty() &&
           baseline.controllers.empty();
}

static int refuseAbsent(const Options& options) {
    return printError(options, "there is no controller " + std::to_string(*options.controller));
}

// An absent controller is reported as missing, once, if an earlier run has read it.
static int runChanges(const Options& options, const Report& report, const Snapshot* baseline, bool absent) {
    const SavedState saved = readSavedState(options.changes);
    if (absent && !isKnownController(saved, *options.controller))
        return refuseAbsent(options);
    Severity changed = Severity::info; // the findings of the present state do not contain what disappeared
    const std::string problem = reportChanges(options, saved, report, baseline, &changed);
    if (!problem.empty())
        printError(options, problem);
    const Severity doubt = problem.empty() && !absent ? Severity::info : Severity::unknown;
    return exitStatus(worseOf(worseOf(changed, doubt), worstSeverity(report.findings)));
}

// A failure to write is unknown: the reader of the output does not get the status.
static int runState(const Options& options, const Report& report) {
    const std::string problem = reportState(options, report);
    return problem.empty() ? exitStatus(worstSeverity(report.findings)) : printError(options, problem);
}

static int run(const Options& options) {
    Limits limits;
    Snapshot baseline, snapshot;
    std::string problem = readLimits(options.limits, &limits);
    if (problem.empty())
        problem = readBaseline(options.baseline, &baseline);
    if (!problem.empty())
        return printError(options, problem);
    baseline = limitedTo(options, std::move(baseline));
    takeSnapshot(options, &snapshot);
    const bool absent = isAbsent(options, snapshot, baseline);
    if (absent && options.changes.empty())
        return refuseAbsent(options);
    const Snapshot* compared = options.baseline.empty() ? nullptr : &baseline;
    const Findings findings = evaluate(snapshot, limits, compared);
    const Report report = {snapshot, findings, limits};
    return options.changes.empty() ? runState(options, report)
                                   : runChanges(options, report, compared, absent);
}

// Whether the word is --plugin, also abbreviated, or with an argument, which it does not take.
static bool isPluginOption(std::string_view word) {
    static constexpr std::string_view name = "--plugin", shortest = "--pl";
    word = word.substr(0, word.find('='));
    return word.size() >= shortest.size() && name.starts_with(word);
}

// Searches the words themselves: the options were refused, so that the format may be unknown.
static bool requestsPlugin(int argc, char** argv) {
    char** end = std::find_if(argv, argv + argc, [](std::string_view word) { return word == "--"; });
    return std::any_of(argv, end, isPluginOption);
}

int main(int argc, char** argv) {
    openStandardStreams();
    Options options;
    const OptionsResult result = readOptions(argc, argv, &options);
    if (result == OptionsResult::run)
        return run(options);
    if (result != OptionsResult::done && requestsPlugin(argc, argv))
        std::puts(pluginProblem("usage error, see cli-status --help").c_str());
    return result == OptionsResult::done ? 0 : kUnknown;
}
