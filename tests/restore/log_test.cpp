// Logs of cli-restore.
#include <sys/stat.h>

#include "tests/temp_dir_fixture.h"
#include "tools/restore/log.h"

using RestoreLog = TempDirFixture;

static const LogHeader kHeader = {"0123", "4", "2=5,3=-"};

static const std::string kNoLog = " is not a log of cli-restore";

TEST_F(RestoreLog, FindsAnUnfinishedRestore) {
    RestoreState state;
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_FALSE(state.begun);
    Log log;
    ASSERT_EQ(openLog(path("log"), &log), "");
    for (const std::string& line : {beginLine(kHeader), std::string("step one"), std::string(kStepDone),
                                    std::string("step two"), std::string("stopped why")})
        EXPECT_EQ(addToLog(log, line), "");
    closeLog(&log);
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_TRUE(state.begun);
    EXPECT_FALSE(state.finished);
    EXPECT_EQ(state.header, kHeader);
    EXPECT_EQ(state.steps, 1);
    EXPECT_TRUE(state.isInStep);
}

// Continued twice, then with other drives.
TEST_F(RestoreLog, CountsTheStepsOfAllAttempts) {
    RestoreState state;
    const std::string begin = "2026-11-22T02:15:00Z begin backup=1 controller=0 drives=";
    const std::string attempt = begin + "\nT step one\nT done\nT step two\n";
    write("log", attempt + begin + "\nT step two\nT done\n");
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_EQ(state.steps, 2);
    EXPECT_FALSE(state.isInStep);
    write("log", attempt + begin + "1=1\n");
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_EQ(state.steps, 0);
    EXPECT_FALSE(state.isInStep);
    write("log", attempt + "T finished\n" + begin + "\nT step one\n");
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_EQ(state.steps, 0);
    EXPECT_TRUE(state.isInStep);
}

TEST_F(RestoreLog, FindsAFinishedRestore) {
    Log log;
    ASSERT_EQ(openLog(path("log"), &log), "");
    for (const std::string& line : {beginLine(kHeader), std::string(kStepDone), std::string(kFinished)})
        EXPECT_EQ(addToLog(log, line), "");
    closeLog(&log);
    RestoreState state;
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_TRUE(state.finished);
}

// A power failure cut the last line, which says that a step was done or that all is finished.
TEST_F(RestoreLog, IgnoresAnIncompleteLine) {
    write("log", "2026-11-22T02:15:00Z begin backup=1 controller=0 drives=\nT done\nT finis");
    RestoreState state;
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_TRUE(state.begun);
    EXPECT_FALSE(state.finished);
    EXPECT_EQ(state.steps, 1);
    Log log;
    ASSERT_EQ(openLog(path("log"), &log), "");
    EXPECT_EQ(addToLog(log, kStepDone), "");
    closeLog(&log);
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_EQ(state.steps, 2);
}

// Also one that a power failure cut in its first line.
TEST_F(RestoreLog, RecognizesALog) {
    const std::string first = "2026-11-22T02:15:00Z begin backup=1 controller=0 drives=";
    for (const std::size_t size : {std::size_t{0}, std::size_t{21}, std::size_t{25}, first.size()}) {
        RestoreState state;
        write("log", first.substr(0, size));
        EXPECT_EQ(readLog(path("log"), &state), "") << size;
        EXPECT_FALSE(state.begun);
        write("log", first.substr(0, size) + "\n" + first + "\n");
        EXPECT_EQ(readLog(path("log"), &state), size == 0 ? path("log") + kNoLog : "") << size;
    }
}

TEST_F(RestoreLog, RefusesAnotherFile) {
    for (const char* text :
         {"\n", "2", "2026-11-22T02:15:00Z", "2026-11-22T02:15:00Z begun backup=1", "{\"format\": 1}\n",
          "2026-11-22 02:15:00Z begin backup=1\n", "2026-11-22T02:15:00Z step one\n", "Begin Controller\n"}) {
        RestoreState state;
        write("log", text);
        EXPECT_EQ(readLog(path("log"), &state), path("log") + kNoLog) << text;
    }
    RestoreState state;
    EXPECT_EQ(readLog(path(""), &state), path("") + kNoLog); // the directory
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readLog(path("pipe"), &state), path("pipe") + kNoLog);
    EXPECT_NE(readLog(path("log/none"), &state), "");
}

TEST_F(RestoreLog, RefusesALink) {
    write("other", "x");
    ASSERT_EQ(symlink(path("other").c_str(), path("log").c_str()), 0);
    Log log;
    EXPECT_NE(openLog(path("log"), &log), "");
    EXPECT_EQ(content("other"), "x");
}
