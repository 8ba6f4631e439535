// The fault injection tool, run as a program.
#include <cstdlib>
#include <sys/wait.h>

#include "tests/simulator/simulated_world.h"

class Q5simTest : public SimulatedWorld {
protected:
    // Returns the exit status and ignores the output.
    static int run(const std::string& words) {
        const int status = std::system((std::string(Q5SIM) + " " + words + " 2>/dev/null").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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
    const std::string before = fileText();
    for (const char* words :
         {"", "fail-drive", "fail-drive 0", "fail-drive 0 0", "fail-drive 0 33", "fail-drive 1 1",
          "fail-drive 0 9", "fail-drive x 1", "fail-drive 0 1x", "fail-drive -1 1", "replace-drive 0 1",
          "advance", "advance -5", "advance 1 2", "reset now", "dance"})
        EXPECT_EQ(run(words), 1) << words;
    EXPECT_EQ(fileText(), before);
}
