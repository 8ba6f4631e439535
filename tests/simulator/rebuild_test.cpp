// Rebuilds: started manually, by adding an extent, or automatically onto a spare.
#include "simulator/engine/fault_injection.h"
#include "simulator/store/world_store.h"
#include "tests/simulator/simulated_world.h"

static void failDrive(std::uint32_t drive) {
    EXPECT_EQ(q5sim::changeWorld([&](q5sim::World& world, std::int64_t) {
                  return q5sim::failDrive(world.controllers[0], drive).empty() ? 0 : 1;
              }),
              0);
}

static void replace(std::uint32_t drive) {
    EXPECT_EQ(q5sim::changeWorld([&](q5sim::World& world, std::int64_t now) {
                  return q5sim::replaceDrive(world.controllers[0], drive, now).empty() ? 0 : 1;
              }),
              0);
}

static void setAutoRebuild(bool on) {
    ControllerSettings settings = {};
    const ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
    settings.autoRebuild = on;
    EXPECT_EQ(q5_setControllerSettings(hbaAddress(0), 0, &query, &settings, sizeof settings), 0);
}

static int spare(std::uint16_t drive, std::uint16_t extent, std::uint16_t logDrv) {
    const ExtentPlacement placement = {extent, drive, logDrv, 0};
    return q5_spareHBAExtent(hbaAddress(0), 0, &placement);
}

static int start(const std::vector<RebuildEntry>& entries, std::uint16_t logDrvId = 0) {
    LogDrvInfo drive = {};
    drive.logDrvId = logDrvId;
    return q5_startHBARebuildExtent(hbaAddress(0), 0, static_cast<std::uint8_t>(entries.size()),
                                    entries.data(), &drive);
}

static RebuildProgress progress() {
    RebuildProgress reply = {};
    const ActivityQuery query = {0, 0};
    EXPECT_EQ(q5_getRebuildProgress(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    return reply;
}

static constexpr LogDrvIdBlock kFirst = {0, {}};

// A synchronized RAID5 on drives 0 to 2 with members of 400 MB: a job takes 50 seconds.
class Rebuild : public SimulatedWorld {
protected:
    void SetUp() override {
        open("bench");
        ASSERT_EQ(create(request(kRaid5, 800, {0, 1, 2})), 0);
        waitSeconds(50);
        ASSERT_EQ(arrayInfo(0, 0).activityStatus, 0);
    }
};

TEST_F(Rebuild, ManualRebuildPausesAndResumes) {
    EXPECT_NE(start({{0, 5, 0, {}}}), 0); // nothing is lost
    failDrive(1);
    EXPECT_EQ(start({{0, 5, 0, {}}}), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRebuilding);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 2");
    waitSeconds(20);
    EXPECT_EQ(progress().percent, 40);
    EXPECT_EQ(q5_pauseRebuild(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(100);
    EXPECT_EQ(progress().percent, 40);
    EXPECT_EQ(progress().state, kActivityPaused);
    EXPECT_EQ(q5_resumeRebuild(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(30);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 5 2");
    std::uint32_t mask = 9;
    EXPECT_EQ(q5_getAryLostDisk(hbaAddress(0), 0, 0, &mask), 0);
    EXPECT_EQ(mask, 0u);
    EXPECT_EQ(extentsText(5), "0 array0 400, 400 free 600");
    EXPECT_EQ(extentsText(1), "0 free 400, 400 free 600");
    EXPECT_EQ(eventTexts(0, 2),
              (std::vector<std::string>{"Logical drive 0: rebuild ended", "Logical drive 0 is online"}));
}

TEST_F(Rebuild, ReplacementDriveTakesOldPosition) {
    failDrive(1);
    replace(1);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical); // the new drive is empty
    EXPECT_EQ(extentsText(1), "0 free 1000");
    EXPECT_EQ(start({{0, 1, 0, {}}}), 0);
    std::uint32_t mask = 0;
    EXPECT_EQ(q5_getAryLostDisk(hbaAddress(0), 0, 0, &mask), 0);
    EXPECT_EQ(mask, 2u); // still, until it is done
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 2");
}

TEST_F(Rebuild, RejectsInvalidRequests) {
    const ExtentRef whole = {0, 4};
    EXPECT_EQ(q5_splitHBAExtent(hbaAddress(0), 0, &whole, 399), 0);
    failDrive(1);
    const std::string before = stateText();
    EXPECT_NE(start({}), 0);
    EXPECT_NE(q5_startHBARebuildExtent(hbaAddress(0), 0, 1, nullptr, nullptr), 0);
    EXPECT_NE(start({{1, 5, 0, {}}}), 0);                       // entry and drive disagree
    EXPECT_NE(start({{1, 5, 0, {}}}, 1), 0);                    // no such array
    EXPECT_NE(start({{0, 4, 0, {}}}), 0);                       // too small
    EXPECT_NE(start({{0, 1, 1, {}}}), 0);                       // failed
    EXPECT_NE(start({{0, 0, 1, {}}}), 0);                       // a working member
    EXPECT_NE(start({{0, 5, 1, {}}}), 0);                       // no such extent
    EXPECT_NE(start({{0, 9, 0, {}}}), 0);                       // no such drive
    EXPECT_NE(start({{0, 5, 0, {}}, {0, 6, 0, {}}}), 0);        // one member is lost
    EXPECT_NE(q5_restartRebuild(hbaAddress(0), 0, &kFirst), 0); // none runs
    EXPECT_EQ(stateText(), before);
}

TEST_F(Rebuild, RestartStartsFromZero) {
    failDrive(1);
    EXPECT_EQ(start({{0, 5, 0, {}}}), 0);
    waitSeconds(40);
    EXPECT_EQ(q5_pauseRebuild(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(q5_restartRebuild(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(progress().percent, 0);
    waitSeconds(25);
    EXPECT_EQ(progress().percent, 50);
    EXPECT_NE(progress().state, kActivityPaused);
}

TEST_F(Rebuild, StopFreesExtent) {
    failDrive(1);
    EXPECT_EQ(start({{0, 5, 0, {}}}), 0);
    waitSeconds(40);
    EXPECT_EQ(q5_stopRebuild(hbaAddress(0), 0, &kFirst), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(extentsText(5), "0 free 400, 400 free 600");
    EXPECT_EQ(newestEvent(), "Logical drive 0: rebuild stopped");
}

TEST_F(Rebuild, GlobalSpareIsUsedAutomatically) {
    setAutoRebuild(true);
    EXPECT_EQ(spare(6, 0, kNoArray), 0);
    failDrive(2);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRebuilding);
    EXPECT_EQ(extentsText(6), "0 array0 400, 400 spare 600"); // the rest stays a spare
    EXPECT_EQ(eventTexts(0, 3), (std::vector<std::string>{"Drive 3 has failed", "Logical drive 0 is critical",
                                                          "Logical drive 0: rebuild onto drive 7 started"}));
    waitSeconds(50);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 6");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
}

TEST_F(Rebuild, PrefersDedicatedSpareAndIgnoresSparesOfOthers) {
    EXPECT_EQ(create(request(kRaid1, 100, {3, 4})), 0);
    EXPECT_EQ(spare(5, 0, kNoArray), 0);
    EXPECT_EQ(spare(6, 0, 0), 0);
    EXPECT_EQ(spare(7, 0, 1), 0);
    waitSeconds(50);
    failDrive(0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0); // automatic rebuild is off
    setAutoRebuild(true);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRebuilding);
    EXPECT_EQ(extentText(6, 0), "0 array0 400");
    EXPECT_EQ(extentText(7, 0), "0 spare1 1000");
    waitSeconds(50);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "6 1 2");
    failDrive(1);
    EXPECT_EQ(extentText(5, 0), "0 array0 400"); // then the global one
    waitSeconds(50);
    failDrive(2);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0); // the remaining spares are on member drives
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(extentText(6, 1), "400 spare0 600");
}

TEST_F(Rebuild, StoppedRebuildIsNotRestarted) {
    setAutoRebuild(true);
    EXPECT_EQ(spare(6, 0, kNoArray), 0);
    EXPECT_EQ(spare(7, 0, kNoArray), 0);
    failDrive(2);
    EXPECT_EQ(q5_stopRebuild(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(10);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(start({{0, 7, 0, {}}}), 0);
}

TEST_F(Rebuild, AbortsWhenTargetFails) {
    setAutoRebuild(true);
    EXPECT_EQ(spare(6, 0, kNoArray), 0);
    EXPECT_EQ(spare(7, 0, kNoArray), 0);
    failDrive(2);
    EXPECT_EQ(extentText(6, 0), "0 array0 400");
    waitSeconds(10);
    failDrive(6);
    EXPECT_EQ(extentText(7, 0), "0 array0 400"); // the next spare
    EXPECT_EQ(progress().percent, 0);
    EXPECT_EQ(extentText(6, 0), "0 free 400");
}

TEST_F(Rebuild, AbortsWhenArrayGoesOffline) {
    failDrive(1);
    EXPECT_EQ(start({{0, 5, 0, {}}}), 0);
    failDrive(0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(extentsText(5), "0 free 400, 400 free 600");
    EXPECT_NE(start({{0, 5, 0, {}}}), 0);
}

TEST_F(Rebuild, IsFollowedByUnfinishedSynchronization) {
    EXPECT_EQ(create(request(kRaid1, 80, {3, 4})), 0); // 10 s
    failDrive(3);
    const RebuildEntry entry = {1, 5, 0, {}};
    EXPECT_EQ(start({entry}, 1), 0);
    waitSeconds(10);
    EXPECT_EQ(arrayInfo(0, 1).activityStatus, kSynchronizing);
    EXPECT_EQ(membersText(arrayInfo(0, 1)), "5 4");
}

TEST_F(SimulatedWorld, RebuildsTwoMembersAtOnce) {
    open("bench");
    EXPECT_EQ(create(request(kRaidMf, 800, {0, 1, 2, 3})), 0);
    waitSeconds(50);
    failDrive(0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kDegraded);
    failDrive(3);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    replace(3);
    EXPECT_EQ(start({{0, 4, 0, {}}, {0, 3, 0, {}}}), 0);
    waitSeconds(50);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "4 1 2 3"); // drive 3 keeps its position
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
}
