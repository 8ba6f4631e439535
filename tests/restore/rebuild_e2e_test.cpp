// cli-restore --apply while members are lost: steps that start a rebuild, and what is reported at the end.
#include "tests/restore/restore_fixture.h"

static const std::string kRestoreSpare = "1. make extent 0 of drive 3 a global spare\n";
static const std::string kStarted = "A rebuild of logical drive 0 Data onto drive 3 was started.\n";
static const std::string kLostNote =
    "note: logical drive 0 Data has lost a member since; a rebuild makes it complete\n";
static const std::string kUsedNote =
    "note: the spare on drive 3 is in use: logical drive 0 Data is being rebuilt onto it\n";
static const std::string kRebuilding =
    "logical drive 0 Data is critical and is being rebuilt onto drive 3.\n";

// The automatic rebuild uses the spare at once.
TEST_F(Restore, AcceptsARebuildThatASpareStarts) {
    removeSpare();
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    const std::string end = kLostNote + kUsedNote + "Controller 0 is not as it was saved: " + kRebuilding;
    EXPECT_EQ(restore({}), (ProcessOutcome{1,
                                           kRestoreSpare + kLostNote + "On a copy of these adapters:\n" +
                                               kRestoreSpare + kStarted + end,
                                           ""}));
    EXPECT_EQ(restore({"--apply"}), (ProcessOutcome{0, kRestoreSpare + kStarted + end, ""}));
    EXPECT_EQ(restore({"--apply"}), (ProcessOutcome{0, end, ""}));
    EXPECT_EQ(restore({}),
              (ProcessOutcome{0, kLostNote + kUsedNote + "There is nothing to do, but " + kRebuilding, ""}));
}

// The steps before it must not run while a rebuild uses the drives.
TEST_F(Restore, EnablesTheAutomaticRebuildLast) {
    ASSERT_EQ(q5sim({"swap-controller", "0"}).status, 0);
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    ASSERT_EQ(q5sim({"replace-drive", "0", "2"}).status, 0);
    ASSERT_EQ(
        cli({"phydrv", "-a", "mod", "-p", "3", "-i", "0", "-s", "writecache=disable,ncq=disable,tcq=disable"})
            .status,
        0);
    removeSpare();
    EXPECT_EQ(restore({"--apply", "--drives", "2=2"}),
              (ProcessOutcome{0,
                              "1. set controller 0: sync rate 102, init rate 104, media patrol rate 103, "
                              "migrate rate 105, rebuild rate 101\n"
                              "2. set drive 3: write cache enable\n"
                              "3. make extent 0 of drive 3 a global spare\n"
                              "4. set controller 0: auto rebuild enable\n" +
                                  kStarted + kLostNote + kUsedNote +
                                  "Controller 0 is not as it was saved: " + kRebuilding,
                              ""}));
}

// The drive in the slot of the lost member becomes the spare. Until then, its space stays whole.
TEST_F(Restore, ExchangesTheSpareAndTheMember) {
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    ASSERT_EQ(q5sim({"replace-drive", "0", "2"}).status, 0);
    EXPECT_EQ(restore({"--apply", "--drives", "2=2"}),
              (ProcessOutcome{
                  0, kLostNote + kUsedNote + "Controller 0 is not as it was saved: " + kRebuilding, ""}));
    ASSERT_EQ(q5sim({"advance", "--until-idle"}).status, 0);
    const ProcessOutcome outcome = restore({"--apply", "--drives", "2=3,3=2"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_NE(outcome.out.find("1. make extent 0 of drive 2 a global spare\n"), std::string::npos) << outcome;
    EXPECT_NE(outcome.out.find("Controller 0 is as it was saved.\n"), std::string::npos) << outcome;
}

// Another spare than that of the backup. The rebuild needs the first 500 MB of it.
TEST_F(Restore, ReportsARebuildOntoAnySpare) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    setAutoRebuild("disable");
    makeSpare();
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    EXPECT_EQ(restore({"--apply"}),
              (ProcessOutcome{0,
                              "1. set controller 0: auto rebuild enable\n" + kStarted + kLostNote +
                                  "note: the spare on extent 1 of drive 3 is not in the backup; it stays as "
                                  "it is\nController 0 is not as it was saved: " +
                                  kRebuilding,
                              ""}));
}

// It would otherwise use a spare that is restored before.
TEST_F(Restore, DisablesTheAutomaticRebuildFirst) {
    setAutoRebuild("disable");
    ASSERT_EQ(backup().status, 0);
    setAutoRebuild("enable");
    removeSpare();
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    EXPECT_EQ(restore({"--apply"}),
              (ProcessOutcome{0,
                              "1. set controller 0: auto rebuild disable\n"
                              "2. make extent 0 of drive 3 a global spare\n" +
                                  kLostNote +
                                  "Controller 0 is not as it was saved: logical drive 0 Data is critical.\n",
                              ""}));
}

// A rebuild, not a restore, completes it.
TEST_F(Restore, SaysThatALogicalDriveIsNotAsItWasSaved) {
    setAutoRebuild("disable");
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(q5sim({"fail-drive", "0", "2"}).status, 0);
    ASSERT_EQ(q5sim({"replace-drive", "0", "2"}).status, 0);
    EXPECT_EQ(
        restore({"--apply", "--drives", "2=2"}),
        (ProcessOutcome{
            0, kLostNote + "Controller 0 is not as it was saved: logical drive 0 Data is critical.\n", ""}));
    EXPECT_EQ(restore({"--drives", "2=2"}),
              (ProcessOutcome{
                  0, kLostNote + "There is nothing to do, but logical drive 0 Data is critical.\n", ""}));
    // As it was saved.
    ASSERT_LE(backup().status, 1);
    EXPECT_EQ(restore({"--apply"}), (ProcessOutcome{0, "Controller 0 is as it was saved.\n", ""}));
    EXPECT_EQ(restore({}), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
}

// Only a spare was on it, so that it can be left out; with the rest of the map.
TEST_F(Restore, ProposesToLeaveOutALostSpare) {
    ASSERT_EQ(q5sim({"fail-drive", "0", "3"}).status, 0);
    EXPECT_EQ(restore({"--apply", "--drives", "1=1"}),
              (ProcessOutcome{4,
                              "prevented: drive 3 gives no access; to give up the spare on it, use --drives "
                              "1=1,3=-\n",
                              ""}));
    EXPECT_EQ(restore({"--apply", "--drives", "1=1,3=-"}).status, 0);
    ASSERT_EQ(q5sim({"pull-drive", "0", "3"}).status, 0);
    expectPrevented(restore({}),
                    "drive 3 is missing; drive 3 had the serial S0003; to give up the spare on it, "
                    "use --drives 3=-\n");
}
