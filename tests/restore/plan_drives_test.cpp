// The drives of a plan: in their slots, moved, replaced, or mapped.
#include "tests/restore/plan_fixture.h"

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
    const Controller saved = controllerWithMirror();
    Controller now = controllerWith(3, 40960);
    now.drives[0].info.serial[0] = 'X';
    now.drives[1].info.serial[0] = 'Y';
    const Plan plan = makePlan(saved, now, {{1, 2}});
    EXPECT_EQ(plan.obstacles, (Texts{"drive 2 would hold two members of logical drive 0 Mirror"}));
    for (const std::string& text : textsOf(plan))
        EXPECT_EQ(text.find("create"), std::string::npos) << text;
    EXPECT_EQ(makePlan(saved, now, {{1, 2}, {2, 1}}).obstacles, Texts());
    EXPECT_EQ(makePlan(saved, now, {{1, 3}, {2, 2}}).obstacles, Texts());
}

// The serials of the new controller's drives are exchanged. Both entries are wrong, or one of them.
TEST(Plan, RefusesAMapThatContradictsTheSerials) {
    Controller now = controllerWith(2, 40960);
    std::swap(now.drives[0].info.serial, now.drives[1].info.serial);
    const Plan plan = makePlan(controllerWithMirror(), now, {{1, 1}, {2, 2}});
    EXPECT_EQ(plan.obstacles,
              (Texts{"drive 1 of the backup is now drive 2, which --drives puts in the place of drive 2",
                     "drive 2 of the backup is now drive 1, which --drives puts in the place of drive 1"}));
    for (const std::string& text : textsOf(plan))
        EXPECT_EQ(text.find("create"), std::string::npos) << text;
    EXPECT_EQ(plan.notes, Texts());
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 1}}).obstacles,
              (Texts{"drive 1 of the backup is now drive 2; use --drives 1=2,2=1",
                     "drive 2 of the backup is now drive 1, which --drives puts in the place of drive 1"}));
}

// The drives are where they were.
TEST(Plan, RefusesAMapThatExchangesDrivesOfTheBackup) {
    const Controller now = controllerWith(3, 40960);
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 2}, {2, 1}}).obstacles,
              (Texts{"drive 2 of the backup is still drive 2, which --drives puts in the place of drive 1",
                     "drive 1 of the backup is still drive 1, which --drives puts in the place of drive 2"}));
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 2}}).obstacles,
              (Texts{"drive 2 of the backup is still drive 2, which --drives puts in the place of drive 1"}));
    EXPECT_EQ(makePlan(controllerWith(3, 40960), now, {{1, 2}, {2, 3}, {3, 1}}).obstacles,
              (Texts{"drive 2 of the backup is still drive 2, which --drives puts in the place of drive 1",
                     "drive 3 of the backup is still drive 3, which --drives puts in the place of drive 2",
                     "drive 1 of the backup is still drive 1, which --drives puts in the place of drive 3"}));
    EXPECT_EQ(makePlan(controllerWithMirror(), now, {{1, 3}}).obstacles, Texts()); // drive 3 is new
}

// Drive 1 is in slot 3, and the map puts a new drive in its place.
TEST(Plan, RefusesAReplacementForADriveThatIsHere) {
    Controller saved = controllerWithMirror(), now = controllerWith(3, 40960);
    saved.drives.push_back(controllerWith(3, 40960).drives[2]);
    now.drives[0].info.serial[0] = 'X';
    now.drives[2].info.serial[0] = 'B';
    const Texts moved = {"drive 1 of the backup is now drive 3; use --drives 1=3"};
    EXPECT_EQ(makePlan(saved, now, {{1, 1}}).obstacles, moved);
    EXPECT_EQ(makePlan(saved, now, {{1, 3}}).obstacles, Texts());
}

// A spare took the place of drive 2: by now, or only in the map. Drive 3 must not stay a spare as well.
TEST(Plan, AcceptsASpareInThePlaceOfAMember) {
    Controller saved = controllerWithMirror();
    Drive spare = controllerWith(3, 40960).drives[2];
    spare.info.extentCount = 0;
    addExtent(&spare, kExtentGlobalSpare, kNoArray, 0, 40960);
    saved.drives.push_back(spare);
    Controller now = saved;
    now.drives[2].info.extentCount = 0;
    addExtent(&now.drives[2], 0, kNoArray, 0, 4096);
    addExtent(&now.drives[2], kExtentAssigned, 5, 4096, 8192);
    addExtent(&now.drives[2], 0, kNoArray, 12288, 28672);
    now.logicalDrives[0].info.memberIds[1] = 2;
    now.drives[1] = controllerWith(2, 40960).drives[1];
    const DriveMap exchanged = {{2, 3}, {3, 2}}, leftOut = {{2, 3}, {3, std::nullopt}};
    for (const char serial : {'X', 'C'}) { // a new drive 2, or the old one
        now.drives[1].info.serial[0] = serial;
        EXPECT_EQ(makePlan(saved, now, exchanged).obstacles, Texts());
        EXPECT_EQ(makePlan(saved, now, leftOut).obstacles, Texts());
    }
    Controller erased = controllerWith(3, 40960);
    erased.drives[1].info.serial[0] = 'X';
    EXPECT_EQ(makePlan(saved, erased, leftOut).obstacles, Texts());
    EXPECT_EQ(makePlan(saved, erased, exchanged).obstacles,
              (Texts{"drive 3 of the backup is still drive 3, which --drives puts in the place of drive 2"}));
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
    const Plan plan = makePlan(controllerWithMirror(), now, {{1, 1}, {2, 2}});
    EXPECT_EQ(plan.obstacles, Texts());
    EXPECT_EQ(plan.notes,
              (Texts{"drive 1 of the backup is now drive 2, which --drives puts in the place of drive 2",
                     "drive 2 of the backup is now drive 1, which --drives puts in the place of drive 1"}));
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

TEST(Plan, NotesADriveThatIsLeftOut) {
    const Controller saved = controllerWith(2, 40960);
    EXPECT_EQ(makePlan(saved, saved, {{2, std::nullopt}}).notes, (Texts{"drive 2 is left out"}));
}
