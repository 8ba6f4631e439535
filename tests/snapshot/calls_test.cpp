// The calls of a snapshot, in order with every byte, over the mock adapter.
#include <gtest/gtest.h>

#include <cstring>

#include "snapshot/read.h"
#include "tests/mock_adapter.h"

using SnapshotCalls = MockAdapterTest;

static constexpr std::uint32_t kReserved = 0;

static ControllerInfo infoOf(std::uint16_t drives) {
    ControllerInfo info = {};
    info.diskCount = drives;
    return info;
}

// The calls for every controller before those for its drives.
static void expectController(std::uint32_t id, std::uint16_t drives) {
    const ControllerQuery general = {id, 1, kGeneralInfo, {}}, version = {id, 1, kVersionInfo, {}};
    const HbaAddress address = hbaAddress(id);
    expectCall("q5_getControllerInfo", queryFor(id, general, 432), bytesOf(infoOf(drives)));
    expectCall("q5_getControllerInfo", queryFor(id, version, 88), bytesOf(ControllerVersionInfo{}));
    expectCall("q5_getControllerSettings", queryFor(id, general, 88), bytesOf(ControllerSettings{}));
    expectCall("q5_getDriverInfo", bytesOf(address, kReserved), bytesOf(DriverInfo{{1, 2, 3, 4}}));
    expectCall("q5_getDiscoverPath", bytesOf(address, std::uint32_t{656}), bytesOf(DiscoverPathInfo{}));
    expectCall("q5_getBatteryInfo", queryFor(id, BatteryQuery{}, 112), bytesOf(BatteryInfo{}));
    expectCall("q5_getBuzzerStatus", bytesOf(address, kReserved, std::uint32_t{1}), bytesOf(std::uint8_t{1}));
}

static void expectEnclosures(std::uint32_t id, int present) {
    for (std::uint16_t enclosure = 0; enclosure < 16; ++enclosure) {
        EnclosureEntry entry = {};
        entry.type = enclosure == present ? kOemA : kNoEnclosure;
        const EnclosureQuery query = {enclosure, 1};
        expectCall("q5_getEnclosureInfo", queryFor(id, query, 80), listReply<EnclosureEntry>({entry}));
        if (enclosure == present)
            expectCall("q5_getEnclosureStatus", queryFor(id, query, 116), bytesOf(EnclosureStatus{}));
    }
}

static PhyDrvInfo driveOf(std::uint16_t id) {
    PhyDrvInfo drive = {};
    drive.driveId = id;
    std::memset(drive.model, 'M', sizeof drive.model); // without a terminator
    std::memcpy(drive.firmware, "1.0", 3);
    return drive;
}

static void expectDrive(std::uint32_t id, std::uint16_t drive) {
    const HbaAddress address = hbaAddress(id);
    const DriveSelector patrolled = {drive, 1};
    PhyDrvSettings settings = {};
    settings.pdId = drive;
    Bytes speed = bytesOf(address, kReserved);
    appendBytes(&speed, "MMMMMMMMMMMMMMMMMMMMMM", 23);
    appendBytes(&speed, "1.0", 4);
    appendBytes(&speed, "\4\0\0\0", 4);
    expectCall("q5_getPhyDrvSettings", queryFor(id, PhyDrvSelector{drive, 1, 1, {}}, 80),
               listReply<PhyDrvSettings>({settings}));
    expectCall("q5_getHBAMediaPatrolProgress", queryFor(id, patrolled, 124), bytesOf(MediaPatrolProgress{}));
    expectCall("q5_getPhyDrvLocateStatus", bytesOf(address, kReserved, drive), bytesOf(std::uint8_t{0}));
    expectCall("q5_getDataTransferSpeed", speed, bytesOf(std::int32_t{1}));
}

static void expectPage(std::uint32_t id, std::uint32_t first, const std::vector<std::uint16_t>& drives,
                       int result = 0) {
    std::vector<PhyDrvInfo> records;
    for (const std::uint16_t drive : drives)
        records.push_back(driveOf(drive));
    expectCall("q5_getPhyDrvInfo", queryFor(id, PhyDrvQuery{first, 16, 255, {}}, 10688), listReply(records),
               result);
    for (const std::uint16_t drive : drives)
        expectDrive(id, drive);
}

static void expectNoLogicalDrives(std::uint32_t id) {
    expectCall("q5_getLogDrvInfo", queryFor(id, LogDrvQuery{0, 128}, 26688), listReply<LogDrvInfo>({}));
}

static std::vector<std::uint16_t> numbers(std::uint16_t first, std::uint16_t end) {
    std::vector<std::uint16_t> all;
    for (std::uint16_t id = first; id < end; ++id)
        all.push_back(id);
    return all;
}

// Output of the mock's failures is not captured here; a difference from the plan fails at once.
TEST_F(SnapshotCalls, OpenCountAndClose) {
    ApiInitRecord record = {};
    record.signature = 0xBABA0001;
    record.mode = 1;
    record.time = 60;
    expectCall("q5_initialize", bytesOf(record));
    expectCall("q5_discover", bytesOf(std::int32_t{1}));
    expectCall("q5_getNumberOfHBA", {}, bytesOf(std::uint32_t{2}));
    expectCall("q5_finalize", {});
    Snapshot snapshot;
    EXPECT_EQ(openAdapters(&snapshot), OpenResult::opened);
    EXPECT_EQ(snapshot.controllerCount, 2u);
    closeAdapters();
}

TEST_F(SnapshotCalls, QueryEachPartOfAControllerOnce) {
    expectController(3, 2);
    expectEnclosures(3, 5);
    expectPage(3, 0, {0, 4});
    expectNoLogicalDrives(3);
    const Controller controller = readController(3);
    EXPECT_EQ(controller.id, 3u);
    EXPECT_EQ(controller.driver->driverVersion.fourth, 4);
    ASSERT_EQ(controller.enclosures.size(), 1u);
    EXPECT_EQ(controller.enclosures[0].id, 5u);
    ASSERT_EQ(controller.drives.size(), 2u);
    EXPECT_EQ(controller.drives[1].number, 5u);
    EXPECT_EQ(controller.drives[1].speed3Gb, 1);
}

TEST_F(SnapshotCalls, PageThroughSixtyFourDrives) {
    expectController(0, 64);
    expectEnclosures(0, -1);
    for (std::uint16_t first = 0; first < 64; first += 16)
        expectPage(0, first, numbers(first, first + 16));
    expectNoLogicalDrives(0);
    const Controller controller = readController(0);
    EXPECT_EQ(controller.drives.size(), 64u);
    EXPECT_EQ(controller.drives.back().number, 64u);
    EXPECT_EQ(controller.faults, Faults());
}

// The next page starts after the last drive of the one before.
TEST_F(SnapshotCalls, PageOverGaps) {
    expectController(0, 18);
    expectEnclosures(0, -1);
    std::vector<std::uint16_t> first = numbers(0, 15);
    first.push_back(20);
    expectPage(0, 0, first);
    expectPage(0, 21, {30, 31});
    expectNoLogicalDrives(0);
    EXPECT_EQ(readController(0).drives.size(), 18u);
}

// An adapter that lists by windows of 16 IDs may have none in the first.
TEST_F(SnapshotCalls, PageBeyondAnEmptyWindow) {
    expectController(0, 1);
    expectEnclosures(0, -1);
    expectPage(0, 0, {});
    expectPage(0, 16, {17});
    expectNoLogicalDrives(0);
    EXPECT_EQ(readController(0).drives[0].number, 18u);
}

TEST_F(SnapshotCalls, TreatARefusedPageAfterTheLastDriveAsTheEnd) {
    expectController(0, 16);
    expectEnclosures(0, -1);
    expectPage(0, 0, numbers(0, 16));
    expectPage(0, 16, {}, 1);
    expectNoLogicalDrives(0);
    EXPECT_EQ(readController(0).faults, Faults());
}

TEST_F(SnapshotCalls, RecordARefusedPageBeforeTheLastDrive) {
    expectController(0, 17);
    expectEnclosures(0, -1);
    expectPage(0, 0, numbers(0, 16));
    expectPage(0, 16, {}, 1);
    expectNoLogicalDrives(0);
    EXPECT_EQ(readController(0).faults, (Faults{{"q5_getPhyDrvInfo", FaultKind::refused, 1}}));
}

// Settings and lost members are requested by ID, progress for each activity that the drive reports.
TEST_F(SnapshotCalls, QueryLogicalDrivesById) {
    expectController(0, 0);
    expectEnclosures(0, -1);
    expectPage(0, 0, {});
    LogDrvInfo drive = {};
    drive.arrayId = 7;
    drive.logDrvId = 3;
    drive.activityStatus = kAnyActivity;
    expectCall("q5_getLogDrvInfo", queryFor(0, LogDrvQuery{0, 128}, 26688), listReply<LogDrvInfo>({drive}));
    expectCall("q5_getLogDrvSettings", queryFor(0, LogDrvQuery{3, 1}, 180), listReply<LogDrvSettings>({{}}));
    expectCall("q5_getAryLostDisk", bytesOf(hbaAddress(0), kReserved, std::uint8_t{3}),
               bytesOf(std::uint32_t{0}));
    const ActivityQuery query = {3, 0}, migration = {3, 1};
    RebuildProgress rebuild = {};
    rebuild.percent = 11;
    rebuild.state = kActivityPaused;
    expectCall("q5_getRebuildProgress", queryFor(0, query, 88), bytesOf(rebuild));
    expectCall("q5_getLogDrvInitProgress", queryFor(0, query, 524), bytesOf(InitProgress{}));
    expectCall("q5_getRedundancyCheckProgress", queryFor(0, query, 72), bytesOf(SyncProgress{}));
    expectCall("q5_getLogDrvSynchProgress", queryFor(0, query, 72), bytesOf(SyncProgress{}));
    expectCall("q5_getMigrationProgress", queryFor(0, migration, 208), bytesOf(MigrationProgress{}));
    const Controller controller = readController(0);
    ASSERT_EQ(controller.logicalDrives[0].activities.size(), 5u);
    EXPECT_EQ(controller.logicalDrives[0].activities[0].percent, 11);
    EXPECT_EQ(controller.logicalDrives[0].activities[0].state, kActivityPaused);
    EXPECT_EQ(controller.logicalDrives[0].activities[4].kind, kMigrating);
}
