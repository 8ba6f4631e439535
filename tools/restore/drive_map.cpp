// Reads and writes drive maps.
#include "tools/restore/drive_map.h"

#include <set>

#include "tools/common/option_table.h"

static constexpr std::uint64_t kMaxDrive = 256;

static bool readDrive(const std::string& text, std::uint32_t* drive) {
    std::uint64_t number = 0;
    if (!readNumber(text.c_str(), kMaxDrive, &number) || number == 0)
        return false;
    *drive = static_cast<std::uint32_t>(number);
    return true;
}

static std::string readPair(const std::string& text, DriveMap* drives) {
    const std::size_t equals = text.find('=');
    std::uint32_t from = 0, to = 0;
    const bool known = equals != std::string::npos && readDrive(text.substr(0, equals), &from);
    const std::string target = known ? text.substr(equals + 1) : "";
    if (!known || (target != "-" && !readDrive(target, &to)))
        return "\"" + text + "\" is not a pair of drives like 2=5";
    const auto value = target == "-" ? std::nullopt : std::optional(to);
    if (!drives->emplace(from, value).second)
        return "drive " + std::to_string(from) + " is mapped twice";
    return "";
}

static std::string checkTargets(const DriveMap& drives) {
    std::set<std::uint32_t> targets;
    for (const auto& [from, to] : drives)
        if (to && !targets.insert(*to).second)
            return "drive " + std::to_string(*to) + " would take the place of two drives";
    return "";
}

std::string readDriveMap(const std::string& text, DriveMap* drives) {
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        std::string problem = readPair(text.substr(start, end - start), drives);
        if (!problem.empty())
            return problem;
        start = end + 1;
    }
    return checkTargets(*drives);
}

std::string driveMapText(const DriveMap& drives) {
    std::string text;
    for (const auto& [from, to] : drives)
        text += (text.empty() ? "" : ",") + std::to_string(from) + "=" + (to ? std::to_string(*to) : "-");
    return text;
}
