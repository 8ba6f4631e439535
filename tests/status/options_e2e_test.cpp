// The command line of cli-status: options, limits, refusals, files and terminals.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/e2e/harness.h"
#include "tests/file_size_limit.h"

using Json = nlohmann::ordered_json;

struct StatusOptions : testing::Test {
    Session session;
    Json world = Json::parse(readFile(STATUS_SOURCES "/healthy.world.json"));

    void SetUp() override {
        session.program = CLI_STATUS;
        session.setClock(0);
        session.useWorld(world.dump());
    }
    void expectRefused(const std::vector<std::string>& words, const std::string& problem) {
        EXPECT_EQ(session.run(words),
                  (ProcessOutcome{3, "", "cli-status: " + problem + "\nTry \"cli-status --help\".\n"}));
    }
    std::string file(const std::string& text) {
        writeFile(session.path("file"), text);
        return session.path("file");
    }
};

TEST_F(StatusOptions, HelpAndVersionEndWith0) {
    const ProcessOutcome help = session.run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_EQ(help.out.substr(0, help.out.find('\n')), "Usage: cli-status [OPTION]...");
    EXPECT_EQ(session.run({"-h"}), help);
    EXPECT_EQ(session.run({"--version"}), (ProcessOutcome{0, "cli-status " CLI_STATUS_VERSION "\n", ""}));
    EXPECT_EQ(session.run({"-V"}).out, "cli-status " CLI_STATUS_VERSION "\n");
}

TEST_F(StatusOptions, UsageErrorsEndWith3) {
    expectRefused({"extra"}, "unexpected word \"extra\"");
    expectRefused({"-i", "1x"}, "controller ID \"1x\" is not a number from 0 to 65535");
    expectRefused({"-i", ""}, "controller ID \"\" is not a number from 0 to 65535");
    expectRefused({"-i", "-1"}, "controller ID \"-1\" is not a number from 0 to 65535");
    expectRefused({"-i", "65536"}, "controller ID \"65536\" is not a number from 0 to 65535");
    expectRefused({"--json", "--metrics"}, "only one of --json, --plugin, --metrics and --page can be given");
    expectRefused({"--json", "--changes", "x"},
                  "--changes cannot be combined with --json, --plugin, --metrics or --page");
    expectRefused({"--json", "-v"}, "-v and -q apply to plain text only");
    expectRefused({"--changes", "x", "-v"}, "-v cannot be combined with --changes");
    for (const std::string option : {"--baseline", "--changes", "--limits", "--metrics", "--page"})
        expectRefused({option + "="}, option + " needs the name of a file");
    EXPECT_EQ(session.run({"-Q"}).status, 3);
    EXPECT_EQ(session.run({"--page"}).status, 3);
    EXPECT_EQ(session.run({"--nonsense"}).status, 3);
}

TEST_F(StatusOptions, ControllerIsChosenById) {
    Json second = world["controllers"][0];
    second["battery"] = nullptr;
    second["logicalDrives"][0]["cacheFlags"] = 0;
    world["controllers"].push_back(second);
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"-i", "1"}),
              (ProcessOutcome{0,
                              "controller 1: 3 drives, 1 logical drive, 1 enclosure, no battery\n"
                              "all well: 1 controller, 3 drives, 1 logical drive\n",
                              ""}));
    EXPECT_EQ(session.run({"--controller=2"}),
              (ProcessOutcome{3, "", "cli-status: there is no controller 2\n"}));
}

TEST_F(StatusOptions, LimitsMoveTheThresholds) {
    // At 0 s: battery 25.0 degrees, fan 2660 rpm, enclosure 32 degrees, 4.995 V (-0.1 %), 11.985 V.
    const std::string all = file("# everything is a problem\n"
                                 "battery-warm = 25\r\n"
                                 "\tfan-stopped=2660 # so fast\n\n"
                                 "enclosure-warm = -5\nenclosure-hot = 32");
    EXPECT_EQ(
        session.run({"-q", "--limits", all}),
        (ProcessOutcome{2,
                        "critical: enclosure 0 of controller 0: fan 1 has stopped (2660 rpm)\n"
                        "critical: enclosure 0 of controller 0: temperature 1 is at 32 degrees Celsius\n"
                        "warning: battery of controller 0: is at 25.0 degrees Celsius\n",
                        ""}));
}

TEST_F(StatusOptions, LimitsAreRefusedWithTheirLine) {
    const std::pair<std::string, std::string> files[] = {
        {"\nspeed = 3\n", "line 2: unknown limit \"speed\""},
        {"fan-stopped\n", "line 1: fan-stopped lacks \"= NUMBER\""},
        {"fan-stopped = x\n", "line 1: fan-stopped takes a whole number from 0 to 100000"},
        {"fan-stopped = 1.5\n", "line 1: fan-stopped takes a whole number from 0 to 100000"},
        {"voltage-warning = 0\n", "line 1: voltage-warning takes a whole number from 1 to 100"},
        {"patrol-errors = 99999999999\n", "line 1: patrol-errors takes a whole number from 0 to 65535"},
        {"\x1b[2J = 1\n", "line 1: unknown limit \"\\x1b[2J\""},
    };
    for (const auto& [text, problem] : files)
        EXPECT_EQ(session.run({"--limits", file(text)}),
                  (ProcessOutcome{3, "", "cli-status: " + session.path("file") + ": " + problem + "\n"}));
    EXPECT_EQ(
        session.run({"--limits", session.path("none")}),
        (ProcessOutcome{
            3, "", "cli-status: cannot read " + session.path("none") + ": No such file or directory\n"}));
}

TEST_F(StatusOptions, MetricsReplaceAFile) {
    const std::string metrics = session.path("raid.prom");
    writeFile(metrics, "old");
    EXPECT_EQ(session.run({"--metrics=" + metrics}), (ProcessOutcome{0, "", ""}));
    EXPECT_EQ(readFile(metrics), readFile(STATUS_SOURCES "/healthy.expected.prom"));
    EXPECT_EQ(std::filesystem::status(metrics).permissions() & std::filesystem::perms::others_read,
              std::filesystem::perms::others_read);
    EXPECT_EQ(session.run({"--metrics=" + session.path("none/raid.prom")}),
              (ProcessOutcome{3, "",
                              "cli-status: cannot write " + session.path("none/raid.prom") +
                                  ": No such file or directory\n"}));
}

// The options with a file that is written. A file that existed keeps its content when it cannot be replaced.
TEST_F(StatusOptions, FilesThatCannotBeWrittenEndWith3) {
    const std::string kept = session.run({"--json"}).out;
    for (const std::string option : {"--metrics=", "--page=", "--changes="}) {
        const auto expectFailure = [&](const std::string& name, const std::string& reason) {
            EXPECT_EQ(session.run({option + session.path(name)}),
                      (ProcessOutcome{
                          3, "", "cli-status: cannot write " + session.path(name) + ": " + reason + "\n"}));
        };
        expectFailure("none/file", "No such file or directory");
        if (option != "--changes=") // which reads it first
            expectFailure(".", "Is a directory");
        writeFile(session.path("file"), kept);
        const FileSizeLimit limit(1024);
        expectFailure("file", "File too large");
        EXPECT_EQ(readFile(session.path("file")), kept);
    }
}

// Whoever reads the file does not get what is critical: the service that writes it has failed.
TEST_F(StatusOptions, FilesThatCannotBeWrittenEndWith3AlsoIfSomethingIsCritical) {
    world["controllers"][0]["battery"]["state"] = "failed";
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"--metrics=" + session.path("none/file")}),
              (ProcessOutcome{3, "",
                              "cli-status: cannot write " + session.path("none/file") +
                                  ": No such file or directory\n"}));
}

TEST_F(StatusOptions, AStandardOutputThatIsFullOrClosedEndsWith3) {
    session.program = "/bin/sh";
    for (const char* redirection : {" >/dev/full", " >&-"})
        EXPECT_EQ(session.run({"-c", CLI_STATUS + std::string(redirection)}),
                  (ProcessOutcome{3, "", "cli-status: cannot write to standard output\n"}))
            << redirection;
}

// No file or device gets what is printed.
TEST_F(StatusOptions, FilesAreWrittenWithoutStandardStreams) {
    const std::string metrics = session.run({"--metrics"}).out, name = session.path("metrics");
    session.program = "/bin/sh";
    EXPECT_EQ(session.run({"-c", CLI_STATUS " --metrics=" + name + " <&- >&- 2>&-"}).status, 0);
    EXPECT_EQ(readFile(name), metrics);
}

TEST_F(StatusOptions, PipesAreWrittenInPlace) {
    const std::string pipe = session.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    const std::string metrics = readFile(STATUS_SOURCES "/healthy.expected.prom");
    EXPECT_EQ(session.run({"--metrics=" + pipe}), (ProcessOutcome{0, "", ""}));
    std::string received(metrics.size() + 1, '\0');
    received.resize(static_cast<std::size_t>(read(reader, received.data(), received.size())));
    close(reader);
    EXPECT_EQ(received, metrics);
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(StatusOptions, PipesWithoutAReaderAreRefused) {
    const std::string pipe = session.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string option : {"--metrics=", "--page="})
        EXPECT_EQ(
            session.run({option + pipe}),
            (ProcessOutcome{3, "", "cli-status: cannot write " + pipe + ": no program reads this pipe\n"}));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(StatusOptions, StandardOutputCanBeNamed) {
    EXPECT_EQ(session.run({"--metrics=/dev/stdout"}),
              (ProcessOutcome{0, readFile(STATUS_SOURCES "/healthy.expected.prom"), ""}));
}

TEST_F(StatusOptions, ColorIsForTerminalsWithoutNoColor) {
    world["controllers"][0]["drives"][0]["smartFailure"] = true;
    session.useWorld(world.dump());
    EXPECT_NE(session.terminal({}).out.find("\x1b[33mwarning\x1b[0m: drive 1"), std::string::npos);
    EXPECT_EQ(session.run({}).out.find('\x1b'), std::string::npos);
    session.setVariable("NO_COLOR", "1");
    EXPECT_EQ(session.terminal({}).out.find('\x1b'), std::string::npos);
}

TEST_F(StatusOptions, QuietAndVerboseTextHasProblemsWithTheirRules) {
    world["controllers"][0]["drives"][0]["smartFailure"] = true;
    session.useWorld(world.dump());
    EXPECT_EQ(session.run({"-qv"}),
              (ProcessOutcome{1,
                              "warning: drive 1 of controller 0: predicts its failure (SMART); channel 0, "
                              "enclosure 0, serial S0001\n"
                              "  rule smart-failure; see \"SMART\" in cli-status(8)\n",
                              ""}));
}

// A monitoring system shows only what a plugin prints to standard output.
TEST_F(StatusOptions, PluginReportsItsOwnFailures) {
    EXPECT_EQ(
        session.run({"--plugin", "--limits", session.path("a|b")}),
        (ProcessOutcome{
            3, "SATARAID UNKNOWN: cannot read " + session.path("a\\x7cb") + ": No such file or directory\n",
            ""}));
    EXPECT_EQ(session.run({"--plugin", "-i", "4"}),
              (ProcessOutcome{3, "SATARAID UNKNOWN: there is no controller 4\n", ""}));
    const std::string usage = "SATARAID UNKNOWN: usage error, see cli-status --help\n";
    EXPECT_EQ(session.run({"--plugin", "--changes", "x"}),
              (ProcessOutcome{3, usage,
                              "cli-status: --changes cannot be combined with --json, --plugin, --metrics or "
                              "--page\nTry \"cli-status --help\".\n"}));
    EXPECT_EQ(session.run({"--nonsense", "--plugin"}).out, usage);
    for (const std::string option : {"--pl", "--plug", "--plugin", "--plugin=x"})
        EXPECT_EQ(session.run({option, "x"}).out, usage) << option;
    for (const std::string option : {"--nonsense", "--page", "--p", "--plugins"})
        EXPECT_EQ(session.run({option}).out, "") << option;
    EXPECT_EQ(session.run({"--", "--plugin"}).out, "");
}

// The first line ends where the output of a plugin says so.
TEST_F(StatusOptions, NamesOfFilesStayOnOneLine) {
    const std::string name = session.path("a\nb");
    const std::string shown = session.path("a\\x0ab");
    for (const std::string option : {"--baseline", "--limits"}) {
        EXPECT_EQ(session.run({"--plugin", option, name}),
                  (ProcessOutcome{
                      3, "SATARAID UNKNOWN: cannot read " + shown + ": No such file or directory\n", ""}));
        writeFile(name, "x");
        const ProcessOutcome outcome = session.run({"--plugin", option, name});
        EXPECT_EQ(outcome.out.substr(0, outcome.out.find(':', 20)), "SATARAID UNKNOWN: " + shown);
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 1);
        std::filesystem::remove(name);
    }
}

// A pipe could be waited for, and a device have no end.
TEST_F(StatusOptions, OnlyRegularFilesAreRead) {
    const std::string pipe = session.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string option : {"--baseline", "--changes", "--limits"})
        for (const std::string& file : {session.path("."), pipe, std::string("/dev/zero")})
            EXPECT_EQ(
                session.run({option, file}),
                (ProcessOutcome{3, "", "cli-status: cannot read " + file + ": it is not a regular file\n"}));
}

// Neither the world nor anything else in its directory changes.
TEST_F(StatusOptions, NothingIsWritten) {
    const std::string before = session.worldText();
    EXPECT_EQ(session.run({"-v"}).status, 0);
    EXPECT_EQ(session.worldText(), before);
    EXPECT_FALSE(std::filesystem::exists(session.eventFile()));
}
