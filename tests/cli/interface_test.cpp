// Splitting lines into words and finding the handler of a command word. The routes of the handlers are
// tested in routing/routes_test.cpp.
#include "cli/interface.h"

#include <memory>
#include <string>
#include <vector>

#include "cli/routes.h"
#include "tests/mock_adapter.h"
#include "util/utils.h"
#include "util/words.h"

using Words = std::vector<std::string>;

namespace {
// A word table that is used for several lines, as in the program.
struct WordTable {
    std::unique_ptr<char[]> slot[kMaxWords];
    char* word[kMaxWords];
    int count = -1;
};
} // namespace

// The longest words.
static const std::string fullWord(256, 'x');
static const std::string fullBlank(256, ' ');

static WordTable emptyTable() {
    WordTable table;
    for (int i = 0; i < kMaxWords; ++i) {
        table.slot[i] = std::make_unique<char[]>(kWordSize);
        table.word[i] = table.slot[i].get();
    }
    return table;
}

static int lineKind(WordTable& table, std::string line) {
    return processCmdLine(&table.count, line.data(), table.word);
}

static bool processLine(WordTable& table, std::string line) {
    return processCmdLine(&table.count, line.data(), table.word) != 0;
}

static Words wordsOf(const std::string& line) {
    WordTable table = emptyTable();
    EXPECT_TRUE(processLine(table, line));
    return {table.word, table.word + table.count};
}

TEST(ProcessCmdLine, SplitsAtBlanks) {
    EXPECT_EQ(wordsOf("ctrl -i 1 -v"), (Words{"ctrl", "-i", "1", "-v"}));
    EXPECT_EQ(wordsOf("   ctrl   -v  "), (Words{"ctrl", "-v"}));
}

TEST(ProcessCmdLine, TreatsTabsAndCarriageReturnsAsOrdinaryCharacters) {
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

TEST(ProcessCmdLine, DoesNotSplitA256CharacterWord) {
    EXPECT_EQ(wordsOf("ctrl " + fullWord + " -v"), (Words{"ctrl", fullWord, "-v"}));
}

TEST(ProcessCmdLine, SplitsALongerWordIntoPieces) {
    EXPECT_EQ(wordsOf(std::string(257, 'x')), (Words{fullWord, "x"}));
    EXPECT_EQ(wordsOf(std::string(512, 'x')), (Words{fullWord, fullWord}));
}

TEST(ProcessCmdLine, ContinuesUnquotedAfterThePieceOfALongQuotedWord) {
    EXPECT_EQ(wordsOf("\"" + fullBlank + "x y\" z"), (Words{fullBlank, "x", "y\"", "z"}));
}

TEST(ProcessCmdLine, OpensANewQuoteAfterAFullQuotedPiece) {
    EXPECT_EQ(wordsOf("\"" + fullWord + "\" y z"), (Words{fullWord, " y z"}));
}

TEST(ProcessCmdLine, AcceptsSixteenWords) {
    const Words sixteen = wordsOf("a b c d e f g h i j k l m n o p");
    EXPECT_EQ(sixteen.size(), 16u);
    EXPECT_EQ(sixteen.front(), "a");
    EXPECT_EQ(sixteen.back(), "p");
}

TEST(ProcessCmdLine, CountsMoreThanSixteenWordsAndKeepsTheSlots) {
    WordTable table = emptyTable();
    EXPECT_TRUE(processLine(table, "ctrl -v"));
    EXPECT_EQ(lineKind(table, "a b c d e f g h i j k l m n o p q"), kLongLine);
    EXPECT_EQ(table.count, 16);
    EXPECT_STREQ(table.word[0], "ctrl");
    EXPECT_STREQ(table.word[1], "-v");
    EXPECT_STREQ(table.word[2], "");
}

TEST(ProcessCmdLine, CountsPiecesBeyondTheSlots) {
    WordTable table = emptyTable();
    EXPECT_TRUE(processLine(table, std::string(4096, 'x')));
    EXPECT_EQ(table.count, 16);
    std::string line;
    for (int i = 0; i < 2048; ++i)
        line += "x ";
    EXPECT_EQ(lineKind(table, line), kLongLine);
    EXPECT_EQ(table.count, 16);
    EXPECT_STREQ(table.word[0], fullWord.c_str());
}

TEST(ProcessCmdLine, CountsNoWordInABlankLineAndKeepsTheSlots) {
    WordTable table = emptyTable();
    EXPECT_TRUE(processLine(table, "ctrl -v"));
    for (const char* blank : {"", "     "}) {
        EXPECT_TRUE(processLine(table, blank));
        EXPECT_EQ(table.count, 0);
        EXPECT_STREQ(table.word[0], "ctrl");
        EXPECT_STREQ(table.word[1], "-v");
    }
}

TEST(ProcessCmdLine, LeavesTheFirstSlotEmptyForABlankFirstLine) {
    WordTable table = emptyTable();
    EXPECT_TRUE(processLine(table, ""));
    EXPECT_EQ(table.count, 0);
    EXPECT_STREQ(table.word[0], "");
}

TEST(ProcessCmdLine, KeepsTheSlotsAfterAShorterLine) {
    WordTable table = emptyTable();
    EXPECT_TRUE(processLine(table, "logdrv -a list"));
    EXPECT_TRUE(processLine(table, "mp -a"));
    EXPECT_EQ(table.count, 2);
    EXPECT_STREQ(table.word[0], "mp");
    EXPECT_STREQ(table.word[1], "-a");
    EXPECT_STREQ(table.word[2], "list");
}

TEST(ProcessCmdLine, EndsTheLoopAtTheExitWord) {
    for (const char* line : {"exit", "  ExIt   ", "EXIT", "exit now", "\"exit\""}) {
        WordTable table = emptyTable();
        EXPECT_FALSE(processLine(table, line)) << line;
    }
}

TEST(ProcessCmdLine, EndsTheLoopAtTheExitWordRegardlessOfFurtherWords) {
    for (const std::string words : {"Exit", "\"exit\""}) {
        WordTable table = emptyTable();
        EXPECT_EQ(lineKind(table, words + " b c d e f g h i j k l m n o p q"), kExitLine);
        EXPECT_LE(table.count, 16);
    }
    WordTable table = emptyTable();
    EXPECT_FALSE(processLine(table, "exit"));
    EXPECT_EQ(lineKind(table, "a b c d e f g h i j k l m n o p q"), kLongLine);
}

TEST(ProcessCmdLine, ContinuesWhenExitIsNotTheWholeFirstWord) {
    for (const char* line : {"exits", "exi", "help exit", "exit\tnow", "exit\""}) {
        WordTable table = emptyTable();
        EXPECT_TRUE(processLine(table, line)) << line;
    }
}

TEST(CommandTable, IsSortedAndCounted) {
    ASSERT_EQ(numCmd, static_cast<int>(cmdTable.size()));
    for (std::size_t i = 1; i < cmdTable.size(); ++i)
        EXPECT_EQ(strCmpNoCase(cmdTable[i - 1].name, cmdTable[i].name), -1) << cmdTable[i].name;
}

TEST(CommandTable, NamesTheHandlers) {
    const auto handlerOf = [](const std::string& word) -> int (*)(int, char**) {
        for (const Command& command : cmdTable)
            if (word == command.name)
                return command.handler;
        return nullptr;
    };
    EXPECT_EQ(handlerOf("?"), do_cmd_help);
    EXPECT_EQ(handlerOf("ctrl"), do_cmd_controller);
    EXPECT_EQ(handlerOf("rc"), do_cmd_redundancyCheck);
    EXPECT_EQ(handlerOf("exit"), nullptr);
}

TEST(CliParseCommand, RejectsUnknownWords) {
    for (const char* word : {"", "nosuch", "exit", "ctr", "ctrls", "\xff\xff", "!", "zzz", "-a"}) {
        const CommandOutcome outcome = run(cli_parse_command, {word});
        EXPECT_EQ(outcome.result, 9) << word;
        EXPECT_EQ(outcome.output, "Invalid command!\n") << word;
    }
}

TEST(CliParseCommand, RejectsABlankFirstLine) {
    const CommandOutcome outcome = run(cli_parse_command, {});
    EXPECT_EQ(outcome.result, 9);
    EXPECT_EQ(outcome.output, "Invalid command!\n");
}

TEST(CliParseCommand, IgnoresCase) {
    for (const char* word : {"help", "HELP", "Help", "?"})
        EXPECT_EQ(run(cli_parse_command, {word, "exit"}).output,
                  "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n")
            << word;
}
