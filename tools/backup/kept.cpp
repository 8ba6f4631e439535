// Reads kept backups and removes those that newer ones replace.
#include "tools/backup/kept.h"

#include <algorithm>

#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"
#include "tools/common/regular_file.h"
#include "tools/status/facts.h"
#include "tools/status/rules.h"

static std::string readSnapshotFile(const Store& store, const std::string& stem, Snapshot* snapshot) {
    const std::string path = pathOf(store, stem, ".json");
    std::string text, problem;
    if (readRegularFile(path, &text, &problem) != RegularFile::read)
        return problem;
    problem = snapshotFromText(text, snapshot);
    return problem.empty() ? "" : path + ": " + problem;
}

std::string readBackup(const Store& store, const std::string& stem, Backup* backup) {
    *backup = {};
    const std::string path = pathOf(store, stem, ".cfg");
    std::string problem;
    if (readRegularFile(path, &backup->configuration, &problem) != RegularFile::read)
        return problem;
    problem = readSnapshotFile(store, stem, &backup->snapshot);
    if (!problem.empty())
        return problem;
    problem = compareConfiguration(backup->configuration, backup->snapshot);
    if (!problem.empty())
        return pathOf(store, stem, ".cfg") + " and its .json do not belong together: " + problem;
    backup->stem = stem;
    return "";
}

Kept readKept(const Store& store, Lines* warnings) {
    Kept kept;
    for (std::size_t i = store.stems.size(); i-- > 0;) {
        Backup backup;
        const std::string problem = readBackup(store, store.stems[i], &backup);
        if (!problem.empty()) {
            warnings->push_back({Severity::warning, printable(problem)});
            continue;
        }
        if (kept.complete.stem.empty() && unreadableLines(backup.snapshot).empty())
            kept.complete = backup;
        if (kept.newest.stem.empty())
            kept.newest = std::move(backup);
    }
    if (kept.complete.stem.empty())
        kept.complete = kept.newest;
    return kept;
}

static void addFewer(const std::string& object, std::size_t now, std::size_t earlier, const char* word,
                     Lines* lines) {
    if (now < earlier)
        lines->push_back({Severity::warning,
                          object + " has " + counted(now, word) + "; it had " + std::to_string(earlier)});
}

// Another level or size: it may be another one that was created under the ID.
static void addLostArrays(const Controller& now, const Controller& earlier, Lines* lines) {
    for (const LogicalDrive& before : earlier.logicalDrives) {
        const LogicalDrive* drive = findLogicalDrive(now, before.info.logDrvId);
        if (drive != nullptr && drive->info.raidLevel == before.info.raidLevel &&
            drive->info.sectorCount == before.info.sectorCount)
            continue;
        const std::string present = drive != nullptr ? shapeOf(*drive) : "missing";
        lines->push_back({Severity::warning, printable(objectText(objectOf(earlier, before)) + " is " +
                                                       present + "; it was " + shapeOf(before))});
    }
}

Lines lossLines(const Snapshot& now, const Snapshot& earlier) {
    Lines lines;
    addFewer("this host", now.controllers.size(), earlier.controllers.size(), "controller", &lines);
    for (const Controller& before : earlier.controllers)
        if (const Controller* controller = findController(now, before.id)) {
            const std::string object = "controller " + std::to_string(before.id);
            addFewer(object, controller->drives.size(), before.drives.size(), "drive", &lines);
            addFewer(object, controller->logicalDrives.size(), before.logicalDrives.size(), "logical drive",
                     &lines);
            addLostArrays(*controller, before, &lines);
        }
    return lines;
}

// Whether one of the newer snapshots lacks nothing.
static bool isReplaced(const Snapshot& old, const std::vector<Snapshot>& newer) {
    return std::any_of(newer.begin(), newer.end(),
                       [&](const Snapshot& each) { return lossLines(each, old).empty(); });
}

// A damaged backup replaces no other and is kept; an incomplete one replaces no other.
std::string rotate(const Store& store, std::size_t keep) {
    if (store.stems.size() <= keep)
        return "";
    std::vector<Snapshot> newer;
    for (std::size_t i = store.stems.size(); i-- > 0;) {
        Backup backup;
        if (!readBackup(store, store.stems[i], &backup).empty())
            continue;
        if (i + keep < store.stems.size() && isReplaced(backup.snapshot, newer)) {
            std::string problem = removeBackup(store, store.stems[i]);
            if (!problem.empty())
                return problem;
        }
        if (unreadableLines(backup.snapshot).empty())
            newer.push_back(std::move(backup.snapshot));
    }
    return "";
}
