// The conversion of snapshots whose contents the simulated adapters would not report.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <set>

#include "simulator/file/world_json.h"
#include "snapshot/fields.h"
#include "tools/capture/capture.h"

static constexpr std::int64_t kNow = 5000;
static constexpr std::uint64_t kDriveSectors = 2048000; // 1000 MB

static ExtentEntry extentOf(std::uint8_t assignment, std::uint16_t array, std::uint64_t start,
                            std::uint64_t size) {
    ExtentEntry extent = {};
    extent.assignment = assignment;
    extent.access = static_cast<std::uint8_t>(kExtentAccessible | (assignment == 0 ? kExtentFree : 0));
    extent.state = kExtentOnline;
    extent.arrayId = array;
    extent.start = start;
    extent.size = size;
    return extent;
}

static Drive driveOf(std::uint16_t id, const std::vector<ExtentEntry>& extents) {
    Drive drive;
    drive.number = id + 1u;
    drive.info.driveId = id;
    drive.info.enclosureId = kNoEnclosureId;
    drive.info.capacity = kDriveSectors;
    drive.info.extentCount = static_cast<std::uint8_t>(extents.size());
    for (std::size_t i = 0; i < extents.size(); i++) {
        drive.info.extent[i] = extents[i];
        drive.info.extent[i].index = static_cast<std::uint16_t>(i);
    }
    return drive;
}

static LogicalDrive mirrorOf(std::uint16_t id, std::uint8_t first, std::uint8_t second) {
    LogicalDrive drive;
    drive.info.arrayId = drive.info.logDrvId = id;
    drive.info.raidLevel = kRaid1;
    drive.info.functionalStatus = kOnline;
    drive.info.sectorCount = kDriveSectors;
    drive.info.diskCount = 2;
    drive.info.stripeBlocks = 64;
    drive.info.sectorSize = 512;
    drive.info.memberIds[0] = first;
    drive.info.memberIds[1] = second;
    drive.lostMask = 0;
    return drive;
}

template <typename Record>
static void setNumbers(Record* record) {
    for (const Field& field : recordType<Record>().fields)
        if (field.kind == FieldKind::unsignedNumber || field.kind == FieldKind::signedNumber)
            setNumberAt(record, field, 0, 1);
}

// Two drives, mirrored.
static Snapshot mirrored() {
    Snapshot snapshot;
    snapshot.controllerCount = 1;
    Controller controller;
    controller.buzzer = 1;
    for (const std::uint16_t id : std::initializer_list<std::uint16_t>{0, 1})
        controller.drives.push_back(driveOf(id, {extentOf(kExtentAssigned, 0, 0, kDriveSectors)}));
    controller.logicalDrives.push_back(mirrorOf(0, 0, 1));
    snapshot.controllers.push_back(controller);
    return snapshot;
}

// The same with every setting 1.
static Snapshot mirroredWithSettings() {
    Snapshot snapshot = mirrored();
    Controller& controller = snapshot.controllers[0];
    controller.settings = ControllerSettings{};
    setNumbers(&*controller.settings);
    for (Drive& drive : controller.drives) {
        drive.settings = PhyDrvSettings{};
        setNumbers(&*drive.settings);
        drive.settings->pdId = drive.info.driveId;
    }
    controller.logicalDrives[0].settings = LogDrvSettings{};
    setNumbers(&*controller.logicalDrives[0].settings);
    return snapshot;
}

static q5sim::World worldOf(const Capture& capture) {
    q5sim::World world;
    q5sim::ValidationError error;
    EXPECT_TRUE(q5sim::worldFromJson(capture.text, world, error)) << error.reason << capture.problem;
    world.controllers.resize(std::max<std::size_t>(1, world.controllers.size()));
    return world;
}

static bool hasNote(const Capture& capture, const std::string& line) {
    return std::find(capture.assumed.begin(), capture.assumed.end(), line) != capture.assumed.end();
}

// Changes each number of the settings in turn: the world differs.
template <typename Record>
static void expectEverySettingConverted(Record& (*settings)(Snapshot&), const std::set<std::string>& fixed) {
    const std::string before = captureWorld(mirroredWithSettings(), kNow).text;
    for (const Field& field : recordType<Record>().fields) {
        if ((field.kind != FieldKind::unsignedNumber && field.kind != FieldKind::signedNumber) ||
            fixed.count(field.name) != 0)
            continue;
        Snapshot snapshot = mirroredWithSettings();
        setNumberAt(&settings(snapshot), field, 0, 0);
        EXPECT_NE(captureWorld(snapshot, kNow).text, before) << field.name;
    }
}

TEST(Conversion, CoversEverySetting) {
    expectEverySettingConverted<ControllerSettings>(
        [](Snapshot& snapshot) -> ControllerSettings& { return *snapshot.controllers[0].settings; }, {});
    expectEverySettingConverted<PhyDrvSettings>(
        [](Snapshot& snapshot) -> PhyDrvSettings& { return *snapshot.controllers[0].drives[1].settings; },
        {"pdId"});
    expectEverySettingConverted<LogDrvSettings>(
        [](Snapshot& snapshot) -> LogDrvSettings& {
            return *snapshot.controllers[0].logicalDrives[0].settings;
        },
        {});
}

TEST(Conversion, CompleteWhereTheModelShowsTheSame) {
    const Capture capture = captureWorld(mirrored(), kNow);
    EXPECT_TRUE(capture.complete);
    const q5sim::World world = worldOf(capture);
    EXPECT_EQ(world.assumed, capture.assumed);
    const q5sim::LogicalDrive& drive = world.controllers[0].logicalDrives[0];
    EXPECT_EQ(drive.memberSectors, kDriveSectors);
    EXPECT_TRUE(drive.captured);
    EXPECT_TRUE(drive.active);
    EXPECT_EQ(drive.reportedState, kOnline);
}

TEST(Conversion, NoteWhereTheModelShowsSomethingElse) {
    Snapshot snapshot = mirrored();
    snapshot.controllers[0].logicalDrives[0].info.functionalStatus = kDegraded;
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_FALSE(capture.complete);
    EXPECT_TRUE(
        hasNote(capture, "controllers[0].logicalDrives[0]: the copy is online; reported is degraded"));
}

TEST(Conversion, LostMemberOnAWorkingDriveIsStale) {
    Snapshot snapshot = mirrored();
    LogicalDrive& drive = snapshot.controllers[0].logicalDrives[0];
    drive.info.functionalStatus = kCritical;
    drive.lostMask = 2;
    snapshot.controllers[0].drives[1].info.extent[0].state = 0;
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_TRUE(capture.complete) << ::testing::PrintToString(capture.assumed);
    EXPECT_EQ(worldOf(capture).controllers[0].logicalDrives[0].staleMembers, std::vector<std::uint16_t>{1});
}

// Its array has the same ID, but another share of each drive.
TEST(Conversion, ExtentOfAnotherSizeInTheSlotOfALostMemberIsForeign) {
    Snapshot snapshot = mirrored();
    Controller& controller = snapshot.controllers[0];
    controller.logicalDrives[0].info.functionalStatus = kCritical;
    controller.logicalDrives[0].lostMask = 2;
    controller.drives[1].info.extent[0].size = kDriveSectors / 2;
    controller.drives[1].info.extent[0].state = 0;
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_TRUE(capture.complete) << ::testing::PrintToString(capture.assumed);
    const q5sim::World world = worldOf(capture);
    const q5sim::Extent& extent = world.controllers[0].drives[1].extents[0];
    EXPECT_EQ(extent.use, q5sim::kUseForeign);
    EXPECT_EQ(extent.array, 0);
    EXPECT_EQ(world.controllers[0].logicalDrives[0].staleMembers, std::vector<std::uint16_t>{});
    EXPECT_EQ(world.controllers[0].logicalDrives[0].memberSectors, kDriveSectors);
}

TEST(Conversion, OfflineWithAllMembersIsInactive) {
    Snapshot snapshot = mirrored();
    snapshot.controllers[0].logicalDrives[0].info.functionalStatus = 0;
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_TRUE(capture.complete);
    EXPECT_FALSE(worldOf(capture).controllers[0].logicalDrives[0].active);
}

TEST(Conversion, ExtentsThatOverlapOrLeaveTheDriveAreLeftOut) {
    Snapshot snapshot = mirrored();
    snapshot.controllers[0].drives.push_back(
        driveOf(2, {extentOf(0, kNoArray, 4096, 4096), extentOf(0, kNoArray, 0, 5000),
                    extentOf(0, kNoArray, kDriveSectors - 1, UINT64_MAX), extentOf(0, kNoArray, 9000, 0)}));
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_FALSE(capture.complete);
    const q5sim::World world = worldOf(capture);
    ASSERT_EQ(world.controllers[0].drives[2].extents.size(), 1u);
    EXPECT_EQ(world.controllers[0].drives[2].extents[0].size, 5000u);
    EXPECT_TRUE(
        hasNote(capture, "controllers[0].drives[2]: extent 0 is outside its drive or overlaps another"));
}

TEST(Conversion, LogicalDriveThatNoWorldCanHoldIsLeftOut) {
    Snapshot snapshot = mirrored();
    snapshot.controllers[0].logicalDrives[0].info.diskCount = 3; // a mirror has two
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_TRUE(hasNote(capture,
                        "controllers[0].logicalDrives[0]: logical drive 0 is left out: its members are "
                        "not distinct drives from 1 to 32"));
    const q5sim::World world = worldOf(capture);
    EXPECT_TRUE(world.controllers[0].logicalDrives.empty());
    EXPECT_EQ(world.controllers[0].drives[0].extents[0].use, q5sim::kUseForeign);
}

TEST(Conversion, DriveBeyondTheLimitIsLeftOut) {
    Snapshot snapshot = mirrored();
    snapshot.controllers[0].drives.push_back(driveOf(32, {}));
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_FALSE(capture.complete);
    EXPECT_EQ(worldOf(capture).controllers[0].drives.size(), 2u);
    EXPECT_TRUE(hasNote(capture, "controllers[0].drives[2]: a world has no room for drive 33"));
}

TEST(Conversion, ValuesBeyondTheLimitsAreMovedIntoThem) {
    Snapshot snapshot = mirrored();
    Drive& drive = snapshot.controllers[0].drives[0];
    drive.info.enclosureId = 700;
    std::memset(drive.info.model, 'M', sizeof drive.info.model);
    drive.info.serial[0] = '\xFF';
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_FALSE(capture.complete);
    const q5sim::World world = worldOf(capture);
    EXPECT_EQ(world.controllers[0].drives[0].enclosure, kNoEnclosureId);
    EXPECT_EQ(world.controllers[0].drives[0].model, std::string(21, 'M'));
    EXPECT_EQ(world.controllers[0].drives[0].serial, "?");
    EXPECT_TRUE(hasNote(capture, "controllers[0].drives[0].enclosure: 700 is outside the limits of a world"));
}

TEST(Conversion, RunningActivityContinuesAtItsPercentage) {
    Snapshot snapshot = mirrored();
    LogicalDrive& drive = snapshot.controllers[0].logicalDrives[0];
    drive.info.activityStatus = kSynchronizing;
    drive.activities.push_back({kSynchronizing, kActivityPaused, 33});
    for (Drive& each : snapshot.controllers[0].drives)
        each.info.extent[0].maintenance = kExtentSynchronizing;
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_TRUE(capture.complete);
    const q5sim::World world = worldOf(capture);
    const q5sim::LogicalDrive& copy = world.controllers[0].logicalDrives[0];
    EXPECT_EQ(copy.activity.kind, kSynchronizing);
    EXPECT_TRUE(copy.activity.paused);
    EXPECT_EQ(copy.activity.totalMb, 1000u);
    EXPECT_EQ(copy.activity.completedMb, 330u);
    EXPECT_EQ(copy.activity.since, kNow);
    EXPECT_FALSE(copy.synchronized);
}

TEST(Conversion, UnusedSpareInhibitsTheRebuild) {
    Snapshot snapshot = mirrored();
    Controller& controller = snapshot.controllers[0];
    controller.settings = ControllerSettings{};
    controller.settings->autoRebuild = 1;
    controller.drives.erase(controller.drives.begin() + 1);
    controller.drives.push_back(driveOf(4, {extentOf(kExtentGlobalSpare, kNoArray, 0, kDriveSectors)}));
    controller.logicalDrives[0].info.functionalStatus = kCritical;
    controller.logicalDrives[0].lostMask = 2;
    const Capture capture = captureWorld(snapshot, kNow);
    EXPECT_TRUE(worldOf(capture).controllers[0].logicalDrives[0].autoRebuildInhibited);
    EXPECT_TRUE(hasNote(capture,
                        "controllers[0].logicalDrives[0].rebuildHeld: true, since no rebuild runs although "
                        "there is a spare"));
}

TEST(Conversion, NamesAndSerialsAreReplacedByTheSameEverywhere) {
    Snapshot snapshot = mirrored();
    Controller& controller = snapshot.controllers[0];
    for (Drive& drive : controller.drives)
        std::strcpy(drive.info.serial, "SECRET");
    std::strcpy(controller.logicalDrives[0].info.name, "Payroll of the whole company, 2026");
    controller.logicalDrives[0].settings = LogDrvSettings{};
    std::memcpy(controller.logicalDrives[0].settings->name, "Payroll of the whole company, 2", 31);
    makeAnonymous(&snapshot);
    EXPECT_STREQ(controller.drives[0].info.serial, "serial-1");
    EXPECT_STREQ(controller.drives[1].info.serial, "serial-1");
    EXPECT_STREQ(controller.logicalDrives[0].info.name, "name-1");
    EXPECT_STREQ(controller.logicalDrives[0].settings->name, "name-1");
}
