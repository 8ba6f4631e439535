// cli-wait on a terminal: the display, changes of its size, and how it is left.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>

#include <cstdlib>

#include "tests/e2e/harness.h"

static const std::string kHide = "\x1b[?25l", kShow = "\x1b[?25h";
static const std::string kArchive = "logical drive 0 Archive";

struct WaitTerminal : testing::Test {
    Session session;
    std::vector<TerminalStep> steps;
    std::string before = "true"; // a command of the shell, run on the terminal first

    void SetUp() override {
        session.setVariable("TERM", "vt100");
        session.setVariable("TZ", "UTC");
        session.setVariable("PATH", "/usr/bin:/bin");
        simulate("fail-drive 0 2");
    }
    void simulate(const std::string& command) {
        session.program = "/bin/sh";
        EXPECT_EQ(session.run({"-c", "'" Q5SIM "' " + command}).err, "");
    }
    void after(const std::string& awaited, const std::function<void(int terminal, pid_t program)>& act) {
        steps.push_back({awaited, act});
    }
    void simulateAfter(const std::string& awaited, const std::string& command) {
        after(awaited, [this, command](int, pid_t) { simulate(command); });
    }
    // The shell replaces itself by cli-wait.
    ProcessOutcome run(const std::string& words, const std::string& size = "cols 80 rows 24") {
        Launch launch;
        launch.words = {"/bin/sh", "-c", "stty " + size + "; " + before + "; exec '" CLI_WAIT "' " + words};
        for (const auto& [name, value] : session.variables)
            launch.variables.push_back(std::string(name).append("=").append(value));
        launch.directory = session.directory;
        return runOnTerminal(launch, steps);
    }
};

static void resize(int terminal, unsigned short columns) {
    winsize size = {};
    size.ws_col = columns;
    size.ws_row = 24;
    ioctl(terminal, TIOCSWINSZ, &size);
}

// 79 columns: the names of two controllers are not needed for one that was selected.
TEST_F(WaitTerminal, ShowsABarUntilTheEnd) {
    simulate("advance 100"); // of 196 seconds: 51%
    simulateAfter(" 51%", "advance --until-idle");
    const ProcessOutcome outcome = run("-l 0 --every 0.1");
    EXPECT_EQ(outcome.status, 0);
    const std::string bar = "rebuild of " + kArchive + "  [#############-------------]   51%  0:00:0";
    EXPECT_EQ(outcome.out.substr(0, (kHide + bar).size()), kHide + bar);
    const std::string end = " has ended\r\n" + kArchive + " of controller 0 is online\r\n" + kShow;
    EXPECT_NE(outcome.out.find("\x1b[1A\r\x1b[Jrebuild of " + kArchive + " of controller 0 has ended\r\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(outcome.out.substr(outcome.out.size() - end.size()), end) << outcome.out;
}

TEST_F(WaitTerminal, RedrawsChangedPercentages) {
    simulateAfter("   0%", "advance 20"); // 10%
    simulateAfter("  10%", "advance 40"); // 30%
    simulateAfter("  30%", "advance 98"); // 80%
    simulateAfter("ends ", "advance --until-idle");
    const ProcessOutcome outcome = run("-l 0 --every 0.1", "cols 120 rows 24");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("%/min  ends "), std::string::npos) << outcome.out;
}

TEST_F(WaitTerminal, AdaptsToTheWidth) {
    after(" 0%", [](int terminal, pid_t) { resize(terminal, 41); });
    // The line of 79 columns has been wrapped into two rows.
    simulateAfter("\x1b[2A\r\x1b[Jrebuild of " + kArchive + "    0%\r\n", "advance --until-idle");
    EXPECT_EQ(run("-l 0 --every 2").status, 0);
}

TEST_F(WaitTerminal, HandlesTinyTerminals) {
    simulateAfter(kHide + "0%\r\n", "advance --until-idle");
    EXPECT_EQ(run("-l 0 --every 0.1", "cols 5 rows 2").status, 0);
}

TEST_F(WaitTerminal, AssumesASizeWhereThereIsNone) {
    simulateAfter("[", "advance --until-idle");
    EXPECT_EQ(run("-l 0 --every 0.1", "cols 0 rows 0").status, 0);
}

// The cursor is below the display: a line of its own for what the shell prints next.
TEST_F(WaitTerminal, IsRestoredByControlC) {
    after(" 0%", [](int terminal, pid_t) { EXPECT_EQ(write(terminal, "\x03", 1), 1); });
    const ProcessOutcome outcome = run("-l 0");
    EXPECT_EQ(outcome.status, 128 + SIGINT);
    EXPECT_EQ(outcome.out.substr(outcome.out.size() - 8), kShow + "\r\n");
}

TEST_F(WaitTerminal, IsRestoredByOtherSignals) {
    for (const int signal : {SIGTERM, SIGHUP, SIGQUIT}) {
        steps.clear();
        after(" 0%", [signal](int, pid_t program) { kill(program, signal); });
        const ProcessOutcome outcome = run("-l 0");
        EXPECT_EQ(outcome.status, 128 + signal);
        EXPECT_EQ(outcome.out.substr(outcome.out.size() - 8), kShow + "\r\n");
    }
}

// As when the timer expires.
TEST_F(WaitTerminal, IsRestoredIfTheAdaptersDoNotAnswer) {
    after(" 0%", [](int, pid_t program) { kill(program, SIGALRM); });
    const ProcessOutcome outcome = run("-l 0 --timeout 1000000000");
    EXPECT_EQ(outcome.status, 3);
    const std::string end = kShow + "\r\ncli-wait: timed out: the adapters do not answer\r\n";
    ASSERT_GE(outcome.out.size(), end.size());
    EXPECT_EQ(outcome.out.substr(outcome.out.size() - end.size()), end);
}

// As under nohup.
TEST_F(WaitTerminal, KeepsIgnoringAnIgnoredSignal) {
    before = "trap '' HUP";
    after(" 0%", [this](int, pid_t program) {
        kill(program, SIGHUP);
        simulate("advance --until-idle");
    });
    EXPECT_EQ(run("-l 0 --every 0.1").status, 0);
}

// What the shell has printed in the meantime stays: the display is drawn below it.
TEST_F(WaitTerminal, ShowsTheCursorWhileStopped) {
    after(" 0%", [](int, pid_t program) { kill(program, SIGTSTP); });
    after(kShow, [](int, pid_t program) {
        waitpid(program, nullptr, WUNTRACED);
        kill(program, SIGCONT);
    });
    simulateAfter("\r\n" + kHide + "rebuild of ", "advance --until-idle");
    EXPECT_EQ(run("-l 0 --every 0.1").status, 0);
}

// The shell continues while cli-wait runs: only messages are printed.
TEST_F(WaitTerminal, DrawsNothingInTheBackground) {
    before = "set -m; '" CLI_WAIT "' -l 0 --every 0.1 & '" Q5SIM "' advance --until-idle >/dev/null; wait $!";
    const ProcessOutcome outcome = run("--version");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(kArchive + " of controller 0 is online\r\n"), std::string::npos);
}

// The error does not become part of the display.
TEST_F(WaitTerminal, PrintsErrorsAboveTheDisplay) {
    simulate("refuse q5_getLogDrvInfo --after 1 --times 1");
    simulateAfter(
        "\x1b[1A\r\x1b[Jcli-wait: controller 0: q5_getLogDrvInfo failed with result 1; trying again\r\n"
        "rebuild of ",
        "advance --until-idle");
    EXPECT_EQ(run("-l 0 --every 0.1").status, 0);
}

TEST_F(WaitTerminal, PrintsPlainLinesWhereItCannotMoveTheCursor) {
    session.setVariable("TERM", "dumb");
    EXPECT_EQ(run("-l 0 --timeout 0"), (ProcessOutcome{3,
                                                       "rebuild of " + kArchive +
                                                           " of controller 0: 0%\r\n"
                                                           "cli-wait: timed out after 0 seconds\r\n",
                                                       ""}));
}

// The display of an unfinished activity becomes a line that stays.
TEST_F(WaitTerminal, LeavesTheLastPercentage) {
    simulate("advance 100");
    EXPECT_EQ(run("-l 0 --timeout 0"), (ProcessOutcome{3,
                                                       "rebuild of " + kArchive +
                                                           " of controller 0: 51%\r\n"
                                                           "cli-wait: timed out after 0 seconds\r\n",
                                                       ""}));
}

TEST_F(WaitTerminal, NamesControllersWhereSeveralAreSelected) {
    simulateAfter(kHide + "controller 0: rebuild of " + kArchive + "  [", "advance --until-idle");
    EXPECT_EQ(run("--every 0.1").status, 0);
}

TEST_F(WaitTerminal, PrintsNothingWhenQuiet) {
    simulate("advance --until-idle");
    EXPECT_EQ(run("-q -l 0"), (ProcessOutcome{0, "", ""}));
}
