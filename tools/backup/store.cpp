// Names, listing, publishing and removing of backups.
#include "tools/backup/store.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "util/advisory_lock.h"

static constexpr char kWorkName[] = ".cli-backup";
static constexpr std::size_t kStampSize = 16; // YYYYMMDDTHHMMSSZ
static constexpr std::size_t kMaxHostLength = 64;

static std::string failure(const std::string& action, const std::string& path) {
    return "cannot " + action + " " + path + ": " + std::strerror(errno);
}

std::string hostForNames() {
    char name[256] = {};
    std::string host = gethostname(name, sizeof name - 1) == 0 ? name : "";
    for (char& c : host)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '.' && c != '-' && c != '_')
            c = '_';
    if (!host.empty() && (host[0] == '.' || host[0] == '-'))
        host[0] = '_';
    return host.empty() ? "localhost" : host.substr(0, kMaxHostLength);
}

static std::string stamp(std::time_t time) {
    std::tm parts = {};
    gmtime_r(&time, &parts);
    char text[64];
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &parts);
    return text;
}

static bool hasFormOfStamp(const std::string& text) {
    static constexpr char kPattern[] = "00000000T000000Z";
    if (text.size() != kStampSize)
        return false;
    for (std::size_t i = 0; i < kStampSize; ++i)
        if (kPattern[i] == '0' ? text[i] < '0' || text[i] > '9' : text[i] != kPattern[i])
            return false;
    return true;
}

static int number(const std::string& text, std::size_t start, std::size_t count) {
    return std::atoi(text.substr(start, count).c_str());
}

// The time of a stamp, as seconds. Its parts are digits but may not form a date.
static std::time_t timeOf(const std::string& text) {
    std::tm parts = {};
    parts.tm_year = number(text, 0, 4) - 1900;
    parts.tm_mon = number(text, 4, 2) - 1;
    parts.tm_mday = number(text, 6, 2);
    parts.tm_hour = number(text, 9, 2);
    parts.tm_min = number(text, 11, 2);
    parts.tm_sec = number(text, 13, 2);
    return timegm(&parts);
}

// Whether the text is the stamp of a time that later ones can follow: after the year 9999 a stamp would have
// more digits.
static bool isStamp(const std::string& text) {
    return hasFormOfStamp(text) && text >= "1970" && text < "9999" && stamp(timeOf(text)) == text;
}

std::string nameBackup(const Store& store, std::time_t now, std::string* stem) {
    std::string wanted = stamp(now);
    if (!store.stems.empty()) {
        const std::string newest = store.stems.back().substr(store.stems.back().size() - kStampSize);
        if (wanted <= newest)
            wanted = stamp(timeOf(newest) + 1);
    }
    *stem = store.host + "-" + wanted;
    if (isStamp(wanted))
        return "";
    return store.stems.empty() ? "the clock does not show a time from 1970 to 9998"
                               : "no backup can follow " + pathOf(store, store.stems.back(), ".cfg") +
                                     ": rename or remove it and its .json";
}

// Whether the name is that of a file of this host's backups; stem is the name without the suffix.
static bool isBackupFile(const Store& store, const std::string& name, const char* suffix, std::string* stem) {
    const std::size_t start = store.host.size() + 1;
    if (name.size() != start + kStampSize + std::strlen(suffix) || name.rfind(store.host + "-", 0) != 0 ||
        name.compare(start + kStampSize, std::string::npos, suffix) != 0)
        return false;
    *stem = name.substr(0, start + kStampSize);
    return isStamp(name.substr(start, kStampSize));
}

static std::string listNames(const std::string& directory, std::vector<std::string>* names) {
    DIR* stream = opendir(directory.c_str());
    if (stream == nullptr)
        return failure("read", directory);
    errno = 0;
    while (const dirent* entry = readdir(stream)) {
        names->emplace_back(entry->d_name);
        errno = 0;
    }
    std::string problem = errno == 0 ? "" : failure("read", directory);
    closedir(stream);
    return problem;
}

std::string pathOf(const Store& store, const std::string& stem, const char* suffix) {
    return store.directory + "/" + stem + suffix;
}

std::string workPath(const Store& store, const char* name) {
    return store.work + "/" + name;
}

// A path that cannot be examined is not known to be missing.
static bool isMissing(const std::string& path) {
    struct stat info;
    return lstat(path.c_str(), &info) != 0 && errno == ENOENT;
}

// Removes a .json without its .cfg, which an interrupted publication or removal has left.
static std::string removeIncomplete(const Store& store, const std::string& stem) {
    if (!isMissing(pathOf(store, stem, ".cfg")))
        return failure("read", pathOf(store, stem, ".cfg"));
    const std::string path = pathOf(store, stem, ".json");
    return unlink(path.c_str()) == 0 ? "" : failure("remove", path);
}

static std::string listBackups(Store* store) {
    std::vector<std::string> names;
    std::string problem = listNames(store->directory, &names);
    if (!problem.empty())
        return problem;
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        std::string stem;
        if (!isBackupFile(*store, name, ".json", &stem))
            continue;
        if (std::binary_search(names.begin(), names.end(), stem + ".cfg"))
            store->stems.push_back(stem);
        else if (std::string remaining = removeIncomplete(*store, stem); problem.empty())
            problem = remaining;
    }
    return problem;
}

static std::string clearWork(const Store& store) {
    std::vector<std::string> names;
    std::string problem = listNames(store.work, &names);
    for (const std::string& name : names)
        if (name != "." && name != ".." && unlink(workPath(store, name.c_str()).c_str()) != 0 &&
            problem.empty())
            problem = failure("remove", workPath(store, name.c_str()));
    return problem;
}

// If it cannot be read, errno is the reason.
static bool canRead(const std::string& directory) {
    const int file = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    return file >= 0 && close(file) == 0;
}

std::string openStore(Store* store) {
    struct stat info;
    if (stat(store->directory.c_str(), &info) != 0)
        return failure("use", store->directory);
    store->work = store->directory + "/" + kWorkName;
    if (mkdir(store->work.c_str(), 0700) != 0 && errno != EEXIST)
        return failure("create", store->work);
    if (lstat(store->work.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) // a link could lead anywhere
        return store->work + " is not a directory";
    if (!canRead(store->work))
        return failure("use", store->work);
    store->lock = lockDirectoryOf(workPath(*store, "").c_str(), kLockSeconds);
    if (store->lock < 0)
        return "cannot lock " + store->work +
               ": another cli-backup is running, or the file system has no locks";
    std::string problem = clearWork(*store);
    return problem.empty() ? listBackups(store) : problem;
}

void closeStore(Store* store) {
    if (store->lock >= 0) {
        clearWork(*store);
        unlockDirectory(store->lock);
    }
    store->lock = -1;
}

// A file system that cannot synchronize directories returns EINVAL.
std::string synchronize(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return failure("open", path);
    int result;
    while ((result = fsync(file)) != 0 && errno == EINTR) {
    }
    std::string problem = result == 0 || errno == EINVAL ? "" : failure("write", path);
    close(file);
    return problem;
}

// An existing file is never replaced.
static std::string refuseExisting(const std::string& path) {
    struct stat info;
    if (lstat(path.c_str(), &info) == 0)
        return "cannot write " + path + ": it exists";
    return errno == ENOENT ? "" : failure("write", path);
}

static std::string moveFile(const Store& store, const char* name, const std::string& path) {
    std::string problem = refuseExisting(path);
    if (problem.empty() && std::rename(workPath(store, name).c_str(), path.c_str()) != 0)
        problem = failure("write", path);
    return problem;
}

// If the .cfg cannot follow, the .json is removed again: next to a .cfg that is not its own, it would count
// as a backup.
std::string publish(const Store& store, const std::string& stem) {
    const std::string json = pathOf(store, stem, ".json"), cfg = pathOf(store, stem, ".cfg");
    std::string problem = refuseExisting(cfg);
    if (problem.empty())
        problem = moveFile(store, "new.json", json);
    if (!problem.empty())
        return problem;
    problem = synchronize(store.directory);
    if (problem.empty())
        problem = moveFile(store, "new.cfg", cfg);
    if (!problem.empty()) {
        unlink(json.c_str());
        return problem;
    }
    return synchronize(store.directory);
}

std::string removeBackup(const Store& store, const std::string& stem) {
    for (const char* suffix : {".cfg", ".json"}) {
        const std::string path = pathOf(store, stem, suffix);
        if (unlink(path.c_str()) != 0)
            return failure("remove", path);
        std::string problem = synchronize(store.directory);
        if (!problem.empty())
            return problem;
    }
    return "";
}
