// What an import does with the records it keeps: the checks, the order, and the words it hands to the
// commands.
#include "config/import.h"
#include "config/kept_records.h"

#include "tests/config/import_calls.h"

class ImportApply : public Configuration {
protected:
    void expectOutcome(const std::string& text, bool clear, int result, const std::string& output = "") {
        write(text);
        int applied = -1;
        EXPECT_EQ(printed([&] {
                      applied = SetDataFromConfigFile(path.c_str(), true, clear, 0, nullptr, 0, nullptr, 0,
                                                      nullptr);
                  }),
                  output);
        EXPECT_EQ(applied, result);
    }
    // The re-creation of one logical drive of controller 0, where there was none.
    void expectCreated(const std::string& block, const CreateArrayRequest& request) {
        expectChecks(1);
        expectLogDrvList(0, {});
        expectCreation(0, request);
        expectLogDrvList(0, {});
        expectOutcome(block, true, 0);
    }
    void expectRefused(const std::string& block, const std::string& output) {
        expectChecks(1);
        expectLogDrvList(0, {});
        expectLogDrvList(0, {});
        expectOutcome(block, true, 0, output);
    }
    void expectLogDrvModified(const std::string& block, const LogDrvWish& wanted) {
        expectChecks(1);
        expectLogDrvList(0, {listed(21, 4)});
        expectLogDrvChange(0, 4, wanted);
        expectOutcome(block, false, 0);
    }
    void expectCtrlApplied(const std::string& block, const ControllerSettings& wanted) {
        expectChecks(1);
        expectCtrlChange(0, wanted);
        expectOutcome(block, false, 0);
    }
};

TEST_F(ImportApply, FewerAdaptersThanControllerRecordsAreRefused) {
    static constexpr char kFewer[] =
        "The number of controller in the system is less than the number of controller specified!\n";
    expectAdapters(1);
    expectOutcome(ctrlBlock(0) + ctrlBlock(1), true, 5, kFewer);
    expectAdapters(0);
    expectOutcome(ctrlBlock(0), false, 5, kFewer);
}

TEST_F(ImportApply, WithoutAdaptersNothingIsDone) {
    expectAdapters(0);
    expectOutcome(driveBlock(0, 0, 1) + logDrvBlock(0, 0), true, 0);
}

TEST_F(ImportApply, AControllerRecordForAnAdapterThatIsNotThereIsIgnored) {
    expectChecks(1);
    expectOutcome(ctrlBlock(7), false, 0);
    expectChecks(2);
    expectOutcome(ctrlBlock(-1) + ctrlBlock(7), false, 0);
}

// However many the adapters' library claims.
TEST_F(ImportApply, OnlyTheFirstFourAdaptersAreLookedAt) {
    expectAdapters(0xFFFFFFFF);
    for (std::uint32_t controller = 0; controller < 4; ++controller)
        expectDriveCount(controller, 16);
    expectDriveChange(3, 0);
    expectOutcome(driveBlock(0, 3, 1) + driveBlock(1, 4, 1) + ctrlBlock(4), false, 0);
}

TEST_F(ImportApply, MoreDriveRecordsThanTheControllerHasDrivesAreRefused) {
    static constexpr char kMore[] =
        "The physical drive number specified is greater than the one in the controller\n";
    expectAdapters(2);
    expectDriveCount(0, 1);
    expectDriveCount(1, 1);
    expectOutcome(ctrlBlock(0) + driveBlock(0, 1, 1) + driveBlock(1, 1, 2), true, 16, kMore);
    expectAdapters(2);
    expectDriveCount(0, 0);
    expectOutcome(driveBlock(0, 0, 1), false, 16, kMore);
    expectAdapters(1); // an adapter that does not answer has no drives
    expectCall("q5_getControllerInfo", asks(0, ControllerQuery{0, 1, 0, {}}, 432), {}, 1);
    expectOutcome(driveBlock(0, 0, 1), false, 16, kMore);
}

TEST_F(ImportApply, AsManyDriveRecordsAsDrivesPass) {
    expectAdapters(1);
    expectDriveCount(0, 2, 1); // whose result nobody looks at
    expectDriveChange(0, 0);
    expectDriveChange(0, 4);
    expectOutcome(driveBlock(0, 0, 1) + driveBlock(1, 0, 5) + driveBlock(2, 1, 1), false, 0);
}

TEST_F(ImportApply, MoreMembersThanTheControllerHasDrivesAreRefused) {
    static constexpr char kMore[] =
        "The physical drive member number in logical drive specified is greater than "
        "the one in the controller\n";
    expectAdapters(2);
    expectDriveCount(0, 16);
    expectDriveCount(1, 2);
    expectOutcome(ctrlBlock(0) + logDrvBlock(0, 0) + logDrvBlock(1, 1), true, 16, kMore);
    expectAdapters(1);
    expectDriveCount(0, 16);
    expectOutcome(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 65535"), true, 16, kMore);
}

TEST_F(ImportApply, DriveRecordsAreCheckedBeforeMembersControllerByController) {
    expectAdapters(2);
    expectDriveCount(0, 2);
    expectOutcome(logDrvBlock(0, 0) + driveBlock(0, 0, 1) + driveBlock(1, 0, 2) + driveBlock(2, 0, 3), false,
                  16, "The physical drive number specified is greater than the one in the controller\n");
}

TEST_F(ImportApply, MembersOfControllersThatAreNotThereAreNotChecked) {
    expectChecks(1);
    expectLogDrvList(0, {listed(21, 4)});
    expectOutcome(with(logDrvBlock(0, 9), "DiskNum> 3", "DiskNum> 500"), false, 0);
}

TEST_F(ImportApply, OfTwoRecordsForOneControllerTheFirstIsApplied) {
    expectChecks(2);
    expectCtrlChange(0);
    expectOutcome(ctrlBlock(0) + with(ctrlBlock(0), "SyncRate> 10", "SyncRate> 11"), false, 0);
}

TEST_F(ImportApply, GoesControllerByControllerWhateverTheFilesOrder) {
    expectChecks(2);
    expectCtrlChange(0);
    expectDriveChange(0, 3);
    expectDriveChange(0, 1);
    expectLogDrvList(0, {listed(20, 4)});
    expectDeletion(0, 20);
    expectCreation(0, creation());
    expectLogDrvList(0, {listed(22, 4)});
    expectLogDrvChange(0, 4);
    expectCtrlChange(1);
    expectLogDrvList(1, {listed(31, 5), listed(30, 6)});
    expectDeletion(1, 31);
    expectDeletion(1, 30);
    expectCreation(1, creation());
    expectLogDrvList(1, {});
    expectOutcome(logDrvBlock(0, 1) + logDrvBlock(1, 0) + driveBlock(0, 0, 4) + driveBlock(1, 0, 2) +
                      ctrlBlock(1) + ctrlBlock(0),
                  true, 0);
}

TEST_F(ImportApply, NothingIsDeletedWithoutALogicalDriveRecord) {
    expectChecks(1);
    expectCtrlChange(0);
    expectOutcome(ctrlBlock(0), true, 0);
}

TEST_F(ImportApply, OneLogicalDriveRecordClearsEveryController) {
    expectChecks(2);
    expectLogDrvList(0, {listed(20, 4)});
    expectDeletion(0, 20);
    expectLogDrvList(0, {});
    expectLogDrvList(1, {});
    expectCreation(1, creation());
    expectLogDrvList(1, {});
    expectOutcome(logDrvBlock(0, 1), true, 0);
}

TEST_F(ImportApply, AControllerWithoutDrivesGetsNoLogicalDriveWork) {
    expectAdapters(2);
    expectDriveCount(0, 0);
    expectDriveCount(1, 16);
    expectCtrlChange(0);
    expectLogDrvList(1, {});
    expectLogDrvList(1, {});
    expectOutcome(ctrlBlock(0) + with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 0"), true, 0);
}

TEST_F(ImportApply, FailuresDoNotStopIt) {
    expectChecks(1);
    expectLogDrvList(0, {listed(20, 4), listed(21, 5)});
    expectDeletion(0, 20, 1);
    expectDeletion(0, 21, -1);
    expectCreation(0, creation(), 1);
    expectCreation(0, creation(), 0);
    expectLogDrvList(0, {listed(20, 4)});
    expectCall("q5_getLogDrvSettings", asks(0, LogDrvQuery{4, 1}, 180), {}, 1);
    expectOutcome(logDrvBlock(0, 0) + logDrvBlock(1, 0), true, 0,
                  "Failed to create an array specified\n"
                  "The logical drive with ID 4 in controller #0 is not existed!\n");
}

TEST_F(ImportApply, ListsAreFollowedNoFurtherThanTheRepliesReach) {
    Bytes reply = listReply(std::vector<LogDrvInfo>(128, listed(20, 9)));
    std::memcpy(&reply[36], "\xff\xff\xff\xff", 4);
    expectChecks(1);
    expectCall("q5_getLogDrvInfo", asks(0, LogDrvQuery{0, 128}, 26688), reply);
    for (int i = 0; i < 128; ++i)
        expectDeletion(0, 20);
    expectCreation(0, creation());
    const std::uint32_t bytesUsed = 63;
    std::memcpy(&reply[36], &bytesUsed, 4);
    expectCall("q5_getLogDrvInfo", asks(0, LogDrvQuery{0, 128}, 26688), reply);
    expectOutcome(logDrvBlock(0, 0), true, 0);
}

TEST_F(ImportApply, ExistingDrivesTakeTheFirstRecordOfTheirIdInTheOrderOfTheList) {
    const std::string nine = with(with(logDrvBlock(0, 0), "DrvID> 4", "DrvID> 9"), "Data 1", "Nine");
    expectChecks(1);
    expectLogDrvList(0, {listed(4, 9), listed(9, 7), listed(7, 4)});
    expectLogDrvChange(0, 9, {1, 8, 1, "Nine"});
    expectLogDrvChange(0, 4);
    expectOutcome(logDrvBlock(0, 1) + logDrvBlock(1, 0) + nine + with(logDrvBlock(2, 0), "Data 1", "Other"),
                  false, 0);
}

TEST_F(ImportApply, ARecordOfADriveThatDoesNotExistIsIgnored) {
    expectChecks(1);
    expectLogDrvList(0, {listed(4, 3)});
    expectOutcome(logDrvBlock(0, 0), false, 0);
}

TEST_F(ImportApply, ControllerFlagsAreSetByAnyPolicyThatIsNotZero) {
    ControllerSettings wanted = controllerSettings();
    expectCtrlApplied(with(ctrlBlock(0), "Policy> 1", "Policy> 7"), wanted);
    wanted.rebuildPolicy = 0;
    expectCtrlApplied(with(ctrlBlock(0), "Policy> 1", "Policy> 256"), wanted);
    wanted.autoRebuild = 0;
    wanted.smartCheck = 0;
    expectCtrlApplied(
        with(with(with(ctrlBlock(0), "Policy> 1", "Policy> 0"), "CEnable> Enable", "CEnable> Disable"),
             "Rebuild> Enable", "Rebuild> Disable"),
        wanted);
}

// No call but those of the settings: the plan would name it.
TEST_F(ImportApply, BuzzersAndSparesAreNotApplied) {
    expectCtrlApplied(
        with(with(ctrlBlock(0), "<BuzzerEnable> On", "<BuzzerEnable> Enable"), "Spare> 2", "Spare> 9"),
        controllerSettings());
}

TEST_F(ImportApply, SettingsOutOfRangeAreRefusedByTheCommand) {
    ControllerSettings settings = {};
    expectChecks(1);
    expectCall("q5_getControllerSettings", asks(0, ControllerQuery{0, 1, 0, {}}, 88), bytesOf(settings));
    expectOutcome("[CrtlSetIndex] 0 [End]", false, 0,
                  "smartpoll is out of range!\nencpoll is out of range!\nrebuild rate is out of range!\n"
                  "syncrate is out of range!\ninitrate is out of range!\nmigraterate is out of range!\n"
                  "mprate is out of range!\nIncorrect parameters!\n");
}

TEST_F(ImportApply, TheControllersWordsFitWhateverItsNumbers) {
    std::string block = ctrlBlock(0);
    for (const char* number : {"> 10\n", "> 20\n", "> 30\n", "> 40\n", "> 50\n", "> 60\n", "> 7\n"})
        block = with(block, number, "> -2147483648\n");
    expectChecks(1);
    expectCall("q5_getControllerSettings", asks(0, ControllerQuery{0, 1, 0, {}}, 88),
               bytesOf(controllerSettings()));
    expectOutcome(block, false, 0,
                  "smartpoll is out of range!\nencpoll is out of range!\nrebuild rate is out of range!\n"
                  "syncrate is out of range!\ninitrate is out of range!\nmigraterate is out of range!\n"
                  "mprate is out of range!\nIncorrect parameters!\n");
}

TEST_F(ImportApply, DriveFlagsAreAppliedEachToItsOwn) {
    const std::string off = with(with(driveBlock(0, 0, 7), "Cache> Enable", "Cache> Disable"),
                                 "NCQEnable> Enable", "NCQEnable> not supported");
    for (const DriveFlags& wanted : {DriveFlags{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 0, 0}}) {
        std::string block = off;
        if (wanted.writeCache != 0)
            block = with(block, "Cache> Disable", "Cache> Enable");
        if (wanted.tcq != 0)
            block = with(block, "<TCQEnable> Disable", "<TCQEnable> Enable");
        if (wanted.ncq != 0)
            block = with(block, "<NCQEnable> not supported", "<NCQEnable> Enable");
        expectChecks(1);
        expectDriveChange(0, 6, wanted);
        expectOutcome(block, false, 0);
    }
}

TEST_F(ImportApply, ADriveIdIsTypedAsTheFileHasIt) {
    expectChecks(1);
    expectDriveChange(0, 0xFFFFFFFF);
    expectOutcome(driveBlock(0, 0, 0), false, 0);
    expectChecks(1);
    expectOutcome(driveBlock(0, 0, -1), false, 0, "Invalid physical drive ID '-1' specified\n");
}

TEST_F(ImportApply, LogicalDriveSettingsTakeTheModeThatWasRead) {
    const std::string block = logDrvBlock(0, 0);
    expectLogDrvModified(with(block, "Write Back", "Write Through"), {0, 8, 1, "Data 1"});
    expectLogDrvModified(with(block, "Write Back", "Auto - Write Back"), {8, 8, 1, "Data 1"});
    expectLogDrvModified(with(block, "Write Back", "By Pass"), {0, 8, 1, "Data 1"});
    expectLogDrvModified(with(block, "Write Back", "sometimes"), {8, 8, 1, "Data 1"}); // unknown: automatic
}

TEST_F(ImportApply, LogicalDriveSettingsAreAppliedWhole) {
    const std::string block = logDrvBlock(0, 0);
    expectLogDrvModified(with(block, "tion> Enable", "tion> Disable"), {1, 8, 0, "Data 1"});
    expectLogDrvModified(with(block, "Value> 8", "Value> 0"), {1, 0, 1, "Data 1"});
    expectLogDrvModified(with(block, "Value> 8", "Value> -1"), {1, 65535, 1, "Data 1"});
    expectLogDrvModified(with(block, "Data 1", "  A=b  c "), {1, 8, 1, "A=b  c"});
    expectLogDrvModified(with(block, "Data 1", "A,b"), {1, 8, 1, "A"}); // a comma ends an item
}

TEST_F(ImportApply, LogicalDriveSettingsThatAreRefusedAreTheCommandsConcern) {
    expectChecks(1);
    expectLogDrvList(0, {listed(21, 4)});
    expectCall("q5_getLogDrvSettings", asks(0, LogDrvQuery{4, 1}, 180),
               listReply<LogDrvSettings>({LogDrvSettings{}}));
    expectOutcome(with(logDrvBlock(0, 0), "Value> 8", "Value> 9"), false, 0, "Invalid parameters defined\n");
}

TEST_F(ImportApply, ALongNameIsCutToTheSettingsField) {
    expectLogDrvModified(with(logDrvBlock(0, 0), "Data 1", std::string(300, 'N')),
                         {1, 8, 1, std::string(31, 'N')});
    CreateArrayRequest request = creation();
    put(request.name, std::string(63, 'N'));
    expectCreated(with(logDrvBlock(0, 0), "Data 1", std::string(300, 'N')), request);
}

TEST_F(ImportApply, CreatesALogicalDriveFromItsRecord) {
    expectCreated(logDrvBlock(0, 0), creation());
}

TEST_F(ImportApply, TheSizeIsTheSectorCountWhateverTheMegabytesSay) {
    CreateArrayRequest request = creation();
    request.capacity = 5859375000; // three million million bytes
    expectCreated(with(logDrvBlock(0, 0), "2000000", "5859375000"), request);
    expectCreated(with(logDrvBlock(0, 0), "1024.0000", "1.0000"), creation());
}

TEST_F(ImportApply, RaidMfCarriesItsParityAndOtherLevelsDoNot) {
    const std::string keys = "<LogDrvParityCnt> 3\n<LogDrvSymmetric> 1\n<LogDrvShift> -2\n"
                             "<LogDrvSubArrayCount> 2\n[End]";
    const std::string block = with(logDrvBlock(0, 0), "[End]", keys);
    expectCreated(block, creation());
    CreateArrayRequest request = creation();
    request.raidLevel = 96;
    request.parityCount = 3;
    request.symmetric = 1;
    request.shift = 65534;
    expectCreated(with(block, "RAID5", "RAIDMF"), request);
}

TEST_F(ImportApply, Raid50CarriesItsSubArraysAndOtherLevelsDoNot) {
    const std::string block = with(logDrvBlock(0, 0), "[End]", "<LogDrvSubArrayCount> 3\n[End]");
    CreateArrayRequest request = creation();
    expectCreated(block, request);
    request.raidLevel = 80;
    expectCreated(with(with(block, "RAID5", "RAID50"), "Count> 3", "Count> 2"), request);
    expectRefused(with(block, "RAID5", "RAID50"), "Incorrect parameters!\n"); // no adapter splits in three
}

TEST_F(ImportApply, EveryLevelIsCreatedByItsWord) {
    const struct {
        const char* word;
        std::uint16_t code;
    } levels[] = {{"RAID0", 0}, {"RAID1", 1}, {"RAID10", 16}};
    for (const auto& level : levels) {
        CreateArrayRequest request = creation();
        request.raidLevel = level.code;
        expectCreated(with(logDrvBlock(0, 0), "RAID5", level.word), request);
    }
}

TEST_F(ImportApply, AJbodIsAsLargeAsItsDrive) {
    CreateArrayRequest request = creation();
    request.raidLevel = 10;
    request.capacity = 0;
    request.allocation = 0;
    request.memberCount = 1;
    request.member[1].driveId = 0;
    request.member[2].driveId = 0;
    expectCreated(with(with(logDrvBlock(0, 0), "RAID5", "JBOD"), "DiskNum> 3", "DiskNum> 1"), request);
}

TEST_F(ImportApply, AnInitializationSetByHandIsHonouredButForForeground) {
    CreateArrayRequest request = creation();
    expectCreated(with(logDrvBlock(0, 0), "NONE", "FORE"), request);
    request.initialization = 1;
    expectCreated(with(logDrvBlock(0, 0), "NONE", "QUICK"), request);
    request.initialization = 4;
    expectCreated(with(logDrvBlock(0, 0), "NONE", "BACK"), request);
}

TEST_F(ImportApply, SizesOfStripesAndSectorsAreApplied) {
    CreateArrayRequest request = creation();
    request.stripeSize = 128;
    request.sectorSize = 4096;
    expectCreated(with(with(logDrvBlock(0, 0), "SectorSize> 512", "SectorSize> 4096"), "StripeSize> 64",
                       "StripeSize> 128"),
                  request);
}

TEST_F(ImportApply, ABadStripeIsTheCommandsConcern) {
    expectRefused(with(logDrvBlock(0, 0), "StripeSize> 64", "StripeSize> 256"),
                  "Incorrect stripe size!\nIncorrect parameters!\n");
}

TEST_F(ImportApply, AnUnknownLevelIsNotCreated) {
    expectRefused(
        with(logDrvBlock(0, 0), "RAID5", "RAID7"),
        "Unknown RAID level 'RAID7' specified!\nUnknown RAID level 'Unknown raid mode' specified!\n");
}

TEST_F(ImportApply, WithoutMembersNothingIsCreated) {
    expectRefused(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 0"), "No physical drive is defined!\n");
    expectRefused(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> -7"), "No physical drive is defined!\n");
}

TEST_F(ImportApply, AMemberListLongerThanItsWordIsCut) {
    CreateArrayRequest request = creation();
    request.memberCount = 16;
    for (int i = 3; i < 16; ++i)
        request.member[i].driveId = 0xFFFFFFFF; // the file names no such member: 0, lowered
    expectAdapters(1);
    expectDriveCount(0, 65535);
    expectLogDrvList(0, {});
    expectCreation(0, request);
    expectLogDrvList(0, {});
    expectOutcome(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 65535"), true, 0);
}

TEST_F(ImportApply, NoRecordNoCall) {
    EXPECT_EQ(ImpFileSetCtrlSettings(nullptr), 0);
    EXPECT_EQ(ImpFileSetPhydrvSettings(nullptr), 0);
    EXPECT_EQ(ImpFileSetLogSettings(nullptr), 0);
    EXPECT_EQ(ImpFileCreateLogDrv(nullptr), 0);
}

TEST_F(ImportApply, TheResultOfACommandIsItsOwn) {
    CtrlConfigRecord ctrl = {};
    ctrl.setIndex = -1;
    PhyDrvConfigRecord drive = {};
    drive.controller = -1;
    LogDrvConfigRecord logDrv = {};
    logDrv.controller = -1;
    EXPECT_EQ(printed([&] {
                  EXPECT_EQ(ImpFileSetCtrlSettings(&ctrl), 0);
                  EXPECT_EQ(ImpFileSetPhydrvSettings(&drive), 0);
                  EXPECT_EQ(ImpFileSetLogSettings(&logDrv), 0);
                  EXPECT_EQ(ImpFileCreateLogDrv(&logDrv), 0);
              }),
              "Invalid controller ID '-1' specified\nInvalid controller ID '-1' specified\n"
              "Invalid controller ID '-1' specified\nInvalid controller ID '-1' specified\n");
}
