// Parts of cli-restore in isolation: drive maps, ranges of sectors, logs, and plans of single
// controllers.
#include <sys/stat.h>

#include <cstring>
#include <set>

#include "snapshot/fields.h"
#include "tests/temp_dir_fixture.h"
#include "tools/restore/layout.h"
#include "tools/restore/log.h"
#include "tools/restore/plan.h"

TEST(DriveMap, ReadsPairs) {
    DriveMap drives;
    EXPECT_EQ(readDriveMap("2=5,3=3,16=-", &drives), "");
    EXPECT_EQ(drives, (DriveMap{{2, 5}, {3, 3}, {16, std::nullopt}}));
    EXPECT_EQ(driveMapText(drives), "2=5,3=3,16=-");
}

TEST(DriveMap, RefusesOtherTexts) {
    for (const char* text :
         {"", "2", "2=", "=2", "2=0", "0=2", "2=x", "-=2", "2=3,", ",2=3", "257=1", "2=3=4"}) {
        DriveMap drives;
        EXPECT_NE(readDriveMap(text, &drives), "") << text;
    }
    DriveMap twice, both;
    EXPECT_EQ(readDriveMap("2=3,2=4", &twice), "drive 2 is mapped twice");
    EXPECT_EQ(readDriveMap("2=3,4=3", &both), "drive 3 would take the place of two drives");
}

TEST(Layout, FindsAndCutsRegions) {
    Layout layout = {{0, 100, "Data"}, {100, 400, ""}};
    EXPECT_EQ(findRegion(layout, 0), 0u);
    EXPECT_EQ(findRegion(layout, 100), 1u);
    EXPECT_EQ(findRegion(layout, 500), 2u);
    splitRegion(&layout, 1, 150);
    takeRegion(&layout, 2, 50, "Spare");
    ASSERT_EQ(layout.size(), 4u);
    EXPECT_EQ(layout[1].end(), 250u);
    EXPECT_EQ(layout[2].use, "Spare");
    EXPECT_EQ(layout[2].end(), 300u);
    EXPECT_TRUE(layout[3].isFree());
    EXPECT_EQ(layout[3].end(), 500u);
}

TEST(Layout, ReportsWhyARangeCannotBeUsed) {
    const Layout layout = {{0, 100, "Data"}, {100, 100, ""}, {200, 100, ""}};
    EXPECT_EQ(obstacleInRange(layout, 100, 100), "");
    EXPECT_EQ(obstacleInRange(layout, 120, 50), "");
    EXPECT_EQ(obstacleInRange(layout, 50, 100), "is in use by Data");
    EXPECT_EQ(obstacleInRange(layout, 150, 100), "has no single free extent from sector 150 to 250");
    EXPECT_EQ(obstacleInRange(layout, 250, 51), "is too small: 301 sectors are needed, it has 300");
    EXPECT_EQ(obstacleInRange({}, 0, 1), "is too small: 1 sectors are needed, it has 0");
}

using RestoreLog = TempDirFixture;

static const LogHeader kHeader = {"0123", "4", "2=5,3=-"};

static const std::string kNoLog = " is not a log of cli-restore";

TEST_F(RestoreLog, FindsAnUnfinishedRestore) {
    RestoreState state;
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_FALSE(state.begun);
    Log log;
    ASSERT_EQ(openLog(path("log"), &log), "");
    for (const std::string& line : {beginLine(kHeader), std::string("step one"), std::string(kStepDone),
                                    std::string("step two"), std::string("stopped why")})
        EXPECT_EQ(addToLog(log, line), "");
    closeLog(&log);
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_TRUE(state.begun);
    EXPECT_FALSE(state.finished);
    EXPECT_EQ(state.header, kHeader);
    EXPECT_EQ(state.steps, 1);
}

TEST_F(RestoreLog, FindsAFinishedRestore) {
    Log log;
    ASSERT_EQ(openLog(path("log"), &log), "");
    for (const std::string& line : {beginLine(kHeader), std::string(kStepDone), std::string(kFinished)})
        EXPECT_EQ(addToLog(log, line), "");
    closeLog(&log);
    RestoreState state;
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_TRUE(state.finished);
}

// A power failure cut the last line, which says that a step was done or that all is finished.
TEST_F(RestoreLog, IgnoresAnIncompleteLine) {
    write("log", "2026-11-22T02:15:00Z begin backup=1 controller=0 drives=\nT done\nT finis");
    RestoreState state;
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_TRUE(state.begun);
    EXPECT_FALSE(state.finished);
    EXPECT_EQ(state.steps, 1);
    Log log;
    ASSERT_EQ(openLog(path("log"), &log), "");
    EXPECT_EQ(addToLog(log, kStepDone), "");
    closeLog(&log);
    EXPECT_EQ(readLog(path("log"), &state), "");
    EXPECT_EQ(state.steps, 2);
}

// Also one that a power failure cut in its first line.
TEST_F(RestoreLog, RecognizesALog) {
    const std::string first = "2026-11-22T02:15:00Z begin backup=1 controller=0 drives=";
    for (const std::size_t size : {std::size_t{0}, std::size_t{21}, std::size_t{25}, first.size()}) {
        RestoreState state;
        write("log", first.substr(0, size));
        EXPECT_EQ(readLog(path("log"), &state), "") << size;
        EXPECT_FALSE(state.begun);
        write("log", first.substr(0, size) + "\n" + first + "\n");
        EXPECT_EQ(readLog(path("log"), &state), size == 0 ? path("log") + kNoLog : "") << size;
    }
}

TEST_F(RestoreLog, RefusesAnotherFile) {
    for (const char* text :
         {"\n", "2", "2026-11-22T02:15:00Z", "2026-11-22T02:15:00Z begun backup=1", "{\"format\": 1}\n",
          "2026-11-22 02:15:00Z begin backup=1\n", "2026-11-22T02:15:00Z step one\n", "Begin Controller\n"}) {
        RestoreState state;
        write("log", text);
        EXPECT_EQ(readLog(path("log"), &state), path("log") + kNoLog) << text;
    }
    RestoreState state;
    EXPECT_EQ(readLog(path(""), &state), path("") + kNoLog); // the directory
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(readLog(path("pipe"), &state), path("pipe") + kNoLog);
    EXPECT_NE(readLog(path("log/none"), &state), "");
}

TEST_F(RestoreLog, RefusesALink) {
    write("other", "x");
    ASSERT_EQ(symlink(path("other").c_str(), path("log").c_str()), 0);
    Log log;
    EXPECT_NE(openLog(path("log"), &log), "");
    EXPECT_EQ(content("other"), "x");
}

// A controller with drives of one free extent each.
static Controller controllerWith(std::uint32_t drives, std::uint64_t sectors) {
    Controller controller;
    controller.settings = ControllerSettings{};
    controller.buzzer = 1;
    for (std::uint32_t number = 1; number <= drives; ++number) {
        Drive drive;
        drive.number = number;
        drive.info.driveId = static_cast<std::uint16_t>(number - 1);
        drive.info.serial[0] = static_cast<char>('A' + number);
        drive.info.extentCount = 1;
        drive.info.extent[0] = {0,        0,  0, 0,      kExtentFree | kExtentAccessible, kExtentOnline,
                                kNoArray, {}, 0, sectors};
        drive.settings = PhyDrvSettings{};
        controller.drives.push_back(drive);
    }
    return controller;
}

static void addExtent(Drive* drive, std::uint8_t assignment, std::uint16_t arrayId, std::uint64_t start,
                      std::uint64_t size) {
    const std::uint8_t index = drive->info.extentCount++;
    const std::uint8_t access = assignment == 0 ? kExtentFree | kExtentAccessible : kExtentAccessible;
    drive->info.extent[index] = {index, 0, assignment, 0, access, kExtentOnline, arrayId, {}, start, size};
}

// A mirror on the second of three extents of drives 1 and 2.
static Controller controllerWithMirror() {
    Controller controller = controllerWith(2, 40960);
    for (Drive& drive : controller.drives) {
        drive.info.extentCount = 0;
        addExtent(&drive, 0, kNoArray, 0, 4096);
        addExtent(&drive, kExtentAssigned, 5, 4096, 8192);
        addExtent(&drive, 0, kNoArray, 12288, 28672);
    }
    LogicalDrive mirror;
    mirror.info.arrayId = 5;
    mirror.info.raidLevel = kRaid1;
    mirror.info.functionalStatus = kOnline;
    mirror.info.sectorCount = 8192;
    mirror.info.diskCount = 2;
    mirror.info.stripeBlocks = 64;
    mirror.info.sectorSize = 512;
    std::strcpy(mirror.info.name, "Mirror");
    mirror.info.memberIds[1] = 1;
    mirror.settings = LogDrvSettings{};
    controller.logicalDrives.push_back(mirror);
    return controller;
}

static std::vector<std::string> textsOf(const Plan& plan) {
    std::vector<std::string> texts;
    for (const Step& step : plan.steps)
        texts.push_back(step.text);
    return texts;
}

using Texts = std::vector<std::string>;

TEST(Plan, IsEmptyForEqualControllers) {
    const Controller controller = controllerWithMirror();
    const Plan plan = makePlan(controller, controller, {});
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes, Texts());
}

// Sets each number of the saved settings to 1 in turn: the plan has a step or a note for it.
template <typename Record>
static void expectEverySettingPlanned(Record& (*settings)(Controller&), const std::set<std::string>& fixed) {
    for (const Field& field : recordType<Record>().fields) {
        if ((field.kind != FieldKind::unsignedNumber && field.kind != FieldKind::signedNumber) ||
            fixed.count(field.name) != 0)
            continue;
        Controller saved = controllerWithMirror();
        setNumberAt(&settings(saved), field, 0, 1);
        const Plan plan = makePlan(saved, controllerWithMirror(), {});
        EXPECT_EQ(plan.steps.size() + plan.notes.size(), 1u) << field.name;
    }
}

TEST(Plan, CoversEverySetting) {
    expectEverySettingPlanned<ControllerSettings>(
        [](Controller& controller) -> ControllerSettings& { return *controller.settings; }, {});
    expectEverySettingPlanned<PhyDrvSettings>(
        [](Controller& controller) -> PhyDrvSettings& { return *controller.drives[0].settings; },
        {"pdId", "tcqSupported", "ncqSupported"}); // properties of the drive
    expectEverySettingPlanned<LogDrvSettings>(
        [](Controller& controller) -> LogDrvSettings& { return *controller.logicalDrives[0].settings; }, {});
}

TEST(Plan, SplitsWhereAnExtentHasToBegin) {
    const Plan plan = makePlan(controllerWithMirror(), controllerWith(2, 40960), {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan),
              (Texts{"split extent 0 of drive 1 at 2 MB", "split extent 0 of drive 2 at 2 MB",
                     "create logical drive 0 Mirror: RAID1 of 8192 sectors on drive 1 extent 1 "
                     "(8192 sectors from 4096), drive 2 extent 1 (8192 sectors from 4096)",
                     "set logical drive 0: "
                     "writepolicy=writethru,lookahead=0,consolidation=disable"}));
    EXPECT_EQ(plan.steps[2].arrayRecord.extents[1], 1);
    EXPECT_EQ(plan.steps[2].arrayRecord.sectorCount, 8192u);
}

TEST(Plan, CannotSplitWithinAMegabyte) {
    Controller saved = controllerWithMirror();
    for (Drive& drive : saved.drives) {
        drive.info.extent[0].size = 1000;
        drive.info.extent[1].start = 1000;
    }
    const Plan plan = makePlan(saved, controllerWith(2, 40960), {});
    EXPECT_EQ(plan.obstacles,
              (Texts{"drive 1 cannot be cut at sector 1000, which is not at a whole megabyte"}));
}

TEST(Plan, NotesAnotherId) {
    Controller saved = controllerWithMirror();
    saved.logicalDrives[0].info.logDrvId = 3;
    const Plan plan = makePlan(saved, controllerWith(2, 40960), {});
    EXPECT_EQ(plan.notes, (Texts{"logical drive 3 Mirror of the backup is logical drive 0 here"}));
}

// Drive 2 is gone, and with it the place of the second member.
static Controller controllerWithHalfAMirror() {
    Controller controller = controllerWithMirror();
    controller.drives.pop_back();
    controller.logicalDrives[0].info.functionalStatus = kCritical;
    controller.logicalDrives[0].lostMask = 2;
    for (LogicalDrive& drive : controller.logicalDrives)
        resolveMembers(controller, &drive);
    return controller;
}

TEST(Plan, FindsAnIncompleteArrayInPlace) {
    const Controller half = controllerWithHalfAMirror();
    for (const Controller& now : {half, controllerWithMirror()}) {
        const Plan plan = makePlan(half, now, {});
        EXPECT_EQ(textsOf(plan), Texts());
        EXPECT_EQ(plan.obstacles, Texts());
        EXPECT_EQ(plan.notes, Texts());
    }
}

TEST(Plan, NotesAMemberThatWasLostSince) {
    const Plan plan = makePlan(controllerWithMirror(), controllerWithHalfAMirror(), {});
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes,
              (Texts{"drive 2 of the backup is not here",
                     "logical drive 0 Mirror has lost a member since; a rebuild makes it complete"}));
}

// The same level, size and sectors, but the drives are of another array.
TEST(Plan, AnArrayOfOtherDrivesPreventsThePlan) {
    const Controller saved = controllerWithMirror();
    Controller now = saved;
    std::strcpy(now.logicalDrives[0].info.name, "Payroll");
    now.drives[1].info.serial[0] = 'X';
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(plan.obstacles, (Texts{"drive 2 has another serial: X instead of C; if it is the replacement, "
                                     "add --drives 2=2"}));
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, (Texts{"drive 2 is another drive; its settings stay"}));
}

// It was rebuilt onto the replacement of a member: the map says so.
TEST(Plan, AcceptsTheReplacementOfAMember) {
    const Controller saved = controllerWithMirror();
    Controller now = saved;
    std::strcpy(now.logicalDrives[0].info.name, "Other");
    now.drives[1].info.serial[0] = 'X';
    const Plan plan = makePlan(saved, now, {{2, 2}});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan), (Texts{"set logical drive 0: name=Mirror"}));
}

// The new drive is not a member yet: only the others have to be the saved ones.
TEST(Plan, FindsAnArrayWhoseLostMemberWasReplaced) {
    const Controller saved = controllerWithMirror();
    Controller now = controllerWithHalfAMirror();
    now.drives.push_back(controllerWith(2, 40960).drives[1]);
    now.drives[1].info.serial[0] = 'X';
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.obstacles, Texts());
    now.drives[0].info.serial[0] = 'Y';
    EXPECT_EQ(makePlan(saved, now, {}).obstacles,
              (Texts{"drive 1 has another serial: Y instead of B; if it is the replacement, "
                     "add --drives 1=1"}));
}

// What could not be read is not known to be absent, neither in the backup nor now.
TEST(Plan, ListsThatCouldNotBeReadPreventThePlan) {
    const Controller whole = controllerWithMirror();
    Controller broken = whole;
    broken.logicalDrives.clear();
    broken.faults = {{"q5_getBatteryInfo", FaultKind::refused, 1},
                     {"q5_getLogDrvInfo", FaultKind::refused, 7},
                     {"q5_getPhyDrvInfo", FaultKind::repeated, 2}};
    const Plan plan = makePlan(broken, whole, {});
    EXPECT_EQ(plan.obstacles,
              (Texts{"the backup does not contain all logical drives, because they could not be read: "
                     "q5_getLogDrvInfo failed with result 7",
                     "the backup does not contain all drives, because they could not be read: "
                     "q5_getPhyDrvInfo listed ID 2 twice or out of order"}));
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, Texts());
    EXPECT_EQ(makePlan(whole, broken, {}).obstacles,
              (Texts{"not all logical drives can be read: q5_getLogDrvInfo failed with result 7",
                     "not all drives can be read: q5_getPhyDrvInfo listed ID 2 twice or out of order"}));
}

TEST(Plan, RecordsWithImpossibleCountsPreventThePlan) {
    const Controller whole = controllerWithMirror();
    Controller broken = whole;
    broken.drives[1].faults = {{"q5_getPhyDrvSettings", FaultKind::refused, 1},
                               {"q5_getPhyDrvInfo", FaultKind::impossible, 99}};
    broken.logicalDrives[0].faults = {{"q5_getLogDrvInfo", FaultKind::impossible, 77}};
    EXPECT_EQ(makePlan(broken, whole, {}).obstacles,
              (Texts{"the backup does not contain all drives, because they could not be read: "
                     "q5_getPhyDrvInfo returned the impossible count 99",
                     "the backup does not contain all logical drives, because they could not be read: "
                     "q5_getLogDrvInfo returned the impossible count 77"}));
}

// Too many members are gone for a rebuild.
TEST(Plan, AnOfflineArrayPreventsThePlan) {
    Controller now = controllerWithHalfAMirror();
    now.logicalDrives[0].info.functionalStatus = 0;
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {}).obstacles,
              (Texts{"logical drive 0 Mirror is offline without drive 2: a rebuild cannot complete it"}));
    now.logicalDrives[0].lostMask = 0;
    resolveMembers(now, &now.logicalDrives[0]);
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {}).obstacles,
              (Texts{"logical drive 0 Mirror is offline: a rebuild cannot complete it"}));
}

TEST(Plan, NotesAnArrayThatWasOfflineAlready) {
    Controller saved = controllerWithHalfAMirror();
    saved.logicalDrives[0].info.functionalStatus = 0;
    const Plan plan = makePlan(saved, saved, {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes, (Texts{"logical drive 0 Mirror is offline, as it was when it was saved"}));
}

TEST(Plan, NotesAMigration) {
    Controller now = controllerWithMirror();
    now.logicalDrives[0].info.activityStatus = kMigrating;
    const Plan plan = makePlan(controllerWithMirror(), now, {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes, (Texts{"logical drive 0 Mirror is being migrated; it will be different"}));
}

TEST(Plan, CannotPlaceALostMember) {
    const Plan plan = makePlan(controllerWithHalfAMirror(), controllerWith(2, 40960), {});
    EXPECT_EQ(plan.obstacles,
              (Texts{"logical drive 0 Mirror had lost drive 2 when it was saved: where that member was is "
                     "not known; use an earlier backup, or leave the drive out with --drives"}));
}

TEST(Plan, LeavesOutAnIncompleteArray) {
    const Plan plan = makePlan(controllerWithHalfAMirror(), controllerWith(2, 40960), {{2, std::nullopt}});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan), (Texts{"split extent 0 of drive 1 at 6 MB"})); // the last free extent
    EXPECT_EQ(plan.notes, (Texts{"logical drive 0 Mirror is left out: it had lost drive 2"}));
}

TEST(Plan, ReportsAMapThatNamesOtherDrives) {
    const Controller saved = controllerWithMirror();
    Controller now = saved;
    now.drives.push_back(controllerWith(3, 40960).drives[2]);
    const std::string where = " names other drives than those of logical drive 0 Mirror, RAID1 of 8192 "
                              "sectors on drive 1 (8192 sectors from 4096), drive 2 (8192 sectors from 4096)";
    for (const char* text : {"1=3", "1=2,2=1", "1=-", "1=99"}) {
        DriveMap map;
        ASSERT_EQ(readDriveMap(text, &map), "");
        const Plan plan = makePlan(saved, now, map);
        EXPECT_EQ(plan.obstacles, (Texts{std::string("--drives ") + text + where}));
        for (const std::string& note : plan.notes)
            EXPECT_EQ(note.find("is not in the backup"), std::string::npos) << note;
    }
    now.drives[1].info.serial[0] = 'X'; // replaced
    EXPECT_EQ(makePlan(saved, now, {{1, 3}}).obstacles, (Texts{"--drives 1=3" + where}));
}

// A map that puts drive 2 in the place of drive 1 and nothing in its own.
TEST(Plan, ADriveCannotHoldTwoMembers) {
    const Controller saved = controllerWithMirror(), now = controllerWith(3, 40960);
    const Plan plan = makePlan(saved, now, {{1, 2}});
    EXPECT_EQ(plan.obstacles, (Texts{"drive 2 would hold two members of logical drive 0 Mirror"}));
    for (const std::string& text : textsOf(plan))
        EXPECT_EQ(text.find("create"), std::string::npos) << text;
    EXPECT_EQ(makePlan(saved, now, {{1, 2}, {2, 1}}).obstacles, Texts());
    EXPECT_EQ(makePlan(saved, now, {{1, 3}}).obstacles, Texts());
}

// Its drives are in other places since.
TEST(Plan, FindsAMovedArrayByTheMap) {
    const Controller saved = controllerWithMirror();
    Controller now = saved;
    std::swap(now.drives[0].info.serial, now.drives[1].info.serial);
    std::swap(now.logicalDrives[0].info.memberIds[0], now.logicalDrives[0].info.memberIds[1]);
    const Plan plan = makePlan(saved, now, {{1, 2}, {2, 1}});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan), Texts());
}

// A mirror in place: its second drive and the extents on it are at another number now.
static Controller controllerWithMovedMirror(std::uint32_t number) {
    Controller controller = controllerWithMirror();
    controller.drives[1].number = number;
    controller.drives[1].info.driveId = static_cast<std::uint16_t>(number - 1);
    controller.logicalDrives[0].info.memberIds[1] = static_cast<std::uint8_t>(number - 1);
    return controller;
}

TEST(Plan, RecognizesADriveInAnotherSlot) {
    Controller now = controllerWith(3, 40960);
    now.drives.erase(now.drives.begin() + 1);
    now.drives[1].info.serial[0] = 'C';
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {}).obstacles,
              (Texts{"drive 2 of the backup is now drive 3; use --drives 2=3"}));
    const Plan plan = makePlan(controllerWithMirror(), now, {{2, 3}});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes, Texts());
}

TEST(Plan, RecognizesAnArrayInOtherSlots) {
    const Controller now = controllerWithMovedMirror(7);
    const Plan plan = makePlan(controllerWithMirror(), now, {});
    EXPECT_EQ(plan.obstacles, (Texts{"drive 2 of the backup is now drive 7; use --drives 2=7"}));
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, Texts());
    const Plan mapped = makePlan(controllerWithMirror(), now, {{2, 7}});
    EXPECT_EQ(mapped.obstacles, Texts());
    EXPECT_EQ(textsOf(mapped), Texts());
}

// Each reason has the whole map, which can be used as it is.
TEST(Plan, ProposesAMapOfAllMovedDrives) {
    Controller now = controllerWith(2, 40960);
    std::swap(now.drives[0].info.serial, now.drives[1].info.serial);
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {}).obstacles,
              (Texts{"drive 1 of the backup is now drive 2; use --drives 1=2,2=1",
                     "drive 2 of the backup is now drive 1; use --drives 1=2,2=1"}));
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 2}}).obstacles,
              (Texts{"drive 2 of the backup is now drive 1; use --drives 1=2,2=1"}));
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 2}, {2, 1}}).obstacles, Texts());
}

// The members of a mirror that is in place are listed in another order: no map is better.
TEST(Plan, AcceptsExchangedMembersOnlyAsReplacements) {
    Controller now = controllerWithMirror();
    std::swap(now.drives[0].info.serial, now.drives[1].info.serial);
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {}).obstacles,
              (Texts{"drive 1 has another serial: C instead of B; that is drive 2 of the backup",
                     "drive 2 has another serial: B instead of C; that is drive 1 of the backup"}));
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 1}, {2, 2}}).obstacles, Texts());
}

TEST(Plan, KeepsADriveInThePlaceThatTheMapGivesIt) {
    Controller now = controllerWith(3, 40960);
    now.drives.erase(now.drives.begin());
    now.drives[0].info.serial[0] = 'X';
    now.drives[1].info.serial[0] = 'B';
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{2, 3}}).obstacles,
              (Texts{"drive 1 of the backup is now drive 3, which --drives puts in the place of drive 2"}));
}

// Another drive of the backup is no replacement.
TEST(Plan, ProposesNoDriveOfTheBackupAsReplacement) {
    Controller now = controllerWith(1, 40960);
    now.drives[0].info.serial[0] = 'C';
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {}).obstacles,
              (Texts{"drive 2 of the backup is now drive 1; use --drives 2=1",
                     "drive 1 has another serial: C instead of B; that is drive 2 of the backup"}));
}

// Serials that are empty, or that several drives have, identify none.
TEST(Plan, RecognizesNoDriveWithoutASerialOfItsOwn) {
    for (const char serial : {'\0', 'C'}) {
        Controller saved = controllerWithMirror(), now = controllerWith(4, 40960);
        saved.drives[1].info.serial[0] = now.drives[2].info.serial[0] = now.drives[3].info.serial[0] = serial;
        now.drives.erase(now.drives.begin() + 1);
        EXPECT_EQ(
            makePlan(saved, now, {}).obstacles,
            (Texts{std::string("drive 2 is missing; drive 2 had the serial ") + (serial == 'C' ? "C" : "")}));
    }
}

// Two equal mirrors whose drives were exchanged: each is in place, on the drives of the other one.
TEST(Plan, RecognizesExchangedArrays) {
    Controller saved = controllerWithMirror();
    saved.drives.push_back(saved.drives[0]);
    saved.drives.push_back(saved.drives[1]);
    for (const std::uint32_t index : {2u, 3u}) {
        saved.drives[index].number = index + 1;
        saved.drives[index].info.driveId = static_cast<std::uint16_t>(index);
        saved.drives[index].info.serial[0] = static_cast<char>('B' + index);
        saved.drives[index].info.extent[1].arrayId = 6;
    }
    LogicalDrive second = saved.logicalDrives[0];
    second.info.logDrvId = 1;
    second.info.arrayId = 6;
    second.info.memberIds[0] = 2;
    second.info.memberIds[1] = 3;
    saved.logicalDrives.push_back(second);
    Controller now = saved;
    for (const std::size_t index : {0u, 1u}) {
        std::swap(now.drives[index].info.serial, now.drives[index + 2].info.serial);
        std::swap(now.drives[index].info.extent[1].arrayId, now.drives[index + 2].info.extent[1].arrayId);
    }
    std::swap(now.logicalDrives[0].info.memberIds, now.logicalDrives[1].info.memberIds);
    const std::string map = "; use --drives 1=3,2=4,3=1,4=2";
    EXPECT_EQ(
        makePlan(saved, now, {}).obstacles,
        (Texts{"drive 1 of the backup is now drive 3" + map, "drive 2 of the backup is now drive 4" + map,
               "drive 3 of the backup is now drive 1" + map, "drive 4 of the backup is now drive 2" + map}));
    const Plan plan = makePlan(saved, now, {{1, 3}, {2, 4}, {3, 1}, {4, 2}});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan), Texts());
}

// Nothing else needs the drive: the plan is not prevented.
TEST(Plan, NotesAMovedDrive) {
    const Controller saved = controllerWith(2, 40960);
    Controller now = saved;
    now.drives[1].number = 5;
    now.drives[1].info.driveId = 4;
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes, (Texts{"drive 2 of the backup is now drive 5; use --drives 2=5"}));
}

TEST(Plan, KnowsTheDrivesOfTheBackup) {
    Controller saved = controllerWithHalfAMirror();
    EXPECT_EQ(unknownDrive(saved, {{1, 5}, {2, std::nullopt}}), std::nullopt); // drive 2 was lost
    EXPECT_EQ(unknownDrive(saved, {{1, 5}, {20, 1}}), 20u);
    saved.faults = {{"q5_getPhyDrvInfo", FaultKind::refused, 1}};
    EXPECT_EQ(unknownDrive(saved, {{20, 1}}), std::nullopt);
}

// The same name, level and size on other drives.
TEST(Plan, NamesTheMembersOfADifferentArray) {
    Controller now = controllerWith(3, 40960);
    addExtent(&now.drives[2], kExtentAssigned, 5, 40960, 8192);
    const Controller mirror = controllerWithMirror();
    now.drives[0] = mirror.drives[0];
    now.logicalDrives = mirror.logicalDrives;
    now.logicalDrives[0].info.memberIds[1] = 2;
    const Plan plan = makePlan(mirror, now, {});
    EXPECT_EQ(
        plan.obstacles,
        (Texts{"a different array is in place: logical drive 0 Mirror, RAID1 of 8192 sectors on drive 1 "
               "(8192 sectors from 4096), drive 3 (8192 sectors from 40960); the backup has logical "
               "drive 0 Mirror, RAID1 of 8192 sectors on drive 1 (8192 sectors from 4096), drive 2 "
               "(8192 sectors from 4096)"}));
    for (const std::string& note : plan.notes) // it may be the saved one, rebuilt onto another drive
        EXPECT_EQ(note.find("is not in the backup"), std::string::npos) << note;
    now.logicalDrives.push_back(now.logicalDrives[0]);
    now.logicalDrives[1].info.logDrvId = 7;
    EXPECT_EQ(makePlan(mirror, now, {}).notes,
              (Texts{"logical drive 7 Mirror is not in the backup; it stays as it is"}));
}

TEST(Plan, NamesWhatElseIsDifferentInAnArray) {
    const Controller saved = controllerWithMirror();
    Controller now = saved;
    now.logicalDrives[0].info.stripeBlocks = 128;
    EXPECT_EQ(
        makePlan(saved, now, {}).obstacles,
        (Texts{"a different array is in place: logical drive 0 Mirror, RAID1 of 8192 sectors on drive 1 "
               "(8192 sectors from 4096), drive 2 (8192 sectors from 4096); the backup has another "
               "stripe, sector size or parity"}));
}

// Drive 3 was to take the place of drive 2.
TEST(Plan, NotesTheTargetOfARebuild) {
    Controller saved = controllerWithMirror();
    Drive third = controllerWith(3, 40960).drives[2];
    third.info.extentCount = 0;
    addExtent(&third, kExtentAssigned, 5, 0, 8192);
    addExtent(&third, 0, kNoArray, 8192, 32768);
    saved.drives.push_back(third);
    const Plan plan = makePlan(saved, controllerWith(3, 40960), {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan).back(), "split extent 0 of drive 3 at 4 MB");
    EXPECT_EQ(plan.notes,
              (Texts{"logical drive 0 Mirror was being rebuilt onto drive 3; that space stays free"}));
    EXPECT_EQ(makePlan(saved, saved, {}).notes, Texts());
}

// Created again, it would use all of its extents. Without rounding, it uses their whole megabytes.
TEST(Plan, ARoundedJbodPreventsThePlan) {
    Controller saved = controllerWith(1, 3000000);
    saved.drives[0].info.extentCount = 0;
    addExtent(&saved.drives[0], kExtentAssigned, 5, 0, 1953792);
    addExtent(&saved.drives[0], 0, kNoArray, 1953792, 1046208);
    saved.logicalDrives = controllerWithMirror().logicalDrives;
    LogDrvInfo& jbod = saved.logicalDrives[0].info;
    jbod.raidLevel = kJbod;
    jbod.diskCount = 1;
    jbod.sectorCount = 1953125;
    Controller now = controllerWith(1, 3000000);
    Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(
        plan.obstacles,
        (Texts{"logical drive 0 Mirror, JBOD of 1953125 sectors on drive 1 (1953792 sectors from 0) was "
               "rounded to whole GB: create it with logdrv -a add and rounding=gbb, then restore the "
               "rest"}));
    for (const std::string& text : textsOf(plan))
        EXPECT_EQ(text.find("create"), std::string::npos) << text;
    EXPECT_EQ(makePlan(saved, saved, {}).obstacles, Texts());
    jbod.sectorCount = 1953792;
    EXPECT_EQ(makePlan(saved, now, {}).obstacles, Texts());
    jbod.sectorCount = 1951744;
    EXPECT_EQ(makePlan(saved, now, {}).obstacles, Texts());
}

TEST(Plan, RefusesANameThatCannotBeTyped) {
    Controller saved = controllerWithMirror();
    std::strcpy(saved.logicalDrives[0].info.name, "A,raid=raid0");
    const Plan plan = makePlan(saved, controllerWith(2, 40960), {});
    ASSERT_EQ(plan.obstacles.size(), 1u);
    EXPECT_NE(plan.obstacles[0].find(" cannot be created by a command: its name"), std::string::npos);
}

TEST(Plan, NotesWhatNoCommandSets) {
    Controller saved = controllerWith(1, 40960), now = saved;
    saved.settings->syncRate = 0;
    now.settings->syncRate = 5;
    saved.drives[0].settings->smartCheck = 1;
    saved.drives[0].settings->ncqEnabled = 1;
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, (Texts{"the sync rate was 0, which cannot be set", "drive 1 does not support NCQ",
                                 "the SMART check of drive 1 is set by no command; it was enabled"}));
}

// Drive 2 takes the place of drive 1: it cannot have the settings of both.
TEST(Plan, GivesADriveTheSettingsOfOneOnly) {
    Controller saved = controllerWith(2, 40960);
    saved.drives[0].settings->writeCache = 1;
    const Plan plan = makePlan(saved, controllerWith(2, 40960), {{1, 2}});
    EXPECT_EQ(textsOf(plan), (Texts{"set drive 2: write cache enable"}));
    EXPECT_EQ(plan.notes,
              (Texts{"drive 2 takes the place of another one; its own settings are not restored"}));
}

// The option belongs to the model: two drives of other models were replaced by two of one.
TEST(Plan, GivesAModelTheSpeedOfItsFirstDrive) {
    Controller saved = controllerWith(2, 40960), now = saved;
    saved.drives[1].info.model[0] = 'X';
    saved.drives[0].speed3Gb = 0;
    saved.drives[1].speed3Gb = now.drives[0].speed3Gb = now.drives[1].speed3Gb = 1;
    EXPECT_EQ(textsOf(makePlan(saved, now, {})), (Texts{"set the 3 Gb/s option of drives like drive 1: 0"}));
    now.drives[0].speed3Gb = now.drives[1].speed3Gb = 0;
    EXPECT_EQ(textsOf(makePlan(saved, now, {})), Texts());
}

TEST(Plan, NotesADriveThatIsLeftOut) {
    const Controller saved = controllerWith(2, 40960);
    EXPECT_EQ(makePlan(saved, saved, {{2, std::nullopt}}).notes, (Texts{"drive 2 is left out"}));
}

TEST(Plan, SparesComeLast) {
    Controller saved = controllerWithMirror();
    Drive third = controllerWith(3, 40960).drives[2];
    third.info.extentCount = 0;
    addExtent(&third, kExtentDedicatedSpare, 5, 0, 8192);
    addExtent(&third, kExtentGlobalSpare, kNoArray, 8192, 32768);
    saved.drives.push_back(third);
    const Plan plan = makePlan(saved, controllerWith(3, 40960), {});
    EXPECT_EQ(plan.obstacles, Texts());
    const Texts texts = textsOf(plan);
    ASSERT_EQ(texts.size(), 7u);
    EXPECT_EQ(texts[4], "split extent 0 of drive 3 at 4 MB");
    EXPECT_EQ(texts[5], "make extent 0 of drive 3 a spare of logical drive 0");
    EXPECT_EQ(texts[6], "make extent 1 of drive 3 a global spare");
    EXPECT_EQ(plan.steps[5].words,
              (Texts{"extent", "-a", "spare", "-p", "3", "-i", "0", "-e", "0", "-l", "0"}));
}
