// The command arguments that an import builds, tested by the adapter calls of the commands.
#include "config/import_set.h"
#include "tests/config/import_apply.h"
#include "util/result.h"

using ImportArguments = ImportApply;

TEST_F(ImportArguments, SetsControllerFlagsForNonzeroPolicies) {
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

// Any other call would fail the test.
TEST_F(ImportArguments, IgnoresBuzzersAndSpares) {
    expectCtrlApplied(
        with(with(ctrlBlock(0), "<BuzzerEnable> On", "<BuzzerEnable> Enable"), "Spare> 2", "Spare> 9"),
        controllerSettings());
}

TEST_F(ImportArguments, LeavesRangeChecksToTheCommand) {
    ControllerSettings settings = {};
    expectChecks(1);
    expectCall("q5_getControllerSettings", queryFor(0, ControllerQuery{0, 1, 0, {}}, 88), bytesOf(settings));
    expectOutcome("[CrtlSetIndex] 0 [End]", false, 0,
                  "smartpoll is out of range!\nencpoll is out of range!\nrebuild rate is out of range!\n"
                  "syncrate is out of range!\ninitrate is out of range!\nmigraterate is out of range!\n"
                  "mprate is out of range!\nIncorrect parameters!\n");
}

TEST_F(ImportArguments, FitsTheLongestControllerNumbers) {
    std::string block = ctrlBlock(0);
    for (const char* number : {"> 10\n", "> 20\n", "> 30\n", "> 40\n", "> 50\n", "> 60\n", "> 7\n"})
        block = with(block, number, "> -2147483648\n");
    expectChecks(1);
    expectCall("q5_getControllerSettings", queryFor(0, ControllerQuery{0, 1, 0, {}}, 88),
               bytesOf(controllerSettings()));
    expectOutcome(block, false, 0,
                  "smartpoll is out of range!\nencpoll is out of range!\nrebuild rate is out of range!\n"
                  "syncrate is out of range!\ninitrate is out of range!\nmigraterate is out of range!\n"
                  "mprate is out of range!\nIncorrect parameters!\n");
}

TEST_F(ImportArguments, AppliesEachDriveFlag) {
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

TEST_F(ImportArguments, PassesDriveIdsFromOne) {
    expectChecks(1);
    expectDriveChange(0, 0xFFFFFFFF);
    expectOutcome(driveBlock(0, 0, 0), false, 0);
    expectChecks(1);
    expectOutcome(driveBlock(0, 0, -1), false, 0, "Invalid physical drive ID '-1' specified\n");
}

TEST_F(ImportArguments, AppliesTheCacheModeOfTheFile) {
    const std::string block = logDrvBlock(0, 0);
    expectLogDrvModified(with(block, "Write Back", "Write Through"), {0, 8, 1, "Data 1"});
    expectLogDrvModified(with(block, "Write Back", "Auto - Write Back"), {8, 8, 1, "Data 1"});
    expectLogDrvModified(with(block, "Write Back", "By Pass"), {0, 8, 1, "Data 1"});
    expectLogDrvModified(with(block, "Write Back", "sometimes"), {8, 8, 1, "Data 1"}); // unknown: automatic
}

TEST_F(ImportArguments, AppliesAllLogicalDriveSettings) {
    const std::string block = logDrvBlock(0, 0);
    expectLogDrvModified(with(block, "tion> Enable", "tion> Disable"), {1, 8, 0, "Data 1"});
    expectLogDrvModified(with(block, "Value> 8", "Value> 0"), {1, 0, 1, "Data 1"});
    expectLogDrvModified(with(block, "Value> 8", "Value> -1"), {1, 65535, 1, "Data 1"});
    expectLogDrvModified(with(block, "Data 1", "  A=b  c "), {1, 8, 1, "A=b  c"});
    expectLogDrvModified(with(block, "Data 1", "A,b"), {1, 8, 1, "A"}); // a comma ends an item
}

TEST_F(ImportArguments, ReportsRejectedLogicalDriveSettings) {
    expectChecks(1);
    expectLogDrvList(0, {listed(21, 4)});
    expectCall("q5_getLogDrvSettings", queryFor(0, LogDrvQuery{4, 1}, 180),
               listReply<LogDrvSettings>({LogDrvSettings{}}));
    expectOutcome(with(logDrvBlock(0, 0), "Value> 8", "Value> 9"), false, 0, "Invalid parameters defined\n");
}

TEST_F(ImportArguments, TruncatesALongNameToTheSettingsField) {
    expectLogDrvModified(with(logDrvBlock(0, 0), "Data 1", std::string(300, 'N')),
                         {1, 8, 1, std::string(31, 'N')});
    CreateArrayRequest request = creation();
    put(request.name, std::string(63, 'N'));
    expectCreated(with(logDrvBlock(0, 0), "Data 1", std::string(300, 'N')), request);
}

TEST_F(ImportArguments, CreatesALogicalDriveFromItsRecord) {
    expectCreated(logDrvBlock(0, 0), creation());
}

TEST_F(ImportArguments, UsesTheSectorCountAsTheSize) {
    CreateArrayRequest request = creation();
    request.capacity = 5859375000; // 3 TB
    expectCreated(with(logDrvBlock(0, 0), "2000000", "5859375000"), request);
    expectCreated(with(logDrvBlock(0, 0), "1024.0000", "1.0000"), creation());
}

TEST_F(ImportArguments, PassesParityForRaidMfOnly) {
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

TEST_F(ImportArguments, PassesSubArraysForRaid50Only) {
    const std::string block = with(logDrvBlock(0, 0), "[End]", "<LogDrvSubArrayCount> 3\n[End]");
    CreateArrayRequest request = creation();
    expectCreated(block, request);
    request.raidLevel = 80;
    expectCreated(with(with(block, "RAID5", "RAID50"), "Count> 3", "Count> 2"), request);
    expectRejected(with(block, "RAID5", "RAID50"),
                   "Incorrect parameters!\n"); // RAID50 has two subarrays, not three
}

TEST_F(ImportArguments, CreatesEveryLevel) {
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

TEST_F(ImportArguments, CreatesAJbodAsLargeAsItsDrive) {
    CreateArrayRequest request = creation();
    request.raidLevel = 10;
    request.capacity = 0;
    request.allocation = 0;
    request.memberCount = 1;
    request.member[1].driveId = 0;
    request.member[2].driveId = 0;
    expectCreated(with(with(logDrvBlock(0, 0), "RAID5", "JBOD"), "DiskNum> 3", "DiskNum> 1"), request);
}

TEST_F(ImportArguments, AppliesEditedInitializationsExceptForeground) {
    CreateArrayRequest request = creation();
    expectCreated(with(logDrvBlock(0, 0), "NONE", "FORE"), request);
    request.initialization = 1;
    expectCreated(with(logDrvBlock(0, 0), "NONE", "QUICK"), request);
    request.initialization = 4;
    expectCreated(with(logDrvBlock(0, 0), "NONE", "BACK"), request);
}

TEST_F(ImportArguments, AppliesStripeAndSectorSizes) {
    CreateArrayRequest request = creation();
    request.stripeSize = 128;
    request.sectorSize = 4096;
    expectCreated(with(with(logDrvBlock(0, 0), "SectorSize> 512", "SectorSize> 4096"), "StripeSize> 64",
                       "StripeSize> 128"),
                  request);
}

TEST_F(ImportArguments, ReportsAnInvalidStripe) {
    expectRejected(with(logDrvBlock(0, 0), "StripeSize> 64", "StripeSize> 256"),
                   "Incorrect stripe size!\nIncorrect parameters!\n");
}

TEST_F(ImportArguments, RejectsAnUnknownLevel) {
    expectRejected(
        with(logDrvBlock(0, 0), "RAID5", "RAID7"),
        "Unknown RAID level 'RAID7' specified!\nUnknown RAID level 'Unknown raid mode' specified!\n");
}

TEST_F(ImportArguments, CreatesNothingWithoutMembers) {
    expectRejected(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 0"), "No physical drive is defined!\n");
    expectRejected(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> -7"), "No physical drive is defined!\n");
}

TEST_F(ImportArguments, TruncatesALongMemberList) {
    std::string list = "(100";
    CreateArrayRequest request = creation();
    request.memberCount = 16;
    for (std::uint32_t i = 0; i < 16; ++i) {
        request.member[i].driveId = 99 + i;
        list += i == 0 ? "" : "," + std::to_string(100 + i);
    }
    expectAdapters(1);
    expectDriveCount(0, 65535);
    expectLogDrvList(0, {});
    expectCreation(0, request);
    expectLogDrvList(0, {});
    expectOutcome(with(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 65535"), "(1,2,3)", list + ")"), true,
                  0);
}

TEST_F(ImportArguments, FillsMissingMembersWithZeroes) {
    CreateArrayRequest request = creation();
    request.memberCount = 5;
    request.member[3].driveId = 0xFFFFFFFF; // entered as 0, then decremented
    request.member[4].driveId = 0xFFFFFFFF;
    expectCreated(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 5"), request);
}

// The second extent of the first drive and the third of the second.
static LogDrvConfigRecord recordOnExtents() {
    LogDrvConfigRecord record = {};
    put(record.name, "Data 1");
    record.sectorCount = 2000000;
    record.sectorSize = 512;
    record.stripeSize = 64;
    record.raidLevel = kRaid1;
    record.memberCount = 2;
    record.memberIds[0] = 1;
    record.memberIds[1] = 4;
    record.extents[0] = 1;
    record.extents[1] = 2;
    return record;
}

static CreateArrayRequest creationOnExtents() {
    CreateArrayRequest request = creation();
    request.raidLevel = kRaid1;
    request.allocation = kAllocateGiven;
    request.memberCount = 2;
    request.member[0] = {1, 0};
    request.member[1] = {2, 3};
    request.member[2] = {};
    return request;
}

TEST_F(ImportArguments, CreatesOnTheExtentsOfTheRecord) {
    expectCreation(0, creationOnExtents());
    EXPECT_EQ(outputOf([] { EXPECT_EQ(CreateOnExtents(recordOnExtents()), 0); }), "");
}

TEST_F(ImportArguments, PreparesTheRequestForExtentsWithoutSendingIt) {
    CreateArrayRequest request = {};
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(PhraseCreateOnExtents(recordOnExtents(), &request), 0); }), "");
    EXPECT_EQ(bytesOf(request), bytesOf(creationOnExtents()));
}

TEST_F(ImportArguments, PreparesNoRequestFromAnInvalidRecord) {
    LogDrvConfigRecord record = recordOnExtents();
    record.controller = -1;
    CreateArrayRequest request = {};
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(PhraseCreateOnExtents(record, &request), Result::badId); }),
              "Invalid controller ID '-1' specified\n");
}

TEST_F(ImportArguments, IgnoresNullRecords) {
    EXPECT_EQ(ImpFileSetCtrlSettings(nullptr), 0);
    EXPECT_EQ(ImpFileSetPhydrvSettings(nullptr), 0);
    EXPECT_EQ(ImpFileSetLogSettings(nullptr), 0);
    EXPECT_EQ(ImpFileCreateLogDrv(nullptr), 0);
}

TEST_F(ImportArguments, IgnoresTheResultOfTheCommand) {
    CtrlConfigRecord ctrl = {};
    ctrl.setIndex = -1;
    PhyDrvConfigRecord drive = {};
    drive.controller = -1;
    LogDrvConfigRecord logDrv = {};
    logDrv.controller = -1;
    EXPECT_EQ(outputOf([&] {
                  EXPECT_EQ(ImpFileSetCtrlSettings(&ctrl), 0);
                  EXPECT_EQ(ImpFileSetPhydrvSettings(&drive), 0);
                  EXPECT_EQ(ImpFileSetLogSettings(&logDrv), 0);
                  EXPECT_EQ(ImpFileCreateLogDrv(&logDrv), 0);
              }),
              "Invalid controller ID '-1' specified\nInvalid controller ID '-1' specified\n"
              "Invalid controller ID '-1' specified\nInvalid controller ID '-1' specified\n");
}
