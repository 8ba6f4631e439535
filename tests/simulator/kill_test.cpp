// Kill test: four programs at a time change one world and are killed with SIGKILL at random points.
// Program k changes controller k only, program 0 also the rules, so that after each kill its part of the
// world must be as it was before or as the same command leaves it when it runs undisturbed.
//
// KILL_TEST_KILLS is the number of kills, by default a sample.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "simulator/file/world_file.h"
#include "simulator/file/world_json.h"
#include "simulator/world/invariants.h"
#include "tests/temp_dir.h"

namespace fs = std::filesystem;
using namespace q5sim;
using Words = std::vector<std::string>;

namespace {

constexpr std::size_t kPrograms = 4;
constexpr int kSample = 240;
constexpr int kKillsPerRound = 40; // of each program; then a new world

// "@" is the controller, "#" a file that all programs write. Each command changes the world once at most.
const std::vector<Words> kCommands = {
    {"q5sim", "fail-drive", "@", "2"},
    {"q5sim", "replace-drive", "@", "2"},
    {"q5sim", "fail-drive", "@", "7"},
    {"q5sim", "replace-drive", "@", "7"},
    {"q5sim", "pull-drive", "@", "8"},
    {"q5sim", "insert-drive", "@", "8"},
    {"q5sim", "media-errors", "@", "5", "3", "--at", "10"},
    {"q5sim", "smart-fail", "@", "3"},
    {"q5sim", "smart-ok", "@", "3"},
    {"q5sim", "battery", "@", "missing"},
    {"q5sim", "battery", "@", "full", "--celsius", "40"},
    {"q5sim", "sensor", "@", "0", "temperature", "70"},
    {"q5sim", "sensor", "@", "0", "temperature", "35"},
    {"q5sim", "pull-enclosure", "@", "0"},
    {"q5sim", "insert-enclosure", "@", "0"},
    {"q5sim", "swap-controller", "@"},
    {"q5sim", "save", "#"},
    {"q5sim", "save", "#"},
    {"q5sim", "save", "#"},
    {"cli-rehearse", "ctrl", "-a", "mod", "-i", "@", "-s", "syncrate=33"},
    {"cli-rehearse", "ctrl", "-a", "mod", "-i", "@", "-s", "syncrate=44"},
    {"cli-rehearse", "mp", "-a", "start", "-p", "3", "-i", "@"},
    {"cli-rehearse", "mp", "-a", "stop", "-p", "3", "-i", "@"},
    {"cli-rehearse", "buzz", "-a", "enable", "-i", "@"},
    {"cli-rehearse", "buzz", "-a", "disable", "-i", "@"},
};

// Of the first program only. No command calls an operation that the rules name.
const std::vector<Words> kRuleCommands = {
    {"q5sim", "refuse", "q5_split*", "--times", "2"},
    {"q5sim", "hang", "q5_splitHBAExtent"},
    {"q5sim", "clear-rules"},
};

struct Place {
    std::string directory;
    std::string world() const { return directory + "/world.json"; }
    std::string saved() const { return directory + "/saved.json"; }
};

struct Figures {
    int kills = 0;
    int ended = 0;    // before they could be killed
    int replaced = 0; // killed with the new version in place
    Figures& operator+=(const Figures& other) {
        kills += other.kills, ended += other.ended, replaced += other.replaced;
        return *this;
    }
};

std::string readText(const std::string& path) {
    std::string text;
    EXPECT_TRUE(readFile(path, 1u << 24, text)) << path;
    return text;
}

bool pathExists(const std::string& path) {
    return ::access(path.c_str(), F_OK) == 0;
}

// The world of a file, which must be complete and consistent.
World checkedWorld(const std::string& text) {
    World world;
    ValidationError error;
    EXPECT_TRUE(worldFromJson(text, world, error)) << error.line << ": " << error.reason;
    EXPECT_EQ(findViolations(world), std::vector<std::string>());
    world.controllers.resize(kPrograms);
    return world;
}

// What one program changes, as text.
std::string partOf(const World& world, std::size_t program) {
    World part;
    part.controllers = {world.controllers[program]};
    if (program == 0)
        part.rules = world.rules;
    return worldToJson(part);
}

pid_t start(const Words& command, const Place& place, std::size_t program) {
    Words words = command;
    words[0] = command[0] == "q5sim" ? Q5SIM : REHEARSAL;
    for (std::string& word : words)
        word = word == "@" ? std::to_string(program) : word == "#" ? place.saved() : word;
    Words variables = {"Q5SIM_WORLD=" + place.world(), "HOME=" + place.directory, "Q5SIM_NOW=1700000000"};
    std::vector<char*> arguments, environment;
    for (std::string& word : words)
        arguments.push_back(word.data());
    for (std::string& variable : variables)
        environment.push_back(variable.data());
    arguments.push_back(nullptr);
    environment.push_back(nullptr);
    ::posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (int stream = 0; stream <= 2; stream++)
        ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    pid_t child = -1;
    EXPECT_EQ(
        ::posix_spawn(&child, words[0].c_str(), &actions, nullptr, arguments.data(), environment.data()), 0);
    ::posix_spawn_file_actions_destroy(&actions);
    return child;
}

int waitFor(pid_t child) {
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return status;
}

// One of the four programs that run at the same time.
struct Program {
    std::size_t number;
    Place shared, own;
    std::minstd_rand random;
    int reach = 30000; // microseconds within which a command is killed; follows its duration
    Figures figures;

    int upTo(int limit) { return std::uniform_int_distribution<int>(0, limit)(random); }
    const Words& choose();
    void waitForMoment();
    bool startAndKill(const Words& command);
    std::string undisturbed(const Words& command, const std::string& before);
    void killOne();
    void run(int kills);
};

const Words& Program::choose() {
    const bool rules = number == 0 && upTo(4) == 0;
    const std::vector<Words>& commands = rules ? kRuleCommands : kCommands;
    return commands[static_cast<std::size_t>(upTo(static_cast<int>(commands.size()) - 1))];
}

// Two thirds of the kills come as soon as the world is being replaced, or has been.
void Program::waitForMoment() {
    constexpr int step = 100;
    const int kind = upTo(2);
    const std::string temporary = shared.world() + ".new";
    bool replacing = false;
    for (int left = upTo(reach); left > 0; left -= step) {
        const bool was = replacing;
        replacing = pathExists(temporary);
        if ((kind == 1 && replacing) || (kind == 2 && was && !replacing)) {
            ::usleep(static_cast<useconds_t>(upTo(300)));
            return;
        }
        ::usleep(step);
    }
}

// Whether the command was killed before its end.
bool Program::startAndKill(const Words& command) {
    const pid_t child = start(command, shared, number);
    waitForMoment();
    ::kill(child, SIGKILL);
    const int status = waitFor(child);
    const bool killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    EXPECT_TRUE(killed || (WIFEXITED(status) && WEXITSTATUS(status) < 10)) << command[1] << " " << status;
    reach = killed ? std::min(reach + reach / 20, 2000000) : std::max(reach - reach / 10, 1000);
    return killed;
}

std::string Program::undisturbed(const Words& command, const std::string& before) {
    EXPECT_TRUE(replaceFile(own.world(), before));
    waitFor(start(command, own, number));
    return partOf(checkedWorld(readText(own.world())), number);
}

void Program::killOne() {
    const std::string before = readText(shared.world());
    const std::string old = partOf(checkedWorld(before), number);
    const Words& command = choose();
    const bool killed = startAndKill(command);
    (killed ? figures.kills : figures.ended)++;
    const std::string now = partOf(checkedWorld(readText(shared.world())), number);
    if (pathExists(shared.saved()))
        checkedWorld(readText(shared.saved()));
    if (now == old)
        return;
    figures.replaced += killed;
    EXPECT_EQ(now, undisturbed(command, before)) << command[0] << " " << command[1];
}

void Program::run(int kills) {
    while (figures.kills < kills && figures.ended < 20 * kills && !testing::Test::HasFailure())
        killOne();
}

// Four controllers like the built-in world's first, each with drives of its own.
std::string fourControllers() {
    World world = builtinWorld(1700000000);
    world.controllers.resize(1);
    for (std::size_t i = 1; i < kPrograms; i++) {
        world.controllers.push_back(world.controllers[0]);
        for (Drive& drive : world.controllers[i].drives)
            drive.serial += "-" + std::to_string(i);
    }
    return worldToJson(world);
}

struct KillTest : testing::Test {
    const TempDir temporary;
    const Place shared = {temporary.path()};
    std::vector<Program> programs;
    int leftovers = 0; // rounds that ended with a temporary file

    int use(const Words& command, std::size_t program) const {
        return waitFor(start(command, shared, program));
    }
    void beginRound(unsigned seed);
    void endRound();
    Figures runRound(unsigned seed, int kills);
};

void KillTest::beginRound(unsigned seed) {
    ASSERT_TRUE(replaceFile(shared.world(), fourControllers()));
    ASSERT_EQ(use({"q5sim", "advance", "1"}, 0), 0); // the first change notes the drives
    programs.clear();
    for (std::size_t i = 0; i < kPrograms; i++) {
        const std::string own = shared.directory + "/own" + std::to_string(i);
        fs::create_directory(own);
        programs.push_back(
            {i, shared, {own}, std::minstd_rand(seed * 10 + static_cast<unsigned>(i)), 30000, {}});
    }
}

// The next use, though it only reads, removes what was left of the world; the next save what was left of
// saved worlds.
void KillTest::endRound() {
    leftovers += pathExists(shared.world() + ".new");
    EXPECT_EQ(use({"q5sim", "status", "--check"}, 0), 0);
    EXPECT_FALSE(pathExists(shared.world() + ".new"));
    EXPECT_EQ(use({"q5sim", "save", "#"}, 0), 0);
    for (const fs::directory_entry& entry : fs::directory_iterator(shared.directory)) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(entry.is_directory() || name == "world.json" || name == "world.json.lock" ||
                    name == "CLIEvent.dat" || name == "saved.json")
            << name;
    }
}

Figures KillTest::runRound(unsigned seed, int kills) {
    beginRound(seed);
    std::vector<std::thread> threads;
    for (Program& program : programs)
        threads.emplace_back([&program, kills] { program.run(kills); });
    for (std::thread& thread : threads)
        thread.join();
    endRound();
    Figures sum;
    for (const Program& program : programs)
        sum += program.figures;
    return sum;
}

} // namespace

TEST_F(KillTest, WorldIsAlwaysTheOldOrTheNewVersion) {
    const char* wanted = std::getenv("KILL_TEST_KILLS");
    const int kills = wanted != nullptr ? std::atoi(wanted) : kSample;
    Figures figures;
    for (unsigned round = 1; figures.kills < kills && !HasFailure(); round++) {
        const int left =
            (kills - figures.kills + static_cast<int>(kPrograms) - 1) / static_cast<int>(kPrograms);
        const int before = figures.kills;
        figures += runRound(round, std::min(left, kKillsPerRound));
        ASSERT_GT(figures.kills, before) << "every command ended before it could be killed";
    }
    std::printf("%d kills, %d of them after the world was replaced; %d commands ended before; "
                "%d rounds left a temporary file\n",
                figures.kills, figures.replaced, figures.ended, leftovers);
    EXPECT_GE(figures.kills, kills);
}
