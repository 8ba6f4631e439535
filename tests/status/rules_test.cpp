// Rules on snapshots that no simulated world can show, and the lines that go to the system log.
#include "tools/status/rules.h"

#include <gtest/gtest.h>
#include <syslog.h>

#include <cstdarg>
#include <cstring>

#include "tools/status/format.h"
#include "tools/status/log.h"

// What cli-status sent to the system log. These replace the C library's functions.
static std::vector<std::pair<int, std::string>> logged;
static std::string logName;

extern "C" void openlog(const char* name, int, int) {
    logName = name;
}

extern "C" void closelog() {}

static void recordLog(int priority, const char* format, std::va_list arguments) {
    char line[1024];
    std::vsnprintf(line, sizeof line, format, arguments);
    logged.emplace_back(priority, line);
}

extern "C" void syslog(int priority, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    recordLog(priority, format, arguments);
    va_end(arguments);
}

// What a fortified build calls in its place.
extern "C" void __syslog_chk(int priority, int flag, const char* format, ...);
extern "C" void __syslog_chk(int priority, int, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    recordLog(priority, format, arguments);
    va_end(arguments);
}

static Drive driveWith(std::uint32_t number, const ExtentEntry& extent) {
    Drive drive;
    drive.number = number;
    drive.info.channel = 4;
    drive.info.enclosureId = kNoEnclosureId;
    std::memcpy(drive.info.serial, "  S1 ", 5);
    drive.info.extentCount = 1;
    drive.info.extent[0] = extent;
    return drive;
}

static Snapshot snapshotOf(const Controller& controller) {
    Snapshot snapshot;
    snapshot.controllerCount = 1;
    snapshot.controllers.push_back(controller);
    return snapshot;
}

static std::vector<std::string> linesFor(const Controller& controller) {
    const Snapshot snapshot = snapshotOf(controller);
    std::vector<std::string> lines;
    for (const Finding& finding : evaluate(snapshot, Limits(), nullptr))
        lines.push_back(finding.rule->id + std::string(" ") + findingLine(finding));
    return lines;
}

using Texts = std::vector<std::string>;

static ExtentEntry assignedExtent(std::uint16_t arrayId, std::uint8_t access) {
    ExtentEntry extent = {};
    extent.assignment = kExtentAssigned;
    extent.access = access;
    extent.arrayId = arrayId;
    extent.size = 100;
    return extent;
}

static LogicalDrive onlineArray(std::uint16_t arrayId, RaidLevel level) {
    LogicalDrive drive;
    drive.info.arrayId = drive.info.logDrvId = arrayId;
    drive.info.raidLevel = level;
    drive.info.functionalStatus = kOnline;
    std::memcpy(drive.info.name, "Data", 4);
    return drive;
}

TEST(Rules, FindAnInaccessibleMemberThatIsNotReportedAsLost) {
    Controller controller;
    controller.drives.push_back(driveWith(5, assignedExtent(3, 0)));
    controller.logicalDrives.push_back(onlineArray(3, kRaid0));
    EXPECT_EQ(linesFor(controller),
              Texts{"drive-inaccessible drive 5 of controller 0: cannot be accessed, but belongs to logical "
                    "drive 3 Data; channel 4, serial S1"});
    controller.logicalDrives.clear();
    EXPECT_EQ(linesFor(controller), Texts{"drive-inaccessible drive 5 of controller 0: cannot be accessed, "
                                          "but belongs to array 3; channel 4, serial S1"});
    controller.drives[0].info.extent[0].access = kExtentAccessible;
    EXPECT_EQ(linesFor(controller), Texts{});
}

static ExtentEntry unusedExtent(std::uint8_t assignment, std::uint8_t access) {
    ExtentEntry extent = {};
    extent.assignment = assignment;
    extent.access = access;
    extent.arrayId = kNoArray;
    extent.size = 100;
    return extent;
}

TEST(Rules, FindAnInaccessibleDriveThatNothingUses) {
    Controller controller;
    controller.drives.push_back(driveWith(5, unusedExtent(0, kExtentFree)));
    const std::string unused = "unused-inaccessible drive 5 of controller 0: cannot be accessed, and no "
                               "logical drive uses it; channel 4, serial S1";
    EXPECT_EQ(linesFor(controller), Texts{unused});
    controller.drives[0].faults = {{"q5_getPhyDrvSettings", FaultKind::refused, 1}};
    EXPECT_EQ(linesFor(controller), Texts{unused}); // a failed drive refuses operations
    controller.drives[0] = driveWith(5, unusedExtent(0, kExtentFree | kExtentAccessible));
    EXPECT_EQ(linesFor(controller), Texts{});
    controller.drives[0].info.extentCount = 0;
    EXPECT_EQ(linesFor(controller), Texts{});
}

// The healthy drive of another system: its array is unknown here.
TEST(Rules, DoNotReportAnAccessibleDriveOfAnotherSystem) {
    Controller controller;
    controller.drives.push_back(driveWith(5, assignedExtent(3, kExtentAccessible)));
    EXPECT_EQ(linesFor(controller), Texts{});
}

// The other rules have reported a member or a spare that cannot be accessed.
TEST(Rules, ReportAnInaccessibleDriveOnce) {
    Controller controller;
    controller.drives.push_back(driveWith(5, unusedExtent(0, kExtentFree)));
    controller.drives[0].info.extentCount = 2;
    controller.drives[0].info.extent[1] = unusedExtent(kExtentDedicatedSpare, 0);
    EXPECT_EQ(linesFor(controller),
              Texts{"spare-inaccessible drive 5 of controller 0: is a spare, but cannot "
                    "be accessed; channel 4, serial S1"});
    controller.drives[0].info.extent[1] = assignedExtent(3, 0);
    EXPECT_EQ(linesFor(controller), Texts{"drive-inaccessible drive 5 of controller 0: cannot be accessed, "
                                          "but belongs to array 3; channel 4, serial S1"});
}

TEST(Rules, FindUnusedSpaceThatCannotBeAccessed) {
    Controller controller;
    controller.drives.push_back(driveWith(5, unusedExtent(0, kExtentFree)));
    controller.drives[0].info.extentCount = 2;
    controller.drives[0].info.extent[1] = assignedExtent(3, kExtentAccessible);
    EXPECT_EQ(linesFor(controller),
              Texts{"unused-inaccessible drive 5 of controller 0: has unused space that "
                    "cannot be accessed; channel 4, serial S1"});
}

TEST(Rules, DoNotReportTheRefusalsOfAFailedDrive) {
    Controller controller;
    controller.drives.push_back(driveWith(5, assignedExtent(3, 0)));
    controller.drives[0].faults = {{"q5_getPhyDrvSettings", FaultKind::refused, 1}};
    EXPECT_EQ(linesFor(controller).size(), 1u);
    controller.drives[0].info.extent[0].access = kExtentAccessible;
    EXPECT_EQ(linesFor(controller),
              Texts{"unreadable drive 5 of controller 0: q5_getPhyDrvSettings failed with result 1"});
}

TEST(Rules, CountFurtherFaultsOfAnObject) {
    Controller controller;
    controller.faults = {{"q5_getBatteryInfo", FaultKind::refused, 1},
                         {"q5_getDriverInfo", FaultKind::overrun, 16},
                         {"q5_getPhyDrvInfo", FaultKind::refused, 2}};
    EXPECT_EQ(linesFor(controller), Texts{"unreadable controller 0: q5_getBatteryInfo failed with result 1, "
                                          "and 2 more faults"});
}

// An adapter that contradicts itself may hide an object. A list that failed is reported as such only.
TEST(Rules, CompareTheControllersCountsWithItsLists) {
    Controller controller;
    controller.info.emplace();
    EXPECT_EQ(linesFor(controller), Texts{});
    controller.info->diskCount = 1;
    controller.info->arrayCount = 2;
    EXPECT_EQ(linesFor(controller),
              (Texts{"drive-count controller 0: counts 1 drive, but lists 0",
                     "array-count controller 0: counts 2 logical drives, but lists 0"}));
    controller.faults = {{"q5_getPhyDrvInfo", FaultKind::refused, 1},
                         {"q5_getLogDrvInfo", FaultKind::repeated, 3}};
    EXPECT_EQ(linesFor(controller),
              Texts{"unreadable controller 0: q5_getPhyDrvInfo failed with result 1, and 1 more fault"});
    controller.faults.clear();
    controller.info->diskCount = controller.info->arrayCount = 0;
    controller.drives.push_back(driveWith(1, unusedExtent(0, kExtentFree | kExtentAccessible)));
    controller.logicalDrives.push_back(onlineArray(0, kRaid0));
    EXPECT_EQ(linesFor(controller),
              (Texts{"drive-count controller 0: counts 0 drives, but lists 1",
                     "array-count controller 0: counts 0 logical drives, but lists 1"}));
    EXPECT_EQ(worstSeverity(evaluate(snapshotOf(controller), Limits(), nullptr)), Severity::unknown);
}

TEST(Rules, DoNotTrustABatteryInAnUnknownState) {
    Controller controller;
    controller.battery.emplace();
    controller.battery->status = 0x85;
    controller.logicalDrives.push_back(onlineArray(0, kRaid0));
    controller.logicalDrives[0].settings.emplace();
    controller.logicalDrives[0].settings->cacheFlags = kWriteBack;
    EXPECT_EQ(
        linesFor(controller),
        (Texts{"unreadable battery of controller 0: reports the unknown state 5",
               "write-back-unprotected logical drive 0 Data of controller 0: set to write back, but the "
               "battery does not work"}));
}

// 1 suitable spare for 2 lost members: one is too small, one is on a member, one belongs to another array.
TEST(Rules, CountSuitableSparesOnly) {
    Controller controller;
    controller.info.emplace();
    controller.info->autoRebuild = 1;
    controller.info->diskCount = 6;
    controller.info->arrayCount = 1;
    ExtentEntry spare = {};
    spare.assignment = kExtentGlobalSpare;
    spare.access = kExtentAccessible;
    spare.size = 100;
    ExtentEntry small = spare, foreign = spare;
    small.size = 99;
    foreign.assignment = kExtentDedicatedSpare;
    foreign.arrayId = 9;
    controller.drives = {driveWith(1, assignedExtent(0, kExtentAccessible)),
                         driveWith(2, spare),
                         driveWith(3, spare),
                         driveWith(4, small),
                         driveWith(5, foreign),
                         driveWith(6, assignedExtent(0, kExtentAccessible))};
    LogicalDrive array = onlineArray(0, kRaidMf);
    array.info.diskCount = 4;
    array.info.memberIds[1] = 1; // drive 2
    array.info.memberIds[2] = 6; // drive 7, which is not listed
    array.info.memberIds[3] = 5;
    array.lostMask = 0x42;
    resolveMembers(controller, &array);
    controller.logicalDrives.push_back(array);
    const Texts lines = linesFor(controller);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2], "no-replacement logical drive 0 Data of controller 0: no replacement is coming: 1 "
                        "suitable spare for 2 lost members");
}

static ExtentEntry globalSpare(std::uint64_t size) {
    ExtentEntry extent = unusedExtent(kExtentGlobalSpare, kExtentAccessible);
    extent.size = size;
    return extent;
}

// Drives 1 and 2 are members, drives 3 and 4 lost and gone; drive 5 is rebuilt for one of them.
static Controller rebuildingForOneOfTwo() {
    Controller controller;
    controller.info.emplace();
    controller.info->autoRebuild = 1;
    controller.info->arrayCount = 1;
    ExtentEntry target = assignedExtent(0, kExtentAccessible);
    target.state = kExtentRebuilding;
    controller.drives = {driveWith(1, assignedExtent(0, kExtentAccessible)),
                         driveWith(2, assignedExtent(0, kExtentAccessible)), driveWith(5, target)};
    LogicalDrive array = onlineArray(0, kRaidMf);
    array.info.activityStatus = kRebuilding;
    array.info.diskCount = 4;
    for (std::uint8_t id = 0; id < 4; ++id)
        array.info.memberIds[id] = id;
    array.lostMask = 0x0C;
    resolveMembers(controller, &array);
    controller.logicalDrives.push_back(array);
    return controller;
}

// The findings of the rule, for a controller that counts what it lists.
static Texts missingReplacements(Controller controller) {
    controller.info->diskCount = static_cast<std::uint16_t>(controller.drives.size());
    Texts lines;
    for (const std::string& line : linesFor(controller))
        if (line.starts_with("no-replacement "))
            lines.push_back(line);
    return lines;
}

TEST(Rules, FindALostMemberThatTheRunningRebuildDoesNotReplace) {
    Controller controller = rebuildingForOneOfTwo();
    const std::string start = "no-replacement logical drive 0 Data of controller 0: no replacement is coming "
                              "for 1 of 2 lost members: ";
    EXPECT_EQ(missingReplacements(controller), Texts{start + "there is no suitable spare"});
    controller.drives[2].info.extent[controller.drives[2].info.extentCount++] = globalSpare(100);
    controller.drives.push_back(driveWith(6, globalSpare(99)));
    EXPECT_EQ(missingReplacements(controller), Texts{start + "there is no suitable spare"});
    controller.drives.push_back(driveWith(7, globalSpare(100))); // whose rebuild follows
    EXPECT_EQ(missingReplacements(controller), Texts{});
    controller.info->autoRebuild = 0;
    EXPECT_EQ(missingReplacements(controller), Texts{start + "automatic rebuild is off"});
}

TEST(Rules, CountTheDrivesOfARunningRebuild) {
    Controller controller = rebuildingForOneOfTwo();
    controller.drives.push_back(driveWith(6, controller.drives[2].info.extent[0]));
    EXPECT_EQ(missingReplacements(controller), Texts{});
    controller.drives.resize(2); // a rebuild whose drive is not reported
    EXPECT_EQ(
        missingReplacements(controller),
        Texts{"no-replacement logical drive 0 Data of controller 0: no replacement is coming for 1 of 2 "
              "lost members: there is no suitable spare"});
    controller.logicalDrives[0].info.activityStatus = 0;
    EXPECT_EQ(missingReplacements(controller),
              Texts{"no-replacement logical drive 0 Data of controller 0: no replacement is coming: there is "
                    "no suitable spare"});
}

// The rebuild follows the migration, as long as there is a spare.
TEST(Rules, WaitForAMigration) {
    Controller controller = rebuildingForOneOfTwo();
    controller.drives.resize(2);
    controller.logicalDrives[0].info.activityStatus = 0;
    controller.drives.push_back(driveWith(6, globalSpare(100)));
    controller.drives.push_back(driveWith(7, globalSpare(100)));
    const std::string start =
        "no-replacement logical drive 0 Data of controller 0: no replacement is coming: ";
    EXPECT_EQ(missingReplacements(controller),
              Texts{start + "no rebuild runs, though there is a suitable spare"});
    controller.logicalDrives[0].info.activityStatus = kMigrating;
    EXPECT_EQ(missingReplacements(controller), Texts{});
    controller.drives.resize(2);
    EXPECT_EQ(missingReplacements(controller), Texts{start + "there is no suitable spare"});
}

// Drives 1 and 3 are listed of 17, then the list was refused: drive 2 is gone, drive 20 may be there.
TEST(Rules, DistinguishALostMemberThatIsGoneFromOneThatCannotBeRead) {
    Controller controller;
    controller.info.emplace();
    controller.info->diskCount = 17;
    controller.info->arrayCount = 1;
    controller.faults = {{"q5_getPhyDrvInfo", FaultKind::refused, 1}};
    controller.drives = {driveWith(1, assignedExtent(0, kExtentAccessible)),
                         driveWith(3, assignedExtent(0, kExtentAccessible))};
    LogicalDrive array = onlineArray(0, kRaid0);
    array.info.diskCount = 4;
    array.info.memberIds[1] = 1;
    array.info.memberIds[2] = 2;
    array.info.memberIds[3] = 19;
    array.lostMask = 1u << 1 | 1u << 19;
    resolveMembers(controller, &array);
    controller.logicalDrives.push_back(array);
    const std::string gone = "member-lost drive 2 of controller 0: lost by logical drive 0 Data; ";
    EXPECT_EQ(linesFor(controller),
              (Texts{"unreadable controller 0: q5_getPhyDrvInfo failed with result 1",
                     gone + "it is no longer listed",
                     "member-lost drive 20 of controller 0: lost by logical drive 0 Data; it cannot be "
                     "identified, because not all drives could be read"}));
    controller.faults.clear(); // a short list may lack any
    EXPECT_EQ(linesFor(controller)[1],
              gone + "it cannot be identified, because not all drives could be read");
}

TEST(Objects, WithoutTextsAreUnknown) {
    Controller controller;
    controller.drives.push_back(driveWith(1, unusedExtent(0, kExtentFree | kExtentAccessible)));
    std::memcpy(controller.drives[0].info.serial, "     ", 5);
    controller.logicalDrives.push_back(onlineArray(3, kRaid0));
    controller.logicalDrives[0].info.name[0] = '\0';
    EXPECT_EQ(formatObjects(controller),
              "  drive 1: unknown, 0 MB, channel 4, serial unknown, firmware unknown\n"
              "    extent 0: 0 MB, free\n"
              "  logical drive 3: RAID0, 0 MB, online, drives\n");
    controller.drives[0].info.extent[0].access = kExtentSmartFailed | kExtentAccessible;
    EXPECT_EQ(linesFor(controller),
              Texts{"smart-failure drive 1 of controller 0: predicts its failure (SMART); "
                    "channel 4, serial unknown"});
}

TEST(Log, CarriesASeverityAsPriority) {
    logged.clear();
    sendToSyslog({{Severity::info, "a"},
                  {Severity::warning, "b %s"},
                  {Severity::critical, "c"},
                  {Severity::unknown, "d"}});
    EXPECT_EQ(logName, "cli-status");
    EXPECT_EQ(logged, (std::vector<std::pair<int, std::string>>{{LOG_INFO, "info: a"},
                                                                {LOG_WARNING, "warning: b %s"},
                                                                {LOG_CRIT, "critical: c"},
                                                                {LOG_ERR, "unknown: d"}}));
}
