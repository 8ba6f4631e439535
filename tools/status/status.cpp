// cli-status: reads everything from the adapters, evaluates it, and reports.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "snapshot/read.h"
#include "tools/status/format.h"
#include "tools/status/options.h"
#include "tools/status/rules.h"

static constexpr int kUnknown = 3; // also of usage errors

static int complain(const std::string& problem) {
    std::fprintf(stderr, "cli-status: %s\n", problem.c_str());
    return kUnknown;
}

// The whole of a file. Returns whether it could be read.
static bool readWholeFile(const std::string& path, std::string* text) {
    std::FILE* file = std::fopen(path.c_str(), "r");
    if (file == nullptr)
        return false;
    char buffer[8192];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;)
        text->append(buffer, count);
    const bool complete = std::ferror(file) == 0;
    return std::fclose(file) == 0 && complete;
}

static std::string readLimits(const std::string& path, Limits* limits) {
    std::string text;
    if (path.empty())
        return "";
    if (!readWholeFile(path, &text))
        return "cannot read " + path;
    const std::string problem = applyLimits(text, limits);
    return problem.empty() ? "" : path + ": " + problem;
}

static void takeSnapshot(const Options& options, Snapshot* snapshot) {
    if (openAdapters(snapshot) != OpenResult::opened)
        return;
    if (options.controller)
        snapshot->controllers.push_back(readController(*options.controller));
    else
        readControllers(snapshot);
    closeAdapters();
}

static TextStyle textStyle(const Options& options) {
    const char* noColor = std::getenv("NO_COLOR");
    const bool color = (noColor == nullptr || *noColor == '\0') && isatty(STDOUT_FILENO) != 0;
    return {options.verbose, options.quiet, color};
}

static bool print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

static std::string format(const Options& options, const Report& report) {
    return options.format == Format::json ? formatJson(report) : formatText(report, textStyle(options));
}

static int report(const Options& options, const Limits& limits) {
    Snapshot snapshot;
    takeSnapshot(options, &snapshot);
    const Findings findings = evaluate(snapshot, limits, nullptr);
    if (!print(format(options, {snapshot, findings})))
        return complain("cannot write to standard output");
    return exitStatus(worstSeverity(findings));
}

int main(int argc, char** argv) {
    Options options;
    const OptionsResult result = readOptions(argc, argv, &options);
    if (result != OptionsResult::run)
        return result == OptionsResult::done ? 0 : kUnknown;
    Limits limits;
    const std::string problem = readLimits(options.limits, &limits);
    return problem.empty() ? report(options, limits) : complain(problem);
}
