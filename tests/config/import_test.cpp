// The import command: its options, the display and the selection of blocks. Applying them is tested in
// import_apply_test.cpp.
#include "config/import.h"

#include "tests/config/import_calls.h"

static constexpr char kBadOption[] = "Invalid parameters defined\n";
static constexpr char kTooMany[] =
    "The configuration file holds more settings than can be imported at once!\n";
static constexpr char kBadKeyword[] = "Invalid keyword in the configuration file!\n";

class Import : public Configuration {
protected:
    CommandOutcome imported(const std::vector<std::string>& options,
                            const std::vector<std::string>& stale = {}) {
        std::vector<std::string> words = {"import"};
        words.insert(words.end(), options.begin(), options.end());
        return run(ImportFile, words, stale);
    }
    void expectOutcome(const std::vector<std::string>& options, int result, const std::string& output) {
        const CommandOutcome outcome = imported(options);
        EXPECT_EQ(outcome.result, result);
        EXPECT_EQ(outcome.output, output);
    }
    void expectDisplay(const std::string& text, int result, const std::string& output) {
        write(text);
        int displayed = -1;
        EXPECT_EQ(outputOf([&] { displayed = DisplayImportFile(path.c_str()); }), output);
        EXPECT_EQ(displayed, result);
        expectOutcome({"-f", path, "-i"}, 0, output);
    }
    // Imports this file of two controllers, four drives and two logical drives.
    void expectSelected(const std::vector<std::string>& options) {
        write(ctrlBlock(0) + ctrlBlock(1) + driveBlock(0, 0, 9) + driveBlock(1, 1, 1) + driveBlock(2, 0, 2) +
              logDrvBlock(0, 0) + logDrvBlock(1, 1));
        std::vector<std::string> words = {"-f", path};
        words.insert(words.end(), options.begin(), options.end());
        expectOutcome(words, 0, "");
    }
};

static std::string shownDrive(int index, int id) {
    return kFrameLine + "<<Physical drive setting #" + std::to_string(index) +
           ">>\nPhysical drive ID : " + std::to_string(id) +
           "\nWrite cache mode : Enable\nNCQ Enable : Enable\nTCQ Enable : Disable\n" + kFrameLine;
}

static const std::string kShownCtrl = kFrameLine + R"(<<Controller setting #0>>
Auto Rebuild : Enable
Smart Check : Enable
Synchronization rate : 10
Initialization rate : 20
Media Patrol rate : 30
Migration rate : 40
Rebuild rate : 50
Smart check polling interval : 60
Enclosure polling interval : 7
Buzzer : Off
Number of extent with Global Spare setting : 2
)" + kFrameLine;

static const std::string kShownLogDrv =
    kFrameLine + R"(<<Logical drive setting #0>>
Name :  Data 1
Size : 1024.0000 MB
Stripe size : 64 KB
Sector size : 512 Byte
Raid mode : RAID5
Write cache mode : Write Back
Disk number : 3
)" +
    "Disk member ID list : 1 2 3 \nExtent member Index list corresponding to Disk member ID list : 0 0 1 \n" +
    "Initialization mode : None Initialization\nLookahead value : 8\nConsolidataion : Enable\n" + kFrameLine;

TEST_F(Import, DisplaysEveryBlockInFileOrder) {
    expectDisplay(driveBlock(0, 0, 9) + logDrvBlock(0, 0) + ctrlBlock(0) + driveBlock(1, 1, 1), 0,
                  shownDrive(0, 9) + kShownLogDrv + kShownCtrl + shownDrive(1, 1));
}

TEST_F(Import, DisplaysEverythingDespiteSelectionAndClear) {
    write(ctrlBlock(0) + driveBlock(0, 0, 9));
    const std::string shown = kShownCtrl + shownDrive(0, 9);
    expectOutcome({"-i", "-c", "-f", path}, 0, shown);
    expectOutcome({"-k", "7", "-p", "7", "-l", "7", "-a", "-C", "-F", path, "-I"}, 0, shown);
}

TEST_F(Import, DisplaysAnAutomaticCacheModeAsWriteThrough) {
    expectDisplay(with(logDrvBlock(0, 0), "Write Back", "Auto - Write Back"), 0,
                  with(kShownLogDrv, "Write Back", "Auto - Write Through"));
}

TEST_F(Import, DisplaysAnUnknownLevelAfterTheMessage) {
    expectDisplay(with(logDrvBlock(0, 0), "RAID5", "RAID7"), 0,
                  "Unknown RAID level 'RAID7' specified!\n" +
                      with(kShownLogDrv, "RAID5", "Unknown raid mode"));
}

TEST_F(Import, IgnoresTheCaseOfMarkers) {
    expectDisplay(with(driveBlock(0, 0, 9), "[PhyDrvSetIndex]", "[phydrvsetindex]") +
                      with(ctrlBlock(0), "[CrtlSetIndex]", "[CRTLSETINDEX]") +
                      with(logDrvBlock(0, 0), "[LogDrvSetIndex]", "[logDRVsetIndex]"),
                  0, shownDrive(0, 9) + kShownCtrl + kShownLogDrv);
}

TEST_F(Import, DisplaysNothingOfAnEmptyFile) {
    expectDisplay("", 14, "");
    expectDisplay(" \n\t \r\n", 14, "");
}

TEST_F(Import, StopsTheDisplayAtAnInvalidMarker) {
    expectDisplay("-----\n" + ctrlBlock(0), 13, kBadKeyword);
    expectDisplay(driveBlock(0, 0, 9) + "-----\n" + ctrlBlock(0), 13, shownDrive(0, 9) + kBadKeyword);
    expectDisplay(driveBlock(0, 0, 9) + "[CtrlSetIndex] 0\n[End]\n", 13, shownDrive(0, 9) + kBadKeyword);
    expectDisplay(driveBlock(0, 0, 9) + "# the end\n", 13, shownDrive(0, 9) + kBadKeyword);
    expectDisplay("[CrtlSetIndex]0\n[End]\n", 13, kBadKeyword);
    expectDisplay(std::string(100000, '[') + "\n", 13, kBadKeyword);
    expectDisplay("[CrtlSetIndex]" + std::string(1000, ']') + " 0\n", 13, kBadKeyword);
}

TEST_F(Import, IgnoresAnInvalidMarkerAtTheEndOfTheFile) {
    expectDisplay(driveBlock(0, 0, 9) + "more", 0, shownDrive(0, 9));
}

TEST_F(Import, DisplaysABlockWithoutAnEndMarker) {
    expectDisplay(with(driveBlock(0, 0, 9), "[End] \n", ""), 0, shownDrive(0, 9));
    expectDisplay(with(driveBlock(0, 0, 9), "[End] \n", "[End]"), 0, shownDrive(0, 9));
    expectDisplay("[PhyDrvSetIndex]", 0,
                  kFrameLine +
                      "<<Physical drive setting #0>>\nPhysical drive ID : 0\nWrite cache mode : Disable\n"
                      "NCQ Enable : Disable\nTCQ Enable : Disable\n" +
                      kFrameLine);
}

TEST_F(Import, ClearsTheRecordBeforeEachBlock) {
    expectDisplay(driveBlock(0, 0, 9) + "[PhyDrvSetIndex] 1\n[End]\n", 0,
                  shownDrive(0, 9) + kFrameLine +
                      "<<Physical drive setting #1>>\nPhysical drive ID : 0\nWrite cache mode : Disable\n"
                      "NCQ Enable : Disable\nTCQ Enable : Disable\n" +
                      kFrameLine);
}

TEST_F(Import, RejectsUnknownOptionsBeforeOpeningTheFile) {
    for (const char* word : {"-b", "-x", "0", "", "-ii"})
        expectOutcome({"-f", directory + "/none", word}, 1, kBadOption);
    write(ctrlBlock(0));
    expectOutcome({"-f", path, "-a", "-i", "-b", "1"}, 1, kBadOption);
}

TEST_F(Import, NamesAFileThatCannotBeOpened) {
    const std::string missing = directory + "/none.cfg";
    const std::string errorMessage =
        "Unable to open the specified configuration file \"" + missing + "\"!!\n";
    expectOutcome({"-f", missing}, 12, errorMessage);
    expectOutcome({"-f", missing, "-i"}, 12, errorMessage);
    expectOutcome({"-a"}, 12, "Unable to open the specified configuration file \"\"!!\n");
    expectOutcome({"-i", "-c"}, 12, "Unable to open the specified configuration file \"\"!!\n");
}

// Each step opens the file again.
TEST_F(Import, NamesAFileThatDisappeared) {
    const std::string missing = directory + "/none.cfg";
    const std::string errorMessage =
        "Unable to open the specified configuration file \"" + missing + "\"!!\n";
    int result = -1;
    EXPECT_EQ(outputOf([&] { result = DisplayImportFile(missing.c_str()); }), errorMessage);
    EXPECT_EQ(result, 12);
    result = -1;
    EXPECT_EQ(outputOf([&] {
                  result =
                      SetDataFromConfigFile(missing.c_str(), true, true, 0, nullptr, 0, nullptr, 0, nullptr);
              }),
              errorMessage);
    EXPECT_EQ(result, 12);
}

TEST_F(Import, ReadsAMissingValueFromTheNextSlot) {
    write(driveBlock(0, 0, 9));
    const CommandOutcome outcome = imported({"-i", "-f"}, {path});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.output, shownDrive(0, 9));
    expectChecks(1);
    EXPECT_EQ(imported({"-f", path, "-p"}, {"2"}).result, 0);
    expectChecks(1);
    expectDriveChange(0, 8);
    EXPECT_EQ(imported({"-f", path, "-p"}, {"1"}).result, 0);
}

TEST_F(Import, TreatsAMissingValueAfterTheLastSlotAsAnEmptyList) {
    write(ctrlBlock(0));
    expectChecks(1);
    const CommandOutcome outcome =
        imported({"-f", path, "-f", path, "-f", path, "-f", path, "-f", path, "-f", path, "-f", path, "-k"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.output, "");
}

TEST_F(Import, RejectsAnEmptyFileBeforeAnyAdapterCall) {
    write("");
    expectOutcome({"-f", path}, 14, "");
    write(" \n");
    expectOutcome({"-f", path, "-c"}, 14, "");
}

TEST_F(Import, RejectsAnInvalidKeywordBeforeAnyAdapterCall) {
    write("Settings\n" + ctrlBlock(0));
    expectOutcome({"-f", path}, 13, kBadKeyword);
    write(ctrlBlock(0) + "Settings\n");
    expectOutcome({"-f", path, "-a", "-c"}, 13, kBadKeyword);
    expectOutcome({"-f", path, "-k", "7"}, 13, kBadKeyword);
}

TEST_F(Import, SelectsEveryBlockByDefault) {
    for (const std::vector<std::string>& options : std::vector<std::vector<std::string>>{{}, {"-a"}}) {
        expectChecks(2);
        expectCtrlChange(0);
        expectDriveChange(0, 8);
        expectDriveChange(0, 1);
        expectLogDrvList(0, {});
        expectCtrlChange(1);
        expectDriveChange(1, 0);
        expectLogDrvList(1, {});
        expectSelected(options);
    }
}

TEST_F(Import, IgnoresBlocksOfKindsWithoutAList) {
    expectChecks(2);
    expectCtrlChange(0);
    expectSelected({"-k", "0"});
    expectChecks(2);
    expectCtrlChange(0);
    expectSelected({"-a", "-k", "0", "-a"});
}

TEST_F(Import, SelectsDriveBlocksByIndexFromOne) {
    expectChecks(2);
    expectDriveChange(0, 8);
    expectSelected({"-p", "1"});
    expectChecks(2);
    expectDriveChange(0, 1);
    expectDriveChange(1, 0);
    expectSelected({"-p", "3,2"});
    expectChecks(2);
    expectSelected({"-p", "0"});
    expectChecks(2);
    expectSelected({"-p", "9"});
}

TEST_F(Import, SelectsLogicalDriveBlocksByIndexFromZero) {
    expectChecks(2);
    expectLogDrvList(0, {listed(21, 4)});
    expectLogDrvList(1, {listed(21, 4)});
    expectLogDrvChange(1, 4);
    expectSelected({"-l", "1"});
}

TEST_F(Import, AcceptsListsOfEveryKindTogether) {
    expectChecks(2);
    expectLogDrvList(0, {listed(21, 4)});
    expectLogDrvChange(0, 4);
    expectCtrlChange(1);
    expectDriveChange(1, 0);
    expectLogDrvList(1, {listed(21, 4)});
    expectSelected({"-L", "0", "-K", "1", "-P", "2"});
}

TEST_F(Import, UsesTheLastOfTwoLists) {
    expectChecks(2);
    expectCtrlChange(1);
    expectSelected({"-k", "0", "-k", "1"});
    expectChecks(2);
    expectDriveChange(0, 8);
    expectSelected({"-p", "2 3", "-p", "1"});
    expectChecks(2);
    expectSelected({"-k", "0", "-k", ""});
}

TEST_F(Import, AcceptsUnsortedLists) {
    expectChecks(2);
    expectCtrlChange(0);
    expectCtrlChange(1);
    expectSelected({"-k", "9,1,0"});
}

TEST_F(Import, TreatsAListItemThatIsNotANumberAsZero) {
    expectChecks(2);
    expectCtrlChange(0);
    expectSelected({"-k", "x"});
    expectChecks(2);
    expectCtrlChange(0);
    expectCtrlChange(1);
    expectSelected({"-k", "1, 5"});
}

TEST_F(Import, AcceptsFourControllers) {
    expectChecks(2);
    expectCtrlChange(1);
    expectSelected({"-k", "9,8,7,1"});
    expectChecks(2);
    expectSelected({"-k", "9,8,7,6,1"});
}

static std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST_F(Import, AcceptsSixteenDrives) {
    expectChecks(2);
    expectDriveChange(0, 8);
    expectSelected({"-p", repeated("9,", 15) + "1"});
    expectChecks(2);
    expectSelected({"-p", repeated("9,", 16) + "1"});
}

TEST_F(Import, Accepts128LogicalDrives) {
    expectChecks(2);
    expectLogDrvList(0, {listed(21, 4)});
    expectLogDrvChange(0, 4);
    expectLogDrvList(1, {listed(21, 4)});
    expectSelected({"-l", repeated("9,", 127) + "0"});
    // Each comma ends an empty item, which is 0.
    expectChecks(2);
    expectLogDrvList(0, {listed(21, 4)});
    expectLogDrvChange(0, 4);
    expectLogDrvList(1, {listed(21, 4)});
    expectSelected({"-l", repeated(",", 128) + "1"});
}

TEST_F(Import, AcceptsListsThatFillTheirWord) {
    expectChecks(2);
    expectSelected({"-l", repeated("9,", 128)});
    expectChecks(2);
    expectSelected({"-p", std::string(256, '9')});
}

TEST_F(Import, AcceptsTheMaximumNumberOfBlocks) {
    std::string text = repeated("[CrtlSetIndex] 3 [End]\n", 4) +
                       repeated("[PhyDrvSetIndex] 0 <PhyDrvCtrlID> 9 [End]\n", 64) +
                       repeated("[LogDrvSetIndex] 0 <LogyDrvCtrlID> 9 [End]\n", 512);
    write(text);
    expectAdapters(4);
    for (std::uint32_t controller = 0; controller < 4; ++controller)
        expectDriveCount(controller, 0);
    expectCtrlChange(3, controllerSettings());
    write(with(text, "[CrtlSetIndex] 3 [End]\n", ctrlBlock(3)));
    expectOutcome({"-f", path}, 0, "");
}

TEST_F(Import, RejectsTooManyBlocksBeforeAnyAdapterCall) {
    write(repeated("[CrtlSetIndex] 0 [End]\n", 5));
    expectOutcome({"-f", path}, 16, kTooMany);
    write(ctrlBlock(0) + repeated("[PhyDrvSetIndex] 0 [End]\n", 65));
    expectOutcome({"-f", path, "-c"}, 16, kTooMany);
    write(ctrlBlock(0) + repeated("[LogDrvSetIndex] 0 [End]\n", 513) + ctrlBlock(0));
    expectOutcome({"-f", path, "-c"}, 16, kTooMany);
}

TEST_F(Import, CountsOnlySelectedBlocks) {
    write(repeated("[CrtlSetIndex] 7 [End]\n", 50) + ctrlBlock(0) +
          repeated("[PhyDrvSetIndex] 7 [End]\n", 100) + repeated("[LogDrvSetIndex] 7 [End]\n", 600));
    expectChecks(1);
    expectCtrlChange(0);
    expectOutcome({"-f", path, "-k", "0"}, 0, "");
}

TEST_F(Import, ClearsASlotForTheNextBlock) {
    write(logDrvBlock(7, 0) + "[LogDrvSetIndex] 0\n<LogDrvID> 4\n<LogDrvName> B\n[End]\n");
    expectChecks(1);
    expectLogDrvList(0, {listed(21, 4)});
    expectLogDrvChange(0, 4, {0, 0, 0, "B"});
    expectOutcome({"-f", path, "-l", "0"}, 0, "");
}

TEST_F(Import, ReadsExportedBlocksInAnyOrder) {
    write(logDrvBlock(0, 0) + ctrlBlock(0));
    expectChecks(1);
    expectCtrlChange(0);
    expectLogDrvList(0, {listed(21, 4)});
    expectLogDrvChange(0, 4);
    expectOutcome({"-f", path}, 0, "");
}
