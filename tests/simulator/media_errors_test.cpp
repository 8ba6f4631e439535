// Bad sectors: found and repaired by patrols and checks, or lost by rebuilds and migrations.
#include "tests/simulator/faulted_world.h"

using MediaErrors = FaultedArray;

static constexpr std::uint64_t kHalf = 200 * kMb; // the middle of a member

static std::string onError(std::uint8_t mode) {
    return q5sim::changeWorld([=](q5sim::World& world, std::int64_t) {
               world.controllers[0].rebuildOnError = mode;
               return 0;
           }) == 0
               ? ""
               : "failed";
}

TEST_F(MediaErrors, PatrolRepairsMembersButNotFreeSpace) {
    damage(0, kHalf, 5);
    damage(0, 700 * kMb, 2); // free
    const DriveSelector drive = {0, 1};
    EXPECT_EQ(q5_startHBAMediaPatrol(hbaAddress(0), 0, &drive), 0);
    waitSeconds(125);
    EXPECT_EQ(lastEvents(2),
              "Drive 1: media patrol ended, 7 errors\nDrive 1: 5 unreadable sectors repaired\n");
    EXPECT_EQ(badSectors(0), 2u);
}

TEST_F(MediaErrors, PatrolRepairsNothingWithoutRedundancy) {
    fail(1);
    damage(0, kHalf, 5);
    const DriveSelector drive = {0, 1};
    EXPECT_EQ(q5_startHBAMediaPatrol(hbaAddress(0), 0, &drive), 0);
    waitSeconds(125);
    EXPECT_EQ(newestEvent(), "Drive 1: media patrol ended, 5 errors");
    EXPECT_EQ(badSectors(0), 5u);
}

TEST_F(MediaErrors, CheckFindsAndRepairs) {
    damage(1, kHalf, 5);
    RedundancyCheckRequest check = {};
    check.noFix = 1;
    EXPECT_EQ(q5_startRedundancyCheck(hbaAddress(0), 0, &check), 0);
    waitSeconds(50);
    EXPECT_EQ(eventTexts(0, 2)[0],
              "Logical drive 0: redundancy check found 5 unreadable sectors, 0 repaired");
    check.noFix = 0;
    EXPECT_EQ(q5_startRedundancyCheck(hbaAddress(0), 0, &check), 0);
    waitSeconds(50);
    EXPECT_EQ(eventTexts(0, 2)[0],
              "Logical drive 0: redundancy check found 5 unreadable sectors, 5 repaired");
    EXPECT_EQ(badSectors(1), 0u);
}

// 200 of 400 MB at 8 MB per second take 25 seconds.
TEST_F(MediaErrors, RebuildSkipsAndCountsLostStripes) {
    fail(1);
    damage(0, kHalf, 129); // two stripes of 64 KB
    EXPECT_EQ(rebuild(5, 0), 0);
    waitSeconds(24);
    EXPECT_EQ(newestEvent(), "Logical drive 0: rebuild onto drive 6 started");
    waitSeconds(1);
    EXPECT_EQ(newestEvent(), "Logical drive 0: 2 stripes lost, unreadable on drive 1");
    waitSeconds(25);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(controller().logicalDrives[0].lostStripes, 2u);
    EXPECT_EQ(lastEvents(2), "Logical drive 0: rebuild ended\nLogical drive 0 is online\n");
}

TEST_F(MediaErrors, RebuildAbortsOnRequest) {
    EXPECT_EQ(onError(q5sim::kAbortOnError), "");
    fail(1);
    damage(0, kHalf, 1);
    EXPECT_EQ(rebuild(5, 0), 0);
    waitSeconds(25);
    EXPECT_EQ(lastEvents(2),
              "Logical drive 0: unreadable sector on drive 1\nLogical drive 0: rebuild aborted\n");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(extentsText(5), "0 free 400, 400 free 600");
    EXPECT_EQ(controller().logicalDrives[0].lostStripes, 0u);
    EXPECT_EQ(badSectors(0), 1u);
}

TEST_F(MediaErrors, AbortedRebuildDoesNotStartAgainByItself) {
    q5sim::changeWorld([](q5sim::World& world, std::int64_t) {
        world.controllers[0].rebuildOnError = q5sim::kAbortOnError;
        world.controllers[0].autoRebuild = true;
        world.controllers[0].drives[5].extents[0].use = q5sim::kUseGlobalSpare;
        return 0;
    });
    damage(0, 0, 1);
    fail(1);
    EXPECT_EQ(newestEvent(), "Logical drive 0: rebuild aborted");
    waitSeconds(1000);
    EXPECT_EQ(newestEvent(), "Logical drive 0: rebuild aborted");
}

TEST_F(MediaErrors, RebuildIgnoresSectorsOutsideTheArray) {
    fail(1);
    damage(0, 500 * kMb, 100);
    EXPECT_EQ(rebuild(5, 0), 0);
    waitSeconds(50);
    EXPECT_EQ(controller().logicalDrives[0].lostStripes, 0u);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
}

// With two parities and one lost member the other members reconstruct the sector.
TEST_F(FaultedWorld, RebuildRepairsWhereRedundancyIsLeft) {
    open("bench");
    EXPECT_EQ(create(request(kRaidMf, 800, {0, 1, 2, 3})), 0);
    waitSeconds(50);
    fail(0);
    damage(1, kHalf, 3);
    EXPECT_EQ(rebuild(5, 0), 0);
    waitSeconds(25);
    EXPECT_EQ(newestEvent(), "Drive 2: 3 unreadable sectors repaired");
    EXPECT_EQ(badSectors(1), 0u);
}

// Only the mirror of the lost member is read.
TEST_F(FaultedWorld, RebuildOfMirrorReadsItsPartnerOnly) {
    open("bench");
    EXPECT_EQ(create(request(kRaid10, 800, {0, 1, 2, 3})), 0);
    waitSeconds(50);
    fail(0);
    damage(2, kHalf, 3);
    EXPECT_EQ(rebuild(5, 0), 0);
    waitSeconds(50);
    EXPECT_EQ(badSectors(2), 3u);
    EXPECT_EQ(controller().logicalDrives[0].lostStripes, 0u);
}

TEST_F(FaultedWorld, MigrationSkipsOrAborts) {
    for (const std::uint8_t mode : {q5sim::kSkipOnError, q5sim::kAbortOnError}) {
        std::remove(file.c_str());
        open("bench");
        EXPECT_EQ(create(request(kRaid0, 800, {0, 1})), 0);
        EXPECT_EQ(onError(mode), "");
        damage(1, kHalf, 1);
        MigrateRequest migrate = {};
        migrate.raidLevel = kRaid5;
        migrate.memberCount = 1;
        migrate.member[0].driveId = 2;
        EXPECT_EQ(q5_migrateHBAArray(hbaAddress(0), 0, &migrate), 0);
        waitSeconds(50);
        EXPECT_EQ(arrayInfo(0, 0).raidLevel, mode == q5sim::kSkipOnError ? kRaid5 : kRaid0);
        EXPECT_EQ(controller().logicalDrives[0].lostStripes, mode == q5sim::kSkipOnError ? 1u : 0u);
        q5_finalize();
    }
}

TEST_F(FaultedWorld, OlderWorldsHaveErrorsWithoutPositions) {
    open("bench");
    q5_finalize();
    replaceInFile("\"sectors\": 2048000,", "\"sectors\": 2048000, \"mediaErrors\": 500,");
    ASSERT_EQ(initialize(), 0);
    EXPECT_EQ(badSectors(0), 500u);
    damage(1, 0, 1); // writes the file
    EXPECT_EQ(fileText().find("mediaErrors"), std::string::npos);
    EXPECT_EQ(badSectors(0), 500u);
}

TEST_F(FaultedWorld, InjectedErrorsAreAtTheirPosition) {
    open("bench");
    std::uint64_t added = 0;
    int percent = 50;
    const auto addTen = [&](q5sim::Controller& c, std::int64_t at) {
        return q5sim::addMediaErrors(c, 0, 10, percent, at, added);
    };
    EXPECT_EQ(inject(addTen), "");
    EXPECT_EQ(controller().drives[0].badSectors, (std::vector<q5sim::BadSectors>{{1024000, 10}}));
    EXPECT_EQ(added, 10u);
    EXPECT_EQ(inject(addTen), "drive 1 has bad sectors there already");
    percent = 100; // the last ones of the drive
    EXPECT_EQ(inject(addTen), "");
    EXPECT_EQ(controller().drives[0].badSectors[1], (q5sim::BadSectors{2047990, 10}));
    EXPECT_EQ(added, 10u);
}
