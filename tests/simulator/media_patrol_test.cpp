// Media patrol: states, progress and completion. A drive of 1000 MB at rate 1 takes 125 seconds.
#include "tests/simulator/simulated_world.h"

class Patrol : public SimulatedWorld {
protected:
    void SetUp() override { open("bench"); }
};

using Operation = int (*)(HbaAddress, std::uint32_t, const DriveSelector*);

static int on(std::uint32_t drive, Operation operation) {
    const DriveSelector selector = {drive, 1};
    return operation(hbaAddress(0), 0, &selector);
}

static MediaPatrolProgress progress(std::uint32_t drive) {
    MediaPatrolProgress reply = {};
    const DriveSelector selector = {drive, 1};
    EXPECT_EQ(q5_getHBAMediaPatrolProgress(hbaAddress(0), 0, &selector, &reply, sizeof reply), 0);
    return reply;
}

TEST_F(Patrol, RunsToCompletion) {
    EXPECT_EQ(progress(0).state, 0);
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    EXPECT_EQ(progress(0).state, kPatrolRunning);
    EXPECT_EQ(progress(0).progress, 0);
    waitSeconds(30); // 240 of 1000 MB
    EXPECT_EQ(progress(0).progress, 24);
    waitSeconds(94);
    EXPECT_EQ(progress(0).progress, 99);
    EXPECT_EQ(progress(0).loopCount, 0);
    waitSeconds(1);
    EXPECT_EQ(progress(0).state, 0);
    EXPECT_EQ(progress(0).loopCount, 1);
    EXPECT_EQ(progress(0).errorCount, 0);
    EXPECT_EQ(newestEvent(), "Drive 1: media patrol ended, 0 errors");
}

TEST_F(Patrol, CountsErrorsOfEachPass) {
    progress(0);
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    replaceInFile("\"badSectors\": []", "\"badSectors\": [{\"start\": 5, \"count\": 3}]");
    waitSeconds(125);
    EXPECT_EQ(progress(0).errorCount, 3);
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    waitSeconds(125);
    EXPECT_EQ(progress(0).errorCount, 6);
    EXPECT_EQ(progress(0).loopCount, 2);
}

TEST_F(Patrol, PauseKeepsProgress) {
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    waitSeconds(50);
    EXPECT_EQ(on(0, q5_pauseHBAMediaPatrol), 0);
    waitSeconds(1000);
    EXPECT_EQ(progress(0).state, kPatrolPaused);
    EXPECT_EQ(progress(0).progress, 40);
    EXPECT_EQ(on(0, q5_resumeHBAMediaPatrol), 0);
    waitSeconds(25);
    EXPECT_EQ(progress(0).progress, 60);
    EXPECT_EQ(on(0, q5_stopHBAMediaPatrol), 0);
    EXPECT_EQ(progress(0).state, kPatrolStopped);
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    EXPECT_EQ(progress(0).progress, 0);
}

TEST_F(Patrol, RejectsInvalidTransitions) {
    EXPECT_NE(on(0, q5_stopHBAMediaPatrol), 0);
    EXPECT_NE(on(0, q5_pauseHBAMediaPatrol), 0);
    EXPECT_NE(on(0, q5_resumeHBAMediaPatrol), 0);
    EXPECT_NE(on(8, q5_startHBAMediaPatrol), 0);
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    const std::string before = stateText();
    EXPECT_NE(on(0, q5_startHBAMediaPatrol), 0);
    EXPECT_NE(on(0, q5_resumeHBAMediaPatrol), 0);
    EXPECT_EQ(stateText(), before);
    EXPECT_EQ(on(0, q5_pauseHBAMediaPatrol), 0);
    EXPECT_NE(on(0, q5_startHBAMediaPatrol), 0);
    EXPECT_NE(on(0, q5_pauseHBAMediaPatrol), 0);
}

TEST_F(Patrol, AbortsWhenDriveFails) {
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    waitSeconds(25);
    replaceInFile("\"failed\": false", "\"failed\": true");
    EXPECT_EQ(progress(0).state, kPatrolAborted);
    EXPECT_EQ(progress(0).progress, 20);
    EXPECT_EQ(eventTexts(0, 2),
              (std::vector<std::string>{"Drive 1 has failed", "Drive 1: media patrol aborted"}));
    EXPECT_NE(on(0, q5_startHBAMediaPatrol), 0);
}

TEST_F(Patrol, NewRateAppliesFromItsChange) {
    EXPECT_EQ(on(0, q5_startHBAMediaPatrol), 0);
    waitSeconds(25); // 200 MB
    ControllerSettings settings = {};
    const ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    settings.mpRate = 10;
    EXPECT_EQ(q5_setControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    EXPECT_EQ(progress(0).progress, 20);
    waitSeconds(5); // 400 MB more
    EXPECT_EQ(progress(0).progress, 60);
}
