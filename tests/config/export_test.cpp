// The export command: its options, its file and its failures. The blocks are tested in
// export_blocks_test.cpp.
#include "config/export.h"

#include "tests/config/export_calls.h"

class Export : public Configuration {
protected:
    CommandOutcome exported(const std::vector<std::string>& options,
                            const std::vector<std::string>& stale = {}) {
        std::vector<std::string> words = {"export"};
        words.insert(words.end(), options.begin(), options.end());
        return run(ExportFile, words, stale);
    }
    void expectSuccess(const std::string& types) {
        const CommandOutcome outcome = exported({"-t", types, "-f", path});
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.output, "");
    }
    void expectExportOfEverything() {
        expectCtrlBlockRead(0);
        expectDriveSettingsRead(0, listReply<PhyDrvSettings>({driveSettings(0), driveSettings(5)}));
        expectLogDrvBlockRead(0);
    }
    const std::string everything =
        ctrlBlock(0) + driveBlock(0, 0, 1) + driveBlock(1, 0, 6) + exportedLogDrvBlock(0, 0);
};

TEST_F(Export, WritesControllersDrivesAndLogicalDrivesForTypeZero) {
    expectAdapters(1);
    expectExportOfEverything();
    expectSuccess("0");
    EXPECT_EQ(contents(), everything);
}

TEST_F(Export, WritesEachKindByItsType) {
    expectAdapters(1);
    expectCtrlBlockRead(0);
    expectSuccess("1");
    EXPECT_EQ(contents(), ctrlBlock(0));
    expectAdapters(1);
    expectDriveSettingsRead(0, listReply<PhyDrvSettings>({driveSettings(5)}));
    expectSuccess("2");
    EXPECT_EQ(contents(), driveBlock(0, 0, 6));
    expectAdapters(1);
    expectLogDrvBlockRead(0);
    expectSuccess("3");
    EXPECT_EQ(contents(), exportedLogDrvBlock(0, 0));
}

TEST_F(Export, WritesTheTypesInTheOrderOfTheList) {
    expectAdapters(1);
    expectLogDrvBlockRead(0);
    expectCtrlBlockRead(0);
    expectSuccess("3 1");
    EXPECT_EQ(contents(), exportedLogDrvBlock(0, 0) + ctrlBlock(0));
}

TEST_F(Export, WritesEverythingIfTheListHasAZero) {
    expectAdapters(1);
    expectExportOfEverything();
    expectSuccess("2 0 3");
    EXPECT_EQ(contents(), everything);
}

// A blank after the comma is a second separator, with an empty item between them that counts as 0.
TEST_F(Export, TreatsAnEmptyListItemAsZero) {
    expectAdapters(1);
    expectExportOfEverything();
    expectSuccess("1, 2");
    EXPECT_EQ(contents(), everything);
}

TEST_F(Export, WritesARepeatedTypeTwiceFromIndexZero) {
    expectAdapters(1);
    for (int i = 0; i < 2; ++i)
        expectDriveSettingsRead(0, listReply<PhyDrvSettings>({driveSettings(0), driveSettings(1)}));
    for (int i = 0; i < 2; ++i)
        expectCtrlBlockRead(0);
    expectSuccess("2,2,1,1");
    const std::string drives = driveBlock(0, 0, 1) + driveBlock(1, 0, 2);
    EXPECT_EQ(contents(), drives + drives + ctrlBlock(0) + ctrlBlock(0));
}

TEST_F(Export, IgnoresOtherTypes) {
    expectAdapters(1);
    expectCtrlBlockRead(0);
    expectSuccess("4 1 99");
    EXPECT_EQ(contents(), ctrlBlock(0));
}

TEST_F(Export, WritesAnEmptyFileWithoutTypes) {
    write("before");
    expectAdapters(1);
    expectSuccess("");
    EXPECT_TRUE(exists());
    EXPECT_EQ(contents(), "");
    expectAdapters(2);
    EXPECT_EQ(exported({"-f", path}).result, 0);
}

TEST_F(Export, AcceptsOptionsInAnyOrderAndCaseAndUsesTheLast) {
    expectAdapters(1);
    expectCtrlBlockRead(0);
    const CommandOutcome outcome = exported({"-F", directory + "/none/x", "-T", "2", "-f", path, "-t", "1"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(contents(), ctrlBlock(0));
}

TEST_F(Export, RejectsUnknownOptionsBeforeCreatingTheFile) {
    write("before");
    for (const char* word : {"-x", "-i", "1", "-tt", ""}) {
        const CommandOutcome outcome = exported({"-t", "1", "-f", path, word});
        EXPECT_EQ(outcome.result, 1) << word;
        EXPECT_EQ(outcome.output, "Invalid parameters defined\n") << word;
    }
    EXPECT_EQ(contents(), "before");
}

TEST_F(Export, ReadsAMissingValueFromTheNextSlot) {
    expectAdapters(1);
    expectCtrlBlockRead(0);
    EXPECT_EQ(exported({"-f", path, "-t"}, {"1"}).result, 0);
    EXPECT_EQ(contents(), ctrlBlock(0));
    expectAdapters(1);
    EXPECT_EQ(exported({"-t", "7", "-f"}, {path}).result, 0);
    EXPECT_EQ(contents(), "");
}

TEST_F(Export, TreatsAMissingValueAfterTheLastSlotAsEmpty) {
    expectAdapters(1);
    const CommandOutcome outcome =
        exported({"-f", path, "-f", path, "-f", path, "-f", path, "-f", path, "-f", path, "-f", path, "-t"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(contents(), "");
}

TEST_F(Export, NamesAFileThatCannotBeCreated) {
    const std::string missing = directory + "/none/all.cfg";
    const CommandOutcome outcome = exported({"-t", "0", "-f", missing});
    EXPECT_EQ(outcome.result, 12);
    EXPECT_EQ(outcome.output,
              "Unable to create or open the specified configuration file \"" + missing + "\"\n");
    EXPECT_EQ(exported({"-t", "0", "-f", directory}).result, 12);
}

TEST_F(Export, ReportsAMissingFileName) {
    const CommandOutcome outcome = exported({"-t", "0"});
    EXPECT_EQ(outcome.result, 12);
    EXPECT_EQ(outcome.output, "Unable to create or open the specified configuration file \"\"\n");
}

TEST_F(Export, CreatesAnEmptyFileWithoutAdapters) {
    write("before");
    expectAdapters(0);
    const CommandOutcome outcome = exported({"-t", "0", "-f", path});
    EXPECT_EQ(outcome.result, 5);
    EXPECT_EQ(outcome.output, "No controller is existed\n");
    EXPECT_TRUE(exists());
    EXPECT_EQ(contents(), "");
}

TEST_F(Export, TreatsAFailedAdapterCountAsZero) {
    expectCall("q5_getNumberOfHBA", {}, {}, 1);
    const CommandOutcome outcome = exported({"-t", "0", "-f", path});
    EXPECT_EQ(outcome.result, 5);
    EXPECT_EQ(outcome.output, "No controller is existed\n");
    EXPECT_EQ(contents(), "");
}

TEST_F(Export, ReportsWriteErrors) {
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "there is no device that is always full";
    expectAdapters(1);
    expectExportOfEverything();
    const CommandOutcome outcome = exported({"-t", "0", "-f", "/dev/full"});
    EXPECT_EQ(outcome.result, 12);
    EXPECT_EQ(outcome.output, "Unable to create or open the specified configuration file \"/dev/full\"\n");
}

TEST_F(Export, AcceptsLongFileNames) {
    const std::string name = directory + "/" + std::string(200, 'n');
    expectAdapters(1);
    EXPECT_EQ(exported({"-t", "9", "-f", name}).result, 0);
    EXPECT_EQ(unlink(name.c_str()), 0);
}
