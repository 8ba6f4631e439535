// Creation of arrays. bench.json: eight drives, each one free extent of 1000 MB; all rates are 8 MB a
// second.
#include <cstring>

#include "tests/simulator/simulated_world.h"

class Creation : public SimulatedWorld {
protected:
    void SetUp() override { open("bench"); }
};

struct LevelCase {
    RaidLevel level;
    std::vector<std::uint32_t> drives;
    std::uint64_t share; // of each member in MB, for a capacity of 1200 MB
};

TEST_F(Creation, DividesCapacityForEachLevel) {
    const LevelCase cases[] = {{kRaid0, {0, 1, 2}, 400},     {kRaid10, {0, 1, 2, 3}, 600},
                               {kRaid5, {0, 1, 2}, 600},     {kRaid50, {0, 1, 2, 3, 4, 5}, 300},
                               {kRaidMf, {0, 1, 2, 3}, 600}, {kRaid0, {0, 1, 2, 3, 4, 5, 6}, 172}};
    for (const LevelCase& one : cases) {
        ASSERT_EQ(create(request(one.level, 1200, one.drives)), 0) << one.level;
        const LogDrvInfo array = arrayInfo(0, 0);
        EXPECT_EQ(array.raidLevel, one.level);
        EXPECT_EQ(array.sectorCount, 1200 * kMb);
        EXPECT_EQ(array.diskCount, one.drives.size());
        EXPECT_EQ(array.arrayId, 0);
        const std::string share = std::to_string(one.share), rest = std::to_string(1000 - one.share);
        for (std::uint32_t drive : one.drives)
            EXPECT_EQ(extentsText(drive), "0 array0 " + share + ", " + share + " free " + rest);
        const DeleteArrayRequest gone = {1, 0};
        ASSERT_EQ(q5_delDiskArray(hbaAddress(0), 0, &gone, 8), 0);
        for (std::uint32_t drive : one.drives) {
            const ExtentRef second = {1, drive};
            ASSERT_EQ(q5_deleteHBAExtent(hbaAddress(0), 0, &second), 0);
        }
    }
}

TEST_F(Creation, CreatesMirrorsAndJbod) {
    EXPECT_EQ(create(request(kRaid1, 500, {0, 1})), 0);
    CreateArrayRequest jbod = request(kJbod, 0, {2});
    jbod.name[0] = '\0';
    EXPECT_EQ(create(jbod), 0);
    EXPECT_EQ(extentsText(0), "0 array0 500, 500 free 500");
    EXPECT_EQ(extentsText(2), "0 array1 1000");
    EXPECT_EQ(arrayInfo(0, 1).sectorCount, 1000 * kMb);
    EXPECT_EQ(arrayInfo(0, 1).activityStatus, 0);
    ControllerInfo info = {};
    const ControllerQuery query = {0, 1, kGeneralInfo, {}};
    EXPECT_EQ(q5_getControllerInfo(hbaAddress(0), 0, &query, &info, sizeof info), 0);
    EXPECT_EQ(info.arrayCount, 2);
    EXPECT_EQ(info.diskCount, 8);
}

TEST_F(Creation, RejectsWrongMemberCounts) {
    const std::pair<RaidLevel, std::vector<std::uint32_t>> cases[] = {
        {kRaid0, {}},
        {kRaid1, {0}},
        {kRaid1, {0, 1, 2}},
        {kRaid5, {0, 1}},
        {kRaid10, {0, 1}},
        {kRaid10, {0, 1, 2, 3, 4}},
        {kRaid50, {0, 1, 2, 3, 4}},
        {kRaid50, {0, 1, 2, 3, 4, 5, 6}},
        {kRaidMf, {0, 1}},
        {kJbod, {0, 1}},
        {kUnknownRaid, {0, 1, 2}},
        {kRaid0, {0, 0}},
        {kRaid0, {0, 8}},
        {kRaid0, {0, 0xFFFFFFFF}},
    };
    const std::string before = stateText();
    for (const auto& [level, drives] : cases)
        EXPECT_NE(create(request(level, 100, drives)), 0) << level << " " << drives.size();
    EXPECT_EQ(stateText(), before);
}

TEST_F(Creation, RejectsInvalidRequests) {
    const std::string before = stateText();
    const CreateArrayRequest good = request(kRaid5, 100, {0, 1, 2});
    const auto refused = [&](auto change) {
        CreateArrayRequest bad = good;
        change(bad);
        return create(bad) != 0;
    };
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.stripeSize = 48; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.sectorSize = 520; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.constant4 = 0; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.constant91 = 0; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.rounding = 3; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.initialization = 3; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.allocation = 1; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.origin = 2; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.name[0] = '\0'; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.capacity = 0; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.capacity = 2001; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.capacity = ~std::uint64_t{0}; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.capacity = std::uint64_t{1} << 53; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.memberCount = 255; }));
    EXPECT_TRUE(refused([](CreateArrayRequest& r) { r.raidLevel = 0x105; }));
    EXPECT_NE(q5_addHBAArray(hbaAddress(0), 0, nullptr), 0);
    EXPECT_EQ(stateText(), before);
    EXPECT_EQ(create(good), 0);
}

TEST_F(Creation, ChecksParityShiftAndSymmetryOfRaidMf) {
    CreateArrayRequest wanted = request(kRaidMf, 100, {0, 1, 2});
    wanted.parityCount = 3;
    EXPECT_NE(create(wanted), 0);
    wanted.parityCount = 2;
    wanted.symmetric = 2;
    EXPECT_NE(create(wanted), 0);
    wanted.symmetric = 1;
    wanted.shift = 3;
    EXPECT_NE(create(wanted), 0);
    wanted.shift = static_cast<std::uint16_t>(-2);
    EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(arrayInfo(0, 0).parityCount, 2);
    EXPECT_EQ(arrayInfo(0, 0).symmetric, 1);
    EXPECT_EQ(arrayInfo(0, 0).shift, -2);
    EXPECT_EQ(arrayInfo(0, 0).subArrayCount, 0);
}

TEST_F(Creation, GivenExtentsDetermineSize) {
    const ExtentRef first = {0, 1};
    EXPECT_EQ(q5_splitHBAExtent(hbaAddress(0), 0, &first, 300), 0);
    CreateArrayRequest wanted = request(kRaid0, 0, {0, 1});
    wanted.member[1].extent = 1; // 700 MB
    EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 1400 * kMb);
    EXPECT_EQ(extentsText(0), "0 array0 700, 700 free 300");
    EXPECT_EQ(extentsText(1), "0 free 300, 300 array0 700");
    EXPECT_NE(create(wanted), 0); // in use now
    wanted.member[0].extent = 1;
    wanted.member[1].extent = 2;
    EXPECT_NE(create(wanted), 0); // no such extent
}

TEST_F(Creation, UsesSmallestFreeExtentThatFits) {
    const ExtentRef first = {0, 0};
    EXPECT_EQ(q5_splitHBAExtent(hbaAddress(0), 0, &first, 600), 0);
    EXPECT_EQ(create(request(kRaid0, 300, {0})), 0);
    EXPECT_EQ(extentsText(0), "0 free 600, 600 array0 300, 900 free 100");
}

TEST_F(Creation, ImportedCapacityIsInSectors) {
    CreateArrayRequest wanted = request(kRaid5, 1000001, {0, 1, 2});
    wanted.origin = kOriginImport;
    EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 1000001u);
    EXPECT_EQ(extentText(0, 0), "0 array0 245"); // 500001 sectors are 244.1 MB
}

TEST_F(Creation, RoundsDownToWholeGigabytes) {
    CreateArrayRequest wanted = request(kRaid0, 3000, {0, 1, 2, 3}); // 6144000 sectors, 3.1 GB
    wanted.rounding = 1;
    EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 3u * 1953125);
    wanted = request(kRaid0, 900, {4, 5}); // below one GB
    wanted.rounding = 1;
    EXPECT_NE(create(wanted), 0);
    wanted.rounding = 2;
    wanted.capacity = 2000;
    EXPECT_NE(create(wanted), 0);
}

TEST_F(Creation, SynchronizesNewRedundantArrays) {
    EXPECT_EQ(create(request(kRaid1, 400, {0, 1})), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kSynchronizing);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(driveInfo(0, 0).extent[0].maintenance, kExtentSynchronizing);
    EXPECT_EQ(driveInfo(0, 0).extent[0].assignment, kExtentAssigned);
    EXPECT_EQ(eventTexts(0, 2), (std::vector<std::string>{"Logical drive 0 created: RAID1 with 2 drives",
                                                          "Logical drive 0: synchronization started"}));
    EXPECT_EQ(create(request(kRaid0, 400, {2})), 0);
    EXPECT_EQ(arrayInfo(0, 1).activityStatus, 0);
    waitSeconds(50); // 400 MB
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0);
    EXPECT_EQ(newestEvent(), "Logical drive 0: synchronization ended");
}

TEST_F(Creation, RunsRequestedInitializationFirst) {
    CreateArrayRequest wanted = request(kRaid1, 400, {0, 1});
    wanted.initialization = 4;
    EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kInitializing);
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, 0); // the whole array is synchronized
    wanted = request(kRaid1, 400, {2, 3});
    wanted.initialization = 1;
    EXPECT_EQ(create(wanted), 0);
    waitSeconds(1); // 8 of 16 MB
    EXPECT_EQ(arrayInfo(0, 1).activityStatus, kInitializing);
    waitSeconds(1);
    EXPECT_EQ(arrayInfo(0, 1).activityStatus, kSynchronizing); // a quick one leaves most of it unsynchronized
}

TEST_F(Creation, AssignsLowestFreeId) {
    for (std::uint32_t drive = 0; drive < 3; drive++)
        EXPECT_EQ(create(request(kRaid0, 100, {drive})), 0);
    const DeleteArrayRequest middle = {1, 1};
    EXPECT_EQ(q5_delDiskArray(hbaAddress(0), 0, &middle, 8), 0);
    EXPECT_EQ(create(request(kRaid0, 100, {7})), 0);
    EXPECT_EQ(membersText(arrayInfo(0, 1)), "7");
    static Reply<LogDrvInfo, 128> reply;
    const LogDrvQuery query = {0, 128};
    EXPECT_EQ(q5_getLogDrvInfo(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.record[1].logDrvId, 1); // in order
}

TEST_F(Creation, AcceptsLongNamesAndFullDrives) {
    CreateArrayRequest wanted = request(kRaid0, 1, {0});
    std::memset(wanted.name, 'n', sizeof wanted.name);
    EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(std::strlen(arrayInfo(0, 0).name), 63u);
    for (int i = 1; i < 15; i++)
        EXPECT_EQ(create(wanted), 0);
    EXPECT_EQ(driveInfo(0, 0).extentCount, 16);
    EXPECT_EQ(create(wanted), 0); // the last extent as a whole: the drive can have no more extents
    EXPECT_EQ(extentText(0, 15), "15 array15 985");
    EXPECT_NE(create(wanted), 0);
    EXPECT_EQ(q5_finalize(), 0);
    EXPECT_EQ(initialize(), 0);
}
