// The logical drives of a plan: found in place, created, or what prevents it.
#include "tests/restore/plan_fixture.h"

TEST(Plan, SplitsWhereAnExtentHasToBegin) {
    const Plan plan = makePlan(controllerWithMirror(), controllerWith(2, 40960), {});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(
        textsOf(plan),
        (Texts{"split extent 0 of drive 1 at 2 MB", "split extent 0 of drive 2 at 2 MB",
               "create logical drive 0 Mirror: RAID1 of 8192 sectors on drive 1 extent 1 "
               "(8192 sectors from 4096), drive 2 extent 1 (8192 sectors from 4096)",
               "set logical drive 0: "
               "writepolicy=writethru,lookahead=0,consolidation=disable (unless it is created with them)"}));
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

// Which member was lost is not known, or it reports none.
TEST(Plan, NotesAWorseStateWithoutALostMember) {
    const Controller saved = controllerWithMirror();
    Controller now = saved;
    now.logicalDrives[0].info.functionalStatus = kCritical;
    const Texts critical = {"logical drive 0 Mirror is critical; it was online when it was saved"};
    EXPECT_EQ(makePlan(saved, now, {}).notes, critical);
    now.logicalDrives[0].lostMask = 0;
    EXPECT_EQ(makePlan(saved, now, {}).notes, critical);
    EXPECT_EQ(makePlan(now, now, {}).notes, Texts());
    EXPECT_EQ(makePlan(now, saved, {}).notes, Texts());
    now.logicalDrives[0].info.functionalStatus = kDegraded;
    const Plan plan = makePlan(saved, now, {});
    EXPECT_EQ(plan.notes, (Texts{"logical drive 0 Mirror is degraded; it was online when it was saved"}));
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(textsOf(plan), Texts());
}

// It has lost another member: it had one to spare.
TEST(Plan, NotesThatADegradedArrayIsCritical) {
    Controller saved = controllerWithHalfAMirror();
    saved.logicalDrives[0].info.functionalStatus = kDegraded;
    EXPECT_EQ(makePlan(saved, controllerWithHalfAMirror(), {}).notes,
              (Texts{"logical drive 0 Mirror is critical; it was degraded when it was saved"}));
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
