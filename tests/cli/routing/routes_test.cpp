// Every route from a command line to a command function. The command functions are stubs.
#include "cli/interface.h"

#include <algorithm>
#include <iterator>

#include "tests/cli/routing/command_stubs.h"
#include "tests/mock_adapter.h"

using Words = std::vector<std::string>;

namespace {
struct Keyword {
    const char* word;
    const char* function;
};

struct DispatchCase {
    const char* command;
    const char* defaultHandler; // for the command word alone; null when it needs more words
    bool actions;               // whether "-a" introduces a keyword
    std::size_t minWords;
    std::vector<Keyword> keywords;
    const char* errorMessage;
};
} // namespace

static const DispatchCase dispatchCases[] = {
    {"battery",
     "ListBatteryInfo",
     false,
     1,
     {{"-i", "ListBatteryInfo"}},
     "Invalid command for \"battery\"\n"},
    {"buzz",
     "ListBuzzStatus",
     true,
     1,
     {{"list", "ListBuzzStatus"},
      {"enable", "SetBuzzSettings"},
      {"disable", "SetBuzzSettings"},
      {"-i", "ListBuzzStatus"},
      {"-c", "ListBuzzStatus"}},
     "Invalid command for \"buzz\"\n"},
    {"ctrl",
     "ListControllerInfo",
     true,
     1,
     {{"list", "ListControllerInfo"},
      {"mod", "SetControllerSettings"},
      {"-i", "ListControllerInfo"},
      {"-c", "ListControllerInfo"},
      {"-v", "ListControllerInfo"}},
     "Invalid command for \"ctrl\"\n"},
    {"logdrv",
     "ListLogDrvInfo",
     true,
     1,
     {{"list", "ListLogDrvInfo"},
      {"mod", "SetLogDrvSettings"},
      {"locate", "LocateLogDrv"},
      {"add", "CreateLogDrv"},
      {"del", "DeleteLogDrv"},
      {"-l", "ListLogDrvInfo"},
      {"-i", "ListLogDrvInfo"},
      {"-c", "ListLogDrvInfo"},
      {"-v", "ListLogDrvInfo"}},
     "Invalid command for \"logdrv\"\n"},
    {"migrate",
     "ListLogDrvMigrateStatus",
     true,
     1,
     {{"list", "ListLogDrvMigrateStatus"},
      {"start", "StartLogDrvMigrate"},
      {"pause", "PauseLogDrvMigrate"},
      {"resume", "ResumeLogDrvMigrate"},
      {"-l", "ListLogDrvMigrateStatus"},
      {"-i", "ListLogDrvMigrateStatus"}},
     "Invalid command for \"migrate\"\n"},
    {"rb",
     "ListLogDrvRebuildStatus",
     true,
     1,
     {{"list", "ListLogDrvRebuildStatus"},
      {"start", "StartLogDrvRebuild"},
      {"abort", "StopLogDrvRebuild"},
      {"pause", "PauseLogDrvRebuild"},
      {"resume", "ResumeLogDrvRebuild"},
      {"restart", "RestartLogDrvRebuild"},
      {"-l", "ListLogDrvRebuildStatus"},
      {"-i", "ListLogDrvRebuildStatus"}},
     "Invalid command for \"rb\"\n"},
    {"sync",
     "ListLogDrvSyncStatus",
     true,
     1,
     {{"list", "ListLogDrvSyncStatus"}, {"-l", "StartLogDrvSync"}, {"-i", "StartLogDrvSync"}},
     "Invalid command for \"sync\"\n"},
    {"rc",
     "ListLogDrvRCStatus",
     true,
     1,
     {{"list", "ListLogDrvRCStatus"},
      {"start", "StartLogDrvRC"},
      {"stop", "StopLogDrvRC"},
      {"pause", "PauseLogDrvRC"},
      {"resume", "ResumeLogDrvRC"},
      {"-l", "ListLogDrvRCStatus"},
      {"-i", "ListLogDrvRCStatus"}},
     "Invalid command for \"rc\"\n"},
    {"init",
     "ListLogDrvInitStatus",
     true,
     1,
     {{"list", "ListLogDrvInitStatus"},
      {"start", "StartLogDrvInit"},
      {"stop", "StopLogDrvInit"},
      {"pause", "PauseLogDrvInit"},
      {"resume", "ResumeLogDrvInit"},
      {"-l", "ListLogDrvInitStatus"},
      {"-i", "ListLogDrvInitStatus"}},
     "Invalid command for \"init\"\n"},
    {"phydrv",
     "ListPhyDrvInfo",
     true,
     1,
     {{"list", "ListPhyDrvInfo"},
      {"mod", "SetPhyDrvSettings"},
      {"locate", "LocatePhyDrv"},
      {"wipe", "WipePhyDrvMDD"},
      {"set3G", "Set3GSpeed"},
      {"list3G", "List3GSpeed"},
      {"-p", "ListPhyDrvInfo"},
      {"-i", "ListPhyDrvInfo"},
      {"-c", "ListPhyDrvInfo"},
      {"-v", "ListPhyDrvInfo"}},
     "Invalid command for \"phydrv\"\n"},
    {"extent",
     "ListExtentInfo",
     true,
     1,
     {{"list", "ListExtentInfo"},
      {"spare", "SpareExtent"},
      {"free", "FreeExtent"},
      {"add", "AddExtent"},
      {"split", "SplitExtent"},
      {"delete", "DeleteExtent"},
      {"-p", "ListExtentInfo"},
      {"-e", "ListExtentInfo"},
      {"-i", "ListExtentInfo"},
      {"-c", "ListExtentInfo"},
      {"-v", "ListExtentInfo"}},
     "Invalid command for \"extent\"\n"},
    {"mp",
     nullptr,
     true,
     7,
     {{"list", "ListPhyDrvMediaPatrol"},
      {"start", "StartPhyDrvMediaPatrol"},
      {"stop", "StopPhyDrvMediaPatrol"},
      {"pause", "PausePhyDrvMediaPatrol"},
      {"resume", "ResumePhyDrvMediaPatrol"}},
     "Invalid command for \"media patrol\"\n"},
    {"enclosure",
     "ListEnclosureInfo",
     true,
     1,
     {{"list", "ListEnclosureInfo"},
      {"locate", "LocateEnclosure"},
      {"-e", "ListEnclosureInfo"},
      {"-i", "ListEnclosureInfo"},
      {"-v", "ListEnclosureInfo"}},
     "Invalid command for \"enclosure\"\n"},
    {"bga",
     "ListBGAInfo",
     true,
     1,
     {{"list", "ListBGAInfo"}, {"-l", "ListBGAInfo"}, {"-i", "ListBGAInfo"}},
     "Invalid command for \"bga\"\n"},
    {"event",
     "ListEventInfo",
     true,
     1,
     {{"list", "ListEventInfo"}, {"-v", "ListEventInfo"}, {"-c", "ListEventInfo"}, {"-i", "ListEventInfo"}},
     "Invalid command for \"event\"\n"},
    {"export",
     nullptr,
     false,
     5,
     {{"-t", "ExportFile"}, {"-f", "ExportFile"}},
     "Invalid command for \"export\"\n"},
    {"import",
     nullptr,
     false,
     3,
     {{"-k", "ImportFile"},
      {"-p", "ImportFile"},
      {"-l", "ImportFile"},
      {"-b", "ImportFile"},
      {"-a", "ImportFile"},
      {"-c", "ImportFile"},
      {"-f", "ImportFile"},
      {"-i", "ImportFile"}},
     "Invalid command for \"import\"\n"},
};

static std::string joinWords(const Words& words) {
    std::string line;
    for (const std::string& word : words)
        line += word + ' ';
    return line;
}

static std::string upperCased(std::string word) {
    for (char& c : word)
        c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return word;
}

// The words, followed by as many others as the handler needs.
static Words padded(const DispatchCase& test, Words words) {
    while (words.size() < test.minWords)
        words.push_back("x");
    return words;
}

// Listings and export change no adapter. Import and the locating of an enclosure take the lock themselves,
// once they have read the file or the options.
static bool runsLocked(const std::string& function) {
    return !isListing(function) && function != "ExportFile" && function != "ImportFile" &&
           function != "LocateEnclosure";
}

static void expectDispatch(const std::string& function, const Words& words, const Words& stale = {}) {
    const CommandOutcome outcome = run(cli_parse_command, words, stale);
    const RecordedCall call = takeRecordedCall();
    EXPECT_EQ(call.function, function) << joinWords(words);
    EXPECT_EQ(call.locked, runsLocked(function))
        << joinWords(words) << ": kChanging, or a name with \"List\"";
    EXPECT_EQ(outcome.result, kRecordedResult) << joinWords(words);
    EXPECT_EQ(outcome.output, "") << joinWords(words);
    EXPECT_EQ(call.wordCount, static_cast<int>(words.size())) << joinWords(words);
    Words slots = words;
    slots.insert(slots.end(), stale.begin(), stale.end());
    slots.resize(16);
    EXPECT_EQ(call.slots, slots) << joinWords(words);
}

static void expectRejected(int result, const std::string& message, const Words& words,
                           const Words& stale = {}) {
    const CommandOutcome outcome = run(cli_parse_command, words, stale);
    EXPECT_EQ(outcome.result, result) << joinWords(words);
    EXPECT_EQ(outcome.output, message) << joinWords(words);
    EXPECT_EQ(takeRecordedCall().function, "") << joinWords(words);
}

TEST(Routes, AreTestedForEveryCommand) {
    for (const Command& command : cmdTable) {
        const bool tested =
            std::any_of(std::begin(dispatchCases), std::end(dispatchCases),
                        [&](const DispatchCase& test) { return std::string(test.command) == command.name; });
        EXPECT_EQ(tested, command.handler != do_cmd_help) << "dispatchCases: " << command.name;
    }
}

TEST(Routes, CallTheDefaultForTheCommandWordAlone) {
    for (const DispatchCase& test : dispatchCases) {
        if (test.defaultHandler != nullptr)
            expectDispatch(test.defaultHandler, {test.command}, {"no", "word"});
    }
}

TEST(Routes, CallTheFunctionOfTheSecondWord) {
    for (const DispatchCase& test : dispatchCases) {
        for (const Keyword& keyword : test.keywords) {
            expectDispatch(keyword.function, padded(test, {test.command, keyword.word}));
            expectDispatch(keyword.function, padded(test, {test.command, keyword.word, "more", "words"}));
        }
    }
}

TEST(Routes, CallTheFunctionOfTheWordAfterTheActionMarker) {
    for (const DispatchCase& test : dispatchCases) {
        for (const Keyword& keyword : test.keywords) {
            if (test.actions)
                expectDispatch(keyword.function, padded(test, {test.command, "-a", keyword.word}));
        }
    }
}

TEST(Routes, IgnoreCase) {
    expectDispatch("ListLogDrvInfo", {"LOGDRV", "-A", "LIST"});
    for (const DispatchCase& test : dispatchCases) {
        for (const Keyword& keyword : test.keywords)
            expectDispatch(keyword.function,
                           padded(test, {upperCased(test.command), upperCased(keyword.word)}));
    }
}

TEST(Routes, RejectUnknownSecondWords) {
    for (const DispatchCase& test : dispatchCases) {
        for (const char* word : {"nosuch", "-x", "lis", ""})
            expectRejected(9, test.errorMessage, padded(test, {test.command, word}));
    }
}

TEST(Routes, RejectUnknownWordsAfterTheActionMarker) {
    for (const DispatchCase& test : dispatchCases) {
        if (!test.actions)
            continue;
        for (const char* word : {"nosuch", "-x", "lis", ""})
            expectRejected(9, test.errorMessage, padded(test, {test.command, "-a", word}));
    }
}

TEST(Routes, RejectASecondActionMarker) {
    for (const DispatchCase& test : dispatchCases) {
        if (test.actions)
            expectRejected(9, test.errorMessage, padded(test, {test.command, "-a", "-a", "list"}));
    }
}

TEST(Routes, ReadTheSlotAfterALoneActionMarker) {
    expectRejected(9, "Invalid command for \"logdrv\"\n", {"logdrv", "-a"});
    expectDispatch("DeleteLogDrv", {"logdrv", "-a"}, {"del"});
}

TEST(Routes, ReadTheStaleSecondSlotAfterABlankLine) {
    expectDispatch("LocateLogDrv", {}, {"logdrv", "-a", "locate"});
    expectDispatch("ListLogDrvInfo", {}, {"logdrv", "-l", "2"});
    expectRejected(9, "Invalid command for \"logdrv\"\n", {}, {"logdrv"});
    expectRejected(2, "Invalid number of parameters for \"mp\"!\n", {}, {"mp", "-a", "start", "-p", "3"});
    expectRejected(2, "Invalid number of parameters for \"export\"!\n", {}, {"export", "-t"});
    expectRejected(2, "Invalid number of parameters for \"import\"!\n", {}, {"import", "-f", "a.txt"});
}

TEST(Routes, StartSyncForALeadingOption) {
    expectDispatch("StartLogDrvSync", splitWords("sync -l 0 -i 0"));
    expectDispatch("ListLogDrvSyncStatus", splitWords("sync -a list"));
}

TEST(Routes, RejectWordsThatOnlyTheHelpShows) {
    expectRejected(9, "Invalid command for \"sync\"\n", splitWords("sync -a start"));
    expectRejected(9, "Invalid command for \"rb\"\n", splitWords("rb -a stop"));
    expectRejected(9, "Invalid command for \"buzz\"\n", splitWords("buzz -a on"));
    expectRejected(9, "Invalid command for \"buzz\"\n", splitWords("buzz -a off"));
    expectRejected(9, "Invalid command for \"event\"\n", splitWords("event -a clear"));
    expectRejected(9, "Invalid command for \"battery\"\n", splitWords("battery -a list"));
}

TEST(Routes, RejectMpWithoutSevenWords) {
    for (const char* line : {"mp", "mp -a start", "mp -a start -p 3 -i", "mp -a start -p 3 -i 0 x"})
        expectRejected(2, "Invalid number of parameters for \"mp\"!\n", splitWords(line));
    expectDispatch("StartPhyDrvMediaPatrol", splitWords("mp -a start -p 3 -i 0"));
}

TEST(Routes, RejectExportWithoutFiveWords) {
    for (const char* line : {"export", "export -t ctrl", "export -t ctrl -f", "export -t ctrl -f a.txt x"})
        expectRejected(2, "Invalid number of parameters for \"export\"!\n", splitWords(line));
    expectDispatch("ExportFile", splitWords("export -f a.txt -t ctrl"));
}

TEST(Routes, RejectImportWithoutThreeWords) {
    for (const char* line : {"import", "import -f"})
        expectRejected(2, "Invalid number of parameters for \"import\"!\n", splitWords(line));
    expectDispatch("ImportFile", splitWords("import -f a.txt"));
    expectDispatch("ImportFile", splitWords("import -a -f a.txt"));
}
