// One-shot commands and the prompt, on pipes and on a terminal. The commands used here need no adapter.
#include <gtest/gtest.h>

#include "tests/e2e/harness.h"

static const std::string kHelpExit = "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n";

// An empty world would fail at startup, so these tests use the built-in one.
static ProcessOutcome promptOutcome(const std::string& input) {
    Session s;
    return s.prompt(input);
}

TEST(OneShot, PrintsOutputAndExitsWithResult) {
    Session s;
    EXPECT_EQ(s.run({"help", "exit"}), (ProcessOutcome{2, kHelpExit, ""}));
    EXPECT_EQ(s.run({"HELP", "Exit"}), (ProcessOutcome{2, kHelpExit, ""}));
    EXPECT_EQ(s.run({"?", "exit", "and", "more"}), (ProcessOutcome{2, kHelpExit, ""}));
}

TEST(OneShot, ExitsWithNineForUnknownWords) {
    Session s;
    EXPECT_EQ(s.run({"nosuch"}), (ProcessOutcome{9, "Invalid command!\n", ""}));
    EXPECT_EQ(s.run({"ctr"}), (ProcessOutcome{9, "Invalid command!\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "nosuch"}), (ProcessOutcome{9, "Invalid command for \"ctrl\"\n", ""}));
    EXPECT_EQ(s.run({"event", "-x"}), (ProcessOutcome{9, "Invalid command for \"event\"\n", ""}));
}

TEST(OneShot, RejectsExitWord) {
    Session s;
    EXPECT_EQ(s.run({"exit"}), (ProcessOutcome{9, "Invalid command!\n", ""}));
}

TEST(OneShot, CountsEmptyArgument) {
    Session s;
    EXPECT_EQ(s.run({""}), (ProcessOutcome{9, "Invalid command!\n", ""}));
    EXPECT_EQ(s.run({"ctrl", ""}), (ProcessOutcome{9, "Invalid command for \"ctrl\"\n", ""}));
}

TEST(OneShot, DoesNotSplitArguments) {
    Session s;
    EXPECT_EQ(s.run({"help exit"}), (ProcessOutcome{9, "Invalid command!\n", ""}));
}

TEST(OneShot, AcceptsSixteenWordsAndRejectsSeventeen) {
    Session s;
    std::vector<std::string> words(16, "exit");
    words[0] = "help";
    EXPECT_EQ(s.run(words), (ProcessOutcome{2, kHelpExit, ""}));
    words.push_back("exit");
    EXPECT_EQ(s.run(words), (ProcessOutcome{2, "Too many words, at most 16 are taken!\n", ""}));
}

TEST(OneShot, TruncatesLongArgumentTo256Characters) {
    Session s;
    const std::string kept(256, '7');
    const std::string errorMessage = "Invalid controller ID '" + std::string(255, '7') + "x' specified\n";
    EXPECT_EQ(s.run({"event", "-i", std::string(255, '7') + "x" + kept}),
              (ProcessOutcome{6, errorMessage, ""}));
}

TEST(OneShot, WorksWithoutStandardInput) {
    Session s;
    EXPECT_EQ(s.runWithoutInput({"help", "exit"}), (ProcessOutcome{2, kHelpExit, ""}));
}

TEST(Prompt, RunsLinesUntilExit) {
    EXPECT_EQ(promptOutcome("help exit\nnosuch\nexit\nhelp exit\n"),
              (ProcessOutcome{9, "cli>" + kHelpExit + "cli>Invalid command!\ncli>", ""}));
}

TEST(Prompt, ExitsWithZeroWhenNothingWasRun) {
    EXPECT_EQ(promptOutcome("exit\n"), (ProcessOutcome{0, "cli>", ""}));
    EXPECT_EQ(promptOutcome(""), (ProcessOutcome{0, "cli>", ""}));
}

TEST(Prompt, AcceptsExitInAnyCaseWithMoreWords) {
    for (const char* line : {"EXIT\n", "   ExIt   \n", "exit now\n", "\"exit\"\n"})
        EXPECT_EQ(promptOutcome(std::string("nosuch\n") + line + "help exit\n"),
                  (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}))
            << line;
}

TEST(Prompt, ExitsWithResultOfLastCommand) {
    EXPECT_EQ(promptOutcome("nosuch\nhelp exit\nexit\n").status, 2);
    EXPECT_EQ(promptOutcome("help exit\nnosuch\nexit\n").status, 9);
}

TEST(Prompt, EndsAtEndOfInput) {
    EXPECT_EQ(promptOutcome("nosuch\n"), (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
}

TEST(Prompt, RunsLastLineWithoutNewline) {
    EXPECT_EQ(promptOutcome("nosuch"), (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
    EXPECT_EQ(promptOutcome("nosuch\nexit"), (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
}

TEST(Prompt, EndsWithoutStandardInput) {
    Session s;
    EXPECT_EQ(s.runWithoutInput({}), (ProcessOutcome{0, "cli>", ""}));
}

// The words of the previous line are still in the table, with a word count of 0.
TEST(Prompt, BlankLineRunsPreviousCommand) {
    EXPECT_EQ(promptOutcome("help exit\n\n   \nexit\n").status, 2);
    EXPECT_EQ(
        promptOutcome("ctrl nosuch\n\nexit\n"),
        (ProcessOutcome{9, "cli>Invalid command for \"ctrl\"\ncli>Invalid command for \"ctrl\"\ncli>", ""}));
}

TEST(Prompt, BlankFirstLineIsUnknown) {
    EXPECT_EQ(promptOutcome("\n   \nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command!\ncli>Invalid command!\ncli>", ""}));
}

// Compatibility: "ctrl -a" reads a third word, which is the stale one of the previous line.
TEST(Prompt, ReadsStaleWordAfterLast) {
    EXPECT_EQ(promptOutcome("ctrl -a\nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command for \"ctrl\"\ncli>", ""}));
    EXPECT_EQ(promptOutcome("help x -x\nctrl -a\nexit\n").status, 9);
    EXPECT_EQ(promptOutcome("help x mod\nctrl -a\nexit\n")
                  .out.substr(promptOutcome("help x mod\nexit\n").out.size()),
              "Invalid numbers of parameter in command \"ctrl -a mod\" \ncli>");
}

TEST(Prompt, KeepsBlanksWithinQuotesOnly) {
    EXPECT_EQ(promptOutcome("ctrl \"-a list\"\nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command for \"ctrl\"\ncli>", ""}));
    EXPECT_EQ(promptOutcome("event -i \"a b\"\n"),
              (ProcessOutcome{6, "cli>Invalid controller ID 'a b' specified\ncli>", ""}));
    EXPECT_EQ(promptOutcome("event -i a\"b c\"\n"),
              (ProcessOutcome{6, "cli>Invalid controller ID 'a\"b' specified\ncli>", ""}));
    EXPECT_EQ(promptOutcome("event -i \"abc\n"),
              (ProcessOutcome{6, "cli>Invalid controller ID 'abc' specified\ncli>", ""}));
    EXPECT_EQ(promptOutcome("event\t-i\n"), (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
    EXPECT_EQ(promptOutcome("nosuch\r\nexit\n").status, 9);
}

TEST(Prompt, AcceptsSixteenWordsAndRejectsSeventeen) {
    const std::string fifteen = " e e e e e e e e e e e e e e e";
    EXPECT_EQ(promptOutcome("help exit" + fifteen.substr(2) + "\n"),
              (ProcessOutcome{2, "cli>" + kHelpExit + "cli>", ""}));
    EXPECT_EQ(promptOutcome("help exit" + fifteen + "\n"),
              (ProcessOutcome{2, "cli>Too many words, at most 16 are taken!\ncli>", ""}));
}

TEST(Prompt, KeepsStaleWordsAfterRejectedLine) {
    const std::string refused = "help 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\n";
    EXPECT_EQ(promptOutcome("nosuch\n" + refused + "\nexit\n"),
              (ProcessOutcome{9,
                              "cli>Invalid command!\ncli>Too many words, at most 16 are taken!\n"
                              "cli>Invalid command!\ncli>",
                              ""}));
}

TEST(Prompt, SplitsLongWordEvery256Characters) {
    const std::string digits(256, '1');
    // The ID ends after 256 digits; the rest is a separate word, not an option.
    EXPECT_EQ(promptOutcome("event -c " + digits + "x\n"),
              (ProcessOutcome{1, "cli>Invalid parameters defined\ncli>", ""}));
    EXPECT_EQ(promptOutcome("event -c " + digits.substr(1) + "x\n"),
              (ProcessOutcome{1, "cli>Invalid event count '" + digits.substr(1) + "x' specified\ncli>", ""}));
}

// The first 4096 characters are one command, the next character is dropped, the rest is another command.
TEST(Prompt, SplitsOverlongLine) {
    const std::string blanks(4096 - 6, ' ');
    EXPECT_EQ(promptOutcome("nosuch" + blanks + "\nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command!\ncli>", ""}));
    EXPECT_EQ(promptOutcome("nosuch" + blanks + "Xhelp exit\nexit\n"),
              (ProcessOutcome{2, "cli>Invalid command!\ncli>" + kHelpExit + "cli>", ""}));
    EXPECT_EQ(promptOutcome("nosuch" + blanks + "exit\n"),
              (ProcessOutcome{9, "cli>Invalid command!\ncli>Invalid command!\ncli>", ""}));
}

// After exactly 4097 characters the newline remains and is read as a blank line.
TEST(Prompt, ReadsNewlineAfter4097CharactersAsBlankLine) {
    EXPECT_EQ(promptOutcome("nosuch" + std::string(4097 - 6, ' ') + "\nexit\n"),
              (ProcessOutcome{9, "cli>Invalid command!\ncli>Invalid command!\ncli>", ""}));
}

TEST(Prompt, EndsLineAtNulByte) {
    using namespace std::string_literals;
    EXPECT_EQ(promptOutcome("nosuch\0help exit\nexit\n"s),
              (ProcessOutcome{2, "cli>Invalid command!\ncli>" + kHelpExit + "cli>", ""}));
}

TEST(Terminal, RunsSession) {
    Session s;
    EXPECT_EQ(s.terminal({"nosuch\n", "exit\n"}),
              (ProcessOutcome{9, "cli>nosuch\r\nInvalid command!\r\ncli>exit\r\n", ""}));
}

TEST(Terminal, EndsWithControlDOnEmptyLine) {
    Session s;
    const ProcessOutcome outcome = s.terminal({"nosuch\n", "\x04"});
    EXPECT_EQ(outcome.status, 9);
    EXPECT_EQ(outcome.out.substr(0, 35), "cli>nosuch\r\nInvalid command!\r\ncli>");
}

// The first Ctrl-D submits the line without a newline, the second ends the input.
TEST(Terminal, RunsLineEndedWithControlD) {
    Session s;
    const ProcessOutcome outcome = s.terminal({"nosuch\x04\x04"});
    EXPECT_EQ(outcome.status, 9);
    EXPECT_NE(outcome.out.find("Invalid command!\r\ncli>"), std::string::npos) << outcome.out;
}
