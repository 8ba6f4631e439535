// cli-restore --apply: stopping, continuing, and its log.
#include "tests/restore/restore_fixture.h"

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
    EXPECT_EQ(
        restore({}).out.rfind(
            "Continues an unfinished restore; steps done: 1; another one was begun.\n1. create logical ", 0),
        0u);
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
    const std::string map =
        "Continues an unfinished restore with --drives 2=2; steps done: 2; another one was begun.\n";
    const std::string left =
        "1. make extent 0 of drive 3 a global spare\n2. set controller 0: auto rebuild enable\n";
    const ProcessOutcome before = restore({});
    EXPECT_EQ(before.status, 1) << before;
    EXPECT_EQ(before.out.rfind(map + left + "On a copy", 0), 0u) << before;
    EXPECT_EQ(restore({"--drives", "2=2"}).out, before.out);
    const ProcessOutcome outcome = restore({"--apply"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.rfind(map + left, 0), 0u) << outcome;
}

TEST_F(Restore, ContinuesWithTheSameCommand) {
    blank(&controller());
    for (const std::size_t index : {0u, 2u})
        replaceSerial(index);
    session.useWorld(world.dump());
    ASSERT_EQ(q5sim({"refuse", "q5_spareHBAExtent"}).status, 0);
    ASSERT_EQ(restore({"--apply", "--drives", "1=3,3=1"}).status, 5);
    ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
    const ProcessOutcome outcome = restore({"--apply", "--drives", "1=3,3=1"});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.rfind("Continues an unfinished restore with --drives 1=3,3=1; steps done: 2; "
                                "another one was begun.\n",
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
