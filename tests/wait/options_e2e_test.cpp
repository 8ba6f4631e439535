// The command line of cli-wait.
#include <gtest/gtest.h>

#include "tests/e2e/harness.h"

struct WaitOptions : testing::Test {
    Session session;
    void SetUp() override { session.program = CLI_WAIT; }
    void expectRefused(const std::vector<std::string>& words, const std::string& problem) {
        EXPECT_EQ(session.run(words),
                  (ProcessOutcome{2, "", "cli-wait: " + problem + "\nTry \"cli-wait --help\".\n"}));
    }
};

TEST_F(WaitOptions, PrintsHelpAndVersion) {
    const ProcessOutcome help = session.run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    EXPECT_EQ(help.out.substr(0, 30), "Usage: cli-wait [OPTION]...\nWa");
    EXPECT_NE(help.out.find("\n      --timeout=SECONDS    give up after this time\n"), std::string::npos);
    EXPECT_NE(help.out.find("\nExit status: 0 finished and online, 1 finished but not online"),
              std::string::npos);
    EXPECT_EQ(session.run({"-V"}), (ProcessOutcome{0, "cli-wait " CLI_WAIT_VERSION "\n", ""}));
}

TEST_F(WaitOptions, RefusesInvalidNumbers) {
    expectRefused({"-i", "x"}, "--controller: \"x\" is not a number from 0 to 65535");
    expectRefused({"-i", "65536"}, "--controller: \"65536\" is not a number from 0 to 65535");
    expectRefused({"-l", "-1"}, "--logical-drive: \"-1\" is not a number from 0 to 65535");
    expectRefused({"-l", ""}, "--logical-drive: \"\" is not a number from 0 to 65535");
    expectRefused({"--timeout", "1.5"},
                  "--timeout: \"1.5\" is not a whole number of seconds from 0 to 1000000000");
    expectRefused({"--timeout", "1000000001"},
                  "--timeout: \"1000000001\" is not a whole number of seconds from 0 to 1000000000");
    expectRefused(
        {"--timeout", "18446744073709551616"},
        "--timeout: \"18446744073709551616\" is not a whole number of seconds from 0 to 1000000000");
    for (const char* limit : {"0", "86401", "1.5", "", "-1"})
        expectRefused({"--limit", limit}, "--limit: \"" + std::string(limit) +
                                              "\" is not a whole number of seconds from 1 to 86400");
    for (const char* every :
         {"0", "0.09", "0.0", "86400.001", "86401", "1.", ".5", "1.2345", "1s", "1e3", "-1"})
        expectRefused({"--every", every},
                      "--every: \"" + std::string(every) + "\" is not a number of seconds from 0.1 to 86400");
}

TEST_F(WaitOptions, AcceptsNumbersAtTheirLimits) {
    for (const char* every : {"0.1", "86400", "86400.000", "2.25"})
        EXPECT_EQ(session.run({"-q", "--every", every, "--timeout", "1000000000"}),
                  (ProcessOutcome{0, "", ""}));
    EXPECT_EQ(session.run({"-q", "--limit", "86400"}), (ProcessOutcome{0, "", ""}));
}

TEST_F(WaitOptions, RefusesUnknownKindsAndWords) {
    expectRefused({"--for", "rebuild"}, "--for: \"rebuild\" is not init, sync, rc, migrate, rb, mp or any");
    expectRefused({"--for", "mp", "-l", "0"}, "media patrol belongs to drives: --for mp does not go with -l");
    expectRefused({"rb"}, "unexpected word \"rb\"");
    EXPECT_EQ(session.run({"--for"}).status, 2);
    EXPECT_EQ(session.run({"-z"}).status, 2);
}

// The exit status is that of the wait.
TEST_F(WaitOptions, ReportsAFullOrClosedStandardOutput) {
    session.program = "/bin/sh";
    for (const char* redirection : {">/dev/full", ">&-"})
        EXPECT_EQ(session.run({"-c", CLI_WAIT " --every 0.1 " + std::string(redirection)}),
                  (ProcessOutcome{0, "", "cli-wait: cannot write to standard output\n"}))
            << redirection;
}

TEST_F(WaitOptions, RefusesObjectsThatDoNotExist) {
    EXPECT_EQ(session.run({"-i", "2"}), (ProcessOutcome{2, "", "cli-wait: there is no controller 2\n"}));
    EXPECT_EQ(session.run({"-l", "9"}),
              (ProcessOutcome{2, "", "cli-wait: there is no logical drive 9 of controller 0\n"}));
    EXPECT_EQ(session.run({"-i", "1", "-l", "1"}),
              (ProcessOutcome{2, "", "cli-wait: there is no logical drive 1 of controller 1\n"}));
}
