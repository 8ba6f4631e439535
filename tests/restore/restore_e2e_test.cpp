// cli-restore over simulated worlds: plans, their outcome, what it reads, and its command line.
#include <sys/stat.h>

#include "tests/restore/restore_fixture.h"

TEST_F(Restore, HasNothingToDoWhenNothingChanged) {
    EXPECT_EQ(restore({}), (ProcessOutcome{0, "There is nothing to do.\n", ""}));
    EXPECT_EQ(restore({"--apply"}), (ProcessOutcome{0, "Controller 0 is as it was saved.\n", ""}));
}

static const char kBlankPlan[] =
    "1. set controller 0: sync rate 102, init rate 104, media patrol rate 103, migrate rate 105, rebuild "
    "rate "
    "101\n"
    "2. create logical drive 0 Data: RAID1 of 1024000 sectors on drive 1 extent 0 (1024000 sectors from 0), "
    "drive 2 extent 0 (1024000 sectors from 0)\n"
    "3. set logical drive 0: writepolicy=writeback,lookahead=4,consolidation=enable (unless it is created "
    "with them)\n"
    "4. make extent 0 of drive 3 a global spare\n"
    "5. set controller 0: auto rebuild enable\n";

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

// The new logical drive has the settings of the old one already: four steps are left of five.
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
                                               "step", "done", "finished"}));
}

TEST_F(Restore, RestoresSettingsAlone) {
    ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "0", "-s", "syncrate=9,smart=disable"}).status, 0);
    ASSERT_EQ(cli({"buzz", "-a", "disable", "-i", "0"}).status, 0);
    ASSERT_EQ(
        cli({"phydrv", "-a", "mod", "-p", "2", "-i", "0", "-s", "writecache=disable,ncq=disable,tcq=disable"})
            .status,
        0);
    ASSERT_EQ(cli({"logdrv", "-a", "mod", "-i", "0", "-l", "0", "-s", "name=Other,lookahead=1"}).status, 0);
    removeSpare();
    const std::string steps = "1. set controller 0: sync rate 102, SMART check enable\n"
                              "2. set the buzzer of controller 0: enable\n"
                              "3. set drive 2: write cache enable\n"
                              "4. set logical drive 0: lookahead=4,name=Data\n"
                              "5. make extent 0 of drive 3 a global spare\n";
    EXPECT_EQ(restore({}).out.rfind(steps, 0), 0u) << restore({});
    EXPECT_EQ(restore({"--apply"}).status, 0);
    EXPECT_EQ(restore({}).out, "There is nothing to do.\n");
}

TEST_F(Restore, NotesSettingsThatCannotBeReadNow) {
    ASSERT_EQ(cli({"buzz", "-a", "disable", "-i", "0"}).status, 0);
    ASSERT_EQ(q5sim({"refuse", "q5_getBuzzerStatus"}).status, 0);
    const std::string note = "note: the settings of the buzzer could not be read; they stay\n";
    EXPECT_EQ(restore({}).out, note + "There is nothing to do.\n");
    EXPECT_EQ(restore({"--apply"}).out, note + "Controller 0 is as it was saved.\n");
    ASSERT_EQ(q5sim({"refuse", "q5_getDataTransferSpeed"}).status, 0);
    const ProcessOutcome outcome = restore({});
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.out.rfind(note + "note: the settings of the 3 Gb/s option of drives like drive 1 could "
                                       "not be read; they stay\n",
                                0),
              0u)
        << outcome;
}

// They are no step on the copy either, whatever the copy assumes.
TEST_F(Restore, LeavesSettingsThatCannotBeReadNowOnTheCopy) {
    ASSERT_EQ(cli({"buzz", "-a", "disable", "-i", "0"}).status, 0);
    ASSERT_EQ(cli({"phydrv", "-a", "mod", "-p", "2", "-i", "0", "-s", "writecache=disable"}).status, 0);
    ASSERT_EQ(cli({"phydrv", "-a", "set3G", "-p", "1", "-i", "0", "-e", "1"}).status, 0);
    ASSERT_EQ(backup().status, 0);
    ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "0", "-s", "syncrate=9"}).status, 0);
    for (const char* operation :
         {"q5_getBuzzerStatus", "q5_getPhyDrvSettings", "q5_getDataTransferSpeed", "q5_getLogDrvSettings"})
        ASSERT_EQ(q5sim({"refuse", operation}).status, 0);
    const ProcessOutcome outcome = restore({});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_TRUE(outcome.out.starts_with("1. set controller 0: sync rate 102\nnote: ")) << outcome;
    EXPECT_TRUE(outcome.out.ends_with("On a copy of these adapters:\n"
                                      "1. set controller 0: sync rate 102\n"
                                      "Controller 0 is as it was saved.\n"))
        << outcome;
}

// The exit status of a plan that was not delivered is not that of a plan.
TEST_F(Restore, ReportsAFullOrClosedStandardOutput) {
    changeRate(9);
    for (const char* redirection : {">/dev/full", ">&-"})
        EXPECT_EQ(
            runOther("/bin/sh", {"-c", CLI_RESTORE_REHEARSE " -i 0 " + newest() + ".cfg " + redirection}),
            (ProcessOutcome{3, "", "cli-restore: cannot write to standard output\n"}))
            << redirection;
}

// The log, or any other file, would be taken for it.
TEST_F(Restore, AppliesWithoutStandardStreams) {
    changeRate(9);
    EXPECT_EQ(runOther("/bin/sh", {"-c", CLI_RESTORE_REHEARSE " -i 0 --apply --log log " + newest() +
                                             ".cfg <&- >&- 2>&-"})
                  .status,
              3);
    const std::string log = content("log");
    EXPECT_EQ(log.find("1. set controller"), std::string::npos) << log;
    EXPECT_NE(log.find(" step set controller 0: sync rate 102\n"), std::string::npos) << log;
    EXPECT_EQ(restore({}).out, "There is nothing to do.\n");
}

TEST_F(Restore, NotesSettingsThatCouldNotBeSaved) {
    ASSERT_EQ(q5sim({"refuse", "q5_getBuzzerStatus"}).status, 0);
    ASSERT_LE(backup().status, 1);
    ASSERT_EQ(stems().size(), 2u);
    ASSERT_EQ(q5sim({"clear-rules"}).status, 0);
    EXPECT_EQ(restore({}).out, "note: the settings of the buzzer could not be read; they stay\n"
                               "There is nothing to do.\n");
}

TEST_F(Restore, NotesAnExtraSpare) {
    removeSpare();
    ASSERT_EQ(backup().status, 0);
    makeSpare();
    const std::string note =
        "note: the spare on extent 0 of drive 3 is not in the backup; it stays as it is\n";
    EXPECT_EQ(restore({}), (ProcessOutcome{0, note + "There is nothing to do.\n", ""}));
    EXPECT_EQ(restore({"--apply"}), (ProcessOutcome{0, note + "Controller 0 is as it was saved.\n", ""}));
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
