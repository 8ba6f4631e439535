// cli-restore over simulated worlds: plans, obstacles, and what --apply leaves.
#include <sys/stat.h>

#include "tests/restore/restore_fixture.h"

TEST_F(Restore, HasNothingToDoWhenNothingChanged) {
    EXPECT_EQ(restore({}), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
    EXPECT_EQ(restore({"--apply"}), (ProcessOutcome{0, "Controller 0 is as it was saved.\n", ""}));
}

static const char kBlankPlan[] =
    "1. set controller 0: sync rate 102, init rate 104, media patrol rate 103, migrate rate 105, rebuild "
    "rate "
    "101, auto rebuild enable\n"
    "2. create logical drive 0 Data: RAID1 of 1024000 sectors on drive 1 extent 0 (1024000 sectors from 0), "
    "drive 2 extent 0 (1024000 sectors from 0)\n"
    "3. set logical drive 0: writepolicy=writeback,lookahead=4,consolidation=enable\n"
    "4. make extent 0 of drive 3 a global spare\n";

TEST_F(Restore, PlansAndShowsTheOutcomeOnACopy) {
    blank(&controller());
    const ProcessOutcome outcome = restoreIn(world);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out.rfind(kBlankPlan, 0), 0u) << outcome;
    EXPECT_NE(outcome.out.find("On a copy of these adapters:\n1. set controller 0: "), std::string::npos);
    EXPECT_NE(outcome.out.find("Controller 0 is as it was saved.\n"), std::string::npos) << outcome;
}

// The world, the event file and the log are not touched.
TEST_F(Restore, ChangesNothingWithoutApply) {
    blank(&controller());
    session.useWorld(world.dump(2));
    cli({"ctrl"});
    const std::string before = session.worldText(), events = readFile(session.eventFile());
    EXPECT_EQ(restore({}).status, 1);
    EXPECT_EQ(session.worldText(), before);
    EXPECT_EQ(readFile(session.eventFile()), events);
    EXPECT_EQ(files().size(), 2u);
}

TEST_F(Restore, AppliesThePlan) {
    const std::string before = status();
    blank(&controller());
    const ProcessOutcome outcome = restoreIn(world, {"--apply"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.rfind("1. set controller 0: ", 0), 0u);
    EXPECT_EQ(restore({}), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
    EXPECT_EQ(q5sim({"advance", "--until-idle"}).status, 0);
    const Json saved = Json::parse(before)["controllers"][0], now = Json::parse(status())["controllers"][0];
    EXPECT_EQ(now["settings"], saved["settings"]);
    EXPECT_EQ(now["logicalDrives"], saved["logicalDrives"]);
    EXPECT_EQ(now["drives"], saved["drives"]);
}

// The new logical drive has the settings of the old one already: three steps are left of four.
TEST_F(Restore, LogsEachStep) {
    blank(&controller());
    ASSERT_EQ(restoreIn(world, {"--apply"}).status, 0);
    const std::string log = content(newest() + ".restore-0.log");
    std::vector<std::string> words;
    for (std::size_t start = 0, end; (end = log.find('\n', start)) != std::string::npos; start = end + 1) {
        const std::string line = log.substr(start, end - start);
        words.push_back(line.substr(21, line.find(' ', 21) - 21));
    }
    EXPECT_EQ(words, (std::vector<std::string>{"begin", "step", "done", "step", "done", "step", "done",
                                               "finished"}));
}

TEST_F(Restore, RestoresSettingsAlone) {
    ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "0", "-s", "syncrate=9,smart=disable"}).status, 0);
    ASSERT_EQ(cli({"buzz", "-a", "disable", "-i", "0"}).status, 0);
    ASSERT_EQ(
        cli({"phydrv", "-a", "mod", "-p", "2", "-i", "0", "-s", "writecache=disable,ncq=disable,tcq=disable"})
            .status,
        0);
    ASSERT_EQ(cli({"logdrv", "-a", "mod", "-i", "0", "-l", "0", "-s", "name=Other,lookahead=1"}).status, 0);
    ASSERT_EQ(cli({"extent", "-a", "free", "-p", "3", "-e", "0", "-i", "0"}).status, 0);
    const std::string steps = "1. set controller 0: sync rate 102, SMART check enable\n"
                              "2. set the buzzer of controller 0: enable\n"
                              "3. set drive 2: write cache enable\n"
                              "4. set logical drive 0: lookahead=4,name=Data\n"
                              "5. make extent 0 of drive 3 a global spare\n";
    EXPECT_EQ(restore({}).out.rfind(steps, 0), 0u) << restore({});
    EXPECT_EQ(restore({"--apply"}).status, 0);
    EXPECT_EQ(restore({}).out, "There is nothing to do.\n");
}

TEST_F(Restore, ADifferentArrayPreventsThePlan) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(cli({"logdrv", "-a", "add", "-i", "0", "-p", "1 3", "-z", "name=Other,raid=raid0,capacity=200"})
                  .status,
              0);
    const ProcessOutcome outcome = restore({"--apply"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: a different array is in place: logical drive 0 Other, RAID0 of "
                               "409600 sectors on drive 1 (204800 sectors from 0), drive 3 (204800 sectors "
                               "from 0); the backup has logical drive 0 Data, RAID1 of 1024000 sectors on "
                               "drive 1 (1024000 sectors from 0), drive 2 (1024000 sectors from 0)\n"),
              std::string::npos)
        << outcome;
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
    EXPECT_EQ(outcome.status, 4);
    for (const char* line : {"prevented: drive 1 has another serial: S8888 instead of S0001; if it is the "
                             "replacement, add --drives 1=1\n",
                             "prevented: drive 2 has another serial: S9999 instead of S0002; if it is the "
                             "replacement, add --drives 2=2\n"})
        EXPECT_NE(outcome.out.find(line), std::string::npos) << outcome;
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
        EXPECT_EQ(outcome.status, 4) << outcome;
        EXPECT_NE(outcome.out.find("prevented: logical drive 0 Five is offline without drive 2, drive 3: a "
                                   "rebuild cannot complete it\n"),
                  std::string::npos)
            << outcome;
        EXPECT_EQ(outcome.out.find("a rebuild makes it complete"), std::string::npos) << outcome;
    }
}

TEST_F(Restore, AMissingDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"].erase(1);
    const ProcessOutcome outcome = restoreIn(world);
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: drive 2 is missing; drive 2 had the serial S0002\n"),
              std::string::npos)
        << outcome;
}

TEST_F(Restore, AnotherSerialPreventsThePlanUnlessMapped) {
    blank(&controller());
    controller()["drives"][1]["serial"] = "S9999";
    ProcessOutcome outcome = restoreIn(world, {"--apply"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: drive 2 has another serial: S9999 instead of S0002; if it is the "
                               "replacement, add --drives 2=2\n"),
              std::string::npos)
        << outcome;
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
        const std::string reason = "prevented: drive 2 of the backup is now drive 7; use --drives 2=7\n";
        ProcessOutcome outcome = restoreIn(moved);
        EXPECT_EQ(outcome.status, 4) << outcome;
        EXPECT_NE(outcome.out.find(reason), std::string::npos) << outcome;
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

TEST_F(Restore, UsesAnotherDrive) {
    blank(&controller());
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
    const ProcessOutcome outcome = restore({"--drives", "1=-"});
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: drive 1 is left out, but logical drive 0 Data needs it\n"),
              std::string::npos)
        << outcome;
}

TEST_F(Restore, ASmallDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"][1]["sectors"] = 1000000;
    controller()["drives"][1]["extents"][0]["size"] = 1000000;
    const ProcessOutcome outcome = restoreIn(world);
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: drive 2 is too small: 1024000 sectors are needed, it has 1000000; "
                               "logical drive 0 Data was there\n"),
              std::string::npos)
        << outcome;
}

TEST_F(Restore, AUsedDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"][1]["extents"][0]["use"] = "globalSpare";
    const ProcessOutcome outcome = restoreIn(world);
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: drive 2 is in use by a global spare; logical drive 0 Data was "
                               "there\n"),
              std::string::npos)
        << outcome;
}

TEST_F(Restore, AFailedDrivePreventsThePlan) {
    blank(&controller());
    controller()["drives"][1]["failed"] = true;
    const ProcessOutcome outcome = restoreIn(world);
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(outcome.out.find("prevented: drive 2 gives no access\n"), std::string::npos) << outcome;
}

TEST_F(Restore, ALostMemberInTheBackupPreventsThePlan) {
    ASSERT_EQ(q5sim({"pull-drive", "0", "2"}).status, 0);
    backup();
    blank(&controller());
    const ProcessOutcome outcome = restoreIn(world);
    EXPECT_EQ(outcome.status, 4);
    EXPECT_NE(
        outcome.out.find("prevented: logical drive 0 Data had lost drive 2 when it was saved: where that "
                         "member was is not known; use an earlier backup, or leave the drive out with "
                         "--drives\n"),
        std::string::npos)
        << outcome;
    EXPECT_EQ(restore({"--apply", "--drives", "2=-"}).status, 0);
}

TEST_F(Restore, HasNothingToDoWhenTheMemberIsStillLost) {
    ASSERT_EQ(q5sim({"pull-drive", "0", "2"}).status, 0);
    backup();
    EXPECT_EQ(restore({}), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
}

// A migration that was started since the backup, and the backup of a running one. The level and the size are
// still those of before.
TEST_F(Restore, NotesARunningMigration) {
    ASSERT_EQ(cli({"extent", "-a", "free", "-p", "3", "-e", "0", "-i", "0"}).status, 0);
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

// Of a later version, for example. Nothing is done with it, and cli-backup keeps it.
TEST_F(Restore, RefusesABackupOfAnotherFormat) {
    const std::string saved = newest();
    std::string json = content(saved + ".json");
    const std::size_t format = json.find("\"format\": 1");
    ASSERT_NE(format, std::string::npos);
    json.replace(format, 11, "\"format\": 2");
    writeFile(session.path(saved + ".json"), json);
    const std::string reason = saved + ".json: it is not of format 1\n";
    for (const Words& words : {Words{}, Words{"--apply"}})
        EXPECT_EQ(restore(words), (ProcessOutcome{3, "", "cli-restore: " + reason}));
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_NE(outcome.out.find("warning: " + reason), std::string::npos) << outcome;
    EXPECT_EQ(stems().size(), 2u);
    EXPECT_EQ(content(saved + ".json"), json);
}

// A refused creation, and one with another effect.
TEST_F(Restore, StopsAtTheFirstDifference) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(q5sim({"refuse", "q5_addHBAArray"}).status, 0);
    const ProcessOutcome outcome = restore({"--apply"});
    EXPECT_EQ(outcome.status, 5);
    EXPECT_EQ(outcome.err.rfind("cli-restore: stopped after \"create logical drive 0 Data", 0), 0u)
        << outcome;
    EXPECT_NE(outcome.out.find("Failed to create an array specified\n"), std::string::npos) << outcome;
    EXPECT_EQ(outcome.out.find("3. "), std::string::npos) << outcome;
}

// Each kind of step, refused by the adapter. The same command, given again, does it and the rest.
TEST_F(Restore, StopsAtEachKindOfStepAndContinues) {
    for (const Words& words : {Words{"ctrl", "-a", "mod", "-i", "0", "-s", "syncrate=9"},
                               Words{"buzz", "-a", "disable", "-i", "0"},
                               Words{"phydrv", "-a", "mod", "-p", "2", "-i", "0", "-s",
                                     "writecache=disable,ncq=disable,tcq=disable"},
                               Words{"phydrv", "-a", "set3G", "-p", "1", "-i", "0", "-e", "1"},
                               Words{"extent", "-a", "split", "-p", "1", "-e", "1", "-i", "0", "-o", "100"},
                               Words{"logdrv", "-a", "mod", "-i", "0", "-l", "0", "-s", "lookahead=1"}})
        ASSERT_EQ(cli(words).status, 0) << words[0];
    ASSERT_EQ(backup().status, 0);
    world = Json::parse(session.worldText());
    blank(&controller());
    const std::string blanked = world.dump(), log = newest() + ".restore-0.log";
    for (const char* operation :
         {"q5_setControllerSettings", "q5_turnOffBuzzer", "q5_setPhyDrvSettings", "q5_setDataTransferSpeed",
          "q5_addHBAArray", "q5_setLogDrvSettings", "q5_splitHBAExtent", "q5_spareHBAExtent"}) {
        SCOPED_TRACE(operation);
        session.useWorld(blanked);
        std::filesystem::remove(session.path(log));
        ASSERT_EQ(q5sim({"refuse", operation}).status, 0);
        const ProcessOutcome stopped = restore({"--apply"});
        EXPECT_EQ(stopped.status, 5) << stopped;
        EXPECT_EQ(stopped.err.rfind("cli-restore: stopped after \"", 0), 0u) << stopped;
        EXPECT_NE(content(log).find(" stopped still to do: "), std::string::npos) << content(log);
        ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
        const ProcessOutcome outcome = restore({"--apply"});
        EXPECT_EQ(outcome.status, 0) << outcome;
        EXPECT_EQ(outcome.out.rfind("Continues an unfinished restore", 0), 0u) << outcome;
        EXPECT_EQ(restore({}).out, "There is nothing to do.\n");
    }
}

TEST_F(Restore, ContinuesWhereItStopped) {
    blank(&controller());
    controller()["drives"][1]["serial"] = "S9999";
    session.useWorld(world.dump());
    ASSERT_EQ(q5sim({"refuse", "q5_spareHBAExtent"}).status, 0);
    ASSERT_EQ(restore({"--apply", "--drives", "2=2"}).status, 5);
    ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
    const std::string map = "Continues an unfinished restore with --drives 2=2: 2 of the steps were done.\n";
    const ProcessOutcome before = restore({});
    EXPECT_EQ(before.status, 1) << before;
    EXPECT_EQ(before.out.rfind(map + "1. make extent 0 of drive 3 a global spare\nOn a copy", 0), 0u)
        << before;
    EXPECT_EQ(restore({"--drives", "2=2"}).out, before.out);
    const ProcessOutcome outcome = restore({"--apply"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.rfind(map + "1. make extent 0 of drive 3 a global spare\n", 0), 0u) << outcome;
}

TEST_F(Restore, ContinuesWithTheSameCommand) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(q5sim({"refuse", "q5_spareHBAExtent"}).status, 0);
    ASSERT_EQ(restore({"--apply", "--drives", "1=3,3=1"}).status, 5);
    ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
    const ProcessOutcome outcome = restore({"--apply", "--drives", "1=3,3=1"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.rfind("Continues an unfinished restore with --drives 1=3,3=1: 2 of the steps were "
                                "done.\n",
                                0),
              0u)
        << outcome;
}

TEST_F(Restore, DoesNotMixUnfinishedRestores) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(q5sim({"refuse", "q5_spareHBAExtent"}).status, 0);
    ASSERT_EQ(restore({"--apply", "--log", "log"}).status, 5);
    EXPECT_EQ(
        restore({"--apply", "--log", "log", "--drives", "1=1"}),
        (ProcessOutcome{3, "", "cli-restore: log is the log of an unfinished restore with --drives \"\"\n"}));
    EXPECT_EQ(restore({"--log", "log", "--drives", "1=1"}).status, 3); // as with --apply
    std::string log = content("log");
    log.replace(log.find("backup=") + 7, 1, "x");
    writeFile(session.path("log"), log);
    EXPECT_EQ(restore({"--apply", "--log", "log"}),
              (ProcessOutcome{3, "",
                              "cli-restore: log is the log of a restore of another backup or controller\n"}));
}

// Finished ones as well: the log of a restore is next to its backup, or a mistake.
TEST_F(Restore, RefusesTheLogOfAnotherRestore) {
    blank(&controller());
    session.useWorld(world.dump());
    ASSERT_EQ(restore({"--apply", "--log", "log"}).status, 0);
    EXPECT_EQ(restore({"--apply", "--log", "log"}).status, 0);
    const std::string finished = content("log");
    changeRate(9);
    for (const char* key : {"backup=", "controller="}) {
        std::string other = finished;
        for (std::size_t at = 0; (at = other.find(key, at)) != std::string::npos; ++at)
            other[at + std::string(key).size()] = '7';
        writeFile(session.path("log"), other);
        const std::string before = session.worldText();
        const std::string problem =
            "cli-restore: log is the log of a restore of another backup or controller\n";
        EXPECT_EQ(restore({"--apply", "--log", "log"}), (ProcessOutcome{3, "", problem}));
        EXPECT_EQ(restore({"--log", "log"}), (ProcessOutcome{3, "", problem}));
        EXPECT_EQ(content("log"), other);
        EXPECT_EQ(session.worldText(), before);
    }
}

// Another backup, and files of other programs. Nothing is done, and they stay as they are.
TEST_F(Restore, RefusesALogThatIsAnotherFile) {
    const std::string other = newest();
    changeRate(9);
    ASSERT_EQ(backup().status, 0);
    blank(&controller());
    session.useWorld(world.dump());
    cli({"ctrl"});
    writeFile(session.path("notes"), "call the vendor\n");
    const std::string before = session.worldText();
    const Files saved = files();
    for (const std::string& log : {other + ".cfg", other + ".json", std::string("notes"), std::string("kept"),
                                   std::string("/dev/null")}) {
        const ProcessOutcome refusal = {3, "", "cli-restore: " + log + " is not a log of cli-restore\n"};
        EXPECT_EQ(restore({"--apply", "--log", log}), refusal);
        EXPECT_EQ(restore({"--log", log}), refusal);
    }
    EXPECT_EQ(files(), saved);
    EXPECT_EQ(content("notes"), "call the vendor\n");
    EXPECT_EQ(session.worldText(), before);
}

TEST_F(Restore, KeepsItsLogOutOfTheBackup) {
    const Files before = files();
    std::filesystem::create_hard_link(session.path(newest() + ".json"), session.path("link"));
    blank(&controller());
    session.useWorld(world.dump());
    for (const std::string& log : {newest() + ".cfg", newest() + ".json", std::string("link")}) {
        const std::string problem =
            "cli-restore: the log " + log + " is a file of the backup\nTry \"cli-restore --help\".\n";
        EXPECT_EQ(restore({"--apply", "--log", log}), (ProcessOutcome{2, "", problem}));
        EXPECT_EQ(restore({"--log", log}), (ProcessOutcome{2, "", problem}));
    }
    EXPECT_EQ(files(), before);
}

TEST_F(Restore, ChangesNothingWithoutALog) {
    blank(&controller());
    session.useWorld(world.dump());
    cli({"ctrl"});
    const std::string before = session.worldText();
    const ProcessOutcome outcome = restore({"--apply", "--log", "none/log"});
    EXPECT_EQ(
        outcome,
        (ProcessOutcome{3, "", "cli-restore: cannot write the log none/log: No such file or directory\n"}));
    EXPECT_EQ(session.worldText(), before);
}

// The program in the same directory, which tries the plan on the copy, ends it.
TEST_F(Restore, RemovesTheCopyWhenTerminated) {
    blank(&controller());
    session.useWorld(world.dump());
    for (const char* name : {"bin", "tmp"})
        std::filesystem::create_directory(session.path(name));
    std::filesystem::create_symlink(CLI_RESTORE, session.path("bin/cli-restore"));
    const std::string rehearse = session.path("bin/cli-restore-rehearse");
    writeFile(rehearse, "#!/bin/sh\nkill $PPID\n");
    std::filesystem::permissions(rehearse, std::filesystem::perms(0755));
    session.setVariable("TMPDIR", session.path("tmp"));
    EXPECT_EQ(runOther(session.path("bin/cli-restore"), {"-i", "0", newest()}).status, 128 + 15);
    EXPECT_TRUE(std::filesystem::is_empty(session.path("tmp")));
}

TEST_F(Restore, NeedsTwoMatchingFiles) {
    const std::string cfg = content(newest() + ".cfg");
    std::string changed = cfg;
    changed.replace(changed.find("<SyncRate> 102"), 14, "<SyncRate> 103");
    writeFile(session.path("kept/a.json"), content(newest() + ".json"));
    const auto run = [&](const char* file) { return runOther(CLI_RESTORE_REHEARSE, {"-i", "0", file}); };
    EXPECT_EQ(run("kept/a.json"),
              (ProcessOutcome{3, "", "cli-restore: cannot read kept/a.cfg: No such file or directory\n"}));
    writeFile(session.path("kept/a.cfg"), changed);
    EXPECT_EQ(
        run("kept/a.cfg"),
        (ProcessOutcome{3, "",
                        "cli-restore: the two files of kept/a do not belong together: line 3 of the "
                        "exported file is \"<SyncRate> 103\"; the adapters report \"<SyncRate> 102\"\n"}));
    writeFile(session.path("kept/a.cfg"), cfg);
    EXPECT_EQ(run("kept/a").status, 0);
    EXPECT_EQ(run("none"),
              (ProcessOutcome{3, "", "cli-restore: cannot read none.json: No such file or directory\n"}));
}

// A pipe without a writer, and a device without an end.
TEST_F(Restore, ReadsNothingButFiles) {
    const std::string stem = newest(); // without a regular .cfg, there is no newest one
    for (const char* suffix : {".json", ".cfg"})
        for (const char* other : {"pipe", "/dev/zero"}) {
            const std::string path = stem + suffix, saved = content(path);
            std::filesystem::remove(session.path(path));
            if (other[0] == '/')
                std::filesystem::create_symlink(other, session.path(path));
            else
                ASSERT_EQ(mkfifo(session.path(path).c_str(), 0600), 0);
            const std::string problem = "cli-restore: cannot read " + path + ": it is not a regular file\n";
            EXPECT_EQ(runOther(CLI_RESTORE_REHEARSE, {"-i", "0", stem}), (ProcessOutcome{3, "", problem}));
            std::filesystem::remove(session.path(path));
            writeFile(session.path(path), saved);
        }
}

TEST_F(Restore, NeedsTheController) {
    EXPECT_EQ(restore({}, "1"), (ProcessOutcome{3, "", "cli-restore: the backup has no controller 1\n"}));
}

TEST_F(Restore, RefusesWrongCommandLines) {
    const auto expect = [&](const Words& words, const std::string& problem) {
        EXPECT_EQ(runOther(CLI_RESTORE_REHEARSE, words),
                  (ProcessOutcome{2, "", "cli-restore: " + problem + "\nTry \"cli-restore --help\".\n"}));
    };
    expect({"file"}, "-i and the controller's ID are needed");
    expect({"-i", "0"}, "one backup is needed");
    expect({"-i", "0", "a", "b"}, "one backup is needed");
    expect({"-i", "x", "a"}, "\"x\" is not a controller ID");
    expect({"-i", "65536", "a"}, "\"65536\" is not a controller ID");
    for (const char* map : {"", "2", "2=", "=2", "2=0", "0=2", "2=x", "2=3,", "257=1"})
        EXPECT_EQ(runOther(CLI_RESTORE_REHEARSE, {"-i", "0", "--drives", map, "a"}).status, 2) << map;
    expect({"-i", "0", "--drives", "2=3,2=4", "a"}, "drive 2 is mapped twice");
    expect({"-i", "0", "--drives", "2=3,4=3", "a"}, "drive 3 would take the place of two drives");
    expect({"-i", "0", "--log", "", "a"}, "--log needs a name");
}
