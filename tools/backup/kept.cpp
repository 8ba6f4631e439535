// Reads kept backups and removes those that newer ones replace.
#include "tools/backup/kept.h"

#include <algorithm>

#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"
#include "tools/common/regular_file.h"

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

static std::string fewer(const std::string& object, std::size_t now, std::size_t earlier, const char* word) {
    return object + " has " + counted(now, word) + "; it had " + std::to_string(earlier);
}

Lines fewerLines(const Snapshot& now, const Snapshot& earlier) {
    Lines lines;
    const auto check = [&](const std::string& object, std::size_t present, std::size_t before,
                           const char* word) {
        if (present < before)
            lines.push_back({Severity::warning, fewer(object, present, before, word)});
    };
    check("this host", now.controllers.size(), earlier.controllers.size(), "controller");
    for (const Controller& before : earlier.controllers)
        if (const Controller* controller = findController(now, before.id)) {
            const std::string object = "controller " + std::to_string(before.id);
            check(object, controller->drives.size(), before.drives.size(), "drive");
            check(object, controller->logicalDrives.size(), before.logicalDrives.size(), "logical drive");
        }
    return lines;
}

// Whether one of the newer snapshots has at least as many objects.
static bool isReplaced(const Snapshot& old, const std::vector<Snapshot>& newer) {
    return std::any_of(newer.begin(), newer.end(),
                       [&](const Snapshot& each) { return fewerLines(each, old).empty(); });
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
