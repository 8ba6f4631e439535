// The world file: created, replaced atomically, shared by programs, never overwritten when invalid.
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "adapter/battery.h"
#include "simulator/file/world_file.h"
#include "simulator/file/world_json.h"
#include "simulator/file/world_path.h"
#include "simulator/store/world_store.h"
#include "tests/file_size_limit.h"
#include "tests/simulator/coarse_time_stamps.h"
#include "tests/simulator/simulated_world.h"

namespace fs = std::filesystem;

class WorldFile : public SimulatedWorld {};

TEST_F(WorldFile, IsCreatedWithItsDirectories) {
    file = directory + "/a/b/world.json";
    setenv("Q5SIM_WORLD", file.c_str(), 1);
    ASSERT_EQ(initialize(), 0);
    EXPECT_EQ(fileText(), q5sim::worldToJson(q5sim::builtinWorld(kStart)));
}

TEST_F(WorldFile, DefaultsToStateDirectory) {
    unsetenv("Q5SIM_WORLD");
    setenv("HOME", directory.c_str(), 1);
    unsetenv("XDG_STATE_HOME");
    ASSERT_EQ(initialize(), 0);
    EXPECT_TRUE(fs::exists(directory + "/.local/state/q5sim/world.json"));
    setenv("XDG_STATE_HOME", (directory + "/state").c_str(), 1);
    ASSERT_EQ(initialize(), 0);
    EXPECT_TRUE(fs::exists(directory + "/state/q5sim/world.json"));
    unsetenv("XDG_STATE_HOME");
}

TEST_F(WorldFile, RelativeStateDirectoryIsIgnored) {
    unsetenv("Q5SIM_WORLD");
    setenv("HOME", directory.c_str(), 1);
    for (const char* relative : {"state", "./state", "../state"}) {
        setenv("XDG_STATE_HOME", relative, 1);
        char path[4096];
        EXPECT_TRUE(worldFilePath(path, sizeof path));
        EXPECT_EQ(path, directory + "/.local/state/q5sim/world.json");
    }
    unsetenv("XDG_STATE_HOME");
}

TEST_F(WorldFile, WithoutControllersReportsNone) {
    open("empty");
    std::uint32_t count = 99;
    EXPECT_EQ(q5_discover(1), 0);
    EXPECT_EQ(q5_getNumberOfHBA(&count), 0);
    EXPECT_EQ(count, 0u);
}

TEST_F(WorldFile, InvalidFileIsReportedWithLineAndKept) {
    fs::copy_file(std::string(WORLDS) + "/invalid-range-line-4.json", file);
    const std::string before = fileText();
    testing::internal::CaptureStderr();
    EXPECT_NE(initialize(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              file + ":4: controllers[0].rates.rebuild: a whole number from 1 to 255 is expected\n");
    EXPECT_EQ(fileText(), before);
    EXPECT_NE(q5_discover(1), 0);
    std::uint32_t count = 99;
    EXPECT_NE(q5_getNumberOfHBA(&count), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_NE(q5_turnOnBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_EQ(fileText(), before);
}

TEST_F(WorldFile, RejectsDirectoryAndPipe) {
    fs::create_directory(file);
    testing::internal::CaptureStderr();
    EXPECT_NE(initialize(), 0);
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_NE(initialize(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              file + ": the world file cannot be read: Is a directory\n" + file +
                  ": the world file cannot be read: Invalid argument\n");
}

TEST_F(WorldFile, IsNotChangedByQueries) {
    open("settings");
    driveInfo(0, 0);
    const auto before = fs::last_write_time(file);
    const std::string text = fileText();
    arrayInfo(0, 3);
    eventTexts(0, 10);
    EXPECT_EQ(fs::last_write_time(file), before);
    EXPECT_EQ(fileText(), text);
}

TEST_F(WorldFile, IsNotRewrittenWithoutChange) {
    open("");
    const auto before = fs::last_write_time(file);
    EXPECT_EQ(q5_turnOnBuzzer(hbaAddress(0), 0, 0), 0); // it is on already
    EXPECT_EQ(fs::last_write_time(file), before);
}

TEST_F(WorldFile, KeepsChangesForNextSession) {
    open("");
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_EQ(q5_finalize(), 0);
    ASSERT_EQ(initialize(), 0);
    std::uint8_t state = 9;
    EXPECT_EQ(q5_getBuzzerStatus(hbaAddress(0), 0, &state, 1), 0);
    EXPECT_EQ(state, 0);
    EXPECT_EQ(newestEvent(), "Buzzer disabled");
}

TEST_F(WorldFile, IsReadAgainAfterExternalChange) {
    open("bench");
    EXPECT_EQ(driveInfo(0, 0).channel, 0);
    replaceInFile("\"channel\": 0", "\"channel\": 77");
    EXPECT_EQ(driveInfo(0, 0).channel, 77);
}

// Changes that leave the size alone, many within one second.
TEST_F(WorldFile, DetectsChangesWithoutNewTimeStamp) {
    const CoarseTimeStamps coarse;
    open("bench");
    std::string channel = "\"channel\": 0,";
    for (int round = 10; round < 90; round++) {
        const std::string next = "\"channel\": " + std::to_string(round) + ",";
        replaceInFile(channel, next);
        ASSERT_EQ(driveInfo(0, 0).channel, round);
        channel = next;
    }
}

// The same under the lock: what changes is the file as it is, not as it was read before.
TEST_F(WorldFile, ChangesKeepChangesWithoutNewTimeStamp) {
    const CoarseTimeStamps coarse;
    open("bench");
    std::string channel = "\"channel\": 0,";
    for (int round = 10; round < 90; round++) {
        const auto switchBuzzer = round % 2 == 0 ? q5_turnOffBuzzer : q5_turnOnBuzzer;
        const std::string next = "\"channel\": " + std::to_string(round) + ",";
        replaceInFile(channel, next);
        ASSERT_EQ(switchBuzzer(hbaAddress(0), 0, 0), 0);
        ASSERT_NE(fileText().find(next), std::string::npos) << round;
        channel = next;
    }
}

TEST_F(WorldFile, InvalidFileRefusesOperationsUntilCorrected) {
    open("bench");
    const std::string good = fileText();
    writeText(file, "{");
    testing::internal::CaptureStderr();
    EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    std::uint8_t state = 9;
    EXPECT_NE(q5_getBuzzerStatus(hbaAddress(0), 0, &state, 1), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), file + ":1: this is not valid JSON\n");
    EXPECT_EQ(fileText(), "{");
    writeText(file, good);
    EXPECT_EQ(q5_getBuzzerStatus(hbaAddress(0), 0, &state, 1), 0);
    EXPECT_EQ(state, 1);
}

TEST_F(WorldFile, IsCreatedAgainAfterRemoval) {
    open("bench");
    fs::remove(file);
    EXPECT_EQ(driveInfo(0, 0).capacity, 976773168u);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(WorldFile, SymbolicLinkIsKept) {
    fs::copy_file(std::string(WORLDS) + "/bench.json", directory + "/real.json");
    fs::create_symlink("real.json", file);
    ASSERT_EQ(initialize(), 0);
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_NE(readText(directory + "/real.json").find("\"buzzer\": false"), std::string::npos);
}

// A link to no file, or to itself.
TEST_F(WorldFile, RefusesLinkWithoutFile) {
    for (const char* target : {"missing.json", "world.json"}) {
        fs::create_symlink(target, file);
        const std::string reason = fs::path(target) == "world.json" ? "Too many levels of symbolic links"
                                                                    : "No such file or directory";
        testing::internal::CaptureStderr();
        EXPECT_NE(initialize(), 0);
        EXPECT_FALSE(q5sim::resetWorld());
        const std::string line = file + ": the world file cannot be read: " + reason + "\n";
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line);
        EXPECT_EQ(fs::read_symlink(file), target);
        EXPECT_FALSE(fs::exists(directory + "/missing.json"));
        fs::remove(file);
    }
}

// Only a file that is certainly missing may be created.
TEST_F(WorldFile, IsNotMissingWhenItCannotBeLookedUp) {
    fs::create_directories(directory);
    fs::create_symlink("two", directory + "/one");
    fs::create_symlink("one", directory + "/two");
    EXPECT_TRUE(q5sim::fileExists(directory + "/one"));
    EXPECT_TRUE(q5sim::fileExists(directory + "/" + std::string(300, 'x')));
    EXPECT_FALSE(q5sim::fileExists(directory + "/none"));
    EXPECT_FALSE(q5sim::fileExists(directory + "/none/world.json"));
}

TEST_F(WorldFile, LinkThatReplacesItIsNotReplaced) {
    open("bench");
    fs::rename(file, directory + "/moved.json");
    const std::string moved = readText(directory + "/moved.json");
    for (const char* target : {"missing.json", "moved.json"}) {
        fs::create_symlink(target, file);
        testing::internal::CaptureStderr();
        EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
        const std::string line =
            file + ": the world file cannot be written: Too many levels of symbolic links\n";
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
        EXPECT_EQ(fs::read_symlink(file), target);
        fs::remove(file);
    }
    EXPECT_EQ(readText(directory + "/moved.json"), moved);
}

// Each refused change is reported, not only the first.
TEST_F(WorldFile, ReportsFailedLock) {
    open("bench");
    fs::create_directory(file + ".lock");
    testing::internal::CaptureStderr();
    EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_FALSE(q5sim::resetWorld());
    const std::string line = file + ": the world file cannot be locked: Is a directory\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line + line + line);
}

// A rule that matches is counted in the file before the operation changes it: the failure is one.
TEST_F(WorldFile, ReportsFailedLockOnceWithRule) {
    open("bench");
    ASSERT_EQ(q5sim::changeWorld([](q5sim::World& world, std::int64_t) {
                  world.rules.push_back({q5sim::kDelayCall, "q5_turn*"});
                  return 0;
              }),
              0);
    fs::remove(file + ".lock");
    fs::create_directory(file + ".lock");
    const std::string line = file + ": the world file cannot be locked: Is a directory\n";
    for (int i = 0; i < 3; i++) {
        testing::internal::CaptureStderr();
        EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
    }
}

// Listings of a world that cannot be locked show that time passes, and report the failure once.
TEST_F(WorldFile, ReportsFailedLockOnceWhenTimePasses) {
    open("bench");
    ASSERT_EQ(create(request(kRaid1, 400, {0, 1})), 0); // synchronizes for 50 seconds
    fs::remove(file + ".lock");
    fs::create_directory(file + ".lock");
    waitSeconds(60);
    testing::internal::CaptureStderr();
    for (int i = 0; i < 5; i++)
        EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              file + ": the world file cannot be locked: Is a directory\n");
}

TEST_F(WorldFile, LinksAreNotFollowedByLockAndTemporaryFile) {
    open("bench");
    fs::create_symlink("elsewhere", file + ".lock");
    testing::internal::CaptureStderr();
    EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              file + ": the world file cannot be locked: Too many levels of symbolic links\n");
    fs::remove(file + ".lock");
    fs::create_symlink("elsewhere", file + ".new");
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    EXPECT_FALSE(fs::is_symlink(file));
    EXPECT_FALSE(fs::exists(directory + "/elsewhere"));
}

// What a change prints that must fail on a full disk, simulated by a limit on file sizes.
static std::string errorsOnFullDisk() {
    testing::internal::CaptureStderr();
    {
        const FileSizeLimit limit(100);
        EXPECT_NE(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
    }
    return testing::internal::GetCapturedStderr();
}

// The change is refused and the old state is kept.
TEST_F(WorldFile, RejectsChangesWhenNotWritable) {
    open("bench");
    const std::string before = fileText();
    EXPECT_EQ(errorsOnFullDisk(), file + ": the world file cannot be written: File too large\n");
    EXPECT_EQ(fileText(), before);
    EXPECT_FALSE(fs::exists(file + ".new"));
    std::uint8_t state = 9;
    EXPECT_EQ(q5_getBuzzerStatus(hbaAddress(0), 0, &state, 1), 0);
    EXPECT_EQ(state, 1);
}

// The same with a rule: neither its count nor the reason of the refusal can be stored.
TEST_F(WorldFile, ReportsFailedWriteOnceWithRule) {
    open("bench");
    ASSERT_EQ(q5sim::changeWorld([](q5sim::World& world, std::int64_t) {
                  world.rules.push_back({q5sim::kRefuseCall, "q5_turn*"});
                  return 0;
              }),
              0);
    EXPECT_EQ(errorsOnFullDisk(), file + ": the world file cannot be written: File too large\n");
}

static int splitRepeatedly(std::uint32_t drive, std::uint32_t first, std::uint32_t times) {
    for (std::uint32_t i = 0; i < times; i++) {
        const ExtentRef last = {i, drive};
        if (q5_splitHBAExtent(hbaAddress(0), 0, &last, first) != 0)
            return 1;
    }
    return 0;
}

// Two programs change the world at the same time: each splits a drive fifteen times, no split is lost.
TEST_F(WorldFile, KeepsChangesOfTwoPrograms) {
    open("bench");
    pid_t children[2];
    for (std::uint32_t drive = 0; drive < 2; drive++) {
        children[drive] = fork();
        if (children[drive] == 0)
            _exit(initialize() != 0 || splitRepeatedly(drive, 10, 15) != 0 ? 1 : 0);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(driveInfo(0, 0).extentCount, 16);
    EXPECT_EQ(driveInfo(0, 1).extentCount, 16);
    EXPECT_EQ(eventTexts(0, 51).size(), 30u);
}

// What a killed program left is removed by the next use, even if that only reads, but not while another
// program holds the lock and may be writing it.
TEST_F(WorldFile, AbandonedTemporaryFileIsRemoved) {
    open("bench");
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t writer = fork();
    if (writer == 0) {
        q5sim::lockFile(file);
        writeText(file + ".new", "{");
        if (write(ends[1], "", 1) != 1)
            _exit(1);
        for (;;)
            pause();
    }
    char ready;
    EXPECT_EQ(read(ends[0], &ready, 1), 1);
    EXPECT_EQ(initialize(), 0);
    EXPECT_TRUE(fs::exists(file + ".new"));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    EXPECT_EQ(initialize(), 0);
    EXPECT_FALSE(fs::exists(file + ".new"));
    close(ends[0]);
    close(ends[1]);
}

// A program killed at any moment leaves a valid world, with each change complete or absent.
TEST_F(WorldFile, SurvivesKill) {
    open("bench");
    for (int round = 0; round < 25; round++) {
        const pid_t child = fork();
        if (child == 0) {
            initialize();
            for (;;) {
                q5_turnOffBuzzer(hbaAddress(0), 0, 0);
                q5_turnOnBuzzer(hbaAddress(0), 0, 0);
            }
        }
        usleep(static_cast<useconds_t>(500 + round * 700));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        q5sim::World world;
        q5sim::ValidationError fault;
        ASSERT_TRUE(q5sim::worldFromJson(fileText(), world, fault)) << fault.reason;
        const std::vector<q5sim::Event>& events = world.controllers[0].events;
        const bool on = events.empty() || events.back().text == "Buzzer enabled";
        EXPECT_EQ(world.controllers[0].buzzer, on);
    }
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0); // the lock was released with its holder
}
