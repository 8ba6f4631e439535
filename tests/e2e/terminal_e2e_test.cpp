// The program on streams that are closed, full, endless or gone, and ended by signals. What it has
// done stands, and its files are whole.
#include <gtest/gtest.h>

#include <unistd.h>

#include "tests/e2e/harness.h"

using namespace std::string_literals;

static const std::string kHelpExit = "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n";

// Runs a script of the shell, in which "$CLI" is the program.
static ProcessOutcome shell(Session& session, const std::string& script) {
    session.setVariable("CLI", session.program);
    session.setVariable("PATH", "/usr/bin:/bin");
    const std::string program = session.program;
    session.program = "/bin/sh";
    const ProcessOutcome outcome = session.run({"-c", script});
    session.program = program;
    return outcome;
}

// An event file with two events that were fetched and not shown, 0x21 and, newer, 0x22.
static std::string savedEvents() {
    std::string image(20408, '\0');
    image[0] = image[4] = 2;
    image[8 + 408 + 12] = 0x21;
    image[8 + 2 * 408 + 12] = 0x22;
    return image;
}

TEST(ClosedStreams, OutputIsNotMissed) {
    Session s;
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit >&-"), (ProcessOutcome{2, "", ""}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" ctrl -v >&-"), (ProcessOutcome{0, "", ""}));
    EXPECT_EQ(shell(s, "printf 'nosuch\\nexit\\n' | \"$CLI\" >&-"), (ProcessOutcome{9, "", ""}));
}

// Without an output the program's files take its number; what is printed never reaches them.
TEST(ClosedStreams, OutputDoesNotRunIntoFiles) {
    Session whole, s;
    EXPECT_EQ(whole.run({"export", "-t", "0", "-f", "saved.cfg"}).status, 0);
    whole.run({"ctrl", "-a", "mod", "-s", "syncrate=9"});
    writeFile(s.eventFile(), savedEvents());
    EXPECT_EQ(shell(s, "for i in 1 2 3 4 5 6 7 8 9; do echo help logdrv; echo ctrl -v; done >typed\n"
                       "echo 'export -t 0 -f saved.cfg' >>typed\n"
                       "echo 'ctrl -a mod -s syncrate=9' >>typed\n"
                       "echo exit >>typed\n"
                       "exec \"$CLI\" <typed >&-"),
              (ProcessOutcome{0, "", ""}));
    EXPECT_EQ(readFile(s.path("saved.cfg")), readFile(whole.path("saved.cfg")));
    EXPECT_EQ(s.worldText(), whole.worldText());
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

// What the library opens for itself must not get the number of a stream that is closed: the listing would
// be written to the adapter's device, and commands be read from it.
TEST(ClosedStreams, AreNotTheLibrarysDevice) {
    Session s;
    s.preferLibraries(std::string(E2E_FOREIGN) + "/answering");
    s.setVariable("FOREIGN_DEVICE", "device");
    writeFile(s.path("device"), "nosuch\n");
    const std::string calls = "initialize baba0001 1 60\ndiscover 1\nfinalize\n";
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit >&-"), (ProcessOutcome{2, "", calls}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" <&-"), (ProcessOutcome{0, "cli>", calls}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit <&- 2>&-"), (ProcessOutcome{2, kHelpExit, ""}));
    EXPECT_EQ(readFile(s.path("device")), "nosuch\n");
}

TEST(ClosedStreams, ErrorsAreNotNeeded) {
    Session s;
    EXPECT_EQ(shell(s, "exec \"$CLI\" help exit 2>&-"), (ProcessOutcome{2, kHelpExit, ""}));
    EXPECT_EQ(shell(s, "exec \"$CLI\" nosuch <&- 2>&-"), (ProcessOutcome{9, "Invalid command!\n", ""}));
}

TEST(ClosedStreams, NothingAtAllIsNeeded) {
    Session s;
    writeFile(s.eventFile(), savedEvents());
    EXPECT_EQ(shell(s, "exec \"$CLI\" ctrl -a mod -s syncrate=9 <&- >&- 2>&-"), (ProcessOutcome{0, "", ""}));
    EXPECT_NE(s.worldText().find("\"synchronization\": 9"), std::string::npos);
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

TEST(ClosedStreams, ADirectoryHoldsNoInput) {
    Session s;
    EXPECT_EQ(shell(s, "exec \"$CLI\" </"), (ProcessOutcome{0, "cli>", ""}));
}

// The exit status speaks of the command, not of the paper it was written on.
TEST(FullDevice, LosesOutputAndNothingElse) {
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

// A disk without room for the event file: as one that cannot be written, it is passed over.
TEST(FullDevice, TakesNoEventFile) {
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

// A reader that has seen enough ends the program by a broken pipe.
TEST(BrokenPipe, EndsAnEndlessMessage) {
    Session s;
    const std::string line = "Invalid command for \"enclosure\"\n";
    EXPECT_EQ(shell(s, "{ \"$CLI\" enclosure -a locate bogus; echo $? >status; } | head -n 3; cat status"),
              (ProcessOutcome{0, line + line + line + "141\n", ""}));
}

// The output of a short command is handed over at the very end, when all else is done.
TEST(BrokenPipe, LeavesTheFilesWhole) {
    Session s;
    EXPECT_EQ(shell(s, "mkfifo pipe; true <pipe & exec 3>pipe; wait\n"
                       "\"$CLI\" ctrl -a mod -s syncrate=9 >&3; echo $?\n"
                       "\"$CLI\" help exit >&3; echo $?"),
              (ProcessOutcome{0, "0\n141\n", ""}));
    EXPECT_NE(s.worldText().find("\"synchronization\": 9"), std::string::npos);
    EXPECT_TRUE(readFile(s.eventFile()) == std::string(20408, '\0'));
}

// 4096 characters are a line and one is dropped: 255 such lines and a rest. Each has 16 words of 256
// characters, the first of which is no command.
TEST(LongInput, ALineOfAMegabyteIsManyLines) {
    Session s;
    std::string output = "cli>";
    for (int line = 0; line < 256; ++line)
        output += "Invalid command!\ncli>";
    EXPECT_EQ(s.prompt(std::string(1 << 20, 'x') + "\nexit\n"), (ProcessOutcome{9, output, ""}));
    EXPECT_EQ(s.prompt(std::string(1 << 20, 'x')), (ProcessOutcome{9, output, ""}));
}

// A blank line runs the words before it again, and those were none: no command.
TEST(LongInput, AMegabyteOfNulBytesIsAsManyBlankLines) {
    Session s;
    const ProcessOutcome outcome = s.prompt(std::string(1 << 16, '\0') + "help exit\n");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out.size(), (1U << 16) * "cli>Invalid command!\n"s.size() + 4 + kHelpExit.size() + 4);
    EXPECT_EQ(outcome.err, "");
}

// An unterminated quote takes the line's 4096 characters in words of 256: the quote opens the first
// alone, so 4095 characters are 16 words and the last is not full.
TEST(LongInput, AnEndlessQuoteEndsWithItsLine) {
    Session s;
    EXPECT_EQ(s.prompt("\"" + std::string(4095, 'x') + "\nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
}

TEST(Signals, ControlCEndsThePromptByTheSignal) {
    Session s;
    writeFile(s.eventFile(), savedEvents());
    const ProcessOutcome outcome = s.terminal({"nosuch\n", "\x03"});
    EXPECT_EQ(outcome.status, 128 + 2);
    EXPECT_EQ(outcome.out.substr(0, 34), "cli>nosuch\r\nInvalid command!\r\ncli>");
    EXPECT_TRUE(readFile(s.eventFile()) == savedEvents());
}

// A half-typed line goes with it.
TEST(Signals, ControlCRunsNothing) {
    Session s;
    EXPECT_EQ(s.terminal({"ctrl -a mod -s syncrate=9\x03"}).status, 128 + 2);
    EXPECT_EQ(s.worldText().find("\"synchronization\": 9"), std::string::npos);
}

// The prompt waits on a pipe that stays open; a settings change tells that it has been reached. What
// was changed before stays, and so does the event file from before the start. What was not yet handed
// over of the output is lost.
TEST(Signals, EndTheWaitingPrompt) {
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
