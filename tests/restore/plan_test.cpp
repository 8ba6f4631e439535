// Plans as a whole: nothing to do, unreadable parts, and the order of the steps.
#include "tests/restore/plan_fixture.h"

TEST(Plan, IsEmptyForEqualControllers) {
    const Controller controller = controllerWithMirror();
    const Plan plan = makePlan(controller, controller, {});
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes, Texts());
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

// The adapter reported no error, but lists less than the controller counts.
TEST(Plan, ShortListsPreventThePlan) {
    Controller whole = controllerWithMirror();
    whole.info = ControllerInfo{};
    whole.info->diskCount = 2;
    whole.info->arrayCount = 1;
    EXPECT_EQ(makePlan(whole, whole, {}).obstacles, Texts());
    Controller broken = whole;
    broken.logicalDrives.clear();
    broken.drives.pop_back();
    const Plan plan = makePlan(broken, whole, {});
    EXPECT_EQ(plan.obstacles, (Texts{"the backup does not contain all drives: the controller counted 2, but "
                                     "listed 1",
                                     "the backup does not contain all logical drives: the controller "
                                     "counted 1, but listed 0"}));
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, Texts());
    EXPECT_EQ(makePlan(whole, broken, {}).obstacles,
              (Texts{"not all drives can be read: the controller counts 2, but lists 1",
                     "not all logical drives can be read: the controller counts 1, but lists 0"}));
    EXPECT_EQ(unknownDrive(broken, {{2, 1}}), std::nullopt);
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

// Only the exported file lacks something: see cli-backup.
TEST(Plan, UsesABackupWithADriveThatWasRefusedAlone) {
    Controller saved = controllerWithMirror();
    saved.drives[1].faults = {{"q5_getPhyDrvInfo", FaultKind::refused, 1}};
    const Plan plan = makePlan(saved, controllerWith(2, 40960), {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.steps.size(), 4u);
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

// A drive with a spare on its second extent.
static Drive driveWithSpare(std::uint32_t number) {
    Drive drive = controllerWith(number, 40960).drives.back();
    drive.info.extentCount = 0;
    addExtent(&drive, 0, kNoArray, 0, 8192);
    addExtent(&drive, kExtentGlobalSpare, kNoArray, 8192, 32768);
    return drive;
}

static const Texts kExtraSpare = {"the spare on extent 1 of drive 3 is not in the backup; it stays as it is"};

TEST(Plan, NotesAnExtraSpare) {
    const Controller saved = controllerWith(3, 40960);
    Controller now = saved;
    now.drives[2] = driveWithSpare(3);
    Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan), Texts());
    EXPECT_EQ(plan.notes, kExtraSpare);
    EXPECT_EQ(makePlan(now, now, {}).notes, Texts());
    now.drives[2].info.extent[1].assignment = kExtentDedicatedSpare;
    EXPECT_EQ(makePlan(saved, now, {}).notes, kExtraSpare);
    EXPECT_EQ(makePlan(controllerWith(2, 40960), now, {}).notes, kExtraSpare); // on a drive that was not here
}

// The same spare, on a drive in another slot, or on one that is left out.
TEST(Plan, KnowsASpareOfADriveThatIsNotInItsPlace) {
    Controller saved = controllerWith(2, 40960), now = saved;
    saved.drives.push_back(driveWithSpare(3));
    now.drives.push_back(driveWithSpare(3));
    EXPECT_EQ(makePlan(saved, now, {{3, std::nullopt}}).notes, (Texts{"drive 3 is left out"}));
    now.drives[2].number = 7;
    now.drives[2].info.driveId = 6;
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(plan.obstacles, (Texts{"drive 3 of the backup is now drive 7; use --drives 3=7"}));
    EXPECT_EQ(plan.notes, Texts());
    EXPECT_EQ(makePlan(saved, now, {{3, 7}}).notes, Texts());
}
