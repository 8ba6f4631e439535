// Which backups cli-backup keeps and removes, and when it removes none: fewer objects, other logical drives,
// damaged backups, and listings that cannot be read.
#include <sys/stat.h>

#include "tests/backup/backup_fixture.h"

using Backup = BackupSession;

TEST_F(Backup, RemovesTheOldest) {
    Files last;
    for (int rate = 1; rate <= 4; ++rate) {
        changeRate(rate);
        ASSERT_EQ(backup({"--keep", "2"}).status, 0);
        EXPECT_EQ(stems().size(), rate == 1 ? 1u : 2u);
    }
    EXPECT_NE(content(stems()[0] + ".cfg").find("<SyncRate> 3\n"), std::string::npos);
    EXPECT_NE(content(stems()[1] + ".cfg").find("<SyncRate> 4\n"), std::string::npos);
    EXPECT_EQ(files().size(), 4u);
}

TEST_F(Backup, FewerDrivesRotateNothing) {
    useHealthyWorld();
    backup();
    changeRate(7);
    backup();
    const Files before = files();
    ASSERT_EQ(q5sim({"pull-drive", "0", "3"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("warning: controller 0 has 2 drives; it had 3\nsaved as " + newest() +
                               ".cfg\nwarning: no older backup was removed\n"),
              std::string::npos)
        << outcome;
    EXPECT_EQ(files().size(), before.size() + 2);
    for (const auto& [name, text] : before)
        EXPECT_EQ(files()[name], text) << name;
}

// However many follow, the last one that still had everything is kept.
TEST_F(Backup, KeepsTheLastBackupWithMore) {
    useHealthyWorld();
    backup();
    changeRate(7);
    backup();
    const std::string complete = newest();
    ASSERT_EQ(q5sim({"pull-drive", "0", "3"}).status, 0);
    backup({"--keep", "1"});
    changeRate(8);
    ASSERT_EQ(backup({"--keep", "1"}).status, 0);
    EXPECT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], complete);
}

TEST_F(Backup, FewerLogicalDrivesAreReported) {
    backup();
    ASSERT_EQ(cli({"logdrv", "-a", "del", "-i", "0", "-l", "0"}).status, 0);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("warning: controller 0 has "), std::string::npos) << outcome;
    EXPECT_EQ(stems().size(), 2u);
}

TEST_F(Backup, FewerControllersAreReported) {
    backup();
    useHealthyWorld();
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("warning: this host has 1 controller; it had 2\n"), std::string::npos)
        << outcome;
}

static const Words kAddSmall = {
    "logdrv", "-a", "add", "-i", "0", "-p", "7", "-z", "name=tmp,raid=raid0,capacity=100"};

// There are as many logical drives as before: one that is gone is kept in the only backup of it.
TEST_F(Backup, AnotherLogicalDriveUnderItsIdReplacesNone) {
    ASSERT_EQ(q5sim({"reset"}).status, 0);
    ASSERT_EQ(backup().status, 0);
    const std::string good = newest();
    ASSERT_EQ(cli({"logdrv", "-a", "del", "-i", "0", "-l", "0"}).status, 0);
    ASSERT_EQ(cli(kAddSmall).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(
        outcome.out.find("warning: logical drive 0 Archive of controller 0 is RAID0 of 100 MB; it was RAID5 "
                         "of 400000 MB\nsaved as " +
                         newest() + ".cfg\nwarning: no older backup was removed\n"),
        std::string::npos)
        << outcome;
    changeRate(8);
    ASSERT_EQ(backup({"--keep", "1"}).status, 0);
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], good);
}

TEST_F(Backup, AMissingLogicalDriveRotatesNothing) {
    ASSERT_EQ(q5sim({"reset"}).status, 0);
    ASSERT_EQ(backup().status, 0);
    const std::string good = newest();
    ASSERT_EQ(cli(kAddSmall).status, 0);
    ASSERT_EQ(cli({"logdrv", "-a", "del", "-i", "0", "-l", "0"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("warning: logical drive 0 Archive of controller 0 is missing; it was RAID5 of "
                               "400000 MB\nsaved as " +
                               newest() + ".cfg\nwarning: no older backup was removed\n"),
              std::string::npos)
        << outcome;
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], good);
}

TEST_F(Backup, ANewLogicalDriveRotates) {
    ASSERT_EQ(q5sim({"reset"}).status, 0);
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(cli(kAddSmall).status, 0);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    EXPECT_EQ(stems().size(), 1u);
}

TEST_F(Backup, RemovesWhatAnInterruptedRunLeft) {
    backup();
    const Files before = files();
    const std::string half = kept + "/" + newest().substr(5, newest().size() - 5 - 16);
    writeFile(half + "20200101T000000Z.json", "{");
    writeFile(half + "20200101T000001Z.cfg", "kept by hand");
    writeFile(kept + "/other-20200101T000000Z.json", "another host's");
    writeFile(kept + "/.cli-backup/.cli-1-0.tmp", "x");
    EXPECT_EQ(backup().status, 0);
    EXPECT_EQ(files().size(), before.size() + 2);
    EXPECT_FALSE(std::filesystem::exists(half + "20200101T000000Z.json"));
    EXPECT_TRUE(std::filesystem::is_empty(kept + "/.cli-backup"));
}

TEST_F(Backup, ReportsADamagedBackupAndRemovesNone) {
    backup();
    const std::string damaged = newest();
    writeFile(session.path(damaged + ".json"), "{");
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out.rfind("warning: " + damaged + ".json: ", 0), 0u) << outcome;
    EXPECT_EQ(stems().size(), 2u);
    EXPECT_EQ(content(damaged + ".json"), "{");
}

// A pipe without a writer would never end.
TEST_F(Backup, ReadsNothingButFiles) {
    backup();
    const std::string damaged = newest();
    for (const char* suffix : {".json", ".cfg"}) {
        const std::string path = session.path(damaged + suffix);
        std::filesystem::remove(path);
        ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        const ProcessOutcome outcome = backup();
        EXPECT_EQ(outcome.status, 1);
        const std::string warning =
            "warning: cannot read " + damaged + suffix + ": it is not a regular file\n";
        EXPECT_EQ(outcome.out.rfind(warning, 0), 0u) << outcome;
    }
}

// An empty .cfg has no objects, but its .json has as many as the intact backup.
TEST_F(Backup, ADamagedBackupReplacesNone) {
    backup();
    const std::string good = newest();
    changeRate(7);
    backup();
    const std::string damaged = newest();
    const std::string warning = "warning: " + damaged + ".cfg and its .json do not belong together: line 1 ";
    writeFile(session.path(damaged + ".cfg"), "");
    for (const int rate : {8, 9}) {
        changeRate(rate);
        const ProcessOutcome outcome = backup({"--keep", "1"});
        EXPECT_EQ(outcome.status, 1) << outcome;
        EXPECT_EQ(outcome.out.rfind(warning, 0), 0u) << outcome;
    }
    EXPECT_EQ(stems().size(), 4u);
    EXPECT_EQ(stems()[0], good);
    EXPECT_EQ(stems()[1], damaged);
}

TEST_F(Backup, RotatesAgainWhenTheDamagedBackupIsRemoved) {
    backup();
    writeFile(session.path(newest() + ".cfg"), "");
    const std::string damaged = newest();
    backup();
    changeRate(8);
    EXPECT_EQ(backup({"--keep", "1"}).status, 1);
    for (const char* suffix : {".cfg", ".json"})
        std::filesystem::remove(session.path(damaged + suffix));
    changeRate(9);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    EXPECT_EQ(stems().size(), 1u);
}

TEST_F(Backup, ReportsSettingsThatCannotBeRead) {
    backup();
    ASSERT_EQ(q5sim({"refuse", "q5_getControllerSettings"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_EQ(outcome.out.rfind("warning: controller 0: its settings could not be read\n", 0), 0u) << outcome;
    EXPECT_EQ(stems().size(), 2u);
}

// The buzzer and the 3 Gb/s setting have operations of their own. An export writes "Off" for an unknown
// buzzer.
TEST_F(Backup, ReportsABuzzerAndSpeedsThatCannotBeRead) {
    for (const auto& [operation, setting] :
         {std::pair{"q5_getBuzzerStatus", "controller 0: its buzzer setting"},
          {"q5_getDataTransferSpeed", "drive 1 of controller 0: its 3 Gb/s setting"}}) {
        SCOPED_TRACE(operation);
        removeBackups();
        session.useWorld(fixtureWorld("every_level"));
        ASSERT_EQ(backup().status, 0);
        const std::string good = newest();
        ASSERT_EQ(q5sim({"refuse", operation}).status, 0);
        const ProcessOutcome outcome = backup({"--keep", "1"});
        EXPECT_EQ(outcome.status, 1);
        const std::string warning = std::string("warning: ") + setting + " could not be read\n";
        EXPECT_EQ(outcome.out.rfind(warning, 0), 0u) << outcome;
        EXPECT_NE(outcome.out.find("\nsaved as " + newest() + ".cfg\nwarning: no older backup was removed\n"),
                  std::string::npos)
            << outcome;
        ASSERT_EQ(stems().size(), 2u);
        EXPECT_EQ(stems()[0], good);
        ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
        EXPECT_EQ(backup({"--keep", "1"}).status, 0);
        EXPECT_EQ(stems().size(), 1u);
    }
}

// An export of a listing that was refused looks like one of a controller that has nothing.
TEST_F(Backup, ReportsListingsThatCannotBeReadEachTime) {
    for (const char* operation : {"q5_getLogDrvInfo", "q5_getControllerInfo"}) {
        SCOPED_TRACE(operation);
        removeBackups();
        ASSERT_EQ(q5sim({"reset"}).status, 0);
        ASSERT_EQ(q5sim({"refuse", operation}).status, 0);
        const std::string warning = std::string("warning: controller 0: ") + operation +
                                    " failed with result 1; the backup is incomplete\n";
        for (const char* outcomeText : {"saved as ", "unchanged since "}) {
            const ProcessOutcome outcome = backup();
            EXPECT_EQ(outcome.status, 1) << outcome;
            EXPECT_NE(outcome.out.find(warning), std::string::npos) << outcome;
            EXPECT_NE(outcome.out.find(outcomeText + newest()), std::string::npos) << outcome;
        }
        EXPECT_EQ(stems().size(), 1u);
    }
}

TEST_F(Backup, ReportsListingsThatContradictTheController) {
    ASSERT_EQ(q5sim({"reset"}).status, 0);
    ASSERT_EQ(q5sim({"zero", "q5_getLogDrvInfo"}).status, 0);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_NE(outcome.out.find("warning: controller 0: counts 2 logical drives, but lists 0 logical drives; "
                               "the backup is incomplete\n"),
              std::string::npos)
        << outcome;
}

// The settings of the drives can still be read: the export has blocks of drives that the snapshot lacks.
TEST_F(Backup, KeepsABackupWithoutTheListOfDrives) {
    for (const char* kind : {"refuse", "zero"})
        for (const std::string& world : {fixtureWorld("every_level"), fixtureWorld("two_controllers"),
                                         readFile(STATUS_SOURCES "/healthy.world.json")}) {
            SCOPED_TRACE(kind);
            removeBackups();
            session.useWorld(world);
            ASSERT_EQ(backup().status, 0);
            const std::string good = newest();
            ASSERT_EQ(q5sim({kind, "q5_getPhyDrvInfo"}).status, 0);
            const ProcessOutcome outcome = backup({"--keep", "1"});
            EXPECT_EQ(outcome.status, 1) << outcome;
            EXPECT_NE(outcome.out.find("; the backup is incomplete\n"), std::string::npos) << outcome;
            EXPECT_NE(outcome.out.find("saved as " + newest()), std::string::npos) << outcome;
            EXPECT_NE(content(newest() + ".cfg").find("<PhyDrvID> 2\n"), std::string::npos);
            EXPECT_EQ(stems().size(), 2u);
            EXPECT_EQ(stems()[0], good);
            const ProcessOutcome again = backup();
            EXPECT_EQ(again.status, 1) << again;
            EXPECT_NE(again.out.find("unchanged since " + newest()), std::string::npos) << again;
        }
}

// An export queries each member alone; its list of extents lacks those that are refused.
TEST_F(Backup, KeepsABackupWithADriveThatIsRefusedAlone) {
    useHealthyWorld();
    ASSERT_EQ(backup().status, 0);
    const std::string good = newest(), extents = "<LogDrvDiskExtentIndex> ";
    ASSERT_NE(content(good + ".cfg").find(extents + "(0,0)\n"), std::string::npos);
    session.preferLibraries(REFUSING);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_EQ(
        outcome.out.rfind("warning: drive 2 of controller 0: q5_getPhyDrvInfo failed with result 1; the "
                          "backup is incomplete\n",
                          0),
        0u)
        << outcome;
    EXPECT_EQ(content(newest() + ".cfg").find(extents + "(0,0)\n"), std::string::npos);
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], good);
    const ProcessOutcome again = backup();
    EXPECT_EQ(again.status, 1) << again;
    EXPECT_NE(again.out.find("unchanged since " + newest()), std::string::npos) << again;
}

TEST_F(Backup, AnIncompleteBackupReplacesNone) {
    backup();
    const std::string good = newest();
    ASSERT_EQ(q5sim({"refuse", "q5_getControllerInfo"}).status, 0);
    EXPECT_EQ(backup({"--keep", "1"}).status, 1);
    EXPECT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], good);
    EXPECT_EQ(backup({"--keep", "1"}).status, 1);
    EXPECT_EQ(stems()[0], good);
}

// The backup in between lists no logical drives, although there was one: it is no measure.
TEST_F(Backup, FewerIsMeasuredAgainstTheLastCompleteBackup) {
    const std::string healthy = readFile(STATUS_SOURCES "/healthy.world.json");
    session.useWorld(healthy);
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(q5sim({"refuse", "q5_getLogDrvInfo"}).status, 0);
    EXPECT_EQ(backup().status, 1);
    ASSERT_EQ(stems().size(), 2u);
    session.useWorld(healthy);
    ASSERT_EQ(cli({"logdrv", "-a", "del", "-i", "0", "-l", "0"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_NE(outcome.out.find("warning: controller 0 has 0 logical drives; it had 1\n"), std::string::npos)
        << outcome;
    EXPECT_NE(outcome.out.find("warning: no older backup was removed\n"), std::string::npos) << outcome;
    EXPECT_EQ(stems().size(), 3u);
}

TEST_F(Backup, ACompleteBackupReplacesAnIncompleteOne) {
    ASSERT_EQ(q5sim({"refuse", "q5_getControllerInfo"}).status, 0);
    EXPECT_EQ(backup().status, 1);
    session.useWorld(fixtureWorld("every_level"));
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    EXPECT_EQ(stems().size(), 1u);
}
