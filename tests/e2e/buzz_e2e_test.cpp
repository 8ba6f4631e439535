// The buzz command on two controllers; the buzzer of the first is enabled.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/harness.h"

static const std::string kHeader = "CtrlId    Status\n";
static const std::string kMissingControllers = "     2   Unknown\n     3   Unknown\n";
static const std::string kListing = kHeader + "     0   enabled\n     1  disabled\n" + kMissingControllers;

struct Buzz : testing::Test {
    Session s;
    Buzz() { s.useWorld(fixtureWorld("drives_and_boxes")); }
};

TEST_F(Buzz, ListsFourControllersWhenTwoExist) {
    EXPECT_EQ(s.run({"buzz"}), (ProcessOutcome{0, kListing, ""}));
    EXPECT_EQ(s.run({"BUZZ", "-A", "LIST"}), (ProcessOutcome{0, kListing, ""}));
    EXPECT_EQ(s.run({"buzz", "-c", "4"}), (ProcessOutcome{0, kListing, ""}));
    EXPECT_EQ(s.run({"buzz", "-c", "1"}), (ProcessOutcome{0, kHeader + "     0   enabled\n", ""}));
    EXPECT_EQ(s.run({"buzz", "-i", "1", "-c", "2"}),
              (ProcessOutcome{0, kHeader + "     1  disabled\n     2   Unknown\n", ""}));
}

TEST_F(Buzz, KeepsState) {
    EXPECT_EQ(s.run({"buzz", "-a", "enable", "-i", "1"}), kSilentSuccess);
    EXPECT_EQ(s.run({"buzz", "-a", "disable"}), kSilentSuccess);
    const std::string switched = kHeader + "     0  disabled\n     1   enabled\n" + kMissingControllers;
    EXPECT_EQ(s.run({"buzz"}), (ProcessOutcome{0, switched, ""}));
    EXPECT_EQ(s.prompt("buzz -a enable -i 0\nbuzz -a DISABLE -i 1\nbuzz\nexit\n"),
              (ProcessOutcome{0, "cli>cli>cli>" + kListing + "cli>", ""}));
    EXPECT_EQ(s.run({"buzz"}), (ProcessOutcome{0, kListing, ""}));
}

TEST_F(Buzz, ChangesFirstControllerUnlessFiveWordsNameAnother) {
    EXPECT_EQ(s.run({"buzz", "-a", "disable", "-i", "1", "more"}), kSilentSuccess);
    EXPECT_EQ(s.run({"buzz", "-c", "2"}),
              (ProcessOutcome{0, kHeader + "     0  disabled\n     1  disabled\n", ""}));
    EXPECT_EQ(s.run({"buzz", "-a", "enable", "-i"}), kSilentSuccess);
    EXPECT_EQ(s.run({"buzz", "-a", "enable", "-i", "7"}), kSilentSuccess); // no such controller
    EXPECT_EQ(s.run({"buzz"}), (ProcessOutcome{0, kListing, ""}));
}

TEST_F(Buzz, RejectsBadWords) {
    EXPECT_EQ(s.run({"buzz", "-a", "on"}), (ProcessOutcome{9, "Invalid command for \"buzz\"\n", ""}));
    EXPECT_EQ(s.run({"buzz", "enable"}),
              (ProcessOutcome{2, "Invalid numbers of parameter for command \"buzz\"\n", ""}));
    EXPECT_EQ(s.run({"buzz", "disable", "-i", "0"}),
              (ProcessOutcome{1, "Invalid subcommand for \"buzz\"\n", ""}));
    EXPECT_EQ(s.run({"buzz", "-a", "enable", "-i", "x"}),
              (ProcessOutcome{6, "Invalid controller ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"buzz", "-i", "x"}), (ProcessOutcome{6, "Invalid controller ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"buzz", "-c", "x"}),
              (ProcessOutcome{1, "Invalid controller count 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"buzz", "list"}), (ProcessOutcome{1, "Invalid subcommand for \"buzz\"!\n", ""}));
    EXPECT_EQ(s.run({"buzz"}), (ProcessOutcome{0, kListing, ""}));
}

// An empty line runs the previous command with a word count of 0; its stale words still select the action.
TEST_F(Buzz, EmptyLineRunsItAgain) {
    EXPECT_EQ(s.prompt("buzz -i 1 -c 1\n\nexit\n"),
              (ProcessOutcome{0, "cli>" + kHeader + "     1  disabled\ncli>" + kListing + "cli>", ""}));
    EXPECT_EQ(s.prompt("buzz -a disable -i 1\n\nexit\n"),
              (ProcessOutcome{2, "cli>cli>Invalid numbers of parameter for command \"buzz\"\ncli>", ""}));
    EXPECT_EQ(s.prompt("buzz\n\nexit\n"),
              (ProcessOutcome{9, "cli>" + kListing + "cli>Invalid command for \"buzz\"\ncli>", ""}));
}

TEST_F(Buzz, LogsEachChange) {
    const auto events = [&] {
        const std::string listing = s.run({"event", "-c", "100", "-i", "1"}).out;
        return std::count(listing.begin(), listing.end(), '\n');
    };
    const auto before = events();
    EXPECT_EQ(s.run({"buzz", "-a", "enable", "-i", "1"}), kSilentSuccess);
    EXPECT_EQ(events(), before + 1);
}
