// The blocks of an export, written from the replies of the adapters, with the calls in order.
#include "config/export.h"

#include "tests/config/export_calls.h"

using ExportBlocks = MockAdapterTest;

// The blocks that a writer writes for this number of controllers.
static std::string written(int (*writer)(std::uint32_t, std::FILE*), std::uint32_t controllers) {
    std::FILE* file = std::tmpfile();
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(writer(controllers, file), 0); }), "");
    std::rewind(file);
    std::string text;
    for (int c; (c = std::getc(file)) != EOF;)
        text += static_cast<char>(c);
    std::fclose(file);
    return text;
}

static int spares(std::uint32_t controller, int countGlobal) {
    int count = 77;
    EXPECT_EQ(GetSpareInfo(controller, countGlobal, &count), 0);
    return count;
}

TEST_F(ExportBlocks, WritesEachControllerWithItsNumber) {
    expectCtrlBlockRead(0);
    expectSettingsRead(1, {});
    expectBuzzerRead(1, 0);
    expectDrivesRead(1, bytesOf(replyHeader(64)));
    const std::string silent =
        "<AutoRebuild> Disable\n<SyncRate> 0\n<InitRate> 0\n<MPRate> 0\n<MigrateRate> 0\n"
        "<RebuildRate> 0\n<SmartCEnable> Disable\n<SmartPollInt> 0\n<EncPollInt> 0\n"
        "<RebuildPolicy> 0\n<BuzzerEnable> Off\n<GlobalSpare> 0\n[End] \n";
    EXPECT_EQ(written(WriteCtrlSettings, 2), ctrlBlock(0) + marked("[CrtlSetIndex]", 1, silent));
}

TEST_F(ExportBlocks, WritesZeroesForAControllerThatFails) {
    expectSettingsRead(0, controllerSettings());
    expectBuzzerRead(0, 1);
    expectDrivesRead(0, {});
    expectCall("q5_getControllerSettings", queryFor(1, ControllerQuery{1, 1, 0, {}}, 88), {}, -1);
    expectCall("q5_getBuzzerStatus", bytesOf(hbaAddress(1), std::uint32_t{0}, std::uint32_t{1}), {}, 1);
    expectDrivesRead(1, {}, 1);
    const std::string text = written(WriteCtrlSettings, 2);
    EXPECT_NE(text.find("[CrtlSetIndex] 1\n<AutoRebuild> Disable\n<SyncRate> 0\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("<BuzzerEnable> Off\n<GlobalSpare> 0\n[End] \n", text.find("] 1\n")),
              std::string::npos)
        << text;
}

TEST_F(ExportBlocks, WritesNothingWithoutControllers) {
    EXPECT_EQ(written(WriteCtrlSettings, 0), "");
    EXPECT_EQ(written(WritePDSettings, 0), "");
    EXPECT_EQ(written(WriteLDSettings, 0), "");
}

// The format contains the first drive's spares multiplied by the number of drives.
TEST_F(ExportBlocks, CountsTheSparesOfTheFirstDriveForEachDrive) {
    expectDrivesRead(3, listReply<PhyDrvInfo>({driveWithSpares(3), driveWithSpares(0), driveWithSpares(9)}));
    EXPECT_EQ(spares(3, 1), 6);
    expectDrivesRead(0, listReply<PhyDrvInfo>({driveWithSpares(0), driveWithSpares(9)}));
    EXPECT_EQ(spares(0, 1), 0);
    expectDrivesRead(0, listReply<PhyDrvInfo>({driveWithSpares(2)}));
    EXPECT_EQ(spares(0, -1), 1);
}

TEST_F(ExportBlocks, CountsSparesOnlyOnRequest) {
    expectDrivesRead(0, listReply<PhyDrvInfo>({driveWithSpares(3)}));
    EXPECT_EQ(spares(0, 0), 0);
}

TEST_F(ExportBlocks, CountsSparesOnlyWithinTheReply) {
    Bytes reply = listReply<PhyDrvInfo>({driveWithSpares(255)}); // 16 extents, all of them spares
    std::memcpy(&reply[36], "\xff\xff\xff\xff", 4);              // 16 drives
    expectDrivesRead(0, reply);
    EXPECT_EQ(spares(0, 1), 256);
    for (std::uint32_t bytesUsed : {0u, 63u, 64u, 727u}) {
        std::memcpy(&reply[36], &bytesUsed, 4);
        expectDrivesRead(0, reply);
        EXPECT_EQ(spares(0, 1), 0) << bytesUsed;
    }
}

TEST_F(ExportBlocks, NumbersDrivesOverAllControllers) {
    expectDriveSettingsRead(0, listReply<PhyDrvSettings>({driveSettings(0), driveSettings(2)}));
    expectDriveSettingsRead(1, bytesOf(replyHeader(64)));
    expectDriveSettingsRead(2, listReply<PhyDrvSettings>({driveSettings(0)}));
    EXPECT_EQ(written(WritePDSettings, 3), driveBlock(0, 0, 1) + driveBlock(1, 0, 3) + driveBlock(2, 2, 1));
}

TEST_F(ExportBlocks, WritesDrivesOnlyWithinTheReply) {
    Bytes reply = listReply(std::vector<PhyDrvSettings>(16, driveSettings(4)));
    std::memcpy(&reply[36], "\xff\xff\xff\xff", 4);
    expectDriveSettingsRead(0, reply);
    std::string sixteen;
    for (int i = 0; i < 16; ++i)
        sixteen += driveBlock(i, 0, 5);
    EXPECT_EQ(written(WritePDSettings, 1), sixteen);
    for (std::uint32_t bytesUsed : {0u, 63u, 79u}) {
        std::memcpy(&reply[36], &bytesUsed, 4);
        expectDriveSettingsRead(0, reply);
        EXPECT_EQ(written(WritePDSettings, 1), "") << bytesUsed;
    }
}

TEST_F(ExportBlocks, NumbersLogicalDrivesOverAllControllers) {
    expectLogDrvBlockRead(0);
    expectLogDrvsRead(1, {});
    expectLogDrvBlockRead(2);
    EXPECT_EQ(written(WriteLDSettings, 3), exportedLogDrvBlock(0, 0) + exportedLogDrvBlock(1, 2));
}

TEST_F(ExportBlocks, PairsSettingsAndDrivesByPosition) {
    LogDrvInfo second = raid5Drive();
    second.logDrvId = 9;
    second.diskCount = 0;
    LogDrvInfo firstDrive = second;
    firstDrive.logDrvId = 8;
    LogDrvSettings settings = {};
    settings.lookahead = 3;
    expectLogDrvsRead(0, {firstDrive, second});
    expectLogDrvSettingsRead(0, {raid5Settings(), settings});
    const std::string text = written(WriteLDSettings, 1);
    const std::size_t split = text.find("[LogDrvSetIndex] 1\n<LogDrvID> 9\n");
    ASSERT_NE(split, std::string::npos) << text;
    EXPECT_NE(text.find("<LogDrvLookAheadValue> 8\n<LogDrvConsolidation> Enable\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("<LogDrvLookAheadValue> 3\n<LogDrvConsolidation> Disable\n", split),
              std::string::npos);
}

TEST_F(ExportBlocks, WritesZeroesForMissingSettings) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 0;
    expectLogDrvsRead(0, {drive});
    expectCall("q5_getLogDrvSettings", queryFor(0, LogDrvQuery{0, 128}, 14912), {}, 1);
    const std::string text = written(WriteLDSettings, 1);
    EXPECT_NE(text.find("<LogDrvLookAheadValue> 0\n<LogDrvConsolidation> Disable\n"), std::string::npos)
        << text;
}

// The list of extents that a drive block of this export shows.
static std::string extentsOf(const std::string& text, int index) {
    const std::string key = "<LogDrvDiskExtentIndex> ";
    const std::size_t block = text.find("[LogDrvSetIndex] " + std::to_string(index) + "\n");
    const std::size_t list = block == std::string::npos ? block : text.find(key, block);
    if (list == std::string::npos)
        return "none";
    return text.substr(list + key.size(), text.find('\n', list) - list - key.size());
}

// The owner of an extent is the array's identifier, 21; its logical drive is 4.
TEST_F(ExportBlocks, ListsTheFirstExtentOfTheArrayOnEachMember) {
    expectLogDrvsRead(0, {raid5Drive()});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    expectMemberRead(0, 0, {4, 255, 21, 21});
    expectMemberRead(0, 1, {21});
    expectMemberRead(0, 2, {0, 21});
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0), "(12,10,11)");
}

TEST_F(ExportBlocks, SkipsMembersWithoutExtentAndEndsTheFirstListInDashes) {
    expectLogDrvsRead(0, {raid5Drive()});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    expectMemberRead(0, 0, {4, 4});
    expectMemberRead(0, 1, {4, 21});
    expectMemberRead(0, 2, {});
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0), "(11,-,-)");
}

TEST_F(ExportBlocks, KeepsTheEndOfTheListBeforeEvenOfAnotherController) {
    for (std::uint32_t controller : {0u, 1u}) {
        expectLogDrvsRead(controller, {raid5Drive()});
        expectLogDrvSettingsRead(controller, {raid5Settings()});
        expectMemberRead(controller, 0, {21});
        expectMemberRead(controller, 1,
                         controller == 0 ? std::vector<std::uint16_t>{4, 21} : std::vector<std::uint16_t>{});
        expectMemberRead(controller, 2,
                         controller == 0 ? std::vector<std::uint16_t>{4, 4, 21}
                                         : std::vector<std::uint16_t>{4, 4, 4, 21});
    }
    const std::string text = written(WriteLDSettings, 2);
    EXPECT_EQ(extentsOf(text, 0), "(10,11,12)");
    EXPECT_EQ(extentsOf(text, 1), "(10,13,12)");
    expectLogDrvsRead(0, {raid5Drive()});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    for (std::uint32_t member : {0u, 1u, 2u})
        expectMemberRead(0, member, {});
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0), "(-,-,-)"); // another pass
}

TEST_F(ExportBlocks, WritesTheLowByteOfAnExtentIndex) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 1;
    PhyDrvInfo member = {};
    member.extentCount = 1;
    member.extent[0].index = 0x1207;
    member.extent[0].arrayId = 21;
    expectLogDrvsRead(0, {drive});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    expectCall("q5_getPhyDrvInfo", queryFor(0, PhyDrvQuery{0, 1, 255, {}}, 728),
               listReply<PhyDrvInfo>({member}));
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0), "(7)");
}

TEST_F(ExportBlocks, SkipsMissingMembers) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 1;
    expectLogDrvsRead(0, {drive});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    expectCall("q5_getPhyDrvInfo", queryFor(0, PhyDrvQuery{0, 1, 255, {}}, 728), {}, 1);
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0), "(-)");
}

TEST_F(ExportBlocks, LimitsTheExtentCountToTheRecord) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 1;
    PhyDrvInfo member = {};
    member.extentCount = 255;
    expectLogDrvsRead(0, {drive});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    expectCall("q5_getPhyDrvInfo", queryFor(0, PhyDrvQuery{0, 1, 255, {}}, 728),
               listReply<PhyDrvInfo>({member}));
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0), "(-)");
}

TEST_F(ExportBlocks, LimitsTheMembersToTheRecord) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 65535;
    expectLogDrvsRead(0, {drive});
    expectLogDrvSettingsRead(0, {raid5Settings()});
    for (std::uint32_t member = 0; member < 32; ++member)
        expectMemberRead(0, drive.memberIds[member], {21});
    EXPECT_EQ(extentsOf(written(WriteLDSettings, 1), 0).substr(0, 48),
              "(10,10,10,10,10,10,10,10,10,10,10,10,10,10,10,10");
}

TEST_F(ExportBlocks, WritesLogicalDrivesOnlyWithinTheReply) {
    LogDrvInfo drive = raid5Drive();
    drive.diskCount = 0;
    Bytes reply = listReply(std::vector<LogDrvInfo>(128, drive));
    std::memcpy(&reply[36], "\xff\xff\xff\xff", 4);
    expectCall("q5_getLogDrvInfo", queryFor(0, LogDrvQuery{0, 128}, 26688), reply);
    expectLogDrvSettingsRead(0, {});
    const std::string text = written(WriteLDSettings, 1);
    EXPECT_NE(text.find("[LogDrvSetIndex] 127\n"), std::string::npos);
    EXPECT_EQ(text.find("[LogDrvSetIndex] 128\n"), std::string::npos);
    for (std::uint32_t bytesUsed : {0u, 63u, 271u}) {
        std::memcpy(&reply[36], &bytesUsed, 4);
        expectCall("q5_getLogDrvInfo", queryFor(0, LogDrvQuery{0, 128}, 26688), reply);
        EXPECT_EQ(written(WriteLDSettings, 1), "") << bytesUsed;
    }
}
