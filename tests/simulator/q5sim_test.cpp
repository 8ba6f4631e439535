// The fault injection tool, run as a program.
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>

#include "tests/simulator/simulated_world.h"

class Q5simTest : public SimulatedWorld {
protected:
    // Returns the exit status and ignores the output.
    static int run(const std::string& words) {
        const int status = std::system((std::string(Q5SIM) + " " + words + " 2>/dev/null").c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // Returns what it prints on standard error.
    std::string errorsOf(const std::string& words) const {
        const std::string errors = directory + "/errors";
        EXPECT_NE(std::system((std::string(Q5SIM) + " " + words + " 2>" + errors).c_str()), 0);
        return readText(errors);
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

// The drive is there; only the reason for the failure is reported.
TEST_F(Q5simTest, ReportsFailedLockAlone) {
    open("bench");
    std::filesystem::create_directory(file + ".lock");
    const std::string line = file + ": the world file cannot be locked: Is a directory\n";
    for (const char* words : {"fail-drive 0 1", "replace-drive 0 1", "advance 5", "reset"})
        EXPECT_EQ(errorsOf(words), line) << words;
}

TEST_F(Q5simTest, ReportsUnknownDrive) {
    open("bench");
    for (const char* words : {"fail-drive 0 9", "fail-drive 1 1"})
        EXPECT_EQ(errorsOf(words), "There is no working drive with this ID\n") << words;
    EXPECT_EQ(errorsOf("replace-drive 0 1"), "There is no failed drive with this ID\n");
}
