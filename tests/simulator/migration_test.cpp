// Migration: nothing changes before it completes. Members of 400 MB take 50 seconds at rate 1.
#include "tests/simulator/simulated_world.h"

class Migration : public SimulatedWorld {
protected:
    void SetUp() override {
        open("bench");
        ASSERT_EQ(create(request(kRaid0, 800, {0, 1})), 0);
    }
};

static MigrateRequest to(RaidLevel level, const std::vector<std::uint32_t>& added) {
    MigrateRequest request = {};
    request.raidLevel = level;
    request.stripeSize = 64;
    request.memberCount = static_cast<std::uint16_t>(added.size());
    for (std::size_t i = 0; i < added.size(); i++)
        request.member[i].driveId = added[i];
    return request;
}

static int migrate(const MigrateRequest& request) {
    return q5_migrateHBAArray(hbaAddress(0), 0, &request);
}

static constexpr ActivityQuery kFirst = {0, kMigrationKind};

static MigrationProgress progress() {
    MigrationProgress reply = {};
    EXPECT_EQ(q5_getMigrationProgress(hbaAddress(0), 0, &kFirst, &reply, sizeof reply), 0);
    return reply;
}

TEST_F(Migration, FromRaid0ToRaid5WithAnotherDrive) {
    EXPECT_EQ(migrate(to(kRaid5, {2})), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kMigrating);
    EXPECT_EQ(arrayInfo(0, 0).raidLevel, kRaid0);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1");
    EXPECT_EQ(driveInfo(0, 2).extent[0].maintenance, kExtentMigrating);
    EXPECT_EQ(extentsText(2), "0 array0 400, 400 free 600");
    waitSeconds(10);
    EXPECT_EQ(progress().percent, 20);
    EXPECT_EQ(q5_PauseMigration(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(100);
    EXPECT_EQ(progress().percent, 20);
    EXPECT_EQ(progress().state, kActivityPaused);
    EXPECT_EQ(q5_ResumeMigration(hbaAddress(0), 0, &kFirst), 0);
    waitSeconds(40);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(arrayInfo(0, 0).raidLevel, kRaid5);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 2");
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 800 * kMb); // two members' worth of data as before
    EXPECT_EQ(newestEvent(), "Logical drive 0: migration ended");
}

TEST_F(Migration, ExpandsAndChangesStripe) {
    MigrateRequest request = to(kRaid0, {2, 3});
    request.stripeSize = 128;
    EXPECT_EQ(migrate(request), 0);
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 1600 * kMb);
    EXPECT_EQ(arrayInfo(0, 0).stripeBlocks, 128u);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 2 3");
}

TEST_F(Migration, ToRaid50AndRaidMf) {
    MigrateRequest request = to(kRaid50, {2, 3, 4, 5});
    request.subArrayCount = 2;
    EXPECT_EQ(migrate(request), 0);
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).subArrayCount, 2);
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 1600 * kMb);
    request = to(kRaidMf, {});
    request.parityCount = 2;
    EXPECT_EQ(migrate(request), 0);
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).raidLevel, kRaidMf);
    EXPECT_EQ(arrayInfo(0, 0).parityCount, 2);
    EXPECT_EQ(arrayInfo(0, 0).subArrayCount, 0);
}

TEST_F(Migration, RejectsInvalidRequests) {
    const std::string before = stateText();
    EXPECT_NE(migrate(to(kRaid0, {})), 0);     // nothing would change
    EXPECT_NE(migrate(to(kRaid1, {})), 0);     // too little space for the data
    EXPECT_NE(migrate(to(kRaid5, {})), 0);     // two members
    EXPECT_NE(migrate(to(kRaid5, {1})), 0);    // a member already
    EXPECT_NE(migrate(to(kRaid5, {2, 2})), 0); // twice
    EXPECT_NE(migrate(to(kRaid5, {8})), 0);    // no such drive
    EXPECT_NE(migrate(to(kRaid5, {0x10002})), 0);
    EXPECT_NE(migrate(to(kJbod, {})), 0);
    MigrateRequest request = to(kRaid5, {2});
    request.stripeSize = 65;
    EXPECT_NE(migrate(request), 0);
    request = to(kRaid5, {2});
    request.member[0].extent = 1;
    EXPECT_NE(migrate(request), 0);
    request = to(kRaid5, {2});
    request.memberCount = 17;
    EXPECT_NE(migrate(request), 0);
    request = to(kRaid5, {2});
    request.logDrvId = 1;
    EXPECT_NE(migrate(request), 0);
    EXPECT_NE(q5_migrateHBAArray(hbaAddress(0), 0, nullptr), 0);
    EXPECT_EQ(stateText(), before);
}

TEST_F(Migration, ControlRequiresMigrationKind) {
    EXPECT_EQ(migrate(to(kRaid5, {2})), 0);
    EXPECT_NE(migrate(to(kRaid5, {3})), 0); // one activity at a time
    const ActivityQuery other = {0, 0};
    EXPECT_NE(q5_PauseMigration(hbaAddress(0), 0, &other), 0);
    EXPECT_NE(q5_ResumeMigration(hbaAddress(0), 0, &kFirst), 0);
    MigrationProgress reply = {};
    EXPECT_NE(q5_getMigrationProgress(hbaAddress(0), 0, &other, &reply, sizeof reply), 0);
}

TEST_F(Migration, AbortsWhenNewDriveIsLost) {
    EXPECT_EQ(migrate(to(kRaid5, {2, 3})), 0);
    const std::string text = fileText();
    const std::size_t third = text.find("\"failed\": false", text.find("\"id\": 2,"));
    writeText(file, text.substr(0, third) + "\"failed\": true" + text.substr(third + 15));
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(arrayInfo(0, 0).raidLevel, kRaid0);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(extentsText(3), "0 free 400, 400 free 600");
    EXPECT_EQ(newestEvent(), "Logical drive 0: migration aborted");
}

TEST_F(Migration, ContinuesInNextSession) {
    EXPECT_EQ(migrate(to(kRaid5, {2})), 0);
    EXPECT_EQ(q5_finalize(), 0);
    waitSeconds(50);
    ASSERT_EQ(initialize(), 0);
    EXPECT_EQ(arrayInfo(0, 0).raidLevel, kRaid5);
}
