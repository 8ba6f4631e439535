// Operations on single extents. bench.json: eight drives, each one free extent of 1000 MB.
#include "tests/simulator/simulated_world.h"

class Extents : public SimulatedWorld {
protected:
    void SetUp() override { open("bench"); }
};

static int spare(std::uint16_t drive, std::uint16_t extent, std::uint16_t logDrv) {
    const ExtentPlacement placement = {extent, drive, logDrv, 0};
    return q5_spareHBAExtent(hbaAddress(0), 0, &placement);
}

static int add(std::uint16_t drive, std::uint16_t extent, std::uint16_t logDrv) {
    const ExtentPlacement placement = {extent, drive, logDrv, 0};
    return q5_addHBAExtentToArray(hbaAddress(0), 0, &placement);
}

static int release(std::uint32_t drive, std::uint32_t extent) {
    const ExtentRef ref = {extent, drive};
    return q5_freeHBAExtent(hbaAddress(0), 0, &ref);
}

static int remove(std::uint32_t drive, std::uint32_t extent) {
    const ExtentRef ref = {extent, drive};
    return q5_deleteHBAExtent(hbaAddress(0), 0, &ref);
}

static int split(std::uint32_t drive, std::uint32_t extent, std::uint32_t offset) {
    const ExtentRef ref = {extent, drive};
    return q5_splitHBAExtent(hbaAddress(0), 0, &ref, offset);
}

TEST_F(Extents, SplitMakesTwoExtents) {
    EXPECT_EQ(split(0, 0, 300), 0);
    EXPECT_EQ(extentsText(0), "0 free 300, 300 free 700");
    EXPECT_EQ(split(0, 1, 1), 0);
    EXPECT_EQ(q5_finalize(), 0);
    ASSERT_EQ(initialize(), 0);
    EXPECT_EQ(extentsText(0), "0 free 300, 300 free 1, 301 free 699");
    EXPECT_EQ(driveInfo(0, 0).extent[2].index, 2);
}

TEST_F(Extents, RejectsSplitOutsideOrOfUsedExtent) {
    EXPECT_EQ(spare(1, 0, kNoArray), 0);
    const std::string before = stateText();
    EXPECT_NE(split(0, 0, 0), 0);
    EXPECT_NE(split(0, 0, 1000), 0);
    EXPECT_NE(split(0, 0, 0xFFFFFFFF), 0);
    EXPECT_NE(split(0, 1, 10), 0);
    EXPECT_NE(split(8, 0, 10), 0);
    EXPECT_NE(split(1, 0, 10), 0);
    EXPECT_EQ(stateText(), before);
}

TEST_F(Extents, DriveHasSixteenExtentsAtMost) {
    for (std::uint32_t i = 0; i < 15; i++)
        EXPECT_EQ(split(0, i, 10), 0);
    EXPECT_NE(split(0, 15, 10), 0);
    EXPECT_EQ(driveInfo(0, 0).extentCount, 16);
}

TEST_F(Extents, DeleteMergesWithFreeNeighbor) {
    EXPECT_EQ(split(0, 0, 100), 0);
    EXPECT_EQ(split(0, 1, 100), 0);
    EXPECT_EQ(split(0, 2, 100), 0); // 100, 100, 100, 700
    EXPECT_EQ(remove(0, 1), 0);
    EXPECT_EQ(extentsText(0), "0 free 200, 200 free 100, 300 free 700");
    EXPECT_EQ(remove(0, 0), 0);
    EXPECT_EQ(extentsText(0), "0 free 300, 300 free 700");
    EXPECT_EQ(newestEvent(), "Drive 1: extent 0 deleted");
    EXPECT_EQ(spare(0, 0, kNoArray), 0);
    EXPECT_NE(remove(0, 0), 0); // not free
    EXPECT_NE(remove(0, 1), 0); // no free neighbor
    EXPECT_NE(remove(1, 0), 0);
    EXPECT_NE(remove(1, 1), 0);
}

TEST_F(Extents, AssignsAndFreesGlobalSpare) {
    EXPECT_EQ(spare(2, 0, kNoArray), 0);
    const ExtentEntry extent = driveInfo(0, 2).extent[0];
    EXPECT_EQ(extent.assignment, kExtentGlobalSpare);
    EXPECT_EQ(extent.access, kExtentAccessible);
    EXPECT_EQ(extent.arrayId, 255);
    EXPECT_EQ(newestEvent(), "Drive 3: extent 0 is a global spare");
    EXPECT_NE(spare(2, 0, kNoArray), 0); // it is a spare already
    EXPECT_EQ(release(2, 0), 0);
    EXPECT_EQ(extentsText(2), "0 free 1000");
    EXPECT_NE(release(2, 0), 0);
}

TEST_F(Extents, RejectsUnusableDedicatedSpare) {
    EXPECT_EQ(create(request(kRaid5, 800, {0, 1, 2})), 0);
    EXPECT_EQ(create(request(kRaid0, 100, {3})), 0);
    EXPECT_EQ(split(4, 0, 399), 0);
    const std::string before = stateText();
    EXPECT_NE(spare(4, 0, 0), 0); // 399 MB, the members have 400
    EXPECT_NE(spare(5, 0, 1), 0); // RAID0 cannot use it
    EXPECT_NE(spare(5, 0, 2), 0); // no such array
    EXPECT_NE(spare(0, 1, 0), 0); // on a member drive
    EXPECT_NE(spare(0, 0, 0), 0); // assigned
    EXPECT_NE(spare(5, 0, 0x100), 0);
    EXPECT_EQ(stateText(), before);
    EXPECT_EQ(spare(4, 1, 0), 0);
    EXPECT_EQ(extentsText(4), "0 free 399, 399 spare0 601");
    EXPECT_EQ(newestEvent(), "Drive 5: extent 1 is a spare of logical drive 0");
    EXPECT_EQ(spare(4, 1, kNoArray), 0); // the use may change
    EXPECT_EQ(extentsText(4), "0 free 399, 399 spare 601");
}

TEST_F(Extents, RejectsFreeingAssignedExtent) {
    EXPECT_EQ(create(request(kRaid0, 100, {3})), 0);
    const std::string before = stateText();
    EXPECT_NE(release(3, 0), 0);
    EXPECT_NE(remove(3, 0), 0);
    EXPECT_NE(split(3, 0, 10), 0);
    EXPECT_EQ(stateText(), before);
}

TEST_F(Extents, RejectsAddingToArrayWithoutLostMember) {
    EXPECT_EQ(create(request(kRaid1, 400, {0, 1})), 0);
    waitSeconds(50); // its synchronization
    EXPECT_NE(add(2, 0, 0), 0);
    replaceInFile("\"failed\": false", "\"failed\": true"); // drive 0
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_NE(add(1, 1, 0), 0); // on the remaining member
    EXPECT_NE(add(2, 1, 0), 0);
    EXPECT_NE(add(2, 0, 1), 0);
    EXPECT_EQ(add(2, 0, 0), 0);
    EXPECT_EQ(arrayInfo(0, 0).activityStatus, kRebuilding);
    EXPECT_EQ(extentsText(2), "0 array0 400, 400 free 600");
    EXPECT_EQ(driveInfo(0, 2).extent[0].state, kExtentRebuilding);
}
