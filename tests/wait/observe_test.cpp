// What one reading of the adapters shows to cli-wait.
#include <gtest/gtest.h>

#include <cstring>

#include "tools/wait/observe.h"

// A logical drive with these activity bits, online.
static LogicalDrive logicalDrive(std::uint16_t id, const char* name, std::uint8_t bits) {
    LogicalDrive drive;
    drive.info.logDrvId = id;
    drive.info.functionalStatus = kOnline;
    drive.info.activityStatus = bits;
    std::strncpy(drive.info.name, name, sizeof drive.info.name);
    return drive;
}

static Drive patrolledDrive(std::uint32_t number, std::uint16_t state, std::uint16_t percent) {
    Drive drive;
    drive.number = number;
    drive.patrol = MediaPatrolProgress{};
    drive.patrol->state = state;
    drive.patrol->progress = percent;
    return drive;
}

static View viewOf(const Options& options, const Controller& controller) {
    View view;
    addController(options, controller, &view);
    return view;
}

TEST(Observe, ReadsTheActivitiesOfTheStatusByte) {
    Controller controller;
    controller.id = 3;
    controller.logicalDrives = {logicalDrive(7, "Data", kRebuilding | kMigrating)};
    controller.logicalDrives[0].activities = {{kRebuilding, kActivityPaused, 12}};
    const View view = viewOf({}, controller);
    ASSERT_EQ(view.activities.size(), 2u);
    EXPECT_EQ(view.activities[0].kind, unsigned{kRebuilding});
    EXPECT_EQ(view.activities[0].target, (Target{3, false, 7, "", 0}));
    EXPECT_EQ(view.activities[0].target.name, "Data");
    EXPECT_EQ(view.activities[0].percent, 12u);
    EXPECT_TRUE(view.activities[0].paused);
    EXPECT_EQ(view.activities[1].kind, unsigned{kMigrating});
    EXPECT_EQ(view.activities[1].percent, std::nullopt); // its progress could not be read
    EXPECT_FALSE(view.activities[1].paused);
}

TEST(Observe, ReadsLevelSizeAndMigration) {
    Controller controller;
    controller.logicalDrives = {logicalDrive(0, "A", kMigrating), logicalDrive(1, "B", kRebuilding)};
    controller.logicalDrives[0].info.raidLevel = kRaid5;
    controller.logicalDrives[0].info.sectorCount = 6144;
    Options options;
    options.kinds = kRebuilding;
    const View view = viewOf(options, controller);
    ASSERT_EQ(view.arrays.size(), 2u);
    EXPECT_EQ(view.arrays[0].target.shape, (ArrayShape{kRaid5, 6144}));
    EXPECT_TRUE(view.arrays[0].isMigrating);
    EXPECT_FALSE(view.arrays[1].isMigrating);
}

TEST(Observe, LeavesOutWhatIsNotSelected) {
    Controller controller;
    controller.logicalDrives = {logicalDrive(0, "A", kRebuilding), logicalDrive(1, "B", kSynchronizing)};
    controller.drives = {patrolledDrive(5, kPatrolRunning, 1)};
    Options options;
    options.logicalDrive = 1;
    options.kinds = kAnyActivity;
    View view = viewOf(options, controller);
    ASSERT_EQ(view.arrays.size(), 1u);
    EXPECT_EQ(view.arrays[0].target.number, 1u);
    ASSERT_EQ(view.activities.size(), 1u);
    EXPECT_EQ(view.activities[0].kind, unsigned{kSynchronizing});
    EXPECT_TRUE(view.drives.empty());
    options.kinds = kInitializing;
    EXPECT_TRUE(viewOf(options, controller).activities.empty());
}

// Bits beyond the known ones are no activity.
TEST(Observe, IgnoresUnknownBits) {
    Controller controller;
    controller.logicalDrives = {logicalDrive(0, "A", 0xE0)};
    EXPECT_TRUE(viewOf({}, controller).activities.empty());
}

TEST(Observe, ReadsMediaPatrol) {
    Controller controller;
    controller.drives = {patrolledDrive(1, kPatrolRunning, 40), patrolledDrive(2, kPatrolPaused, 30),
                         patrolledDrive(3, kPatrolStopped, 20), patrolledDrive(20, 0, 0), Drive{}};
    const View view = viewOf({}, controller);
    ASSERT_EQ(view.activities.size(), 2u);
    EXPECT_EQ(view.activities[0].target, (Target{0, true, 1, "", 0}));
    EXPECT_EQ(view.activities[0].percent, 40u);
    EXPECT_TRUE(view.activities[1].paused);
    ASSERT_EQ(view.drives.size(), 4u); // the fifth one's could not be read
    EXPECT_EQ(view.drives[2].patrol, kPatrolStopped);
}

TEST(Observe, DistinguishesArraysWithTheSameNumber) {
    Controller controller;
    controller.logicalDrives = {logicalDrive(0, "A", 0)};
    controller.logicalDrives[0].info.arrayId = 5;
    EXPECT_EQ(viewOf({}, controller).arrays[0].target.array, 5u);
}

// Control characters of a name would move the cursor of a terminal.
TEST(Observe, MakesNamesPrintable) {
    Controller controller;
    controller.logicalDrives = {logicalDrive(0, "a\x1b[2Jb\n", kRebuilding)};
    EXPECT_EQ(viewOf({}, controller).arrays[0].target.name, "a\\x1b[2Jb\\x0a");
}
