// The report of cli-try: what is lost between two worlds, what is at risk, and what starts.
#include <gtest/gtest.h>

#include "simulator/engine/activities.h"
#include "tools/try/effects.h"

static constexpr std::int64_t kNow = 1000000;

// The built-in world as a captured one.
static q5sim::World captured() {
    q5sim::World world = q5sim::builtinWorld(kNow);
    for (q5sim::Controller& controller : world.controllers)
        for (q5sim::LogicalDrive& drive : controller.logicalDrives)
            drive.captured = true;
    return world;
}

static TextLines lossAfter(const q5sim::World& after) {
    return lostData(followEffects(captured(), after, kNow));
}

static q5sim::LogicalDrive& archive(q5sim::World& world) {
    return world.controllers[0].logicalDrives[0];
}

TEST(TryReport, SizesHaveThousandsSeparated) {
    EXPECT_EQ(sizeText(0), "0 MB");
    EXPECT_EQ(sizeText(999 * 2048 + 2047), "999 MB");
    EXPECT_EQ(sizeText(400000 * 2048ull), "400,000 MB");
    EXPECT_EQ(sizeText(1234567 * 2048ull), "1,234,567 MB");
}

TEST(TryReport, DurationsHaveTwoUnits) {
    EXPECT_EQ(durationText(0), "0 seconds");
    EXPECT_EQ(durationText(1), "1 second");
    EXPECT_EQ(durationText(60), "1 minute");
    EXPECT_EQ(durationText(196), "3 minutes 16 seconds");
    EXPECT_EQ(durationText(7265), "2 hours 1 minute");
}

TEST(TryReport, NoChangeLosesNothing) {
    EXPECT_EQ(lossAfter(captured()), TextLines{});
}

TEST(TryReport, DeletedLogicalDrive) {
    q5sim::World after = captured();
    after.controllers[0].logicalDrives.erase(after.controllers[0].logicalDrives.begin());
    for (q5sim::Drive& drive : after.controllers[0].drives)
        for (q5sim::Extent& extent : drive.extents)
            if (extent.use == q5sim::kUseArray && extent.array == 0)
                extent = {q5sim::kUseFree, kNoArray, extent.start, extent.size};
    EXPECT_EQ(lossAfter(after),
              TextLines{"controller 0: logical drive 0 Archive, 400,000 MB, would be deleted"});
}

TEST(TryReport, LogicalDriveCreatedInPlaceOfAnother) {
    q5sim::World after = captured();
    archive(after).captured = false;
    EXPECT_EQ(lossAfter(after),
              TextLines{"controller 0: logical drive 0 Archive, 400,000 MB, would be overwritten"});
    archive(after).sectors /= 2;
    EXPECT_EQ(lossAfter(after),
              TextLines{"controller 0: logical drive 0 Archive, 400,000 MB, would be deleted; "
                        "another one would take its number"});
}

TEST(TryReport, InitializationOverwrites) {
    q5sim::World after = captured();
    q5sim::startInitialization(after.controllers[0], archive(after), 2, kNow);
    const Effects effects = followEffects(captured(), after, kNow);
    EXPECT_EQ(lostData(effects),
              TextLines{"controller 0: logical drive 0 Archive, 400,000 MB, would be overwritten"});
    // 200,000 MB of each member at 1024 MB a second
    EXPECT_EQ(effects.started,
              TextLines{"controller 0: logical drive 0 Archive: initialization, 3 minutes 16 seconds"});
}

TEST(TryReport, IncludesConsequences) {
    q5sim::World after = captured();
    q5sim::startInitialization(after.controllers[0], archive(after), 1, kNow); // quick: 16 MB
    const Effects effects = followEffects(captured(), after, kNow);
    EXPECT_EQ(effects.started,
              (TextLines{"controller 0: logical drive 0 Archive: initialization, 1 second",
                         "controller 0: logical drive 0 Archive: synchronization, 3 minutes 16 seconds"}));
}

TEST(TryReport, ExcludesJobsThatWereRunning) {
    q5sim::World before = captured();
    q5sim::startSynchronization(before.controllers[0], archive(before), kNow);
    const Effects effects = followEffects(before, before, kNow);
    EXPECT_EQ(effects.started, TextLines{});
}

TEST(TryReport, RenamedLogicalDriveKeepsItsJob) {
    q5sim::World before = captured();
    q5sim::startSynchronization(before.controllers[0], archive(before), kNow);
    q5sim::World after = before;
    archive(after).name = "X";
    EXPECT_EQ(followEffects(before, after, kNow).started, TextLines{});
}

// Deleted and created again, with the same ID and name.
TEST(TryReport, NewLogicalDriveHasAJobOfItsOwn) {
    q5sim::World before = captured();
    q5sim::startSynchronization(before.controllers[0], archive(before), kNow);
    q5sim::World after = before;
    archive(after).captured = false;
    EXPECT_EQ(followEffects(before, after, kNow).started,
              TextLines{"controller 0: logical drive 0 Archive: synchronization, 3 minutes 16 seconds"});
}

TEST(TryReport, ResumedJobIsStarted) {
    q5sim::World before = captured(), after;
    q5sim::startSynchronization(before.controllers[0], archive(before), kNow);
    after = before;
    archive(before).activity.paused = true;
    EXPECT_EQ(followEffects(before, after, kNow).started,
              TextLines{"controller 0: logical drive 0 Archive: synchronization, 3 minutes 16 seconds"});
}

TEST(TryReport, OfflineLogicalDriveCannotBeReached) {
    q5sim::World after = captured();
    archive(after).active = false;
    EXPECT_EQ(lossAfter(after),
              TextLines{"controller 0: logical drive 0 Archive, 400,000 MB, would go offline: "
                        "its data could not be reached"});
}

TEST(TryReport, ReleasedForeignExtent) {
    q5sim::World before = captured(), after = captured();
    before.controllers[0].drives[6].extents = {{q5sim::kUseForeign, 3, 0, 4096}};
    EXPECT_EQ(
        lostData(followEffects(before, after, kNow)),
        TextLines{"controller 0: drive 7, extent 0, 2 MB of another controller's array, would be given up"});
    EXPECT_EQ(lostData(followEffects(before, before, kNow)), TextLines{});
}

// A drive that returned, as it seems: no loss, but a risk.
TEST(TryReport, ReleasedOutdatedMember) {
    q5sim::World before = captured();
    before.controllers[0].autoRebuild = false;
    archive(before).staleMembers = {2};
    q5sim::World after = before;
    after.controllers[0].drives[2].extents[0] = {q5sim::kUseFree, kNoArray, 0, 409600000};
    const Effects effects = followEffects(before, after, kNow);
    EXPECT_EQ(lostData(effects), TextLines{});
    EXPECT_EQ(riskedData(effects), TextLines{"controller 0: drive 3, extent 0, 200,000 MB that count as an "
                                             "outdated member of logical drive 0, would be given up"});
    EXPECT_EQ(riskedData(followEffects(before, before, kNow)), TextLines{});
}

TEST(TryReport, SpareAndRedundancyAtRisk) {
    q5sim::World after = captured();
    after.controllers[0].drives[5].extents[0].use = q5sim::kUseFree;
    archive(after).level = kRaid0;
    const Effects effects = followEffects(captured(), after, kNow);
    EXPECT_EQ(
        riskedData(effects),
        (TextLines{"controller 0: logical drive 0 Archive would be less protected against the loss of a "
                   "drive: RAID0, online",
                   "controller 0: drive 6, extent 0 would no longer be a spare"}));
    EXPECT_EQ(lostData(effects), TextLines{});
}

TEST(TryReport, RefusedOperationsInTheirOrder) {
    q5sim::World world;
    world.refusals = {{2, "q5_addHBAArray", "creation: there is no name"},
                      {2, "q5_getPhyDrvSettings", "drive settings: there is no such drive"},
                      {1, "q5_delDiskArray", "deletion: there is no such logical drive"}};
    EXPECT_EQ(refusedOperations(world),
              (TextLines{"q5_delDiskArray: deletion: there is no such logical drive",
                         "q5_addHBAArray: creation: there is no name"}));
    world.olderRefusals = 1;
    EXPECT_EQ(refusedOperations(world).front(), "1 operation before these");
}
