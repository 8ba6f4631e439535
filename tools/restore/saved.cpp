// Reads a backup.
#include "tools/restore/saved.h"

#include <cinttypes>
#include <cstdio>

#include "snapshot/json.h"
#include "tools/backup/configuration.h"
#include "tools/common/regular_file.h"

static std::string withoutSuffix(const std::string& file) {
    for (const std::string suffix : {".cfg", ".json"})
        if (file.size() > suffix.size() &&
            file.compare(file.size() - suffix.size(), suffix.size(), suffix) == 0)
            return file.substr(0, file.size() - suffix.size());
    return file;
}

// FNV-1a. It only identifies a backup; it does not authenticate it.
static std::string checksum(const std::string& text) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (const char c : text)
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016" PRIx64, sum);
    return digits;
}

std::string readSaved(const std::string& file, Saved* saved) {
    saved->stem = withoutSuffix(file);
    std::string json, configuration, problem;
    if (readRegularFile(saved->stem + ".json", &json, &problem) != RegularFile::read ||
        readRegularFile(saved->stem + ".cfg", &configuration, &problem) != RegularFile::read)
        return problem;
    problem = snapshotFromText(json, &saved->snapshot);
    if (!problem.empty())
        return saved->stem + ".json: " + problem;
    saved->identity = checksum(json);
    problem = compareConfiguration(configuration, saved->snapshot);
    return problem.empty() ? "" : "the two files of " + saved->stem + " do not belong together: " + problem;
}
