// Reads kept backups and removes those that newer ones replace.
#include "tools/backup/kept.h"

#include <algorithm>

#include "snapshot/json.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"
#include "tools/backup/losses.h"
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
        if (kept.complete.stem.empty() && incompleteLines(backup.snapshot).empty())
            kept.complete = backup;
        if (kept.newest.stem.empty())
            kept.newest = std::move(backup);
    }
    if (kept.complete.stem.empty())
        kept.complete = kept.newest;
    return kept;
}

// Whether one of the newer snapshots lacks nothing.
static bool isReplaced(const Snapshot& old, const std::vector<Snapshot>& newer) {
    return std::any_of(newer.begin(), newer.end(), [&](const Snapshot& each) {
        return lossLines(each, old).empty() && !lacksSettings(each, old);
    });
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
        if (incompleteLines(backup.snapshot).empty())
            newer.push_back(std::move(backup.snapshot));
    }
    return "";
}
