// The program with standard streams that are closed, full, endless or broken, and terminated by signals.
// Completed changes persist, and files are never left half-written.
#include <gtest/gtest.h>

#include <unistd.h>

#include "tests/e2e/harness.h"

using namespace std::string_literals;

static const std::string kHelpExit = "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n";

// Runs a shell script in which "$CLI" is the program.
static ProcessOutcome shell(Session& session, const std::string& script) {
    session.setVariable("CLI", session.program);
    session.setVariable("PATH", "/usr/bin:/bin");
    const std::string program = session.program;
    session.program = "/bin/sh";
    const ProcessOutcome outcome = session.run({"-c", script});
    session.program = program;
    return outcome;
}

// An event file with two events not shown yet: 0x21 and, newer, 0x22.
static std::string savedEvents() {
    std::string image(20408, '\0');
    image[0] = image[4] = 2;
    image[8 + 408 + 12] = 0x21;
    image[8 + 2 * 408 + 12] = 0x22;
    return image;
}

TEST(ClosedStreams, OutputIsOptional) {
    Session s;
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit >&-"), (ProcessOutcome{2, "", ""}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" ctrl -v >&-"), kSilentSuccess);
    EXPECT_EQ(shell(s, "printf 'nosuch\\nexit\\n' | \"$CLI\" >&-"), (ProcessOutcome{9, "", ""}));
}

// With standard output closed, a file of the program could get its number; no output may end up in it.
TEST(ClosedStreams, OutputDoesNotReachFiles) {
    Session whole, s;
    EXPECT_EQ(whole.run({"export", "-t", "0", "-f", "saved.cfg"}).status, 0);
    whole.run({"ctrl", "-a", "mod", "-s", "syncrate=9"});
    writeFile(s.eventFile(), savedEvents());
    EXPECT_EQ(shell(s, "for i in 1 2 3 4 5 6 7 8 9; do echo help logdrv; echo ctrl -v; done >typed\n"
                       "echo 'export -t 0 -f saved.cfg' >>typed\n"
                       "echo 'ctrl -a mod -s syncrate=9' >>typed\n"
                       "echo exit >>typed\n"
                       "exec \"$CLI\" <typed >&-"),
              kSilentSuccess);
    EXPECT_EQ(readFile(s.path("saved.cfg")), readFile(whole.path("saved.cfg")));
    EXPECT_EQ(s.worldText(), whole.worldText());
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

// A file that the library opens must not get the number of a closed stream: the listing would be written to
// the adapter's device, and commands would be read from it.
TEST(ClosedStreams, AreNotReusedByLibrary) {
    Session s;
    s.preferLibraries(std::string(E2E_FAKE_LIBS) + "/working");
    s.setVariable("FAKE_LIB_DEVICE", "device");
    writeFile(s.path("device"), "nosuch\n");
    const std::string calls = "initialize baba0001 1 60\ndiscover 1\nfinalize\n";
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit >&-"), (ProcessOutcome{2, "", calls}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" <&-"), (ProcessOutcome{0, "cli>", calls}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit <&- 2>&-"), (ProcessOutcome{2, kHelpExit, ""}));
    EXPECT_EQ(readFile(s.path("device")), "nosuch\n");
}

TEST(ClosedStreams, ErrorsAreOptional) {
    Session s;
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit 2>&-"), (ProcessOutcome{2, kHelpExit, ""}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" nosuch <&- 2>&-"), (ProcessOutcome{9, "Invalid command!\n", ""}));
}

TEST(ClosedStreams, AllAreOptional) {
    Session s;
    writeFile(s.eventFile(), savedEvents());
    EXPECT_EQ(shell(s, "exec \"$CLI\" ctrl -a mod -s syncrate=9 <&- >&- 2>&-"), kSilentSuccess);
    EXPECT_NE(s.worldText().find("\"synchronization\": 9"), std::string::npos);
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

TEST(ClosedStreams, DirectoryAsInputIsEmpty) {
    Session s;
    EXPECT_EQ(shell(s, "exec \"$CLI\" </"), (ProcessOutcome{0, "cli>", ""}));
}

// The exit status is that of the command, even when its output was lost.
TEST(FullDevice, LosesOutputOnly) {
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no device that is always full";
    Session s;
    writeFile(s.eventFile(), savedEvents());
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit >/dev/full"), (ProcessOutcome{2, "", ""}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" help >/dev/full"), (ProcessOutcome{2, "", ""}));
    EXPECT_EQ(shell(s, "printf 'ctrl -v\\nctrl -a mod -s syncrate=9\\nnosuch\\n' | \"$CLI\" >/dev/full"),
              (ProcessOutcome{9, "", ""}));
    EXPECT_NE(s.worldText().find("\"synchronization\": 9"), std::string::npos);
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

// A full file system is ignored like an event file that cannot be written.
TEST(FullDevice, IgnoresUnwritableEventFile) {
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "no device that is always full";
    Session s;
    ASSERT_EQ(symlink("/dev/full", s.eventFile().c_str()), 0);
    EXPECT_EQ(s.run({"help", "exit"}), (ProcessOutcome{2, kHelpExit, ""}));
}

TEST(EventFile, MayBeADirectory) {
    Session s;
    EXPECT_EQ(shell(s, "mkdir CLIEvent.dat; exec \"$CLI\" help exit"), (ProcessOutcome{2, kHelpExit, ""}));
}

// A reader that closes its end terminates the program with SIGPIPE.
TEST(BrokenPipe, EndsEndlessMessage) {
    Session s;
    const std::string line = "Invalid command for \"enclosure\"\n";
    EXPECT_EQ(shell(s, "{ \"$CLI\" enclosure -a locate bogus; echo $? >status; } | head -n 3; cat status"),
              (ProcessOutcome{0, line + line + line + "141\n", ""}));
}

// The output of a short command is flushed at the very end, when everything else is done.
TEST(BrokenPipe, KeepsFilesIntact) {
    Session s;
    EXPECT_EQ(shell(s, "mkfifo pipe; true <pipe & exec 3>pipe; wait\n"
                       "\"$CLI\" ctrl -a mod -s syncrate=9 >&3; echo $?\n"
                       "\"$CLI\" help exit >&3; echo $?"),
              (ProcessOutcome{0, "0\n141\n", ""}));
    EXPECT_NE(s.worldText().find("\"synchronization\": 9"), std::string::npos);
    EXPECT_TRUE(readFile(s.eventFile()) == std::string(20408, '\0'));
}

// 4096 characters are a line and one is dropped: 255 such lines and a remainder. Each has 16 words of
// 256 characters, and the first is not a command.
TEST(LongInput, SplitsMegabyteLine) {
    Session s;
    std::string output = "cli>";
    for (int line = 0; line < 256; ++line)
        output += "Invalid command!\ncli>";
    EXPECT_EQ(s.prompt(std::string(1 << 20, 'x') + "\nexit\n"), (ProcessOutcome{9, output, ""}));
    EXPECT_EQ(s.prompt(std::string(1 << 20, 'x')), (ProcessOutcome{9, output, ""}));
}

// A blank line runs the previous command again; there was none.
TEST(LongInput, ReadsNulBytesAsBlankLines) {
    Session s;
    const ProcessOutcome outcome = s.prompt(std::string(1 << 16, '\0') + "help exit\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out.size(), (1U << 16) * "cli>Invalid command!\n"s.size() + 4 + kHelpExit.size() + 4);
    EXPECT_EQ(outcome.err, "");
}

// An unterminated quote extends over the line's 4096 characters, in words of 256. The quote itself is one of
// them, so 4095 characters make 16 words and the last is not full.
TEST(LongInput, EndsUnterminatedQuoteWithLine) {
    Session s;
    EXPECT_EQ(s.prompt("\"" + std::string(4095, 'x') + "\nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
}

TEST(Signals, ControlCTerminatesPrompt) {
    Session s;
    writeFile(s.eventFile(), savedEvents());
    const ProcessOutcome outcome = s.terminal({"nosuch\n", "\x03"});
    EXPECT_EQ(outcome.status, 128 + 2);
    EXPECT_EQ(outcome.out.substr(0, 34), "cli>nosuch\r\nInvalid command!\r\ncli>");
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

// A half-typed line is discarded.
TEST(Signals, ControlCRunsNothing) {
    Session s;
    EXPECT_EQ(s.terminal({"ctrl -a mod -s syncrate=9\x03"}).status, 128 + 2);
    EXPECT_EQ(s.worldText().find("\"synchronization\": 9"), std::string::npos);
}

// The prompt waits on a pipe that stays open; a changed setting shows that it has been reached. Earlier
// changes persist, and so does the event file from before the start. Output not flushed yet is lost.
TEST(Signals, TerminateWaitingPrompt) {
    for (const auto& [name, number] : {std::pair{"TERM", 15}, {"HUP", 1}}) {
        Session s;
        writeFile(s.eventFile(), savedEvents());
        const ProcessOutcome outcome =
            shell(s, "mkfifo pipe\n"
                     "\"$CLI\" <pipe & program=$!\n"
                     "exec 3>pipe\n"
                     "echo event >&3\n"
                     "echo ctrl -a mod -s syncrate=9 >&3\n"
                     "until grep -q '\"synchronization\": 9' world.json 2>/dev/null; do sleep 0.1; done\n"
                     "kill -" +
                         std::string(name) + " $program; wait $program; echo $?");
        EXPECT_EQ(outcome.out, std::to_string(128 + number) + "\n") << name;
        EXPECT_TRUE(readFile(s.eventFile()) == savedEvents()) << name;
    }
}
