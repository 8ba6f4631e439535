// Copies of the world in files of the user's choice.
#include "simulator/store/world_copy.h"

#include <cerrno>
#include <cstring>

#include "simulator/file/world_file.h"
#include "simulator/file/world_json.h"
#include "simulator/store/world_store.h"
#include "util/advisory_lock.h"

namespace q5sim {

static std::string failure(const std::string& path) {
    return path + ": " + std::strerror(errno);
}

std::string readWorldCopy(const std::string& path, World& world) {
    std::string text;
    if (!readFile(path, kMaxWorldSize, text))
        return failure(path);
    ValidationError problem;
    if (worldFromJson(text, world, problem))
        return "";
    return path + ":" + std::to_string(problem.line) + ": " + problem.reason;
}

// A copy has no lock file; its directory is locked instead.
std::string writeWorldCopy(const std::string& path, const World& world) {
    std::string file;
    if (!resolveLinks(path, file))
        return failure(path);
    if (isWorldFile(file))
        return path + " is the world file itself";
    const int lock = lockDirectoryOf(file.c_str(), kLockSeconds);
    if (lock < 0)
        return failure(path);
    std::string problem = replaceFile(file, worldToJson(world)) ? "" : failure(path);
    unlockDirectory(lock);
    return problem;
}

} // namespace q5sim
