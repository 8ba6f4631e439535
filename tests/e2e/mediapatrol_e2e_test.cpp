// The mp command: a media patrol from start to end, across runs. The drives of the world have 2000 MB, of
// which a patrol at rate 1 reads 8 MB per second.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/harness.h"

struct MediaPatrol : testing::Test {
    Session s;
    MediaPatrol() { s.useWorld(fixtureWorld("drives_and_boxes")); }

    ProcessOutcome mp(const std::string& action, const std::string& drive = "2") {
        return s.run({"mp", "-a", action, "-p", drive, "-i", "0"});
    }
    // The listing, this number of seconds after the start of the session.
    std::string after(std::int64_t seconds) {
        s.setClock(kSessionStart + seconds);
        const ProcessOutcome outcome = mp("list");
        EXPECT_EQ(outcome.status, 0);
        return outcome.out;
    }
};

static std::string patrol(const std::string& status, int loops, int errors) {
    return "Media patrol status : " + status + "\nMedia patrol loop count : " + std::to_string(loops) +
           "\nMedia patrol error count : " + std::to_string(errors) + "\n";
}

static std::string running(int percent, int loops = 0, int errors = 0) {
    return patrol("Running\nMedia patrol progress : " + std::to_string(percent), loops, errors);
}

static ProcessOutcome failed(const std::string& action) {
    return {8, "Failed to " + action + " media patrol operation on disk with ID 1!\n", ""};
}

TEST_F(MediaPatrol, RunsToCompletionAndCounts) {
    EXPECT_EQ(after(0), patrol("idle", 0, 0));
    EXPECT_EQ(mp("start"), kSilentSuccess);
    EXPECT_EQ(after(0), running(0));
    EXPECT_EQ(after(100), running(40));
    EXPECT_EQ(after(249), running(99));
    // The drive has three bad sectors. Two are in its share of a mirror and are repaired from the other
    // member; the one in free space stays.
    EXPECT_EQ(after(250), patrol("idle", 1, 3));
    EXPECT_EQ(mp("start"), kSilentSuccess);
    EXPECT_EQ(after(300), running(20, 1, 3));
    EXPECT_EQ(after(10000), patrol("idle", 2, 4));
}

TEST_F(MediaPatrol, MakesNoProgressWhilePaused) {
    mp("start");
    EXPECT_EQ(after(100), running(40));
    EXPECT_EQ(mp("pause"), kSilentSuccess);
    EXPECT_EQ(after(9000), patrol("paused", 0, 0));
    EXPECT_EQ(mp("resume"), kSilentSuccess);
    EXPECT_EQ(after(9000), running(40));
    EXPECT_EQ(after(9050), running(60));
    EXPECT_EQ(after(9150), patrol("idle", 1, 3));
}

TEST_F(MediaPatrol, RestartsAfterStop) {
    mp("start");
    EXPECT_EQ(after(100), running(40));
    EXPECT_EQ(mp("stop"), kSilentSuccess);
    EXPECT_EQ(after(1000), patrol("stopped", 0, 0));
    EXPECT_EQ(mp("start"), kSilentSuccess);
    EXPECT_EQ(after(1000), running(0));
    EXPECT_EQ(mp("pause"), kSilentSuccess);
    EXPECT_EQ(mp("stop"), kSilentSuccess);
    EXPECT_EQ(after(1001), patrol("stopped", 0, 0));
}

TEST_F(MediaPatrol, RejectsActionsInWrongState) {
    for (const char* action : {"stop", "pause", "resume"})
        EXPECT_EQ(mp(action), failed(action));
    mp("start");
    for (const char* action : {"start", "resume"})
        EXPECT_EQ(mp(action), failed(action));
    mp("pause");
    for (const char* action : {"start", "pause"})
        EXPECT_EQ(mp(action), failed(action));
    mp("stop");
    for (const char* action : {"stop", "pause", "resume"})
        EXPECT_EQ(mp(action), failed(action));
    EXPECT_EQ(after(0), patrol("stopped", 0, 0));
}

TEST_F(MediaPatrol, AbortsWhenDriveFails) {
    std::string world = fixtureWorld("drives_and_boxes");
    const std::string healthy = "\"mediaErrors\": 3";
    world.replace(world.find(healthy), healthy.size(),
                  "\"failed\": true, \"mediaPatrol\": {\"state\": \"running\", \"since\": 1700000000}");
    s.useWorld(world);
    EXPECT_EQ(after(100), patrol("aborted", 0, 0));
    EXPECT_EQ(mp("start"), failed("start"));
    EXPECT_EQ(after(9000), patrol("aborted", 0, 0));
}

TEST_F(MediaPatrol, RunsOnEachDriveIndependently) {
    EXPECT_EQ(mp("list", "6").out, patrol("aborted", 2, 7));
    EXPECT_EQ(mp("start", "6"), kSilentSuccess);
    EXPECT_EQ(after(100), patrol("idle", 0, 0));
    EXPECT_EQ(mp("list", "6").out, patrol("idle", 3, 7));
    mp("start");
    const std::string block = s.run({"phydrv", "-v", "-p", "2"}).out;
    EXPECT_NE(block.find(running(0)), std::string::npos) << block;
}

TEST_F(MediaPatrol, ReportsMissingDrives) {
    const ProcessOutcome missing = {5, "Disk with ID 4 in controller #0 is not existed\n", ""};
    for (const char* action : {"list", "start", "stop", "pause", "resume"})
        EXPECT_EQ(mp(action, "5"), missing);
    EXPECT_EQ(s.run({"mp", "-a", "start", "-i", "7", "-p", "1"}),
              (ProcessOutcome{5, "Disk with ID 0 in controller #7 is not existed\n", ""}));
}

TEST_F(MediaPatrol, RequiresSevenWords) {
    const ProcessOutcome count = {2, "Invalid number of parameters for \"mp\"!\n", ""};
    EXPECT_EQ(s.run({"mp"}), count);
    EXPECT_EQ(s.run({"mp", "-a", "start"}), count);
    EXPECT_EQ(s.run({"mp", "-a", "list", "-p", "2"}), count);
    EXPECT_EQ(s.run({"mp", "-a", "list", "-p", "2", "-i", "0", "-v"}), count);
    EXPECT_EQ(s.prompt("mp -a stop -p 2 -i 0\nmp\nexit\n"),
              (ProcessOutcome{2, "cli>" + failed("stop").out + "cli>" + count.out + "cli>", ""}));
}

TEST_F(MediaPatrol, RejectsUnknownWords) {
    EXPECT_EQ(mp("restart"), (ProcessOutcome{9, "Invalid command for \"media patrol\"\n", ""}));
    EXPECT_EQ(mp("start", "x"), (ProcessOutcome{6, "Invalid physical drive ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"mp", "-a", "start", "-p", "2", "-i", "x"}),
              (ProcessOutcome{6, "Invalid controller ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"mp", "-a", "start", "-p", "2", "-c", "0"}),
              (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
    EXPECT_EQ(mp("list").out, patrol("idle", 0, 0));
}

TEST_F(MediaPatrol, LogsEachStep) {
    const auto events = [&] {
        const std::string listing = s.run({"event", "-c", "100"}).out;
        return std::count(listing.begin(), listing.end(), '\n');
    };
    auto seen = events();
    for (const char* action : {"start", "pause", "resume", "stop", "start"}) {
        EXPECT_EQ(mp(action), kSilentSuccess);
        EXPECT_EQ(events(), ++seen) << action;
    }
    mp("start");
    EXPECT_EQ(events(), seen);
    s.setClock(kSessionStart + 1000);
    EXPECT_EQ(events(), seen + 2); // the end of the pass and the repair
}
