// Drives that are pulled and inserted: stale, foreign and blank ones.
#include "tests/simulator/faulted_world.h"

using q5sim::NewDrive;
using StaleDrives = FaultedArray;

TEST_F(StaleDrives, ReturnedMemberIsLostUntilRebuilt) {
    EXPECT_EQ(pull(1), "");
    EXPECT_EQ(lastEvents(2), "Drive 2 has been removed\nLogical drive 0 is critical\n");
    EXPECT_EQ(insert(1), "");
    EXPECT_EQ(lastEvents(2), "Drive 2 has been inserted\nDrive 2: its data of logical drive 0 is stale\n");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    std::uint32_t mask = 0;
    EXPECT_EQ(q5_getAryLostDisk(hbaAddress(0), 0, 0, &mask), 0);
    EXPECT_EQ(mask, 2u);
    EXPECT_EQ(driveInfo(0, 1).extent[0].state, 0); // not online
    EXPECT_EQ(rebuild(1, 0), 0);                   // in place
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
    EXPECT_EQ(membersText(arrayInfo(0, 0)), "0 1 2");
    EXPECT_EQ(driveInfo(0, 1).extent[0].state, kExtentOnline);
}

TEST_F(StaleDrives, FailedDriveThatReturnsIsStale) {
    EXPECT_EQ(fail(1), "");
    driveInfo(0, 1);
    replaceInFile("\"failed\": true", "\"failed\": false");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(lastEvents(2), "Drive 2 is back\nDrive 2: its data of logical drive 0 is stale\n");
}

TEST_F(StaleDrives, OfflineArrayReturnsAsItWas) {
    EXPECT_EQ(pull(1), "");
    EXPECT_EQ(pull(2), "");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, 0);
    EXPECT_EQ(insert(2), ""); // nothing was written after it had left
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(newestEvent(), "Logical drive 0 is critical");
    EXPECT_EQ(insert(1), "");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
}

TEST_F(StaleDrives, IdleArrayHasNoStaleMembers) {
    replaceInFile("\"idle\": false", "\"idle\": true");
    EXPECT_EQ(pull(1), "");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(insert(1), "");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
}

TEST_F(StaleDrives, StaleDriveCanBeWiped) {
    const DriveSelector drive = {1, 1};
    EXPECT_NE(q5_removeHBADiskMDD(hbaAddress(0), 0, &drive), 0);
    EXPECT_EQ(pull(1), "");
    EXPECT_EQ(insert(1), "");
    EXPECT_EQ(q5_removeHBADiskMDD(hbaAddress(0), 0, &drive), 0);
    EXPECT_EQ(extentsText(1), "0 free 400, 400 free 600");
    EXPECT_EQ(rebuild(1, 0), 0);
}

TEST_F(StaleDrives, BlankDriveIsFree) {
    EXPECT_EQ(pull(1), "");
    const std::string serial = controller().pulledDrives[0].serial;
    EXPECT_EQ(insert(1, NewDrive::blank), "");
    EXPECT_EQ(extentsText(1), "0 free 1000");
    EXPECT_NE(driveInfo(0, 1).serial, serial);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(rebuild(1, 0), 0);
    waitSeconds(50);
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
}

TEST_F(StaleDrives, ForeignDriveShowsItsExtentsAndCanBeWiped) {
    EXPECT_EQ(pull(6), "");
    EXPECT_EQ(insert(6, NewDrive::foreign), "");
    EXPECT_EQ(newestEvent(), "Drive 7 has been inserted, with a foreign configuration");
    EXPECT_EQ(extentsText(6), "0 array1 500, 500 free 500");
    const ExtentPlacement spare = {0, 6, kNoArray, 0};
    EXPECT_NE(q5_spareHBAExtent(hbaAddress(0), 0, &spare), 0);
    const DriveSelector drive = {6, 1};
    EXPECT_EQ(q5_removeHBADiskMDD(hbaAddress(0), 0, &drive), 0);
    EXPECT_EQ(extentsText(6), "0 free 500, 500 free 500");
}

TEST_F(StaleDrives, MemberOfDeletedArrayReturnsAsForeign) {
    EXPECT_EQ(pull(1), "");
    const DeleteArrayRequest request = {1, 0};
    EXPECT_EQ(q5_delDiskArray(hbaAddress(0), 0, &request, sizeof request), 0);
    EXPECT_EQ(create(::request(kRaid5, 800, {3, 4, 5})), 0); // takes the same ID
    EXPECT_EQ(insert(1), "");
    EXPECT_EQ(newestEvent(), "Drive 2 has been inserted, with a foreign configuration");
}

TEST_F(StaleDrives, MemberReplacedMeanwhileReturnsAsForeign) {
    EXPECT_EQ(pull(1), "");
    EXPECT_EQ(rebuild(5, 0), 0);
    waitSeconds(50);
    EXPECT_EQ(insert(1), "");
    EXPECT_EQ(newestEvent(), "Drive 2 has been inserted, with a foreign configuration");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kOnline);
}

TEST_F(StaleDrives, LostSpareIsLogged) {
    const ExtentPlacement spare = {0, 6, kNoArray, 0};
    EXPECT_EQ(q5_spareHBAExtent(hbaAddress(0), 0, &spare), 0);
    EXPECT_EQ(pull(6), "");
    EXPECT_EQ(lastEvents(2), "Drive 7 has been removed\nDrive 7: global spare lost\n");
    EXPECT_EQ(insert(6), "");
    EXPECT_EQ(extentsText(6), "0 spare 1000");
    EXPECT_EQ(fail(6), "");
    EXPECT_EQ(lastEvents(2), "Drive 7 has failed\nDrive 7: global spare lost\n");
}

TEST_F(StaleDrives, DriveRemovedFromTheFileIsLogged) {
    pull(7); // records which drives there are
    const std::string text = fileText();
    const std::size_t start = text.find("{\n          \"id\": 6,");
    const std::size_t end = text.find("\n        }", start);
    ASSERT_NE(start, std::string::npos);
    std::string without = text.substr(0, text.rfind(',', start)) + text.substr(end + 10);
    writeText(file, without);
    EXPECT_EQ(newestEvent(), "Drive 7 has been removed");
}

TEST_F(StaleDrives, RefusalsHaveReasons) {
    EXPECT_EQ(pull(8), "there is no drive 9");
    EXPECT_EQ(insert(1), "the slot of drive 2 is in use");
    EXPECT_EQ(insert(8), "no drive has been pulled from the slot of drive 9");
    EXPECT_EQ(insert(8, NewDrive::blank), ""); // a slot that was empty
    EXPECT_EQ(extentsText(8), "0 free 1000");
    EXPECT_EQ(fail(1), "");
    EXPECT_EQ(fail(1), "drive 2 has failed already");
    EXPECT_EQ(inject([](q5sim::Controller& c, std::int64_t at) { return q5sim::replaceDrive(c, 0, at); }),
              "drive 1 has not failed");
}

TEST_F(StaleDrives, RemovedTargetAbortsRebuild) {
    EXPECT_EQ(pull(1), "");
    EXPECT_EQ(rebuild(5, 0), 0);
    EXPECT_EQ(pull(5), "");
    EXPECT_EQ(lastEvents(2), "Drive 6 has been removed\nLogical drive 0: rebuild aborted\n");
    EXPECT_EQ(insert(5), "");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
}
