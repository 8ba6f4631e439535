// Splitting lines into words and finding the handler of a command word. Where the handlers lead is
// in routes_test.cpp.
#include "cli/interface.h"

#include <memory>
#include <string>
#include <vector>

#include "cli/cmddef.h"
#include "cli/routes.h"
#include "tests/mock_adapter.h"
#include "util/words.h"

using Words = std::vector<std::string>;

namespace {
// A word table that lives through several lines, as the program's does.
struct WordTable {
    std::unique_ptr<char[]> slot[kMaxWords];
    char* word[kMaxWords];
    int count = -1;
};
} // namespace

// As long as a word can be.
static const std::string fullWord(256, 'x');
static const std::string fullBlank(256, ' ');

static WordTable freshTable() {
    WordTable table;
    for (int i = 0; i < kMaxWords; ++i) {
        table.slot[i] = std::make_unique<char[]>(kWordSize);
        table.word[i] = table.slot[i].get();
    }
    return table;
}

static bool goesOn(WordTable& table, std::string line) {
    return processCmdLine(&table.count, line.data(), table.word) != 0;
}

static Words wordsOf(const std::string& line) {
    WordTable table = freshTable();
    EXPECT_TRUE(goesOn(table, line));
    return {table.word, table.word + table.count};
}

TEST(ProcessCmdLine, SplitsAtBlanks) {
    EXPECT_EQ(wordsOf("ctrl -i 1 -v"), (Words{"ctrl", "-i", "1", "-v"}));
    EXPECT_EQ(wordsOf("   ctrl   -v  "), (Words{"ctrl", "-v"}));
}

TEST(ProcessCmdLine, TakesTabsAndCarriageReturnsForOrdinaryCharacters) {
    EXPECT_EQ(wordsOf("ctrl\t-i 1\r"), (Words{"ctrl\t-i", "1\r"}));
}

TEST(ProcessCmdLine, KeepsTheBlanksOfAQuotedWord) {
    EXPECT_EQ(wordsOf("logdrv -i \"a b\" -v"), (Words{"logdrv", "-i", "a b", "-v"}));
    EXPECT_EQ(wordsOf("\"a b\"c d"), (Words{"a b", "c", "d"}));
}

TEST(ProcessCmdLine, OpensNoQuotesInsideAWord) {
    EXPECT_EQ(wordsOf("logdrv -a mod -l 0 -s name=\"a b\""),
              (Words{"logdrv", "-a", "mod", "-l", "0", "-s", "name=\"a", "b\""}));
    EXPECT_EQ(wordsOf("a\"b c\""), (Words{"a\"b", "c\""}));
}

TEST(ProcessCmdLine, QuotesASettingsTextAsAWhole) {
    EXPECT_EQ(wordsOf("logdrv -a mod -l 0 -s \"name=a b\""),
              (Words{"logdrv", "-a", "mod", "-l", "0", "-s", "name=a b"}));
}

TEST(ProcessCmdLine, EndsAnUnterminatedQuoteWithTheLine) {
    EXPECT_EQ(wordsOf("\"abc"), (Words{"abc"}));
    EXPECT_EQ(wordsOf("\"abc d "), (Words{"abc d "}));
    EXPECT_EQ(wordsOf("a \""), (Words{"a", ""}));
}

TEST(ProcessCmdLine, CountsAnEmptyQuotedWord) {
    EXPECT_EQ(wordsOf("\"\""), (Words{""}));
    EXPECT_EQ(wordsOf("a \"\" b"), (Words{"a", "", "b"}));
    EXPECT_EQ(wordsOf("\"\"\"\""), (Words{"", ""}));
}

TEST(ProcessCmdLine, LeavesA256CharacterWordWhole) {
    EXPECT_EQ(wordsOf("ctrl " + fullWord + " -v"), (Words{"ctrl", fullWord, "-v"}));
}

TEST(ProcessCmdLine, CutsALongerWordIntoPieces) {
    EXPECT_EQ(wordsOf(std::string(257, 'x')), (Words{fullWord, "x"}));
    EXPECT_EQ(wordsOf(std::string(512, 'x')), (Words{fullWord, fullWord}));
}

TEST(ProcessCmdLine, GoesOnUnquotedBehindThePieceOfALongQuotedWord) {
    EXPECT_EQ(wordsOf("\"" + fullBlank + "x y\" z"), (Words{fullBlank, "x", "y\"", "z"}));
}

TEST(ProcessCmdLine, OpensANewQuoteBehindAFullQuotedPiece) {
    EXPECT_EQ(wordsOf("\"" + fullWord + "\" y z"), (Words{fullWord, " y z"}));
}

TEST(ProcessCmdLine, TakesSixteenWords) {
    const Words sixteen = wordsOf("a b c d e f g h i j k l m n o p");
    EXPECT_EQ(sixteen.size(), 16u);
    EXPECT_EQ(sixteen.front(), "a");
    EXPECT_EQ(sixteen.back(), "p");
}

TEST(ProcessCmdLine, CountsMoreThanSixteenWordsAndLeavesTheSlots) {
    WordTable table = freshTable();
    EXPECT_TRUE(goesOn(table, "ctrl -v"));
    EXPECT_TRUE(goesOn(table, "a b c d e f g h i j k l m n o p q"));
    EXPECT_EQ(table.count, 17);
    EXPECT_STREQ(table.word[0], "ctrl");
    EXPECT_STREQ(table.word[1], "-v");
    EXPECT_STREQ(table.word[2], "");
}

TEST(ProcessCmdLine, CountsALineOfPiecesBeyondTheSlots) {
    WordTable table = freshTable();
    EXPECT_TRUE(goesOn(table, std::string(4096, 'x')));
    EXPECT_EQ(table.count, 16);
    std::string line;
    for (int i = 0; i < 2048; ++i)
        line += "x ";
    EXPECT_TRUE(goesOn(table, line));
    EXPECT_EQ(table.count, 2048);
    EXPECT_STREQ(table.word[0], fullWord.c_str());
}

TEST(ProcessCmdLine, FindsNoWordInABlankLineAndKeepsTheSlots) {
    WordTable table = freshTable();
    EXPECT_TRUE(goesOn(table, "ctrl -v"));
    for (const char* blank : {"", "     "}) {
        EXPECT_TRUE(goesOn(table, blank));
        EXPECT_EQ(table.count, 0);
        EXPECT_STREQ(table.word[0], "ctrl");
        EXPECT_STREQ(table.word[1], "-v");
    }
}

TEST(ProcessCmdLine, FindsTheFirstSlotEmptyInABlankFirstLine) {
    WordTable table = freshTable();
    EXPECT_TRUE(goesOn(table, ""));
    EXPECT_EQ(table.count, 0);
    EXPECT_STREQ(table.word[0], "");
}

TEST(ProcessCmdLine, LeavesTheSlotsBehindAShorterLine) {
    WordTable table = freshTable();
    EXPECT_TRUE(goesOn(table, "logdrv -a list"));
    EXPECT_TRUE(goesOn(table, "mp -a"));
    EXPECT_EQ(table.count, 2);
    EXPECT_STREQ(table.word[0], "mp");
    EXPECT_STREQ(table.word[1], "-a");
    EXPECT_STREQ(table.word[2], "list");
}

TEST(ProcessCmdLine, EndsTheLoopAtTheExitWord) {
    for (const char* line : {"exit", "  ExIt   ", "EXIT", "exit now", "\"exit\""}) {
        WordTable table = freshTable();
        EXPECT_FALSE(goesOn(table, line)) << line;
    }
}

TEST(ProcessCmdLine, GoesOnWhenExitIsNotTheWholeFirstWord) {
    for (const char* line : {"exits", "exi", "help exit", "exit\tnow", "exit\""}) {
        WordTable table = freshTable();
        EXPECT_TRUE(goesOn(table, line)) << line;
    }
}

TEST(CommandTable, HoldsEveryCommandSortedWithItsHandler) {
    const Command expected[] = {
        {"?", do_cmd_help},        {"battery", do_cmd_battery}, {"bga", do_cmd_bga},
        {"buzz", do_cmd_buzz},     {"ctrl", do_cmd_controller}, {"enclosure", do_cmd_enclosure},
        {"event", do_cmd_event},   {"export", do_cmd_export},   {"extent", do_cmd_extent},
        {"help", do_cmd_help},     {"import", do_cmd_import},   {"init", do_cmd_init},
        {"logdrv", do_cmd_logdrv}, {"migrate", do_cmd_migrate}, {"mp", do_cmd_mediapatrol},
        {"phydrv", do_cmd_phydrv}, {"rb", do_cmd_rebuild},      {"rc", do_cmd_redundancyCheck},
        {"sync", do_cmd_sync},
    };
    ASSERT_EQ(numCmd, 19);
    for (int i = 0; i < 19; ++i) {
        EXPECT_STREQ(cmdTable[i].name, expected[i].name);
        EXPECT_EQ(cmdTable[i].handler, expected[i].handler) << expected[i].name;
    }
}

TEST(CliParseCommand, RefusesAnUnknownWord) {
    for (const char* word : {"", "nosuch", "exit", "ctr", "ctrls", "\xff\xff", "!", "zzz", "-a"}) {
        const Outcome outcome = run(cli_parse_command, {word});
        EXPECT_EQ(outcome.result, 9) << word;
        EXPECT_EQ(outcome.output, "Invalid command!\n") << word;
    }
}

TEST(CliParseCommand, RefusesABlankFirstLine) {
    const Outcome outcome = run(cli_parse_command, {});
    EXPECT_EQ(outcome.result, 9);
    EXPECT_EQ(outcome.output, "Invalid command!\n");
}

TEST(CliParseCommand, FindsCommandsOfEitherCase) {
    for (const char* word : {"help", "HELP", "Help", "?"})
        EXPECT_EQ(run(cli_parse_command, {word, "exit"}).output,
                  "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n")
            << word;
}
