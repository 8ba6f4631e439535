// Where cli-try has no answer: wrong usage, adapters that cannot be read completely, commands that it does
// not try, and a report that cannot be written.
#include "tests/try/session.h"

// The built-in world with a rule for every call of an operation.
static std::string worldWithRule(const std::string& kind, const std::string& operation) {
    Session plain;
    plain.program = programs + "/q5sim";
    EXPECT_EQ(plain.run({kind, operation}).status, 0);
    return plain.worldText();
}

// A report that was not delivered is no answer, except that a loss is certain.
TEST(Try, ReportsAFullOrClosedStandardOutput) {
    TrySession session;
    session.program = "/bin/sh";
    writeFile(session.path("plan"), "ctrl\nctrl -a mod -i 0 -s smartpoll=33\n");
    const std::string tool = programs + "/cli-try ", problem = "cli-try: cannot write to standard output\n";
    const ProcessOutcome notTried = {3, "", problem};
    EXPECT_EQ(session.run({"-c", tool + "ctrl -a mod -i 0 -s smartpoll=33 >/dev/full"}), notTried);
    EXPECT_EQ(session.run({"-c", tool + "-f " + session.path("plan") + " >/dev/full"}), notTried);
    EXPECT_EQ(session.run({"-c", tool + "logdrv -a del -l 9 -i 0 >/dev/full"}), notTried);
    EXPECT_EQ(session.run({"-c", tool + "logdrv -a del -l 0 -i 0 >/dev/full"}),
              (ProcessOutcome{1, "", problem}));
    EXPECT_EQ(session.run({"-c", tool + "logdrv -a del -l 0 -i 0 >&-"}), notTried);
}

// As with "| true", or a pager that exits early. The program begins when the reader has closed the pipe.
// TrySession checks that no copy stays.
TEST(Try, AReportThatNobodyReadsIsNoAnswer) {
    TrySession session;
    session.program = "/bin/sh";
    const auto run = [&](const std::string& words) {
        return session.run({"-c", "cd '" + session.directory +
                                      "'; rm -f closed; { until [ -e closed ]; do sleep 0.1; done; " +
                                      programs + "/cli-try " + words +
                                      "; echo $? >status; } | { exec <&-; : >closed; }\n" +
                                      "exit \"$(cat status)\""});
    };
    const std::string problem = "cli-try: cannot write to standard output\n";
    EXPECT_EQ(run("logdrv"), (ProcessOutcome{3, "", problem}));
    EXPECT_EQ(run("ctrl -a mod -i 0 -s smartpoll=33"), (ProcessOutcome{3, "", problem}));
    EXPECT_EQ(run("logdrv -a del -l 0 -i 0"), (ProcessOutcome{1, "", problem}));
    EXPECT_EQ(run("logdrv -a del -l 0 -i 0 2>&1"), (ProcessOutcome{1, "", ""}));
    EXPECT_EQ(run("logdrv -a del -l 9 -i 0 2>&1"), (ProcessOutcome{3, "", ""}));
}

TEST(Try, ExportWritesNoFile) {
    TrySession session;
    writeFile(session.path("plan"), "ctrl\n  \"EXPORT\" -t 1 -f " + session.path("exported") + "\n");
    const std::string refusal = "cli-try: export changes no adapter and writes a file: run it with cli\n";
    EXPECT_EQ(session.run({"Export", "-t", "1", "-f", session.path("exported")}),
              (ProcessOutcome{3, "", refusal}));
    EXPECT_EQ(session.run({"-f", session.path("plan")}), (ProcessOutcome{3, "", refusal}));
    EXPECT_FALSE(fs::exists(session.path("exported")));
}

// The rest of such a line would be a command of its own, which is not checked.
TEST(Try, RefusesLinesThatThePromptWouldSplit) {
    TrySession session;
    const std::string plan = session.path("plan"), target = session.path("exported");
    writeFile(plan, "ctrl" + std::string(4092, ' ') + "\n");
    EXPECT_EQ(session.run({"-f", plan}).status, 0);
    for (const std::size_t blanks : {4093u, 4094u}) {
        writeFile(plan, "ctrl" + std::string(blanks, ' ') + "export -t 1 -f " + target + "\n");
        EXPECT_EQ(session.run({"-f", plan}),
                  (ProcessOutcome{3, "", "cli-try: " + plan + " has a line of more than 4096 bytes\n"}));
    }
    writeFile(plan, std::string("ctrl\0export -t 1 -f ", 20) + target + "\n");
    EXPECT_EQ(session.run({"-f", plan}),
              (ProcessOutcome{3, "", "cli-try: " + plan + " contains a NUL byte\n"}));
    EXPECT_FALSE(fs::exists(target));
}

TEST(Try, NeedsAController) {
    TrySession session;
    session.useWorld("{\"controllers\": []}");
    EXPECT_EQ(session.run({"ctrl"}),
              (ProcessOutcome{3, "", "cli-try: the adapters cannot be read: there is no controller\n"}));
}

TEST(Try, AdaptersThatCannotBeRead) {
    TrySession session;
    session.useWorld(R"({"rules": [{"kind": "refuse", "operation": "q5_initialize"}], "controllers": []})");
    EXPECT_EQ(session.run({"ctrl"}),
              (ProcessOutcome{3, "",
                              "cli-try: the adapters cannot be read: q5_initialize failed "
                              "with result 1\n"}));
}

// What is missing in the copy cannot be seen to be lost.
TEST(Try, IncompleteCopyPromisesNothing) {
    Session plain;
    plain.run({"export", "-t", "1 2 3", "-f", plain.path("saved.cfg")});
    for (const char* rule : {"refuse", "zero"}) {
        TrySession session;
        session.useWorld(worldWithRule(rule, "q5_getLogDrvInfo"));
        const ProcessOutcome outcome =
            session.run({"import", "-c", "-l", "0,1", "-f", plain.path("saved.cfg")});
        EXPECT_EQ(outcome.status, 3) << outcome;
        EXPECT_NE(outcome.out.find("\nData that would be lost:\n"
                                   "  unknown, since the adapters could not be read completely\n" +
                                   kFooter),
                  std::string::npos)
            << outcome;
        EXPECT_NE(outcome.err.find("cli-try: the copy is incomplete, so the real adapters may answer "
                                   "otherwise\n"),
                  std::string::npos)
            << outcome;
    }
}

// The copy's refusal may be due to what it lacks.
TEST(Try, IncompleteCopyRefusesNothing) {
    TrySession session;
    session.useWorld(worldWithRule("refuse", "q5_getLogDrvInfo"));
    EXPECT_EQ(session.run({"logdrv", "-a", "del", "-l", "0", "-i", "0"}).status, 3);
}

// A loss that can be seen remains one.
TEST(Try, IncompleteCopyStillShowsLosses) {
    TrySession session;
    session.useWorld(worldWithRule("refuse", "q5_getBatteryInfo"));
    const ProcessOutcome outcome = session.run({"logdrv", "-a", "del", "-l", "0", "-i", "0"});
    EXPECT_EQ(outcome.status, 1) << outcome;
    EXPECT_NE(outcome.out.find("Archive, 400,000 MB, would be deleted\n"), std::string::npos) << outcome;
}

TEST(Try, PrintsTheAssumptionsOfThisCopy) {
    TrySession session;
    session.useWorld(R"({"controllers": [{"drives": [{"id": 2, "sectors": 4096}]}]})");
    EXPECT_EQ(
        session.run({"ctrl"}).err,
        "cli-try: assumed: controllers[0].drives[0].failed: false; only extents show it, and this drive has "
        "none\n");
}

TEST(Try, UsageErrors) {
    TrySession session;
    const std::string advice = "\nTry \"cli-try --help\".\n";
    EXPECT_EQ(session.run({}), (ProcessOutcome{3, "", "cli-try: a command is missing" + advice}));
    EXPECT_EQ(session.run({"-x"}), (ProcessOutcome{3, "", "cli-try: there is no option -x" + advice}));
    EXPECT_EQ(session.run({"-f"}), (ProcessOutcome{3, "", "cli-try: -f needs the name of a file" + advice}));
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"-f", "a", "-f", "b"}, {"-f", "a", "-s"}, {"--shell", "--file=a"}})
        EXPECT_EQ(session.run(words),
                  (ProcessOutcome{3, "", "cli-try: only one --file or --shell is possible" + advice}));
    EXPECT_EQ(session.run({"-s", "ctrl"}),
              (ProcessOutcome{3, "", "cli-try: unexpected word \"ctrl\"" + advice}));
    EXPECT_EQ(session.run({"-f", "/nonexistent"}),
              (ProcessOutcome{3, "", "cli-try: cannot read /nonexistent\n"}));
    EXPECT_EQ(session.run({"--version"}), (ProcessOutcome{0, "cli-try " CLI_TRY_VERSION "\n", ""}));
    EXPECT_TRUE(session.run({"-h"}).out.starts_with("Usage: cli-try [OPTION]... COMMAND [WORD]...\n"));
}

// An installation in which cli-rehearse finds other adapters than the simulated ones.
TEST(Try, RefusesToRunWithOtherAdapters) {
    TrySession session;
    for (const char* directory : {"installed", "installed/bin", "installed/lib"})
        fs::create_directory(session.path(directory));
    for (const char* name : {"cli-try", "cli-capture", "cli-status", "cli-try-report", "cli-rehearse"})
        fs::copy_file(programs + "/" + name, session.path(std::string("installed/bin/") + name));
    fs::copy_file(OTHER_ADAPTERS, session.path("installed/lib/libzvq5plugin.so"));
    session.program = session.path("installed/bin/cli-try");
    EXPECT_EQ(session.run({"ctrl"}),
              (ProcessOutcome{3, "",
                              "cli-try: " + session.path("installed/bin/cli-rehearse") +
                                  " does not use the simulated adapters\n"}));
    fs::remove(session.path("installed/lib/libzvq5plugin.so"));
    EXPECT_EQ(session.run({"ctrl"}),
              (ProcessOutcome{3, "",
                              "cli-try: the simulated adapters are missing; they are in the package "
                              "cli-rehearsal\n"}));
}
