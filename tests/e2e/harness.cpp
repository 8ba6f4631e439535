// Sessions: a directory, an environment and a program.
#include "tests/e2e/harness.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

// Variables that the programs inherit from the tests: settings of the sanitizers.
static constexpr const char* kInherited[] = {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"};

Session::Session() : program(E2E_REHEARSAL) {
    for (const char* name : kInherited)
        if (const char* value = std::getenv(name))
            variables[name] = value;
    variables["HOME"] = directory;
    variables["Q5SIM_WORLD"] = world();
    setClock(kSessionStart);
}

static Launch launchOf(const Session& session, const std::vector<std::string>& words) {
    Launch launch;
    launch.words = {session.program};
    launch.words.insert(launch.words.end(), words.begin(), words.end());
    for (const auto& [name, value] : session.variables)
        launch.variables.push_back(name + "=" + value);
    launch.directory = session.directory;
    launch.unprivileged = session.unprivileged;
    return launch;
}

ProcessOutcome Session::run(const std::vector<std::string>& words) {
    return runProgram(launchOf(*this, words), "");
}

ProcessOutcome Session::prompt(const std::string& input) {
    return runProgram(launchOf(*this, {}), input);
}

ProcessOutcome Session::terminal(const std::vector<std::string>& typed) {
    return runOnTerminal(launchOf(*this, {}), "cli>", typed);
}

ProcessOutcome Session::runWithoutInput(const std::vector<std::string>& words) {
    Launch launch = launchOf(*this, words);
    launch.inputClosed = true;
    return runProgram(launch, "");
}

void Session::setClock(std::int64_t seconds) {
    variables["Q5SIM_NOW"] = std::to_string(seconds);
}

void Session::setVariable(const std::string& name, const std::string& value) {
    variables[name] = value;
}

void Session::preferLibraries(const std::string& libraries) {
    variables["LD_LIBRARY_PATH"] = libraries;
}

static void copyReadable(const fs::path& from, const fs::path& to) {
    fs::copy_file(from, to);
    fs::permissions(to, fs::perms(0755));
}

void Session::useProduct(const std::string& libraries) {
    const fs::path copies = fs::path(directory) / "product";
    fs::create_directory(copies);
    fs::permissions(directory, fs::perms(0755));
    fs::permissions(copies, fs::perms(0755));
    copyReadable(E2E_PRODUCT, copies / "cli");
    copyReadable(E2E_ERROR_LOG, copies / fs::path(E2E_ERROR_LOG).filename());
    for (const fs::directory_entry& entry : fs::directory_iterator(libraries))
        if (entry.path().extension() == ".so")
            copyReadable(entry.path(), copies / entry.path().filename());
    program = (copies / "cli").string();
    unprivileged = true;
    preferLibraries(copies.string());
}

void Session::useWorld(const std::string& text) const {
    writeFile(world(), text);
}

std::string Session::worldText() const {
    return readFile(world());
}

std::string Session::worldWithoutRefusals() const {
    nlohmann::json world = nlohmann::json::parse(worldText());
    for (const char* key : {"refusals", "olderRefusals"})
        world.erase(key);
    return world.dump(2);
}

std::string Session::world() const {
    return path("world.json");
}

std::string Session::eventFile() const {
    return path("CLIEvent.dat");
}

std::string Session::path(const std::string& name) const {
    return directory + "/" + name;
}

std::string readFile(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << text;
    if (!stream.flush())
        throw std::runtime_error("cannot write " + path);
}

std::string fixtureWorld(const std::string& name) {
    const std::string text = readFile(std::string(E2E_WORLDS) + "/" + name + ".json");
    if (text.empty())
        throw std::runtime_error("there is no world " + name);
    return text;
}
