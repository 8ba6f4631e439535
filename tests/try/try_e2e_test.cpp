// What cli-try reports of commands, lists of commands and the prompt.
#include "tests/try/session.h"

static const std::string kDeletion =
    "On a copy of the adapters:\n"
    "\n"
    "Exit status: 0\n"
    "\n"
    "What would change:\n"
    "  critical: logical drive 0 Archive of controller 0: is missing; it was RAID5 of 400000 MB\n"
    "\n"
    "What the adapters would log:\n"
    "  controller 0: Logical drive 0 deleted\n"
    "\n"
    "What would be started, and its time in the model:\n"
    "  nothing\n"
    "\n"
    "Data that would be lost:\n"
    "  controller 0: logical drive 0 Archive, 400,000 MB, would be deleted\n" +
    kFooter;

// The built-in world after commands of these programs.
static std::string worldAfter(const std::vector<std::vector<std::string>>& commands) {
    Session plain;
    for (const std::vector<std::string>& words : commands) {
        plain.program = programs + "/" + words[0];
        EXPECT_EQ(plain.run({words.begin() + 1, words.end()}).status, 0) << words[1];
    }
    return plain.worldText();
}

TEST(Try, DeletionLosesData) {
    TrySession session;
    EXPECT_EQ(session.run({"logdrv", "-a", "del", "-l", "0", "-i", "0"}), (ProcessOutcome{1, kDeletion, ""}));
}

TEST(Try, ChangesNothingOnTheRealAdapters) {
    TrySession session;
    session.useWorld(fixtureWorld("two_controllers"));
    const std::string before = session.worldText();
    session.run({"logdrv", "-a", "del", "-l", "0", "-i", "0"});
    session.run({"ctrl", "-a", "mod", "-i", "0", "-s", "smartpoll=33"});
    EXPECT_EQ(session.worldText(), before);
}

// Verifies that the library of these tests detects a change, and that cli-rehearse would use it.
TEST(TryGuard, DetectsAChange) {
    Session session;
    session.preferLibraries(GUARDED);
    session.setVariable("GUARDED_CALLS", session.path("guarded.calls"));
    EXPECT_EQ(session.run({"logdrv", "-a", "del", "-l", "0", "-i", "0"}).status, 128 + 6);
    EXPECT_EQ(readFile(session.path("guarded.calls")), "q5_delDiskArray\n");
}

TEST(Try, SettingLosesNothing) {
    TrySession session;
    EXPECT_EQ(session.run({"ctrl", "-a", "mod", "-i", "0", "-s", "smartpoll=33"}),
              (ProcessOutcome{0,
                              "On a copy of the adapters:\n"
                              "\n"
                              "Exit status: 0\n"
                              "\n"
                              "What would change:\n"
                              "  nothing that cli-status reports\n"
                              "\n"
                              "What the adapters would log:\n"
                              "  controller 0: Controller settings changed\n"
                              "\n"
                              "What would be started, and its time in the model:\n"
                              "  nothing\n"
                              "\n"
                              "Data that would be lost:\n"
                              "  none\n" +
                                  kFooter,
                              ""}));
}

TEST(Try, PrintsWhatTheCommandPrints) {
    TrySession session;
    Session plain;
    const std::string list = plain.run({"logdrv"}).out;
    const ProcessOutcome outcome = session.run({"logdrv"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.starts_with("On a copy of the adapters:\n" + list + "\nExit status: 0\n"))
        << outcome.out;
}

TEST(Try, RefusedCommand) {
    TrySession session;
    session.expectReport({"logdrv", "-a", "del", "-l", "7", "-i", "0"}, 2,
                         "\nData that would be lost:\n  none\n");
}

// RAID1 of two members becomes RAID5 of three: 60,000 MB of each at 1024 MB a second.
TEST(Try, StartedJobHasItsTime) {
    TrySession session;
    session.expectReport(
        {"migrate", "-a", "start", "-l", "1", "-i", "0", "-p", "7", "-e", "0", "-s", "raid=raid5"}, 0,
        "\nWhat would be started, and its time in the model:\n"
        "  controller 0: logical drive 1 System: migration, 59 seconds\n");
}

TEST(Try, RunningJobIsNotStartedByARename) {
    TrySession session;
    session.useWorld(worldAfter({{"q5sim", "fail-drive", "0", "2"}}));
    session.expectReport({"logdrv", "-a", "mod", "-l", "0", "-i", "0", "-s", "name=X"}, 0,
                         "\nWhat would be started, and its time in the model:\n  nothing\n");
}

// In the slot of a lost member. Its array there has the same ID as the one here.
TEST(Try, WipingADriveOfAnotherSystemLosesData) {
    std::string world =
        worldAfter({{"cli-rehearse", "ctrl", "-a", "mod", "-i", "0", "-s", "autorebuild=disable"},
                    {"q5sim", "pull-drive", "0", "2"},
                    {"q5sim", "insert-drive", "0", "2", "--foreign"}});
    const std::string foreign = "\"foreign\", \"array\": ";
    const std::size_t at = world.find(foreign + "2");
    ASSERT_NE(at, std::string::npos);
    world[at + foreign.size()] = '0';
    TrySession session;
    session.useWorld(world);
    session.expectReport({"phydrv", "-a", "wipe", "-p", "2", "-i", "0"}, 1,
                         "\nData that would be lost:\n  controller 0: drive 2, extent 0, 238,470 MB of "
                         "another controller's array, would be given up\n");
}

TEST(Try, ReportsQuickInitialization) {
    TrySession session;
    session.expectReport({"init", "-a", "start", "-l", "1", "-i", "0"}, 1,
                         "  controller 0: logical drive 1 System, 60,000 MB, would be overwritten\n");
}

TEST(Try, ClearingImportLosesWhatItDeletes) {
    TrySession session;
    Session plain;
    plain.run({"export", "-t", "1 2 3", "-f", session.path("saved.cfg")});
    const ProcessOutcome outcome = session.run({"import", "-c", "-f", session.path("saved.cfg")});
    EXPECT_EQ(outcome.status, 1);
    for (const char* line : {"controller 0: logical drive 0 Archive, 400,000 MB, would be ",
                             "controller 0: logical drive 1 System, 60,000 MB, would be ",
                             "controller 1: logical drive 0 Scratch, 240,000 MB, would be "})
        EXPECT_NE(outcome.out.find(line), std::string::npos) << outcome.out;
}

TEST(Try, ListStopsAtTheFirstRefusedCommand) {
    TrySession session;
    const ProcessOutcome outcome = session.runList("# first the spare\n"
                                                   "\n"
                                                   "extent -a free -p 6 -e 0 -i 0\n"
                                                   "logdrv -a del -l 9 -i 0\n"
                                                   "logdrv -a del -l 0 -i 0\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.out.find("cli>extent -a free -p 6 -e 0 -i 0\n"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("cli>logdrv -a del -l 9 -i 0\n"), std::string::npos);
    EXPECT_EQ(outcome.out.find("cli>logdrv -a del -l 0 -i 0\n"), std::string::npos);
    EXPECT_NE(outcome.out.find("\nWhat would be at risk:\n"
                               "  controller 0: drive 6, extent 0 would no longer be a spare\n"),
              std::string::npos);
}

// A command that returns 0 does not end the list: a script that checks the status would go on as well. The
// report has all refusals, although a world holds 16 only.
TEST(Try, ListReportsWhatCommandsDoNot) {
    TrySession session;
    session.useWorld(worldAfter({{"q5sim", "fail-drive", "0", "7"}}));
    std::string plan = "# settings\n", refused = "\nWhat would be refused:\n";
    for (int line = 2; line < 20; line += 2) {
        plan += "phydrv -a mod -p 7 -i 0 -s writecache=disable\nextent -a free -p 1 -e 0 -i 0\n";
        refused += "  line " + std::to_string(line) +
                   ": q5_setPhyDrvSettings: settings of drive 7: it is missing, failed, or does not support "
                   "them\n  line " +
                   std::to_string(line + 1) +
                   ": q5_freeHBAExtent: freeing: extent 0 of drive 1 is not a spare\n";
    }
    const ProcessOutcome outcome = session.runList(plan);
    EXPECT_EQ(outcome.status, 2) << outcome;
    EXPECT_NE(outcome.out.find("cli>phydrv -a mod -p 7 -i 0 -s writecache=disable\ncli>extent"),
              std::string::npos);
    EXPECT_NE(outcome.out.find(refused + "\n"), std::string::npos) << outcome;
}

// A world holds 16 refusals. What was refused before them is counted.
TEST(Try, PromptCountsRefusalsThatAreNotKept) {
    TrySession session;
    session.useWorld(worldAfter({{"q5sim", "fail-drive", "0", "7"}}));
    std::string typed, refused = "\nWhat would be refused:\n  4 operations before these\n";
    for (int pair = 0; pair < 10; ++pair)
        typed += "phydrv -a mod -p 7 -i 0 -s writecache=disable\nextent -a free -p 1 -e 0 -i 0\n";
    for (int pair = 0; pair < 8; ++pair)
        refused +=
            "  q5_setPhyDrvSettings: settings of drive 7: it is missing, failed, or does not support them\n"
            "  q5_freeHBAExtent: freeing: extent 0 of drive 1 is not a spare\n";
    writeFile(session.path("typed"), typed + "exit\n");
    session.program = "/bin/sh";
    const ProcessOutcome outcome =
        session.run({"-c", programs + "/cli-try --shell <" + session.path("typed")});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.out.find(refused + "\n"), std::string::npos) << outcome;
}

// cli itself skips these, prints nothing and returns 0.
TEST(Try, ReportsActivityCommandsThatDoNothing) {
    TrySession session;
    const ProcessOutcome outcome = session.runList("migrate -a start -l 1 -i 0 -p 7 -e 0 -s raid=raid5\n"
                                                   "INIT -a start -l 1 -i 0\n"
                                                   "init\n"
                                                   "sync -l 1 -i 0\n");
    EXPECT_EQ(outcome.status, 2) << outcome;
    const std::string why = ": nothing was done: the logical drive is busy, or has no such activity\n";
    EXPECT_NE(
        outcome.out.find("\nWhat would be refused:\n  line 2: init" + why + "  line 4: sync" + why + "\n"),
        std::string::npos)
        << outcome;
    const ProcessOutcome single = session.run({"rc", "-a", "pause", "-l", "0", "-i", "0"});
    EXPECT_EQ(single.status, 2) << single;
    EXPECT_NE(single.out.find("\nWhat would be refused:\n  rc" + why + "\n"), std::string::npos) << single;
}

// A loss after a refusal that the list does not stop at is a loss.
TEST(Try, ListShowsLossesAfterSilentRefusals) {
    TrySession session;
    const ProcessOutcome outcome = session.runList("rc -a pause -l 0 -i 0\nlogdrv -a del -l 0 -i 0\n");
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_NE(outcome.out.find("  line 1: rc: nothing was done"), std::string::npos) << outcome;
}

// This one prints its complaint until it can no longer write it.
static const std::string kEndless = "enclosure -a locate -e 0 x y";
static const std::string kEnded = "Invalid command for \"enclosure\"\n\n"
                                  "Exit status: none; the command was ended after 1048576 bytes of output\n";
static const std::string kNotTried =
    "cli-try: a command was ended after 1048576 bytes of output: what else it would do is unknown\n";

TEST(Try, EndsAnEndlessCommand) {
    TrySession session;
    const ProcessOutcome single = session.run({"enclosure", "-a", "locate", "-e", "0", "x", "y"});
    EXPECT_EQ(single.status, 3) << single.err;
    EXPECT_EQ(single.err, kNotTried);
    EXPECT_LT(single.out.size(), 2000u);
    EXPECT_NE(single.out.find(kEnded), std::string::npos) << single.out.substr(0, 2000);
    const ProcessOutcome list = session.runList("ctrl\n" + kEndless + "\nlogdrv -a del -l 0 -i 0\n");
    EXPECT_EQ(list.status, 3) << list.err;
    EXPECT_EQ(list.err, kNotTried);
    EXPECT_NE(list.out.find(kEnded), std::string::npos) << list.out.substr(0, 2000);
    EXPECT_EQ(list.out.find("cli>logdrv"), std::string::npos);
}

// A loss is certain whatever else the command would do.
TEST(Try, ReportsTheLossBeforeAnEndlessCommand) {
    TrySession session;
    const ProcessOutcome outcome = session.runList("logdrv -a del -l 0 -i 0\n" + kEndless + "\n");
    EXPECT_EQ(outcome.status, 1) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find(kEnded), std::string::npos) << outcome.out.substr(0, 2000);
    EXPECT_NE(outcome.out.find("Archive, 400,000 MB, would be deleted\n"), std::string::npos);
}

TEST(Try, ListSplitsWordsAsThePromptDoes) {
    TrySession session;
    writeFile(session.path("plan"), "logdrv -a mod -l 0 -i 0 -s \"name=two words\"\nlogdrv -v -l 0");
    const ProcessOutcome outcome = session.run({"--file=" + session.path("plan")});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("two words"), outcome.out.rfind("two words")) << outcome.out;
}

TEST(Try, LostDataTakesPrecedenceOverARefusal) {
    TrySession session;
    EXPECT_EQ(session.runList("logdrv -a del -l 0 -i 0\nlogdrv -a del -l 0 -i 0\n").status, 1);
}

TEST(Try, PromptOnTheCopy) {
    TrySession session;
    session.program = "/bin/sh";
    writeFile(session.path("typed"), "logdrv -a del -l 0 -i 0\nexit\n");
    const ProcessOutcome outcome =
        session.run({"-c", programs + "/cli-try --shell <" + session.path("typed")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.out.starts_with("On a copy of the adapters:\ncli>cli>\nWhat would change:\n"))
        << outcome.out;
    EXPECT_NE(outcome.out.find("Archive, 400,000 MB, would be deleted\n"), std::string::npos);
}

TEST(Try, ExitEndsTheList) {
    TrySession session;
    const ProcessOutcome outcome = session.runList("ctrl\n \"Exit\"\nlogdrv -a del -l 0 -i 0\n");
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.find("cli>logdrv"), std::string::npos) << outcome;
}
