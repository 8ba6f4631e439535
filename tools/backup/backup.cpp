// cli-backup: saves the configuration and the state of all controllers, if they have changed.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "snapshot/files.h"
#include "snapshot/json.h"
#include "snapshot/read.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"
#include "tools/backup/kept.h"
#include "tools/backup/losses.h"
#include "tools/backup/options.h"
#include "tools/common/programs.h"
#include "tools/common/regular_file.h"
#include "tools/common/standard_streams.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

static constexpr int kSaved = 0, kWarning = 1, kUsage = 2, kFailed = 3;
static constexpr int kAttempts = 3; // at two readings between which the adapters do not change

// A new backup, not yet written.
struct Content {
    Snapshot snapshot;
    std::string configuration, json;
};

static int printError(const std::string& problem) {
    std::fprintf(stderr, "cli-backup: %s\n", printable(problem).c_str());
    return kFailed;
}

static void print(const Lines& lines) {
    for (const Line& line : lines)
        std::printf("%s: %s\n", severityText(line.severity), line.text.c_str());
}

static std::string findCli(const BackupOptions& options, const char* argument0, std::string* program) {
    char resolved[PATH_MAX];
    if (options.cli.empty())
        *program = siblingProgram(argument0, "cli");
    else if (realpath(options.cli.c_str(), resolved) != nullptr)
        *program = resolved;
    else if (options.cli.find('/') == std::string::npos)
        *program = siblingProgram(argument0, options.cli.c_str());
    return program->empty() ? "cannot find " + (options.cli.empty() ? "cli" : options.cli) : "";
}

static std::string takeSnapshot(Snapshot* snapshot) {
    *snapshot = {};
    switch (openAdapters(snapshot)) {
    case OpenResult::failed:
        return "cannot open the adapter library";
    case OpenResult::noController:
        return "there is no controller";
    default:
        readControllers(snapshot);
        closeAdapters();
        return "";
    }
}

static std::string lastLine(std::string text) {
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    const std::size_t start = text.rfind('\n');
    return start == std::string::npos ? text : text.substr(start + 1);
}

static std::string exportConfiguration(const Store& store, const std::string& cli, std::string* text) {
    const std::string path = workPath(store, "new.cfg");
    std::string output;
    unlink(path.c_str());
    const int status =
        runProgram({cli, {"export", "-t", "1 2 3", "-f", "new.cfg"}, store.work, store.lock}, &output);
    if (status < 0)
        return "cannot run " + cli;
    if (status != 0)
        return cli + " export failed with status " + std::to_string(status) + ": " + lastLine(output);
    std::string problem = synchronize(path);
    text->clear();
    if (problem.empty())
        readRegularFile(path, text, &problem);
    return problem;
}

// An export queries the members of logical drives one by one. An adapter may list a drive, but refuse it
// alone; the exported file then lacks its extents. Notes such refusals, which make the backup incomplete.
static void noteRefusedDrives(Snapshot* snapshot) {
    Snapshot session;
    if (openAdapters(&session) != OpenResult::opened)
        return;
    for (Controller& controller : snapshot->controllers)
        for (Drive& drive : controller.drives)
            readList<q5_getPhyDrvInfo, PhyDrvInfo, 1>({hbaAddress(controller.id), &drive.faults},
                                                      PhyDrvQuery{drive.info.driveId, 1, kAllDrives, {}});
    closeAdapters();
}

// Reads everything twice, by cli export and directly. Both must show the same state.
static std::string readAdapters(const Store& store, const std::string& cli, Content* content) {
    std::string problem;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        problem = takeSnapshot(&content->snapshot);
        if (problem.empty())
            problem = exportConfiguration(store, cli, &content->configuration);
        if (!problem.empty())
            return problem;
        problem = compareConfiguration(content->configuration, content->snapshot);
        if (!problem.empty()) {
            noteRefusedDrives(&content->snapshot);
            removeClearedSettings(content->configuration, &content->snapshot);
            problem = compareConfiguration(content->configuration, content->snapshot);
        }
        if (problem.empty())
            return "";
    }
    return problem;
}

static void append(Lines* lines, const Lines& more) {
    lines->insert(lines->end(), more.begin(), more.end());
}

// Differences between the exported files, except in settings that were not read for one of them.
static Lines settingChanges(const Backup& previous, const Content& now) {
    std::vector<Settings> unread = settingsOf(now.snapshot);
    const std::vector<Settings> before = settingsOf(previous.snapshot);
    unread.insert(unread.end(), before.begin(), before.end());
    std::erase_if(unread, [](const Settings& each) { return each.state != SettingsState::unread; });
    return configurationChanges(previous.configuration + furtherDriveBlocks(previous.snapshot),
                                now.configuration + furtherDriveBlocks(now.snapshot), unread);
}

// unread: the settings that the previous backup has and the new one lacks.
static Lines changesSince(const Backup& previous, const Content& now, const Lines& unread) {
    const bool first = previous.stem.empty();
    Lines lines = changeLines(first ? nullptr : &previous.snapshot, now.snapshot, Limits());
    if (first)
        return lines;
    if (findRenumbering(previous.snapshot, now.snapshot))
        return lines; // blocks and drives of the same number belong to different controllers
    append(&lines, readAgainLines(now.snapshot, previous.snapshot));
    append(&lines, settingChanges(previous, now));
    append(&lines, layoutChanges(previous.snapshot, now.snapshot));
    return lines.empty() && unread.empty() ? stateChanges(previous.snapshot, now.snapshot) : lines;
}

// Reads the file back: it must contain the snapshot, in the form that cli-status accepts.
static std::string writeSnapshot(const Store& store, Content* content) {
    const Limits limits;
    const Findings findings = evaluate(content->snapshot, limits, nullptr);
    content->json = formatJson({content->snapshot, findings, limits});
    const std::string path = workPath(store, "new.json");
    std::string problem = replaceFile(path, content->json);
    if (!problem.empty())
        return problem;
    std::string text;
    Snapshot read;
    if (readRegularFile(path, &text, &problem) != RegularFile::read)
        return problem;
    if (text != content->json)
        return path + " does not hold what was written";
    const std::string refused = snapshotFromText(text, &read);
    return refused.empty() ? "" : path + ": " + refused;
}

// Old backups are removed only if the new one lacks nothing.
static int save(const BackupOptions& options, Store* store, const Backup& complete, const Lines& warnings,
                Content* content) {
    std::string stem;
    std::string problem = nameBackup(*store, std::time(nullptr), &stem);
    if (problem.empty())
        problem = writeSnapshot(*store, content);
    if (problem.empty())
        problem = publish(*store, stem);
    if (!problem.empty())
        return printError(problem);
    store->stems.push_back(stem);
    const Lines losses = complete.stem.empty() ? Lines() : lossLines(content->snapshot, complete.snapshot);
    print(losses);
    std::printf("saved as %s\n", printable(pathOf(*store, stem, ".cfg")).c_str());
    if (!losses.empty() || !warnings.empty()) {
        std::puts("warning: no older backup was removed");
        return kWarning;
    }
    problem = rotate(*store, options.keep);
    if (!problem.empty())
        std::fprintf(stderr, "cli-backup: %s\n", printable(problem).c_str());
    return problem.empty() ? kSaved : kWarning;
}

static int saveChanges(const BackupOptions& options, Store* store, const std::string& cli) {
    Lines warnings;
    const Kept kept = readKept(*store, &warnings);
    const Backup& previous = kept.newest;
    Content content;
    std::string problem = readAdapters(*store, cli, &content);
    if (!problem.empty())
        return printError(problem);
    append(&warnings, incompleteLines(content.snapshot));
    append(&warnings, unreadLines(content.snapshot, kept.complete.snapshot));
    print(warnings);
    const Lines unread = unreadLines(content.snapshot, previous.snapshot);
    const Lines changes = changesSince(previous, content, unread);
    print(changes);
    if (previous.stem.empty() || !changes.empty() || !unread.empty() ||
        content.configuration != previous.configuration)
        return save(options, store, kept.complete, warnings, &content);
    std::printf("unchanged since %s\n", printable(pathOf(*store, previous.stem, ".cfg")).c_str());
    return warnings.empty() ? kSaved : kWarning;
}

static std::string useDirectory(const BackupOptions& options, Store* store) {
    store->host = hostForNames();
    store->directory = options.directory.empty() ? kDefaultDirectory : options.directory;
    if (options.directory.empty() && mkdir(kDefaultDirectory, 0700) != 0 && errno != EEXIST)
        return std::string("cannot create ") + kDefaultDirectory + ": " + std::strerror(errno);
    return openStore(store);
}

static int run(const BackupOptions& options, const char* argument0) {
    std::string cli;
    Store store;
    std::string problem = findCli(options, argument0, &cli);
    if (problem.empty())
        problem = useDirectory(options, &store);
    const int status = problem.empty() ? saveChanges(options, &store, cli) : printError(problem);
    closeStore(&store);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    printError("cannot write to standard output");
    return status == kSaved ? kWarning : status;
}

int main(int argc, char** argv) {
    openStandardStreams();
    BackupOptions options;
    const OptionsResult result = readBackupOptions(argc, argv, &options);
    if (result != OptionsResult::run)
        return result == OptionsResult::done ? kSaved : kUsage;
    return run(options, argv[0]);
}
