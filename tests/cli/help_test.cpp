// The command definitions and the help command. Whole texts are compared with the files in golden/.
#include <fstream>
#include <iterator>
#include <set>

#include "cli/cmddef.h"
#include "cli/interface.h"
#include "tests/mock_adapter.h"

static const char unknownHelp[] = "Invalid Command\nPlease use help to display all the valid commands.\n";

// The output of help with the word, from the file named after it.
static std::string goldenHelp(const std::string& word) {
    const std::string path = GOLDEN "/help/" + (word == "?" ? "help" : word) + ".txt";
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << "no " << path << ": write the expected output of \"help " << word << "\" there";
    return {std::istreambuf_iterator<char>(file), {}};
}

static void expectHelp(const std::vector<std::string>& words, const std::string& output,
                       const std::vector<std::string>& stale = {}) {
    const CommandOutcome outcome = run(cli_parse_command, words, stale);
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.output, output);
}

static void expectDefinition(const char* word, unsigned id, const char* shortHelp, const char* longHelp) {
    unsigned foundId = 4711;
    const char *foundLong = nullptr, *foundShort = nullptr;
    getCommandDefinition(word, &foundId, &foundLong, &foundShort);
    EXPECT_EQ(foundId, id) << word;
    EXPECT_STREQ(foundShort, shortHelp) << word;
    EXPECT_STREQ(foundLong, longHelp) << word;
}

// New commands need no line in the file: it contains the published ids.
TEST(CommandDefinitions, RetainPublishedIds) {
    std::ifstream file(GOLDEN "/command_ids.txt");
    std::set<std::string> words;
    std::string word;
    for (unsigned id = 0; file >> word >> id; words.insert(word)) {
        unsigned foundId = 0;
        const char *longHelp = nullptr, *shortHelp = nullptr;
        getCommandDefinition(word.c_str(), &foundId, &longHelp, &shortHelp);
        EXPECT_EQ(foundId, id) << word;
    }
    EXPECT_EQ(words.size(), 20u);
}

TEST(CommandDefinitions, CoverAllCommandsAndExit) {
    ASSERT_EQ(ls_u32NumberOfCommands, ls_icdCmdDefs.size());
    std::set<std::string> defined, expected = {"exit"};
    for (const CommandDefinition& row : ls_icdCmdDefs)
        defined.insert(row.name);
    for (const Command& row : cmdTable)
        expected.insert(row.name);
    EXPECT_EQ(defined, expected);
}

TEST(CommandDefinitions, ExcludeTheUnknownCommand) {
    EXPECT_EQ(ls_icdUnknownCmdDef.id, 0u);
    EXPECT_STREQ(ls_icdUnknownCmdDef.name, "unknown");
    EXPECT_STREQ(ls_icdUnknownCmdDef.shortHelp, unknownHelp);
    EXPECT_STREQ(ls_icdUnknownCmdDef.longHelp, unknownHelp);
}

TEST(InitCommandDefinition, AttachesTheLongTextsAndMayBeCalledAgain) {
    for (CommandDefinition& row : ls_icdCmdDefs)
        row.longHelp = nullptr;
    for (int call = 0; call < 2; ++call) {
        initCommandDefinition();
        for (const CommandDefinition& row : ls_icdCmdDefs)
            EXPECT_EQ(std::string(row.shortHelp) + "\n" + row.longHelp, goldenHelp(row.name)) << row.name;
    }
}

TEST(GetCommandDefinition, FindsEveryWordOfTheTable) {
    initCommandDefinition();
    for (const CommandDefinition& row : ls_icdCmdDefs)
        expectDefinition(row.name, row.id, row.shortHelp, row.longHelp);
}

TEST(GetCommandDefinition, IgnoresCase) {
    initCommandDefinition();
    expectDefinition("HELP", 1, CLICMD_SHORT_HELP, CLICMD_HELP_HELP);
    expectDefinition("Ctrl", 21, CLICMD_SHORT_CTRL, CLICMD_HELP_CONTROLLER);
}

TEST(GetCommandDefinition, RejectsPrefixesAndLongerWords) {
    for (const char* word : {"he", "helpp", "unknown", "", "!", "zzz", "\xff"})
        expectDefinition(word, 0, unknownHelp, unknownHelp);
}

TEST(GetCommandDefinition, ReturnsTheUnknownLongHelpBeforeTheTextsAreAttached) {
    for (CommandDefinition& row : ls_icdCmdDefs)
        row.longHelp = nullptr;
    expectDefinition("ctrl", 21, CLICMD_SHORT_CTRL, unknownHelp);
}

TEST(GetCommandHelpDefinition, StoresAndReturnsTheMainHelp) {
    const char* text = nullptr;
    EXPECT_EQ(getCommandHelpDefinition(&text), CLICMD_HELP_HELP);
    EXPECT_EQ(text, CLICMD_HELP_HELP);
}

TEST(DoCmdHelp, PrintsBothTextsOfEveryWord) {
    for (const CommandDefinition& row : ls_icdCmdDefs) {
        expectHelp({"help", row.name}, goldenHelp(row.name));
        expectHelp({"?", row.name}, goldenHelp(row.name));
    }
}

TEST(DoCmdHelp, PrintsTheMainHelpForHelpAndQuestionMark) {
    for (const char* line : {"help", "HELP", "?", "help help", "help ?", "? ?", "? help"})
        expectHelp(splitWords(line), goldenHelp("help"));
}

TEST(DoCmdHelp, IgnoresCase) {
    expectHelp({"?", "BATTERY"}, goldenHelp("battery"));
}

TEST(DoCmdHelp, IgnoresFurtherWords) {
    expectHelp(splitWords("? logdrv extra words"), goldenHelp("logdrv"));
}

TEST(DoCmdHelp, PrintsTheUnknownTextTwice) {
    for (const char* word : {"nosuch", "ctr", "unknown", ""})
        expectHelp({"help", word}, goldenHelp("unknown"));
}

TEST(DoCmdHelp, PrintsTheHelpOfTheFirstSlotAfterABlankLine) {
    expectHelp({}, goldenHelp("help"), {"help", "ctrl"});
}
