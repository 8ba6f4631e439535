// cli-capture: reads everything from the adapters and writes it as a world for the simulated ones.
#include <cstdio>

#include "simulator/engine/clock.h"
#include "snapshot/files.h"
#include "snapshot/read.h"
#include "tools/capture/capture.h"
#include "tools/capture/options.h"
#include "tools/common/standard_streams.h"

enum ExitStatus { kCaptured = 0, kIncomplete = 1, kUsage = 2, kNotCaptured = 3 };

static int printError(const std::string& problem) {
    std::fprintf(stderr, "cli-capture: %s\n", problem.c_str());
    return kNotCaptured;
}

// Writes to the file, or to standard output if it has no name. Returns an error message, empty on success.
static std::string writeOutput(const std::string& output, const std::string& text) {
    if (!output.empty())
        return replaceFile(output, text);
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    return std::fflush(stdout) == 0 && written ? "" : "cannot write to standard output";
}

static int run(const CaptureOptions& options) {
    Snapshot snapshot;
    const OpenResult opened = openAdapters(&snapshot);
    if (opened == OpenResult::failed)
        return printError("the adapters cannot be read: " + faultText(snapshot.faults.front()));
    if (opened == OpenResult::opened) {
        readControllers(&snapshot);
        closeAdapters();
    }
    if (options.anonymous)
        makeAnonymous(&snapshot);
    const Capture capture = captureWorld(snapshot, q5sim::currentRealTime());
    if (!capture.problem.empty())
        return printError("this cannot be a world: " + capture.problem);
    for (const std::string& line : capture.assumed)
        std::fprintf(stderr, "cli-capture: assumed: %s\n", line.c_str());
    const std::string problem = writeOutput(options.output, capture.text);
    if (!problem.empty())
        return printError(problem);
    return capture.complete ? kCaptured : kIncomplete;
}

int main(int argc, char** argv) {
    openStandardStreams();
    CaptureOptions options;
    const OptionsResult result = readCaptureOptions(argc, argv, &options);
    if (result != OptionsResult::run)
        return result == OptionsResult::done ? kCaptured : kUsage;
    return run(options);
}
