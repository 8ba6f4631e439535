// Saved worlds.
#include "simulator/store/world_copy.h"

#include <cerrno>
#include <cstring>

#include "simulator/file/world_file.h"
#include "simulator/file/world_json.h"

namespace q5sim {

static constexpr std::size_t kMaxFileSize = 16 * 1024 * 1024;

std::string readWorldCopy(const std::string& path, World& world) {
    std::string text;
    if (!readFile(path, kMaxFileSize, text))
        return path + ": " + std::strerror(errno);
    ValidationError problem;
    if (worldFromJson(text, world, problem))
        return "";
    return path + ":" + std::to_string(problem.line) + ": " + problem.reason;
}

std::string writeWorldCopy(const std::string& path, const World& world) {
    return replaceFile(path, worldToJson(world)) ? "" : path + ": " + std::strerror(errno);
}

} // namespace q5sim
