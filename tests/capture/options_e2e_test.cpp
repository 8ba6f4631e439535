// cli-capture from its command line: where the world is written, the messages, and the exit status.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/capture/comparison.h"

struct CaptureSession : Session {
    CaptureSession() { program = std::string(PROGRAMS) + "/cli-capture"; }
};

TEST(Capture, WritesToStandardOutputByDefault) {
    CaptureSession session;
    session.useWorld("{\"controllers\": []}");
    const ProcessOutcome outcome = session.run({});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.out.ends_with("  \"controllers\": []\n}\n")) << outcome.out;
    EXPECT_NE(outcome.out.find("\"controllers[*].drives[*].badSectors: none\",\n"), std::string::npos);
    EXPECT_NE(outcome.err.find("cli-capture: assumed: controllers[*].drives[*].badSectors: none\n"),
              std::string::npos);
}

TEST(Capture, ChangesNothingInTheWorld) {
    CaptureSession session;
    session.useWorld(fixtureWorld("two_controllers"));
    const std::string before = session.worldText();
    session.run({"--output", session.path("copy.json")});
    EXPECT_EQ(session.worldText(), before);
}

TEST(Capture, ReplacesSerialsAndNames) {
    CaptureSession session;
    const std::string plain = session.run({}).out;
    const std::string anonymous = session.run({"--anonymous"}).out;
    EXPECT_NE(plain.find("TQ5A0041720"), std::string::npos);
    EXPECT_NE(plain.find("Archive"), std::string::npos);
    EXPECT_EQ(anonymous.find("TQ5A"), std::string::npos);
    EXPECT_EQ(anonymous.find("Archive"), std::string::npos);
    EXPECT_NE(anonymous.find("\"serial\": \"serial-12\""), std::string::npos);
    EXPECT_NE(anonymous.find("\"name\": \"name-3\""), std::string::npos);
}

TEST(Capture, MissingPartsAreAssumedAndMakeItIncomplete) {
    CaptureSession session;
    session.useWorld(R"({"rules": [{"kind": "refuse", "operation": "q5_getPhyDrvSettings", "result": 4}],
                         "controllers": [{"drives": [{"id": 2, "sectors": 4096}]}]})");
    const ProcessOutcome outcome = session.run({"-o", session.path("copy.json")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(
        outcome.err.find(
            "cli-capture: assumed: controllers[0].drives[0]: q5_getPhyDrvSettings failed with result 4\n"),
        std::string::npos)
        << outcome.err;
    EXPECT_NE(readFile(session.path("copy.json")).find("\"sectors\": 4096"), std::string::npos);
}

TEST(Capture, AnUnknownBuzzerMakesItIncomplete) {
    CaptureSession session;
    session.useWorld(R"({"rules": [{"kind": "refuse", "operation": "q5_getBuzzerStatus"}],
                         "controllers": [{}]})");
    const ProcessOutcome outcome = session.run({"-o", session.path("copy.json")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find(
                  "cli-capture: assumed: controllers[0].buzzer: the adapter does not know; taken as on\n"),
              std::string::npos)
        << outcome.err;
    EXPECT_NE(readFile(session.path("copy.json")).find("\"buzzer\": true"), std::string::npos);
}

TEST(Capture, FailsWhenTheAdaptersCannotBeOpened) {
    CaptureSession session;
    session.useWorld(R"({"rules": [{"kind": "refuse", "operation": "q5_initialize"}], "controllers": []})");
    const ProcessOutcome outcome = session.run({"-o", session.path("copy.json")});
    EXPECT_EQ(outcome, (ProcessOutcome{3, "",
                                       "cli-capture: the adapters cannot be read: q5_initialize failed with "
                                       "result 1\n"}));
    EXPECT_FALSE(std::filesystem::exists(session.path("copy.json")));
}

TEST(Capture, ReportsAFileThatCannotBeWritten) {
    CaptureSession session;
    const std::string file = session.path("missing/copy.json");
    const ProcessOutcome outcome = session.run({"-o", file});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(outcome.err.ends_with("cli-capture: cannot write " + file + ": No such file or directory\n"))
        << outcome.err;
}

TEST(Capture, ReportsAFullOrClosedStandardOutput) {
    CaptureSession session;
    const std::string tool = session.program;
    session.program = "/bin/sh";
    for (const char* redirection : {" >/dev/full", " >&-"}) {
        const ProcessOutcome outcome = session.run({"-c", tool + redirection});
        EXPECT_EQ(outcome.status, 3) << redirection;
        EXPECT_TRUE(outcome.err.ends_with("\ncli-capture: cannot write to standard output\n")) << outcome.err;
    }
}

// What is assumed must not be written to the world or any other file.
TEST(Capture, WritesAFileWithoutStandardStreams) {
    CaptureSession session;
    const std::string tool = session.program, file = session.path("copy.json");
    session.program = "/bin/sh";
    session.setClock(0);
    EXPECT_EQ(session.run({"-c", tool + " -o " + file + " <&- >&- 2>&-"}).status, 0);
    EXPECT_EQ(readFile(file), session.run({"-c", tool}).out);
}

TEST(Capture, RefusesUnknownOptions) {
    CaptureSession session;
    EXPECT_EQ(session.run({"now"}),
              (ProcessOutcome{2, "", "cli-capture: unexpected word \"now\"\nTry \"cli-capture --help\".\n"}));
    EXPECT_EQ(session.run({"-o", ""}),
              (ProcessOutcome{
                  2, "", "cli-capture: --output needs the name of a file\nTry \"cli-capture --help\".\n"}));
    EXPECT_EQ(session.run({"-x"}).status, 2);
}

TEST(Capture, AnswersHelpAndVersion) {
    CaptureSession session;
    EXPECT_EQ(session.run({"-V"}), (ProcessOutcome{0, "cli-capture " CLI_CAPTURE_VERSION "\n", ""}));
    const ProcessOutcome help = session.run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.starts_with("Usage: cli-capture [OPTION]...\n"));
}
