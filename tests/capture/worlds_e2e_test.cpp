// Copies of the worlds of all tests and rehearsals: every list, every export and the JSON of cli-status are
// the same, byte for byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/capture/comparison.h"

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

static const std::string root = TESTS_ROOT;

static std::string testName(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return name;
}

static std::vector<std::string> filesIn(const std::vector<std::string>& directories,
                                        const std::string& suffix) {
    std::vector<std::string> names;
    for (const std::string& directory : directories)
        for (const auto& entry : fs::directory_iterator(directory))
            if (entry.path().extension() == suffix && !entry.path().stem().string().starts_with("invalid"))
                names.push_back(entry.path());
    std::sort(names.begin(), names.end());
    return names;
}

static std::string fileName(const testing::TestParamInfo<std::string>& each) {
    return testName(fs::path(each.param).stem());
}

TEST(CapturedWorld, BuiltIn) {
    Session session;
    expectEqualCopy(&session);
}

class CapturedWorld : public testing::TestWithParam<std::string> {};

TEST_P(CapturedWorld, ListsTheSame) {
    Session session;
    session.useWorld(readFile(GetParam()));
    expectEqualCopy(&session);
}

INSTANTIATE_TEST_SUITE_P(Worlds, CapturedWorld,
                         testing::ValuesIn(filesIn({root + "/e2e/worlds", root + "/simulator/worlds"},
                                                   ".json")),
                         fileName);

// The worlds of cli-status: each case says how its world differs from the healthy one.
class CapturedCase : public testing::TestWithParam<std::string> {};

TEST_P(CapturedCase, ListsTheSame) {
    const Json expected = Json::parse(readFile(GetParam()));
    const Json world = Json::parse(readFile(root + "/status/healthy.world.json")).patch(expected["world"]);
    Session session;
    session.setClock(0);
    session.useWorld(world.dump());
    expectEqualCopy(&session);
}

// All but the one whose adapter refuses operations: a copy does not.
static std::vector<std::string> statusCases() {
    std::vector<std::string> names = filesIn({root + "/status/cases"}, ".json");
    std::erase_if(names, [](const std::string& name) {
        return readFile(name).find("\"/rules\"") != std::string::npos;
    });
    return names;
}

INSTANTIATE_TEST_SUITE_P(Worlds, CapturedCase, testing::ValuesIn(statusCases()), fileName);

// The states that the commands of a rehearsal lead to, one after another.
class CapturedRehearsal : public testing::TestWithParam<std::string> {};

static std::vector<std::string> commandsOf(const std::string& file) {
    std::istringstream lines(readFile(file));
    std::vector<std::string> commands;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("  $ "))
            commands.push_back(line.substr(4));
        else if (line.starts_with("  > ") && !commands.empty())
            commands.back() += "\n" + line.substr(4);
    return commands;
}

static bool hasRules(const Session& session) {
    const std::string world = session.worldText();
    return !world.empty() && !Json::parse(world)["rules"].empty();
}

TEST_P(CapturedRehearsal, ListsTheSameAfterEachCommand) {
    Session session;
    session.setClock(1000000000);
    fs::create_symlink(E2E_REHEARSAL, session.path("cli"));
    fs::create_symlink(std::string(PROGRAMS) + "/q5sim", session.path("q5sim"));
    session.setVariable("PATH", session.directory + ":/usr/bin:/bin");
    for (const std::string& command : commandsOf(GetParam())) {
        SCOPED_TRACE(command);
        session.program = "/bin/sh";
        session.run({"-c", command});
        session.program = E2E_REHEARSAL;
        if (!hasRules(session))
            expectEqualCopy(&session);
    }
}

INSTANTIATE_TEST_SUITE_P(Rehearsals, CapturedRehearsal, testing::ValuesIn(filesIn({REHEARSALS}, ".t")),
                         fileName);
