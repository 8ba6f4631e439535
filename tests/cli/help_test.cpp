// The command definitions and the help command. Each text is held by its length and its checksum, so
// that no blank, tab or spelling of it can change unnoticed.
#include <cstring>

#include "cli/cmddef.h"
#include "cli/help_texts.h"
#include "cli/interface.h"
#include "tests/mock_adapter.h"

namespace {
struct TextProof {
    std::size_t length;
    std::uint32_t checksum; // FNV-1a, 32 bits
};
struct DefinitionProof {
    unsigned id;
    const char* name;
    TextProof shortHelp;
    TextProof longHelp;
};
} // namespace

static std::uint32_t checksum(const char* text) {
    std::uint32_t hash = 2166136261;
    for (; *text != '\0'; ++text)
        hash = (hash ^ static_cast<std::uint8_t>(*text)) * 16777619;
    return hash;
}

static void expectText(const char* name, const char* text, const TextProof& proof) {
    EXPECT_EQ(std::strlen(text), proof.length) << name;
    EXPECT_EQ(checksum(text), proof.checksum) << name;
    EXPECT_EQ(std::strchr(text, '%'), nullptr) << name;
}

// clang-format off
static const DefinitionProof definitions[] = {
    {2, "?", {169, 0x27f1d228}, {2825, 0x07d6424d}},
    {34, "battery", {117, 0xefad26d1}, {371, 0xeb87cef9}},
    {24, "bga", {65, 0xe8d90a4d}, {504, 0x171ff447}},
    {35, "buzz", {247, 0x169047db}, {859, 0x865c32f9}},
    {21, "ctrl", {192, 0xa890fa89}, {1849, 0x9886724a}},
    {32, "enclosure", {212, 0x99f1a195}, {1212, 0x57500749}},
    {31, "event", {205, 0xe5ba84bf}, {687, 0x3395ad92}},
    {12, "exit", {25, 0x73bdc26b}, {25, 0x73bdc26b}},
    {36, "export", {141, 0xa65e41e1}, {675, 0x7d595cb0}},
    {33, "extent", {440, 0xa93e34ee}, {1717, 0x8d4ef92e}},
    {1, "help", {169, 0x27f1d228}, {2825, 0x07d6424d}},
    {37, "import", {183, 0xaf828f85}, {1602, 0xd015da7f}},
    {27, "init", {211, 0xc5a4013b}, {1199, 0x31d70940}},
    {22, "logdrv", {340, 0xc4d71c5e}, {5558, 0x2c679826}},
    {30, "migrate", {123, 0x8dcdf5b3}, {1694, 0xe69d51c8}},
    {25, "mp", {134, 0x15c0e6d1}, {1028, 0x0e7d7302}},
    {23, "phydrv", {382, 0x75989010}, {2936, 0xe470d204}},
    {26, "rb", {255, 0x854842c3}, {1278, 0x1566d414}},
    {29, "rc", {322, 0xee2cb8a3}, {1343, 0x4e7885c5}},
    {28, "sync", {77, 0x7e0ec32b}, {1245, 0x0e74a0c3}},
};
// clang-format on

static const char unknownHelp[] = "Invalid Command\nPlease use help to display all the valid commands.\n";

TEST(CommandDefinitions, HoldEveryWordSortedWithItsIdAndTexts) {
    initCommandDefinition();
    ASSERT_EQ(ls_u32NumberOfCommands, 20u);
    for (std::size_t i = 0; i < std::size(definitions); ++i) {
        const DefinitionProof& proof = definitions[i];
        EXPECT_STREQ(ls_icdCmdDefs[i].name, proof.name);
        EXPECT_EQ(ls_icdCmdDefs[i].id, proof.id) << proof.name;
        expectText(proof.name, ls_icdCmdDefs[i].shortHelp, proof.shortHelp);
        expectText(proof.name, ls_icdCmdDefs[i].longHelp, proof.longHelp);
    }
}

TEST(CommandDefinitions, HoldTheTextsOfAnUnknownWordApart) {
    EXPECT_EQ(ls_icdUnknownCmdDef.id, 0u);
    EXPECT_STREQ(ls_icdUnknownCmdDef.name, "unknown");
    EXPECT_STREQ(ls_icdUnknownCmdDef.shortHelp, unknownHelp);
    EXPECT_STREQ(ls_icdUnknownCmdDef.longHelp, unknownHelp);
}

TEST(InitCommandDefinition, MayBeCalledAgain) {
    initCommandDefinition();
    initCommandDefinition();
    EXPECT_EQ(ls_icdCmdDefs[10].longHelp, CLICMD_HELP_HELP);
    EXPECT_EQ(ls_icdCmdDefs[19].longHelp, CLICMD_HELP_LDSYNCH);
}

static void expectDefinition(const char* word, unsigned id, const char* shortHelp, const char* longHelp) {
    unsigned foundId = 4711;
    const char *foundLong = nullptr, *foundShort = nullptr;
    getCommandDefinition(word, &foundId, &foundLong, &foundShort);
    EXPECT_EQ(foundId, id) << word;
    EXPECT_STREQ(foundShort, shortHelp) << word;
    EXPECT_STREQ(foundLong, longHelp) << word;
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

TEST(GetCommandDefinition, AcceptsNoPrefixAndNoLongerWord) {
    for (const char* word : {"he", "helpp", "unknown", "", "!", "zzz", "\xff"})
        expectDefinition(word, 0, unknownHelp, unknownHelp);
}

TEST(GetCommandDefinition, GivesTheUnknownLongHelpBeforeTheTextsAreAttached) {
    const char* attached = ls_icdCmdDefs[4].longHelp;
    ls_icdCmdDefs[4].longHelp = nullptr;
    expectDefinition("ctrl", 21, CLICMD_SHORT_CTRL, unknownHelp);
    ls_icdCmdDefs[4].longHelp = attached;
}

TEST(GetCommandHelpDefinition, StoresAndReturnsTheMainHelp) {
    const char* text = nullptr;
    EXPECT_EQ(getCommandHelpDefinition(&text), CLICMD_HELP_HELP);
    EXPECT_EQ(text, CLICMD_HELP_HELP);
}

static void expectHelp(const std::vector<std::string>& words, const std::string& output,
                       const std::vector<std::string>& stale = {}) {
    const Outcome outcome = run(cli_parse_command, words, stale);
    EXPECT_EQ(outcome.result, 2);
    EXPECT_EQ(outcome.output, output);
}

static const char shortMainHelp[] = "CLI Help\n"
                                    "Usage: help         display all the valid commands\n"
                                    "       help <cmd>   display the usage of the specified command\n"
                                    "\n"
                                    "Summary:\n"
                                    "   Displays the main help window.  \n"
                                    "\n";

TEST(DoCmdHelp, PrintsTheMainHelpForItsOwnWords) {
    const std::string mainHelp = std::string(shortMainHelp) + CLICMD_HELP_HELP;
    for (const char* line : {"help", "HELP", "?", "help help", "help ?", "? ?", "? help"})
        expectHelp(typed(line), mainHelp);
}

TEST(DoCmdHelp, PrintsTheShortHelpAnEmptyLineAndTheLongHelp) {
    expectHelp({"help", "sync"}, std::string("Logical Drive Synchronization Progress\n"
                                             "Usage: sync [-a <action>] [-l <LdId>]\n"
                                             "\n") +
                                     CLICMD_HELP_LDSYNCH);
    expectHelp({"?", "BATTERY"}, std::string("Battery Information and Settings \n"
                                             "Usage: battery [-a <action>] [-b <batId>]\n"
                                             "       battery -a recondition -b <batId>\n"
                                             "\n") +
                                     CLICMD_HELP_BATTERY);
}

TEST(DoCmdHelp, LooksAtTheSecondWordOnly) {
    expectHelp(typed("? logdrv extra words"), std::string(CLICMD_SHORT_LOGDRV) + "\n" + CLICMD_HELP_LOGDRIVE);
}

TEST(DoCmdHelp, PrintsTheTextsOfExitTwice) {
    expectHelp({"help", "exit"}, "Exit the CLI\nUsage: exit\n\nExit the CLI\nUsage: exit\n");
}

TEST(DoCmdHelp, PrintsTheUnknownTextTwice) {
    for (const char* word : {"nosuch", "ctr", "unknown", ""})
        expectHelp({"help", word}, "Invalid Command\n"
                                   "Please use help to display all the valid commands.\n"
                                   "\n"
                                   "Invalid Command\n"
                                   "Please use help to display all the valid commands.\n");
}

TEST(DoCmdHelp, LooksItsOwnWordUpAfterABlankLine) {
    expectHelp({}, std::string(shortMainHelp) + CLICMD_HELP_HELP, {"help", "ctrl"});
}
