// Initialization, synchronization and redundancy check. An array with members of 400 MB takes 50
// seconds at rate 1.
#include "tests/simulator/simulated_world.h"

class Activities : public SimulatedWorld {
protected:
    // A RAID1 as array 0 of bench.json that is synchronized, or not.
    void openWithMirror(bool synchronized) {
        open("bench");
        ASSERT_EQ(create(request(kRaid1, 400, {0, 1})), 0);
        if (synchronized)
            waitSeconds(50);
        ASSERT_EQ(arrayInfo(0, 0).activityStatus, synchronized ? 0 : kSynchronizing);
    }
};

static constexpr LogDrvIdBlock kFirst = {0, {}};
static constexpr ActivityQuery kQuery = {0, 0};

static int startInit(std::uint8_t type) {
    InitStartRequest request = {};
    request.initType = type;
    request.word6 = request.word8 = 0xFFFF;
    return q5_startLogDrvInit(hbaAddress(0), 0, &request, sizeof request);
}

static int startCheck(std::uint8_t noFix) {
    const RedundancyCheckRequest request = {0, noFix, 0, {}};
    return q5_startRedundancyCheck(hbaAddress(0), 0, &request);
}

static InitProgress initProgress() {
    InitProgress progress = {};
    EXPECT_EQ(q5_getLogDrvInitProgress(hbaAddress(0), 0, &kQuery, &progress, sizeof progress), 0);
    return progress;
}

static SyncProgress syncProgress() {
    SyncProgress progress = {};
    EXPECT_EQ(q5_getLogDrvSynchProgress(hbaAddress(0), 0, &kQuery, &progress, sizeof progress), 0);
    return progress;
}

static SyncProgress checkProgress() {
    SyncProgress progress = {};
    EXPECT_EQ(q5_getRedundancyCheckProgress(hbaAddress(0), 0, &kQuery, &progress, sizeof progress), 0);
    return progress;
}

TEST_F(Activities, InitializationRunsToCompletion) {
    openWithMirror(true);
    EXPECT_EQ(startInit(4), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kInitializing);
    EXPECT_EQ(driveInfo(0, 1).extent[0].maintenance, kExtentInitializing);
    waitSeconds(10);
    EXPECT_EQ(initProgress().percent, 20);
    EXPECT_NE(initProgress().state, kActivityPaused);
    EXPECT_EQ(q5_pauseLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(500);
    EXPECT_EQ(initProgress().percent, 20);
    EXPECT_EQ(initProgress().state, kActivityPaused);
    EXPECT_NE(q5_pauseLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(q5_resumeLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_NE(q5_resumeLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(39);
    EXPECT_EQ(initProgress().percent, 98);
    waitSeconds(1);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(eventTexts(0, 4), (std::vector<std::string>{"Logical drive 0: initialization started",
                                                          "Logical drive 0: initialization paused",
                                                          "Logical drive 0: initialization resumed",
                                                          "Logical drive 0: initialization ended"}));
}

TEST_F(Activities, InitializationStops) {
    openWithMirror(true);
    EXPECT_EQ(startInit(2), 0);
    EXPECT_EQ(q5_stopLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(newestEvent(), "Logical drive 0: initialization stopped");
    EXPECT_NE(q5_stopLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(startCheck(0), 0); // the array is no longer synchronized
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kSynchronizing);
}

TEST_F(Activities, InitializationReplacesSynchronization) {
    openWithMirror(false);
    EXPECT_EQ(startInit(4), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kInitializing);
    EXPECT_EQ(eventTexts(0, 2),
              (std::vector<std::string>{"Logical drive 0: synchronization halted for an initialization",
                                        "Logical drive 0: initialization started"}));
    EXPECT_NE(startInit(4), 0);
    EXPECT_NE(startCheck(0), 0);
}

TEST_F(Activities, RejectsInvalidStarts) {
    openWithMirror(true);
    const std::string before = stateText();
    EXPECT_NE(startInit(0), 0);
    EXPECT_NE(startInit(3), 0);
    InitStartRequest other = {};
    other.logDrvId = 1;
    other.initType = 4;
    EXPECT_NE(q5_startLogDrvInit(hbaAddress(0), 0, &other, sizeof other), 0);
    EXPECT_NE(startCheck(2), 0);
    EXPECT_NE(q5_pauseRedundancyCheck(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_NE(q5_pauseLogDrvInit(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_NE(q5_pauseLogDrvInit(hbaAddress(0), 0, nullptr), 0);
    EXPECT_EQ(stateText(), before);
}

TEST_F(Activities, CheckSynchronizesUnsynchronizedArray) {
    openWithMirror(false);
    EXPECT_EQ(q5_stopRedundancyCheck(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(startCheck(0), 0); // not synchronized yet
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kSynchronizing);
    EXPECT_EQ(q5_stopRedundancyCheck(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(startCheck(1), 0); // without repair: a check
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRedundancyChecking);
    EXPECT_EQ(q5_stopRedundancyCheck(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(startCheck(0), 0);
    waitSeconds(50);
    EXPECT_EQ(startCheck(0), 0); // synchronized by now: a check
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRedundancyChecking);
}

TEST_F(Activities, CheckOperationsControlSynchronization) {
    openWithMirror(false);
    waitSeconds(25);
    EXPECT_EQ(syncProgress().percent, 50);
    SyncProgress none = {};
    EXPECT_NE(q5_getRedundancyCheckProgress(hbaAddress(0), 0, &kQuery, &none, sizeof none), 0);
    EXPECT_EQ(q5_pauseRedundancyCheck(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(25);
    EXPECT_EQ(syncProgress().state, kActivityPaused);
    EXPECT_EQ(syncProgress().percent, 50);
    EXPECT_EQ(q5_resumeRedundancyCheck(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(25);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
}

TEST_F(Activities, CheckCountsAndRepairsInconsistencies) {
    openWithMirror(true);
    replaceInFile("\"inconsistencies\": 0", "\"inconsistencies\": 5");
    EXPECT_EQ(startCheck(1), 0);
    waitSeconds(20);
    EXPECT_EQ(checkProgress().percent, 40);
    waitSeconds(30);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(newestEvent(), "Logical drive 0: redundancy check found 5 inconsistencies, left as they are");
    EXPECT_EQ(startCheck(0), 0);
    waitSeconds(50);
    EXPECT_EQ(newestEvent(),
              (arrayInfo(0, 0), "Logical drive 0: redundancy check found 5 inconsistencies, repaired"));
    EXPECT_EQ(startCheck(1), 0);
    waitSeconds(50);
    arrayInfo(0, 0);
    EXPECT_EQ(newestEvent(), "Logical drive 0: redundancy check found 0 inconsistencies");
}

TEST_F(Activities, RejectsCheckWithoutRedundancy) {
    open("bench");
    EXPECT_EQ(create(request(kRaid0, 400, {0, 1})), 0);
    EXPECT_NE(startCheck(0), 0);
    EXPECT_EQ(startInit(4), 0); // 200 MB
    waitSeconds(25);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
}

TEST_F(Activities, LostMemberAbortsActivities) {
    openWithMirror(false);
    replaceInFile("\"failed\": false", "\"failed\": true");
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(eventTexts(0, 3),
              (std::vector<std::string>{"Drive 1 has failed", "Logical drive 0: synchronization aborted",
                                        "Logical drive 0 is critical"}));
    EXPECT_NE(startCheck(0), 0);
    EXPECT_NE(startInit(4), 0);
}

TEST_F(Activities, CompletesActivityThatWasDueBeforeLossWasReported) {
    openWithMirror(false); // 50 s
    waitSeconds(60);
    replaceInFile("\"failed\": false", "\"failed\": true");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(eventTexts(0, 3),
              (std::vector<std::string>{"Logical drive 0: synchronization ended", "Drive 1 has failed",
                                        "Logical drive 0 is critical"}));
}

TEST_F(Activities, RejectsProgressWithoutActivity) {
    openWithMirror(true);
    InitProgress progress;
    progress.state = 77;
    progress.percent = 77;
    EXPECT_NE(q5_getLogDrvInitProgress(hbaAddress(0), 0, &kQuery, &progress, sizeof progress), 0);
    EXPECT_EQ(progress.state, 0);
    EXPECT_EQ(progress.percent, 0);
    EXPECT_EQ(startInit(4), 0);
    const ActivityQuery migration = {0, kMigrationKind};
    EXPECT_NE(q5_getLogDrvInitProgress(hbaAddress(0), 0, &migration, &progress, sizeof progress), 0);
}

TEST_F(Activities, LogsCompletionsInOrderOfTime) {
    open("bench");
    EXPECT_EQ(create(request(kRaid1, 800, {0, 1})), 0); // 100 s
    EXPECT_EQ(create(request(kRaid1, 80, {2, 3})), 0);  // 10 s
    const DriveSelector drive = {4, 1};
    EXPECT_EQ(q5_startHBAMediaPatrol(hbaAddress(0), 0, &drive), 0); // 125 s
    waitSeconds(1000);
    arrayInfo(0, 0);
    EXPECT_EQ(eventTexts(0, 3), (std::vector<std::string>{"Logical drive 1: synchronization ended",
                                                          "Logical drive 0: synchronization ended",
                                                          "Drive 5: media patrol ended, 0 errors"}));
    EXPECT_NE(fileText().find("\"time\": 1000000010, \"text\": \"Logical drive 1: synchronization ended\""),
              std::string::npos);
}

TEST_F(Activities, ClockSetBackOnlyStopsProgress) {
    openWithMirror(false);
    waitSeconds(-100);
    EXPECT_EQ(syncProgress().percent, 0);
    waitSeconds(125);
    EXPECT_EQ(syncProgress().percent, 50);
}
