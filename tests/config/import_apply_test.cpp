// Applying the selected records: the checks and the order. The arguments of the commands are tested in
// import_arguments_test.cpp.
#include "tests/config/import_apply.h"

TEST_F(ImportApply, RejectsMoreControllerRecordsThanAdapters) {
    static constexpr char kFewer[] =
        "The number of controller in the system is less than the number of controller specified!\n";
    expectAdapters(1);
    expectOutcome(ctrlBlock(0) + ctrlBlock(1), true, 5, kFewer);
    expectAdapters(0);
    expectOutcome(ctrlBlock(0), false, 5, kFewer);
}

TEST_F(ImportApply, DoesNothingWithoutAdapters) {
    expectAdapters(0);
    expectOutcome(driveBlock(0, 0, 1) + logDrvBlock(0, 0), true, 0);
}

TEST_F(ImportApply, TreatsAFailedAdapterCountAsZero) {
    expectCall("q5_getNumberOfHBA", {}, {}, 1);
    expectOutcome(driveBlock(0, 0, 1) + logDrvBlock(0, 0), true, 0);
}

TEST_F(ImportApply, IgnoresRecordsOfMissingControllers) {
    expectChecks(1);
    expectOutcome(ctrlBlock(7), false, 0);
    expectChecks(2);
    expectOutcome(ctrlBlock(-1) + ctrlBlock(7), false, 0);
}

TEST_F(ImportApply, UsesOnlyTheFirstFourAdapters) {
    expectAdapters(0xFFFFFFFF);
    for (std::uint32_t controller = 0; controller < 4; ++controller)
        expectDriveCount(controller, 16);
    expectDriveChange(3, 0);
    expectOutcome(driveBlock(0, 3, 1) + driveBlock(1, 4, 1) + ctrlBlock(4), false, 0);
}

TEST_F(ImportApply, RejectsMoreDriveRecordsThanDrives) {
    static constexpr char kMore[] =
        "The physical drive number specified is greater than the one in the controller\n";
    expectAdapters(2);
    expectDriveCount(0, 1);
    expectDriveCount(1, 1);
    expectOutcome(ctrlBlock(0) + driveBlock(0, 1, 1) + driveBlock(1, 1, 2), true, 16, kMore);
    expectAdapters(2);
    expectDriveCount(0, 0);
    expectOutcome(driveBlock(0, 0, 1), false, 16, kMore);
    expectAdapters(1); // a controller whose query fails has no drives
    expectCall("q5_getControllerInfo", queryFor(0, ControllerQuery{0, 1, 0, {}}, 432), {}, 1);
    expectOutcome(driveBlock(0, 0, 1), false, 16, kMore);
}

TEST_F(ImportApply, AcceptsAsManyDriveRecordsAsDrives) {
    expectAdapters(1);
    expectDriveCount(0, 2, 1); // the result is ignored
    expectDriveChange(0, 0);
    expectDriveChange(0, 4);
    expectOutcome(driveBlock(0, 0, 1) + driveBlock(1, 0, 5) + driveBlock(2, 1, 1), false, 0);
}

TEST_F(ImportApply, RejectsMoreMembersThanDrives) {
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
    expectAdapters(1); // more members than a record holds
    expectDriveCount(0, 200);
    expectOutcome(with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 201"), true, 16, kMore);
}

TEST_F(ImportApply, ChecksDriveRecordsBeforeMembersPerController) {
    expectAdapters(2);
    expectDriveCount(0, 2);
    expectOutcome(logDrvBlock(0, 0) + driveBlock(0, 0, 1) + driveBlock(1, 0, 2) + driveBlock(2, 0, 3), false,
                  16, "The physical drive number specified is greater than the one in the controller\n");
}

TEST_F(ImportApply, IgnoresMembersOfMissingControllers) {
    expectChecks(1);
    expectLogDrvList(0, {listed(21, 4)});
    expectOutcome(with(logDrvBlock(0, 9), "DiskNum> 3", "DiskNum> 500"), false, 0);
}

TEST_F(ImportApply, AppliesTheFirstOfTwoRecordsForAController) {
    expectChecks(2);
    expectCtrlChange(0);
    expectOutcome(ctrlBlock(0) + with(ctrlBlock(0), "SyncRate> 10", "SyncRate> 11"), false, 0);
}

TEST_F(ImportApply, AppliesControllerByControllerInAnyFileOrder) {
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

TEST_F(ImportApply, DeletesNothingWithoutALogicalDriveRecord) {
    expectChecks(1);
    expectCtrlChange(0);
    expectOutcome(ctrlBlock(0), true, 0);
}

TEST_F(ImportApply, ClearsEveryControllerForOneLogicalDriveRecord) {
    expectChecks(2);
    expectLogDrvList(0, {listed(20, 4)});
    expectDeletion(0, 20);
    expectLogDrvList(0, {});
    expectLogDrvList(1, {});
    expectCreation(1, creation());
    expectLogDrvList(1, {});
    expectOutcome(logDrvBlock(0, 1), true, 0);
}

TEST_F(ImportApply, SkipsLogicalDrivesOfAControllerWithoutDrives) {
    expectAdapters(2);
    expectDriveCount(0, 0);
    expectDriveCount(1, 16);
    expectCtrlChange(0);
    expectLogDrvList(1, {});
    expectLogDrvList(1, {});
    expectOutcome(ctrlBlock(0) + with(logDrvBlock(0, 0), "DiskNum> 3", "DiskNum> 0"), true, 0);
}

TEST_F(ImportApply, ContinuesAfterFailures) {
    expectChecks(1);
    expectLogDrvList(0, {listed(20, 4), listed(21, 5)});
    expectDeletion(0, 20, 1);
    expectDeletion(0, 21, -1);
    expectCreation(0, creation(), 1);
    expectCreation(0, creation(), 0);
    expectLogDrvList(0, {listed(20, 4)});
    expectCall("q5_getLogDrvSettings", queryFor(0, LogDrvQuery{4, 1}, 180), {}, 1);
    expectOutcome(logDrvBlock(0, 0) + logDrvBlock(1, 0), true, 0,
                  "Failed to create an array specified\n"
                  "The logical drive with ID 4 in controller #0 is not existed!\n");
}

TEST_F(ImportApply, ReadsListsOnlyWithinTheReply) {
    Bytes reply = listReply(std::vector<LogDrvInfo>(128, listed(20, 9)));
    std::memcpy(&reply[36], "\xff\xff\xff\xff", 4);
    expectChecks(1);
    expectCall("q5_getLogDrvInfo", queryFor(0, LogDrvQuery{0, 128}, 26688), reply);
    for (int i = 0; i < 128; ++i)
        expectDeletion(0, 20);
    expectCreation(0, creation());
    const std::uint32_t bytesUsed = 63;
    std::memcpy(&reply[36], &bytesUsed, 4);
    expectCall("q5_getLogDrvInfo", queryFor(0, LogDrvQuery{0, 128}, 26688), reply);
    expectOutcome(logDrvBlock(0, 0), true, 0);
}

TEST_F(ImportApply, AppliesTheFirstRecordOfEachIdInListOrder) {
    const std::string nine = with(with(logDrvBlock(0, 0), "DrvID> 4", "DrvID> 9"), "Data 1", "Nine");
    expectChecks(1);
    expectLogDrvList(0, {listed(4, 9), listed(9, 7), listed(7, 4)});
    expectLogDrvChange(0, 9, {1, 8, 1, "Nine"});
    expectLogDrvChange(0, 4);
    expectOutcome(logDrvBlock(0, 1) + logDrvBlock(1, 0) + nine + with(logDrvBlock(2, 0), "Data 1", "Other"),
                  false, 0);
}

TEST_F(ImportApply, IgnoresRecordsOfMissingLogicalDrives) {
    expectChecks(1);
    expectLogDrvList(0, {listed(4, 3)});
    expectOutcome(logDrvBlock(0, 0), false, 0);
}

TEST_F(ImportApply, TreatsAFailedListAsEmpty) {
    expectChecks(2);
    expectLogDrvList(0, {listed(20, 5), listed(21, 6)});
    expectCall("q5_getLogDrvInfo", queryFor(1, LogDrvQuery{0, 128}, 26688), {}, 1);
    expectOutcome(with(logDrvBlock(0, 1), "DrvID> 4", "DrvID> 5"), false, 0);
}
