// Runs cli-restore-rehearse over a captured world in a temporary directory.
#include "tools/restore/copy.h"

#include <stdlib.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "simulator/engine/clock.h"
#include "snapshot/files.h"
#include "tools/capture/capture.h"
#include "tools/common/programs.h"
#include "util/signals.h"

static std::string temporaryPattern() {
    const char* directory = std::getenv("TMPDIR");
    return std::string(directory != nullptr && *directory != '\0' ? directory : "/tmp") +
           "/cli-restore-XXXXXX";
}

static std::string absolutePath(const std::string& path) {
    std::error_code error;
    const std::string absolute = std::filesystem::absolute(path, error).string();
    return error ? path : absolute;
}

static int runIn(const std::string& directory, const CopyRun& run, std::int64_t time, std::string* output) {
    ProgramRun program;
    program.program = run.program;
    program.words = {"--apply", "-i", run.controller, "--from", run.from, "--log", directory + "/log"};
    if (!run.drives.empty())
        program.words.insert(program.words.end(), {"--drives", run.drives});
    program.words.insert(program.words.end(), {"--", absolutePath(run.file)});
    program.directory = directory;
    program.variables = {{"Q5SIM_WORLD", directory + "/world.json"}, {"Q5SIM_NOW", std::to_string(time)}};
    const int status = runProgram(program, output);
    if (status < 0)
        *output = "cannot run " + run.program;
    return status;
}

static int applyIn(const CopyRun& run, const std::string& world, std::int64_t time, std::string* output) {
    std::string directory = temporaryPattern();
    if (mkdtemp(directory.data()) == nullptr) {
        *output = "cannot create a directory in place of " + directory;
        return -1;
    }
    *output = replaceFile(directory + "/world.json", world);
    const int status = output->empty() ? runIn(directory, run, time, output) : -1;
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
    return status;
}

template <typename Record>
static void assume(const std::optional<Record>& saved, std::optional<Record>* now) {
    if (!*now)
        *now = saved;
}

static void assumeDrives(const Controller& saved, const DriveMap& drives, Controller* now) {
    for (const Drive& drive : saved.drives) {
        const auto mapped = drives.find(drive.number);
        const auto number = mapped != drives.end() ? mapped->second : drive.number;
        for (Drive& present : now->drives)
            if (present.number == number) {
                assume(drive.settings, &present.settings);
                assume(drive.speed3Gb, &present.speed3Gb);
            }
    }
}

void assumeSavedSettings(const Controller& saved, std::uint32_t id, const DriveMap& drives, Snapshot* now) {
    for (Controller& controller : now->controllers) {
        if (controller.id != id)
            continue;
        assume(saved.settings, &controller.settings);
        assume(saved.buzzer, &controller.buzzer);
        assumeDrives(saved, drives, &controller);
        for (LogicalDrive& present : controller.logicalDrives)
            if (const LogicalDrive* drive = findLogicalDrive(saved, present.info.logDrvId))
                assume(drive->settings, &present.settings);
    }
}

// Signals are deferred until the copy has been removed.
int applyToCopy(const CopyRun& run, const Snapshot& now, std::string* output) {
    const std::int64_t time = q5sim::currentRealTime();
    const Capture capture = captureWorld(now, time);
    if (capture.text.empty()) {
        *output = "the adapters cannot be copied: " + capture.problem;
        return -1;
    }
    sigset_t before;
    blockSignals(&before);
    const int status = applyIn(run, capture.text, time, output);
    restoreSignals(&before);
    return status;
}
