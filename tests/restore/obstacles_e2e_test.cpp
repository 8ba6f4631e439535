// What prevents a plan of cli-restore, and which drives it accepts.
#include "tests/restore/restore_fixture.h"

TEST_F(Restore, ADifferentArrayPreventsThePlan) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(cli({"logdrv", "-a", "add", "-i", "0", "-p", "1 3", "-z", "name=Other,raid=raid0,capacity=200"})
                  .status,
              0);
    expectPrevented(
        restore({"--apply"}),
        "a different array is in place: logical drive 0 Other, RAID0 of 409600 sectors on drive 1 "
        "(204800 sectors from 0), drive 3 (204800 sectors from 0); the backup has logical drive 0 "
        "Data, RAID1 of 1024000 sectors on drive 1 (1024000 sectors from 0), drive 2 (1024000 "
        "sectors from 0)\n");
    EXPECT_EQ(files().size(), 2u); // no log either
}

// As large, and on the same sectors of drives with the same numbers.
TEST_F(Restore, AnEqualArrayOfOtherDrivesPreventsThePlan) {
    controller()["drives"][0]["serial"] = "S8888";
    controller()["drives"][1]["serial"] = "S9999";
    controller()["logicalDrives"][0]["name"] = "Payroll";
    session.useWorld(world.dump());
    cli({"ctrl"});
    const std::string before = session.worldText();
    const ProcessOutcome outcome = restore({"--apply"});
    for (const char* reason : {"drive 1 has another serial: S8888 instead of S0001; if it is the "
                               "replacement, add --drives 1=1\n",
                               "drive 2 has another serial: S9999 instead of S0002; if it is the "
                               "replacement, add --drives 2=2\n"})
        expectPrevented(outcome, reason);
    EXPECT_EQ(outcome.out.find("Payroll"), std::string::npos) << outcome;
    EXPECT_EQ(session.worldText(), before);
}

TEST_F(Restore, ABackupWithoutItsLogicalDrivesPreventsThePlan) {
    ASSERT_EQ(q5sim({"refuse", "q5_getLogDrvInfo"}).status, 0);
    EXPECT_EQ(backup().status, 1);
    ASSERT_EQ(stems().size(), 2u);
    ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
    for (const Words& words : {Words{}, Words{"--apply"}}) {
        const ProcessOutcome outcome = restore(words);
        EXPECT_EQ(outcome.status, 4) << outcome;
        EXPECT_EQ(outcome.out.rfind("prevented: the backup does not contain all logical drives, because they "
                                    "could not be read: q5_getLogDrvInfo failed with result ",
                                    0),
                  0u)
            << outcome;
    }
}

// Nothing is created over logical drives that cannot be listed.
TEST_F(Restore, ListsThatCannotBeReadNowPreventThePlan) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(q5sim({"refuse", "q5_getLogDrvInfo"}).status, 0);
    const ProcessOutcome outcome = restore({"--apply"});
    EXPECT_EQ(outcome.status, 4) << outcome;
    EXPECT_EQ(outcome.out.rfind("prevented: not all logical drives can be read: q5_getLogDrvInfo failed "
                                "with result ",
                                0),
              0u)
        << outcome;
}

// A RAID5 that lost two of its three drives.
TEST_F(Restore, AnOfflineArrayPreventsThePlan) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(
        cli({"logdrv", "-a", "add", "-i", "0", "-p", "1 2 3", "-z", "name=Five,raid=raid5,capacity=200"})
            .status,
        0);
    ASSERT_EQ(q5sim({"advance", "--until-idle"}).status, 0);
    ASSERT_LE(backup().status, 1);
    for (const char* drive : {"2", "3"})
        ASSERT_EQ(q5sim({"pull-drive", "0", drive}).status, 0);
    for (const Words& words : {Words{}, Words{"--apply"}}) {
        const ProcessOutcome outcome = restore(words);
        expectPrevented(
            outcome,
            "logical drive 0 Five is offline without drive 2, drive 3: a rebuild cannot complete it\n");
        EXPECT_EQ(outcome.out.find("a rebuild makes it complete"), std::string::npos) << outcome;
    }
}

TEST_F(Restore, AMissingDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"].erase(1);
    expectPrevented(restoreIn(world), "drive 2 is missing; drive 2 had the serial S0002\n");
}

TEST_F(Restore, AnotherSerialPreventsThePlanUnlessMapped) {
    blank(&controller());
    controller()["drives"][1]["serial"] = "S9999";
    expectPrevented(
        restoreIn(world, {"--apply"}),
        "drive 2 has another serial: S9999 instead of S0002; if it is the replacement, add --drives "
        "2=2\n");
    EXPECT_EQ(restore({"--apply", "--drives", "2=2"}).status, 0);
    EXPECT_EQ(restore({"--drives", "2=2"}).out, "There is nothing to do.\n");
}

// Drive 2 is in another slot, alone or with the logical drive on it. The proposed map is all that is needed.
TEST_F(Restore, ProposesTheSlotOfAMovedDrive) {
    Json blanked = world;
    blank(&blanked["controllers"][0]);
    for (Json moved : {blanked, world}) {
        Json& now = moved["controllers"][0];
        now["drives"][1]["id"] = 6;
        for (Json& array : now["logicalDrives"])
            array["members"] = {0, 6};
        ProcessOutcome outcome = restoreIn(moved);
        expectPrevented(outcome, "drive 2 of the backup is now drive 7; use --drives 2=7\n");
        EXPECT_EQ(outcome.out.find("different array"), std::string::npos) << outcome;
        EXPECT_EQ(restore({"--apply"}).status, 4);
        EXPECT_LE(restore({"--drives", "2=7"}).status, 1);
        outcome = restore({"--apply", "--drives", "2=7"});
        EXPECT_EQ(outcome.status, 0) << outcome;
        EXPECT_EQ(restore({"--drives", "2=7"}).out, "There is nothing to do.\n");
    }
}

TEST_F(Restore, ReportsMovedDrivesBesideADifferentArray) {
    blank(&controller());
    controller()["drives"][1]["id"] = 6;
    session.useWorld(world.dump());
    ASSERT_EQ(cli({"logdrv", "-a", "add", "-i", "0", "-p", "1 3", "-z", "name=Other,raid=raid0,capacity=200"})
                  .status,
              0);
    const ProcessOutcome outcome = restore({});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_EQ(outcome.out.find("prevented: drive 2 of the backup is now drive 7; use --drives 2=7\n"
                               "prevented: a different array is in place: "),
              outcome.out.find("prevented: "))
        << outcome;
}

// The logical drive would have its members exchanged.
TEST_F(Restore, AMapAgainstTheSerialsPreventsThePlan) {
    blank(&controller());
    controller()["drives"][0]["serial"].swap(controller()["drives"][1]["serial"]);
    expectPrevented(
        restoreIn(world, {"--apply", "--drives", "1=1,2=2"}),
        "drive 1 of the backup is now drive 2, which --drives puts in the place of drive 2\n"
        "prevented: drive 2 of the backup is now drive 1, which --drives puts in the place of drive 1\n");
    EXPECT_EQ(restore({"--apply", "--drives", "1=2,2=1"}).status, 0);
}

TEST_F(Restore, UsesAnotherDrive) {
    blank(&controller());
    for (const std::size_t index : {0u, 2u})
        replaceSerial(index);
    const ProcessOutcome outcome = restoreIn(world, {"--apply", "--drives", "1=3,3=1"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_NE(outcome.out.find("on drive 3 extent 0 (1024000 sectors from 0), drive 2 extent 0"),
              std::string::npos)
        << outcome;
    EXPECT_NE(outcome.out.find("make extent 0 of drive 1 a global spare\n"), std::string::npos) << outcome;
}

TEST_F(Restore, RefusesToMapADriveThatWasNotSaved) {
    EXPECT_EQ(
        restore({"--drives", "20=1"}),
        (ProcessOutcome{2, "", "cli-restore: the backup has no drive 20\nTry \"cli-restore --help\".\n"}));
}

TEST_F(Restore, LeavesADriveOut) {
    blank(&controller());
    controller()["drives"].erase(2);
    EXPECT_EQ(restoreIn(world).status, 4); // its spare
    EXPECT_EQ(restore({"--drives", "3=-"}).status, 1);
    expectPrevented(restore({"--drives", "1=-"}), "drive 1 is left out, but logical drive 0 Data needs it\n");
}

TEST_F(Restore, ASmallDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"][1]["sectors"] = 1000000;
    controller()["drives"][1]["extents"][0]["size"] = 1000000;
    expectPrevented(restoreIn(world), "drive 2 is too small: 1024000 sectors are needed, it has 1000000; "
                                      "logical drive 0 Data was there\n");
}

TEST_F(Restore, AUsedDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"][1]["extents"][0]["use"] = "globalSpare";
    expectPrevented(restoreIn(world),
                    "drive 2 is in use by a global spare; logical drive 0 Data was there\n");
}

TEST_F(Restore, AFailedDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"][1]["failed"] = true;
    expectPrevented(restoreIn(world), "drive 2 gives no access\n");
}

TEST_F(Restore, ALostMemberInTheBackupPreventsThePlan) {
    ASSERT_EQ(q5sim({"pull-drive", "0", "2"}).status, 0);
    backup();
    blank(&controller());
    expectPrevented(restoreIn(world),
                    "logical drive 0 Data had lost drive 2 when it was saved: where that member was is not "
                    "known; use an earlier backup, or leave the drive out with --drives\n");
    EXPECT_EQ(restore({"--apply", "--drives", "2=-"}).status, 0);
}

TEST_F(Restore, HasNothingToDoWhenTheMemberIsStillLost) {
    ASSERT_EQ(q5sim({"pull-drive", "0", "2"}).status, 0);
    backup();
    EXPECT_EQ(restore({}), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
}

// Its members that were lost cannot be read: its state shows it.
TEST_F(Restore, NotesACriticalArrayWithoutItsLostMembers) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    ASSERT_EQ(q5sim({"refuse", "q5_getAryLostDisk"}).status, 0);
    EXPECT_EQ(restore({}),
              (ProcessOutcome{0,
                              "note: logical drive 0 Data is critical; it was online when it was saved\n"
                              "There is nothing to do, but logical drive 0 Data is critical.\n",
                              ""}));
}

// A migration that was started since the backup, and the backup of a running one. The level and the size are
// still those of before.
TEST_F(Restore, NotesARunningMigration) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    const std::string saved = newest();
    ASSERT_EQ(cli({"migrate", "-a", "start", "-l", "0", "-i", "0", "-p", "3", "-e", "0", "-s", "raid=raid5"})
                  .status,
              0);
    ASSERT_NE(cli({"migrate"}).out.find("Migration is in progress"), std::string::npos);
    const std::string note = "note: logical drive 0 Data is being migrated; it will be different\n";
    const ProcessOutcome outcome = restore({});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out, note + "There is nothing to do.\n");
    EXPECT_EQ(restore({"--apply"}).out, note + "Controller 0 is as it was saved.\n");
    ASSERT_LE(backup().status, 1);
    EXPECT_NE(newest(), saved);
    EXPECT_EQ(restore({}).out, note + "There is nothing to do.\n");
}
