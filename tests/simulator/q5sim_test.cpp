// The fault injection tool, run as a program.
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>

#include "adapter/battery.h"
#include "tests/simulator/simulated_world.h"

class Q5simTest : public SimulatedWorld {
protected:
    // Returns the exit status and ignores the output.
    static int run(const std::string& words) {
        const int status = std::system((std::string(Q5SIM) + " " + words + " >/dev/null 2>&1").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // What it prints on both streams.
    std::string output(const std::string& words) const {
        const std::string path = directory + "/output";
        EXPECT_NE(std::system((std::string(Q5SIM) + " " + words + " >" + path + " 2>&1").c_str()), -1);
        return readText(path);
    }
};

TEST_F(Q5simTest, FailsAndReplacesDrivesByUserVisibleId) {
    open("");
    EXPECT_EQ(run("fail-drive 0 2"), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRebuilding); // onto the global spare
    EXPECT_EQ(driveInfo(0, 1).extent[0].access & kExtentAccessible, 0);
    EXPECT_EQ(run("fail-drive 0 2"), 1);
    EXPECT_EQ(run("replace-drive 0 2"), 0);
    EXPECT_EQ(extentsText(1), "0 free 476940");
    EXPECT_EQ(newestEvent(), "Drive 2 has been replaced");
    EXPECT_EQ(run("replace-drive 0 2"), 1);
}

TEST_F(Q5simTest, AdvancesClock) {
    open("bench");
    EXPECT_EQ(create(request(kRaid1, 400, {0, 1})), 0); // 50 seconds
    EXPECT_EQ(run("advance 49"), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kSynchronizing);
    EXPECT_EQ(run("advance 1"), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(run("advance 1099511627776"), 1); // the sum would be too large
}

TEST_F(Q5simTest, ResetsInvalidWorldFile) {
    writeText(file, "{");
    EXPECT_EQ(run("reset"), 0);
    ASSERT_EQ(initialize(), 0);
    EXPECT_STREQ(arrayInfo(0, 0).name, "Archive");
}

TEST_F(Q5simTest, RejectsInvalidArguments) {
    open("bench");
    const std::string before = stateText();
    for (const char* words : {"",
                              "fail-drive",
                              "fail-drive 0",
                              "fail-drive 0 0",
                              "fail-drive x 1",
                              "fail-drive 0 1x",
                              "fail-drive -1 1",
                              "fail-drive 0 1 --blank",
                              "insert-drive 0 1 --blank --same",
                              "media-errors 0 1 0",
                              "media-errors 0 1 5 --at 101",
                              "media-errors 0 1 5 --at",
                              "battery 0 flat",
                              "sensor 0 0 wind 5",
                              "advance",
                              "advance -5",
                              "advance 1 2",
                              "advance 1 --until-idle",
                              "speed 0",
                              "refuse",
                              "refuse q5_x --result 0",
                              "delay q5_x 1x",
                              "reset now",
                              "dance"})
        EXPECT_EQ(run(words), 2) << words;
    for (const char* words : {"fail-drive 0 33", "fail-drive 1 1", "fail-drive 0 9", "replace-drive 0 1",
                              "insert-drive 0 1", "insert-enclosure 0 0", "load /nowhere/world.json"})
        EXPECT_EQ(run(words), 1) << words;
    EXPECT_EQ(stateText(), before);
}

TEST_F(Q5simTest, HelpNamesEachCommand) {
    EXPECT_EQ(run("--help"), 0);
    EXPECT_EQ(run("fail-drive --help"), 0);
    EXPECT_FALSE(std::filesystem::exists(file)); // help needs no world
}

TEST_F(Q5simTest, PrintsWhatHappenedAndWhatFollowed) {
    open("");
    EXPECT_EQ(output("fail-drive 0 2"),
              "drive 2 of controller 0 failed; logical drive 0 Archive is critical; "
              "rebuild onto drive 6 started\n");
    EXPECT_EQ(output("fail-drive 0 2"), "q5sim: drive 2 has failed already on controller 0\n");
    EXPECT_EQ(output("fail-drive 7 2"), "q5sim: there is no controller 7\n");
    EXPECT_EQ(output("advance --until-idle"), "196 seconds have passed\n"
                                              "controller 0: logical drive 0 Archive: rebuild ended\n"
                                              "controller 0: logical drive 0 Archive is online\n");
    EXPECT_EQ(output("fail-drive 0"), "q5sim: fail-drive: wrong number of arguments\n"
                                      "Usage: q5sim fail-drive CTRL DRIVE\n");
    EXPECT_EQ(output("status --check"), "the world is consistent\n");
}

TEST_F(Q5simTest, AdvanceStopsAtItsLimit) {
    open("");
    EXPECT_EQ(run("fail-drive 0 2"), 0);
    EXPECT_EQ(output("advance --until-idle --limit 100"), "100 seconds have passed\n");
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRebuilding);
}

TEST_F(Q5simTest, SavesAndLoadsWorlds) {
    open("");
    const std::string copy = directory + "/copy.json";
    EXPECT_EQ(run("save " + copy), 0);
    EXPECT_EQ(run("fail-drive 0 2"), 0);
    EXPECT_EQ(run("load " + copy), 0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    writeText(copy, "{");
    EXPECT_EQ(output("load " + copy), "q5sim: " + copy + ":1: this is not valid JSON\n");
}

// Anything but a regular file at the path of a copy is left unchanged.
TEST_F(Q5simTest, SavesOnlyAsRegularFile) {
    open("");
    const std::string before = fileText(), copy = directory + "/copy.json";
    EXPECT_EQ(output("save " + file), "q5sim: " + file + " is the world file itself\n");
    std::filesystem::create_symlink(file, copy);
    EXPECT_EQ(output("save " + copy), "q5sim: " + copy + " is the world file itself\n");
    EXPECT_EQ(fileText(), before);
    std::filesystem::remove(copy);
    std::filesystem::create_symlink("real.json", copy);
    EXPECT_EQ(output("save " + copy), "q5sim: " + copy + ": No such file or directory\n");
    writeText(directory + "/real.json", "{");
    EXPECT_EQ(output("save " + copy), "world saved in " + copy + "\n");
    EXPECT_TRUE(std::filesystem::is_symlink(copy));
    EXPECT_EQ(readText(directory + "/real.json"), before);
    std::filesystem::remove(copy);
    ASSERT_EQ(mkfifo(copy.c_str(), 0600), 0);
    EXPECT_EQ(output("save " + copy), "q5sim: " + copy + ": Invalid argument\n");
    EXPECT_TRUE(std::filesystem::is_fifo(copy));
    EXPECT_EQ(output("save " + directory), "q5sim: " + directory + ": Is a directory\n");
    EXPECT_EQ(output("save /nowhere/copy.json"), "q5sim: /nowhere/copy.json: No such file or directory\n");
}

TEST_F(Q5simTest, ResetReplacesOnlyRegularFile) {
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(output("reset"), file + ": the world file cannot be written: Invalid argument\n");
    EXPECT_TRUE(std::filesystem::is_fifo(file));
}

TEST_F(Q5simTest, RefusesRuleForNoOperation) {
    open("");
    EXPECT_EQ(output("refuse 'q5_strat*'"), "q5sim: no operation matches q5_strat*\n");
    EXPECT_EQ(output("rules"), "no rules\n");
}

TEST_F(Q5simTest, CountsBadSectorsThatAreNew) {
    open("");
    EXPECT_EQ(output("media-errors 0 1 5 --at 50"),
              "drive 1 of controller 0 has 5 more bad sectors at 50 percent\n");
    EXPECT_EQ(output("media-errors 0 1 6 --at 50"),
              "drive 1 of controller 0 has 1 more bad sector at 50 percent\n");
    EXPECT_EQ(output("media-errors 0 1 6 --at 50"),
              "q5sim: drive 1 has bad sectors there already on controller 0\n");
}

TEST_F(Q5simTest, ReadingsMayBeNegative) {
    open("");
    EXPECT_EQ(output("sensor 0 0 temperature -5"),
              "temperature sensor of enclosure 0 of controller 0 set to -5; "
              "enclosure 0: temperature -5 is out of range\n");
    EXPECT_EQ(output("delay q5_discover -1"), "q5sim: -1 is not a number of seconds up to 86400\n"
                                              "Usage: q5sim delay OPERATION SECONDS\n");
    EXPECT_EQ(output("delay --help"), "Usage: q5sim delay OPERATION SECONDS\n");
}

TEST_F(Q5simTest, CountsAndClearsRules) {
    open("");
    EXPECT_EQ(output("rules"), "no rules\n");
    EXPECT_EQ(output("refuse 'q5_turn*' --times 2 --result 9"),
              "rule 1: refuse q5_turn* --times 2 --result 9\n");
    EXPECT_EQ(output("delay q5_getBatteryInfo 0"), "rule 2: delay q5_getBatteryInfo 0\n");
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 9);
    EXPECT_EQ(output("rules"), "1: refuse q5_turn* --times 2 --result 9 (1 calls, 1 hits)\n"
                               "2: delay q5_getBatteryInfo 0 (0 calls, 0 hits)\n");
    EXPECT_EQ(output("why"), "refused by rule 1 (q5_turnOffBuzzer)\n");
    EXPECT_EQ(output("clear-rules"), "2 rules cleared\n");
    EXPECT_EQ(q5_turnOffBuzzer(hbaAddress(0), 0, 0), 0);
}

TEST_F(Q5simTest, SpeedAppliesFromNow) {
    open("bench");
    EXPECT_EQ(create(request(kRaid1, 400, {0, 1})), 0); // 50 seconds
    waitSeconds(10);
    EXPECT_EQ(run("speed 10"), 0);
    waitSeconds(3);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kSynchronizing);
    waitSeconds(1);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(run("speed 1"), 0);
    EXPECT_NE(output("status").find("time 1000000050, speed 1,"), std::string::npos);
}

// Only the reason for the failure is reported.
TEST_F(Q5simTest, ReportsOnlyTheFailedLock) {
    open("bench");
    std::filesystem::create_directory(file + ".lock");
    const std::string line = file + ": the world file cannot be locked: Is a directory\n";
    for (const char* words : {"fail-drive 0 1", "replace-drive 0 1", "advance 5", "reset", "power-cut"})
        EXPECT_EQ(output(words), line) << words;
}
