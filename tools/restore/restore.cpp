// cli-restore: plans the restore of a saved controller, and applies the plan.
#include <sys/stat.h>

#include <cstdio>

#include "commands/change_lock.h"
#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tools/common/programs.h"
#include "tools/common/standard_streams.h"
#include "tools/restore/apply.h"
#include "tools/restore/copy.h"
#include "tools/restore/options.h"
#include "tools/restore/origin.h"
#include "tools/restore/saved.h"

enum ExitStatus { kNothingLeft = 0, kCanApply = 1, kUsage = 2, kFailed = 3, kPrevented = 4, kStopped = 5 };

static int printError(const std::string& problem) {
    std::fprintf(stderr, "cli-restore: %s\n", printable(problem).c_str());
    return kFailed;
}

static void print(const Plan& plan) {
    int number = 0;
    for (const Step& step : plan.steps)
        std::printf("%d. %s\n", ++number, step.text.c_str());
    for (const std::string& obstacle : plan.obstacles)
        std::printf("prevented: %s\n", obstacle.c_str());
    for (const std::string& note : plan.notes)
        std::printf("note: %s\n", note.c_str());
}

// The logical drives that a restore leaves in a worse state; empty: none.
static std::string impairedText(const Plan& plan) {
    std::string text;
    for (const std::string& each : plan.impaired)
        text += (text.empty() ? "" : "; ") + each;
    return text;
}

// Prints the outcome of the plan on a copy of the adapters.
static int showOutcome(const Saved& saved, const Restore& restore, const Snapshot& now,
                       const char* argument0) {
    std::string program = siblingProgram(argument0, "cli-restore-rehearse");
    if (program.empty())
        program = siblingProgram(argument0, "../libexec/cli/cli-restore-rehearse");
    if (program.empty()) {
        std::puts("The outcome is not shown: cli-restore-rehearse is not installed.");
        return kCanApply;
    }
    std::string output;
    Snapshot copied = now;
    assumeSavedSettings(restore.saved, restore.controller, restore.drives, &copied);
    const int status = applyToCopy({program, saved.stem, std::to_string(restore.controller),
                                    std::to_string(restore.saved.id), driveMapText(restore.drives)},
                                   copied, &output);
    std::printf("On a copy of these adapters:\n%s", output.c_str());
    if (output.empty() || output.back() != '\n')
        std::puts("");
    if (status == kNothingLeft)
        return kCanApply;
    std::puts("The plan did not work on the copy.");
    return kStopped;
}

static int showPlan(const Saved& saved, const Restore& restore, const Snapshot& now,
                    const Controller& present, const char* argument0) {
    const Plan plan = makePlan(restore.saved, present, restore.drives);
    print(plan);
    if (!plan.obstacles.empty())
        return kPrevented;
    if (!plan.steps.empty())
        return showOutcome(saved, restore, now, argument0);
    const std::string impaired = impairedText(plan);
    std::printf("There is nothing to do%s%s.\n", impaired.empty() ? "" : ", but ", impaired.c_str());
    return kNothingLeft;
}

static void printEnd(const Restore& restore) {
    const Plan left = makePlan(restore.saved, readController(restore.controller), restore.drives);
    for (const std::string& note : left.notes)
        std::printf("note: %s\n", note.c_str());
    const std::string impaired = impairedText(left);
    std::printf("Controller %u is %sas it was saved%s%s.\n", restore.controller,
                impaired.empty() ? "" : "not ", impaired.empty() ? "" : ": ", impaired.c_str());
}

static int applyLogged(const Restore& restore, const Plan& plan, const LogHeader& header,
                       const std::string& path) {
    Log log;
    std::string problem = openLog(path, &log);
    if (problem.empty())
        problem = addToLog(log, beginLine(header));
    const ApplyResult result = problem.empty() ? applyPlan(restore, plan, log) : ApplyResult::failed;
    closeLog(&log);
    if (!problem.empty())
        return printError(problem);
    if (result != ApplyResult::done)
        return result == ApplyResult::stopped ? kStopped : kFailed;
    printEnd(restore);
    return kNothingLeft;
}

// An interrupted restore continues with its own drives. A different restore must not be mixed with it.
static std::string continueFrom(const RestoreOptions& options, const std::string& path, LogHeader* header,
                                DriveMap* drives) {
    RestoreState state;
    std::string problem = readLog(path, &state);
    if (!problem.empty() || !state.begun)
        return problem;
    const LogHeader& earlier = state.header;
    if (earlier.identity != header->identity || earlier.controller != header->controller)
        return path + " is the log of a restore of another backup or controller";
    if (state.finished)
        return "";
    if (options.drivesGiven && earlier.drives != header->drives)
        return path + " is the log of an unfinished restore with --drives \"" + earlier.drives + "\"";
    drives->clear();
    const std::string invalid = earlier.drives.empty() ? "" : readDriveMap(earlier.drives, drives);
    if (!invalid.empty())
        return path + ": " + invalid;
    header->drives = earlier.drives;
    const std::string with = drives->empty() ? "" : " with --drives " + driveMapText(*drives);
    std::printf("Continues an unfinished restore%s; steps done: %d%s.\n", with.c_str(), state.steps,
                state.isInStep ? "; another one was begun" : "");
    return "";
}

static std::string logPath(const RestoreOptions& options, const Saved& saved) {
    return !options.log.empty() ? options.log
                                : saved.stem + ".restore-" + std::to_string(*options.controller) + ".log";
}

// Whether the path is a file of the backup, which a log would damage.
static bool isInBackup(const std::string& path, const Saved& saved) {
    struct stat log = {}, file = {};
    for (const char* suffix : {".cfg", ".json"})
        if (stat(path.c_str(), &log) == 0 && stat((saved.stem + suffix).c_str(), &file) == 0 &&
            log.st_dev == file.st_dev && log.st_ino == file.st_ino)
            return true;
    return false;
}

static std::uint32_t savedId(const RestoreOptions& options) {
    return options.from.value_or(*options.controller);
}

static LogHeader headerOf(const RestoreOptions& options, const Saved& saved) {
    const std::string id = std::to_string(*options.controller), from = std::to_string(savedId(options));
    return {saved.identity, from == id ? id : from + "->" + id, driveMapText(options.drives)};
}

// Makes and applies the plan. The caller holds the lock, which excludes commands of other sessions.
static int applyLocked(const RestoreOptions& options, const Saved& saved, const Controller& controller) {
    const std::string path = logPath(options, saved);
    Restore restore = {controller, *options.controller, options.drives};
    LogHeader header = headerOf(options, saved);
    std::string problem = continueFrom(options, path, &header, &restore.drives);
    if (!problem.empty())
        return printError(problem);
    const Plan plan = makePlan(controller, readController(restore.controller), restore.drives);
    if (!plan.obstacles.empty()) {
        print(plan);
        return kPrevented;
    }
    return applyLogged(restore, plan, header, path);
}

// Prints the plan. Reads the log as --apply does, so that both make the same plan.
static int preview(const RestoreOptions& options, const Saved& saved, const Controller& controller,
                   Snapshot* now, const char* argument0) {
    const Controller* present = findController(*now, *options.controller);
    if (present == nullptr)
        return printError("there is no controller " + std::to_string(*options.controller));
    Restore restore = {controller, *options.controller, options.drives};
    LogHeader header = headerOf(options, saved);
    std::string problem = continueFrom(options, logPath(options, saved), &header, &restore.drives);
    if (!problem.empty())
        return printError(problem);
    return showPlan(saved, restore, *now, *present, argument0);
}

static int restoreOpened(const RestoreOptions& options, const Saved& saved, Snapshot* now,
                         const char* argument0) {
    const std::uint32_t id = *options.controller;
    readControllers(now);
    const std::string doubt = options.from ? "" : doubtAboutOrigin(saved.snapshot, *now, id);
    if (!doubt.empty()) {
        std::printf("prevented: %s\n", doubt.c_str());
        return kPrevented;
    }
    const Controller* controller = findController(saved.snapshot, savedId(options));
    if (controller == nullptr)
        return printError("the backup has no controller " + std::to_string(savedId(options)));
    if (id >= now->controllerCount)
        return printError("there is no controller " + std::to_string(id));
    if (const auto unknown = unknownDrive(*controller, options.drives)) {
        refuseRestore("the backup has no drive " + std::to_string(*unknown));
        return kUsage;
    }
    const std::string path = logPath(options, saved);
    if (isInBackup(path, saved)) {
        refuseRestore("the log " + path + " is a file of the backup");
        return kUsage;
    }
    if (options.apply) {
        const int lock = lockChanges();
        const int status = applyLocked(options, saved, *controller);
        unlockChanges(lock);
        return status;
    }
    return preview(options, saved, *controller, now, argument0);
}

static int run(const RestoreOptions& options, const char* argument0) {
    Saved saved;
    std::string problem = readSaved(options.file, &saved);
    if (!problem.empty())
        return printError(problem);
    Snapshot now;
    switch (openAdapters(&now)) {
    case OpenResult::failed:
        return printError("cannot open the adapter library");
    case OpenResult::noController:
        return printError("there is no controller");
    default:
        break;
    }
    const int status = restoreOpened(options, saved, &now, argument0);
    closeAdapters();
    return status;
}

int main(int argc, char** argv) {
    openStandardStreams();
    RestoreOptions options;
    const OptionsResult result = readRestoreOptions(argc, argv, &options);
    if (result != OptionsResult::run)
        return result == OptionsResult::done ? kNothingLeft : kUsage;
    const int status = run(options, argv[0]);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return printError("cannot write to standard output");
    return status;
}
