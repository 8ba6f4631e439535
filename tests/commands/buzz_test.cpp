// The buzz command.
#include "commands/buzz.h"

#include "adapter/battery.h"
#include "tests/mock_adapter.h"

using Buzz = MockAdapterTest;

static void expectQuery(std::uint32_t controller, std::uint8_t state, int result = 0) {
    expectCall("q5_getBuzzerStatus", bytesOf(hbaAddress(controller), std::uint32_t{0}, std::uint32_t{1}),
               {state}, result);
}

static void expectQueries(std::uint32_t first, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i)
        expectQuery(first + i, 0);
}

static const std::string kHeader = "CtrlId    Status\n";
static const std::string kFourRows =
    "     0  disabled\n     1  disabled\n     2  disabled\n     3  disabled\n";

TEST_F(Buzz, ListsFourControllersByDefault) {
    for (const char* line : {"buzz", "buzz -a list", "BUZZ -A LIST", "buzz -a -x", "buzz -a", "buzz -c 0",
                             "buzz -c 4", "buzz -C 5", "buzz -c 4294967295", "buzz -a list -i 0"}) {
        expectQueries(0, 4);
        EXPECT_EQ(outcomeOf(ListBuzzStatus, line), "0: " + kHeader + kFourRows) << line;
    }
}

TEST_F(Buzz, ShowsEachState) {
    expectQuery(0, 1);
    expectQuery(1, 0x80);
    expectQuery(2, 1, 1);
    expectQuery(3, 0, -1);
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz"), "0: " + kHeader +
                                                     "     0   enabled\n     1   enabled\n"
                                                     "     2   Unknown\n     3   Unknown\n");
}

TEST_F(Buzz, ShowsMissingStateAsDisabled) {
    expectCall("q5_getBuzzerStatus", bytesOf(hbaAddress(3), std::uint32_t{0}, std::uint32_t{1}));
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -i 3 -c 1"), "0: " + kHeader + "     3  disabled\n");
}

TEST_F(Buzz, ListsTheRequestedControllers) {
    const std::string two = "0: " + kHeader + "     5  disabled\n     6  disabled\n";
    for (const char* line : {"buzz -i 5 -c 2", "buzz -c 2 -I 5", "buzz -a list -c 2 -i 5",
                             "buzz -i 5 -c 2 -c 9", "buzz -i 1 -c 3 -i 5 -c 2"}) {
        expectQueries(5, 2);
        EXPECT_EQ(outcomeOf(ListBuzzStatus, line), two) << line;
    }
    for (std::uint32_t count = 1; count <= 3; ++count) {
        expectQueries(0, count);
        EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -c " + std::to_string(count)),
                  "0: " + kHeader + kFourRows.substr(0, 17 * count));
    }
}

TEST_F(Buzz, WrapsPastTheLargestId) {
    expectQueries(0xFFFFFFFE, 4);
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -i 4294967294"),
              "0: " + kHeader + "    -2  disabled\n    -1  disabled\n     0  disabled\n     1  disabled\n");
}

TEST_F(Buzz, RejectsInvalidOptions) {
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -i x"), "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -i"), "6: Invalid controller ID '' specified\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -c -1"), "1: Invalid controller count '-1' specified\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -c y -i x"), "1: Invalid controller count 'y' specified\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -a list -v"), "1: Invalid subcommand for \"buzz\"!\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz list"), "1: Invalid subcommand for \"buzz\"!\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -i 0 -a list"), "1: Invalid subcommand for \"buzz\"!\n");
    EXPECT_EQ(outcomeOf(ListBuzzStatus, "buzz -x y -i x"), "1: Invalid subcommand for \"buzz\"!\n");
}

TEST_F(Buzz, ReadsMissingValueFromAStaleSlotButNotPastTheTable) {
    expectQuery(7, 0);
    EXPECT_EQ(run(ListBuzzStatus, splitWords("buzz -c 1 -i"), {"7"}).output, kHeader + "     7  disabled\n");
    std::vector<std::string> words = splitWords("buzz -a list");
    words.resize(15, "3");
    for (std::size_t i = 3; i < 15; i += 2)
        words[i] = "-c";
    words.push_back("-c");
    EXPECT_EQ(run(ListBuzzStatus, words).output, "Invalid controller count '' specified\n");
}

TEST_F(Buzz, ListsWithoutWords) {
    expectQueries(0, 4);
    EXPECT_EQ(run(ListBuzzStatus, {}, {"buzz", "-i", "9"}).output, kHeader + kFourRows);
}

// A line, and the controller and operation of the call it makes.
namespace {
struct Switch {
    const char* line;
    const char* operation;
    std::uint32_t controller;
};
} // namespace

static const Switch kSwitches[] = {
    {"buzz -a enable", "q5_turnOnBuzzer", 0},
    {"buzz -a disable", "q5_turnOffBuzzer", 0},
    {"BUZZ -A ENABLE", "q5_turnOnBuzzer", 0},
    {"buzz -a DISABLE -I 1", "q5_turnOffBuzzer", 1},
    {"buzz -a enable -i 1", "q5_turnOnBuzzer", 1},
    {"buzz -a enable -i 65537", "q5_turnOnBuzzer", 1},
    {"buzz -a enable -i", "q5_turnOnBuzzer", 0},
    {"buzz -a enable -c 1", "q5_turnOnBuzzer", 0},
    {"buzz -a enable 1 -i", "q5_turnOnBuzzer", 0},
    {"buzz -a disable -i 1 more", "q5_turnOffBuzzer", 0},
    {"buzz -a disable -i x more", "q5_turnOffBuzzer", 0},
    {"buzz disable enable", "q5_turnOnBuzzer", 0},
};

TEST_F(Buzz, IsSetByTheThirdWord) {
    for (const Switch& row : kSwitches)
        for (const int result : {0, 1, -1}) {
            expectCall(row.operation, bytesOf(hbaAddress(row.controller), std::uint32_t{0}, std::uint32_t{0}),
                       {}, result);
            EXPECT_EQ(outcomeOf(SetBuzzSettings, row.line), "0: ") << row.line;
        }
}

TEST_F(Buzz, RejectsInvalidWords) {
    const std::string count = "2: Invalid numbers of parameter for command \"buzz\"\n";
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz"), count);
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz enable"), count);
    EXPECT_EQ(run(SetBuzzSettings, {}, {"buzz", "-a", "enable"}).result, 2);
    const std::string action = "1: Invalid subcommand for \"buzz\"\n";
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz enable -i"), action);
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz -a on"), action);
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz -a enabled -i x"), action);
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz -a enable -i x"), "6: Invalid controller ID 'x' specified\n");
    EXPECT_EQ(outcomeOf(SetBuzzSettings, "buzz -a disable -I -1"),
              "6: Invalid controller ID '-1' specified\n");
}
