// cli-backup when a backup holds less than an earlier one although it has as many objects: a logical drive
// that is not online or lost the place of a member, settings that are all zero, and settings that cannot be
// read.
#include <nlohmann/json.hpp>

#include "tests/backup/backup_fixture.h"

struct Losses : BackupSession {
    void SetUp() override {
        BackupSession::SetUp();
        useHealthyWorld();
    }
    std::string savedText() const { return "saved as " + newest() + ".cfg\n"; }
};

static constexpr char kNotRemoved[] = "warning: no older backup was removed\n";

// A host that has been degraded for weeks still has its last healthy backup.
TEST_F(Losses, KeepsTheLastHealthyBackup) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    const std::string healthy = newest();
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_NE(outcome.out.find("warning: logical drive 0 Data of controller 0 is critical; it was online\n" +
                               savedText() + kNotRemoved),
              std::string::npos)
        << outcome;
    for (int rate = 1; rate <= 3; ++rate) {
        changeRate(rate);
        EXPECT_EQ(backup({"--keep", "2"}).status, 0);
    }
    ASSERT_EQ(stems().size(), 3u);
    EXPECT_EQ(stems()[0], healthy);
}

TEST_F(Losses, AHealthyBackupReplacesAllAgain) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    ASSERT_EQ(backup().status, 1);
    ASSERT_EQ(q5sim({"replace-drive", "0", "2"}).status, 0);
    ASSERT_EQ(cli({"rb", "-a", "start", "-i", "0", "-l", "0", "-p", "2", "-e", "0"}).status, 0);
    ASSERT_EQ(q5sim({"advance", "--until-idle"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(stems().size(), 1u);
}

// Nothing reports where a lost member was, so that a restore needs an older backup.
TEST_F(Losses, KeepsABackupWithThePlacesOfAllMembers) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    const std::string healthy = newest();
    ASSERT_EQ(q5sim({"pull-drive", "0", "2"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(
        outcome.out.find(
            "warning: controller 0 has 2 drives; it had 3\n"
            "warning: logical drive 0 Data of controller 0 is critical; it was online\n"
            "warning: logical drive 0 Data of controller 0 cannot be restored from this backup: where its "
            "member on drive 2 was is not known\n" +
            savedText() + kNotRemoved),
        std::string::npos)
        << outcome;
    EXPECT_EQ(stems()[0], healthy);
}

// The drive is back and listed, but holds nothing of the logical drive.
TEST_F(Losses, ABlankDriveIsNoMember) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    const std::string healthy = newest();
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    ASSERT_EQ(q5sim({"replace-drive", "0", "2"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("cannot be restored from this backup: where its member on drive 2 was is not "
                               "known\n" +
                               savedText() + kNotRemoved),
              std::string::npos)
        << outcome;
    changeRate(8);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], healthy);
}

// An adapter can report success and return a cleared record.
TEST_F(Losses, KeepsABackupWithSettingsThatAreZeroNow) {
    for (const auto& [operation, line] :
         {std::pair{"q5_getControllerSettings", "controller 0: only zeros were read for its settings"},
          {"q5_getLogDrvSettings", "logical drive 0 of controller 0: only zeros were read for its settings"},
          {"q5_getControllerInfo", "controller 0: only zeros were read for its firmware version"}}) {
        SCOPED_TRACE(operation);
        removeBackups();
        useHealthyWorld();
        ASSERT_EQ(backup().status, 0);
        const std::string good = newest();
        ASSERT_EQ(q5sim({"zero", operation}).status, 0);
        const ProcessOutcome outcome = backup({"--keep", "1"});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.out.find("\nwarning: " + std::string(line) + "\n"), std::string::npos) << outcome;
        EXPECT_NE(outcome.out.find("\n" + savedText() + kNotRemoved), std::string::npos) << outcome;
        ASSERT_EQ(stems().size(), 2u);
        EXPECT_EQ(stems()[0], good);
    }
}

// A drive whose settings are all switched off is not distinguishable from a cleared record. It is no loss if
// it was the same before.
TEST_F(Losses, ZerosAreReportedOnce) {
    ASSERT_EQ(backup().status, 0);
    const std::string good = newest();
    ASSERT_EQ(q5sim({"zero", "q5_getControllerSettings"}).status, 0);
    ASSERT_EQ(backup().status, 1);
    EXPECT_EQ(backup(), (ProcessOutcome{0, "unchanged since " + newest() + ".cfg\n", ""}));
    ASSERT_EQ(q5sim({"smart-fail", "0", "3"}).status, 0);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], good);
}

// The rule of the simulated adapters after which settings cannot be read. Cleared settings of drives are left
// out of an export.
struct UnreadSetting {
    const char *rule, *operation, *object, *setting;
};
static constexpr UnreadSetting kUnreadSettings[] = {
    {"refuse", "q5_getBuzzerStatus", "controller 0", "its buzzer setting"},
    {"refuse", "q5_getDataTransferSpeed", "drive 1 of controller 0", "its 3 Gb/s setting"},
    {"refuse", "q5_getControllerSettings", "controller 0", "its settings"},
    {"refuse", "q5_getPhyDrvSettings", "drive 1 of controller 0", "its settings"},
    {"refuse", "q5_getLogDrvSettings", "logical drive 0 of controller 0", "its settings"},
    {"refuse", "q5_getAryLostDisk", "logical drive 0 of controller 0", "its lost members"},
    {"zero", "q5_getPhyDrvSettings", "drive 1 of controller 0", "its settings"},
};

static std::string unreadLine(const UnreadSetting& row) {
    return std::string("warning: ") + row.object + ": " + row.setting + " could not be read\n";
}

// The test's name contains the rule and the operation.
static std::string nameOf(const UnreadSetting& row) {
    return std::string(row.rule) + "_" + row.operation;
}

static void PrintTo(const UnreadSetting& row, std::ostream* stream) {
    *stream << nameOf(row);
}

struct UnreadSettings : Losses, testing::WithParamInterface<UnreadSetting> {};

// A nightly job raises no alarm for what no backup ever had, and removes old backups as usual.
TEST_P(UnreadSettings, AreReportedOnce) {
    ASSERT_EQ(q5sim({GetParam().rule, GetParam().operation}).status, 0);
    const ProcessOutcome first = backup();
    EXPECT_EQ(first.status, 1);
    EXPECT_EQ(first.out.rfind(unreadLine(GetParam()), 0), 0u) << first;
    EXPECT_EQ(backup(), (ProcessOutcome{0, "unchanged since " + newest() + ".cfg\n", ""}));
    ASSERT_EQ(q5sim({"smart-fail", "0", "3"}).status, 0);
    const ProcessOutcome later = backup({"--keep", "1"});
    EXPECT_EQ(later.status, 0);
    EXPECT_EQ(later.out.find("could not be read"), std::string::npos) << later;
    EXPECT_EQ(stems().size(), 1u);
}

// The backup that has them stays, and none of them is reported as changed.
TEST_P(UnreadSettings, AreNotLost) {
    ASSERT_EQ(backup().status, 0);
    const std::string good = newest();
    ASSERT_EQ(q5sim({GetParam().rule, GetParam().operation}).status, 0);
    const ProcessOutcome lost = backup({"--keep", "1"});
    EXPECT_EQ(lost.status, 1);
    EXPECT_EQ(lost.out.rfind(unreadLine(GetParam()), 0), 0u) << lost;
    for (const char* other : {"; it is ", "configuration", "changed"})
        EXPECT_EQ(lost.out.find(other), std::string::npos) << lost;
    EXPECT_NE(lost.out.find("\n" + savedText() + kNotRemoved), std::string::npos) << lost;
    EXPECT_EQ(backup(), (ProcessOutcome{0, "unchanged since " + newest() + ".cfg\n", ""}));
    ASSERT_EQ(q5sim({"smart-fail", "0", "3"}).status, 0);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], good);
}

TEST_P(UnreadSettings, CanBeReadAgain) {
    ASSERT_EQ(q5sim({GetParam().rule, GetParam().operation}).status, 0);
    ASSERT_EQ(backup().status, 1);
    ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
    const ProcessOutcome outcome = backup({"--keep", "1"});
    EXPECT_EQ(outcome.status, 0);
    const std::string line =
        std::string("info: ") + GetParam().object + ": " + GetParam().setting + " can be read again\n";
    EXPECT_NE(outcome.out.find(line), std::string::npos) << outcome;
    for (const char* other : {"; it is ", "configuration", "changed"})
        EXPECT_EQ(outcome.out.find(other), std::string::npos) << outcome;
    EXPECT_EQ(stems().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(All, UnreadSettings, testing::ValuesIn(kUnreadSettings),
                         [](const auto& each) { return nameOf(each.param); });

// A logical drive that is online has lost no member. Once it is not, which ones it has lost matters.
TEST_F(Losses, AMemberThatMayBeLostIsReportedEachTime) {
    removeSpare();
    ASSERT_EQ(q5sim({"refuse", "q5_getAryLostDisk"}).status, 0);
    ASSERT_EQ(backup().status, 1);
    const std::string healthy = newest();
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    const std::string incomplete = "warning: logical drive 0 of controller 0: q5_getAryLostDisk failed with "
                                   "result 1; the backup is incomplete\n";
    const ProcessOutcome lost = backup({"--keep", "1"});
    EXPECT_EQ(lost.status, 1);
    EXPECT_EQ(lost.out.rfind(incomplete, 0), 0u) << lost;
    EXPECT_EQ(lost.out.find("its lost members"), std::string::npos) << lost;
    EXPECT_NE(lost.out.find("\nwarning: logical drive 0 Data of controller 0 is critical; it was online\n" +
                            savedText() + kNotRemoved),
              std::string::npos)
        << lost;
    EXPECT_EQ(backup(), (ProcessOutcome{1, incomplete + "unchanged since " + newest() + ".cfg\n", ""}));
    ASSERT_EQ(stems().size(), 2u);
    EXPECT_EQ(stems()[0], healthy);
}

// Both are true: the controller's settings changed, and its buzzer cannot be read.
TEST_F(Losses, OtherSettingsAreReportedAsChanged) {
    changeRate(50);
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(q5sim({"refuse", "q5_getBuzzerStatus"}).status, 0);
    changeRate(51);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome, (ProcessOutcome{1,
                                       "warning: controller 0: its buzzer setting could not be read\n"
                                       "info: controller 0: SyncRate was 50; it is 51\n" +
                                           savedText() + kNotRemoved,
                                       ""}));
}

// A drive that has been added is not part of what an older backup has.
TEST_F(Losses, ANewDriveThatRefusesItsSettingIsReported) {
    ASSERT_EQ(q5sim({"pull-drive", "0", "3"}).status, 0);
    ASSERT_EQ(q5sim({"refuse", "q5_getDataTransferSpeed"}).status, 0);
    ASSERT_EQ(backup().status, 1);
    ASSERT_EQ(q5sim({"insert-drive", "0", "3"}).status, 0);
    const ProcessOutcome outcome = backup();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(
        outcome.out.rfind("warning: drive 3 of controller 0: its 3 Gb/s setting could not be read\n", 0), 0u)
        << outcome;
    changeRate(8);
    EXPECT_EQ(backup({"--keep", "1"}).status, 0);
    EXPECT_EQ(stems().size(), 1u);
}

// The library numbers the controllers that it finds: what they report belongs to others than before.
TEST_F(Losses, FollowsAControllerThatHasAnotherNumber) {
    auto both = nlohmann::json::parse(readFile(STATUS_SOURCES "/healthy.world.json"));
    both["controllers"].push_back(both["controllers"][0]);
    for (auto& drive : both["controllers"][1]["drives"])
        drive["serial"] = "T" + drive["serial"].get<std::string>();
    both["controllers"][1]["logicalDrives"][0]["name"] = "Second";
    session.useWorld(both.dump());
    ASSERT_EQ(backup().status, 0);
    auto second = both;
    second["controllers"].erase(0);
    session.useWorld(second.dump());
    const ProcessOutcome gone = backup({"--keep", "1"});
    EXPECT_EQ(gone, (ProcessOutcome{1,
                                    "critical: this host: the former controller 0 is missing, with 3 drives, "
                                    "logical drive 0 Data\n"
                                    "info: controller 0: has another number; it was controller 1\n"
                                    "warning: this host has 1 controller; it had 2\nsaved as " +
                                        newest() + ".cfg\n" + kNotRemoved,
                                    ""}));
    session.useWorld(both.dump());
    const ProcessOutcome back = backup({"--keep", "1"});
    EXPECT_EQ(back, (ProcessOutcome{0,
                                    "info: controller 1: has another number; it was controller 0\n"
                                    "info: controller 0: is new\nsaved as " +
                                        newest() + ".cfg\n",
                                    ""}));
    EXPECT_EQ(stems().size(), 1u);
}
