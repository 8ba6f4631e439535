// The session's world: loads it, detects changes by other programs, and changes it under the lock.
#include "simulator/store/world_store.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include "simulator/engine/advance.h"
#include "simulator/engine/clock.h"
#include "simulator/engine/reports.h"
#include "simulator/file/world_file.h"
#include "simulator/file/world_json.h"
#include "simulator/file/world_path.h"

namespace q5sim {

static constexpr std::size_t kPathSize = 4096;

struct Session {
    bool open = false;
    std::string path;
    std::optional<std::string> text; // of the file when it was last read or written
    int readError = 0;               // errno of the last attempt to read it
    bool readable = false;
    std::string reported; // the last line about the file, which an operation does not repeat
    World world;
};

// The only session: the adapters' interface has no handles.
static Session session;

std::int64_t worldTime(const World& world) {
    return scaledTime(world, currentRealTime());
}

// Prints why the file cannot be used, with the reason of the system call that failed.
static bool fail(const std::string& path, const char* problem) {
    const char* cause = std::strerror(errno);
    std::string line = path + problem + cause;
    if (line != session.reported)
        std::fprintf(stderr, "%s: %s: %s\n", path.c_str(), problem, cause);
    session.reported = std::move(line);
    return false;
}

void beginReports() {
    session.reported.clear();
}

// The same error is reported once.
static bool failToRead() {
    const bool reported = errno == session.readError;
    session.readError = errno;
    session.text.reset();
    session.readable = false;
    return !reported && fail(session.path, "the world file cannot be read");
}

// Reads the file again: only its text shows whether it has changed, since another program can replace it
// within the resolution of the time stamps. The same text is neither parsed nor reported again.
static bool reload() {
    std::string text;
    if (!readFile(session.path, kMaxWorldSize, text))
        return failToRead();
    session.readError = 0;
    if (text == session.text)
        return session.readable;
    ValidationError error;
    session.readable = worldFromJson(text, session.world, error);
    session.text = std::move(text);
    if (!session.readable)
        std::fprintf(stderr, "%s:%d: %s\n", session.path.c_str(), error.line, error.reason.c_str());
    return session.readable;
}

static bool store(const World& world) {
    std::string text = worldToJson(world);
    if (!replaceFile(session.path, text))
        return fail(session.path, "the world file cannot be written");
    session.world = world;
    session.text = std::move(text);
    session.readable = true;
    return true;
}

static bool createIfMissing() {
    if (fileExists(session.path))
        return true;
    return store(builtinWorld(currentRealTime()));
}

// The lock is held from construction to destruction. A failure is reported.
struct Lock {
    int file = lockFile(session.path);
    Lock() {
        if (file < 0)
            fail(session.path, "the world file cannot be locked");
    }
    bool isHeld() const { return file >= 0; }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() {
        if (file >= 0)
            unlockFile(file);
    }
};

static bool prepare() {
    char path[kPathSize];
    if (!worldFilePath(path, sizeof path)) {
        std::fputs("the path of the world file is unknown: set Q5SIM_WORLD or HOME\n", stderr);
        return false;
    }
    session = {};
    if (!resolveLinks(path, session.path))
        return fail(path, "the world file cannot be read");
    return makeDirectoriesFor(path) ||
           fail(session.path, "the directory of the world file cannot be created");
}

bool openWorld() {
    if (!prepare())
        return false;
    removeAbandonedFile(session.path);
    if (!fileExists(session.path)) {
        const Lock lock;
        if (!lock.isHeld() || !createIfMissing())
            return false;
    }
    session.open = reload();
    return session.open;
}

void closeWorld() {
    session = {};
}

bool isWorldOpen() {
    return session.open;
}

bool isWorldFile(const std::string& path) {
    std::string own;
    return session.open && resolveLinks(session.path, own) && own == path;
}

bool replaceWorld(const World& world) {
    if (!prepare())
        return false;
    const Lock lock;
    return lock.isHeld() && store(world);
}

bool resetWorld() {
    return replaceWorld(builtinWorld(currentRealTime()));
}

void setClockSpeed(World& world, std::int64_t speed) {
    changeSpeed(world, currentRealTime(), speed);
}

int changeWorld(const Change& change) {
    if (!session.open)
        return 1;
    const Lock lock;
    if (!lock.isHeld() || !createIfMissing() || !reload())
        return 1;
    World advanced = session.world;
    advanceTo(advanced, worldTime(advanced));
    World changed = advanced;
    const int result = change(changed, worldTime(changed));
    advanceTo(changed, worldTime(changed));
    World& next = result == 0 ? changed : advanced;
    if (next == session.world)
        return result;
    recordKnownDrives(next);
    if (store(next))
        return result;
    return 1;
}

const World* storedWorld() {
    return session.open && fileExists(session.path) && reload() ? &session.world : nullptr;
}

const World* currentWorld() {
    if (!session.open)
        return nullptr;
    const bool missing = !fileExists(session.path);
    if (!missing && !reload())
        return nullptr;
    const auto isDue = [] { return hasDueTransitions(session.world, worldTime(session.world)); };
    if (!missing && !isDue())
        return &session.world;
    changeWorld([](World&, std::int64_t) { return 0; });
    if (session.readable && isDue()) // the file cannot be written, but time passes
        advanceTo(session.world, worldTime(session.world));
    return session.readable ? &session.world : nullptr;
}

} // namespace q5sim
