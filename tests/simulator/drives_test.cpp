// Physical drives: listing, settings, locate lights, wiping, the 3 Gb/s option.
#include <cstring>

#include "tests/simulator/simulated_world.h"

class Drives : public SimulatedWorld {};

static std::vector<int> listed(std::uint32_t first, std::uint32_t count, std::uint32_t size) {
    static Reply<PhyDrvInfo, 65> reply; // more than 42752 bytes
    reply = {};
    const PhyDrvQuery query = {first, count, kAllDrives, {}};
    EXPECT_EQ(q5_getPhyDrvInfo(hbaAddress(0), 0, &query, &reply, size), 0);
    std::vector<int> ids;
    for (const PhyDrvInfo& drive : records(reply))
        ids.push_back(drive.driveId);
    return ids;
}

TEST_F(Drives, ListsByFirstIdCountAndBufferSize) {
    open("bench");
    EXPECT_EQ(listed(0, 16, 10688), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(listed(5, 16, 10688), (std::vector<int>{5, 6, 7}));
    EXPECT_EQ(listed(2, 3, 10688), (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(listed(0, 16, 728), (std::vector<int>{0}));
    EXPECT_EQ(listed(0, 16, 728 + 663), (std::vector<int>{0}));
    EXPECT_EQ(listed(0, 16, 64), std::vector<int>{});
    EXPECT_EQ(listed(7, 1, 10688), std::vector<int>{7});
    EXPECT_EQ(listed(8, 1, 10688), std::vector<int>{});
    EXPECT_EQ(listed(0, 16, 42752).size(), 8u);
}

TEST_F(Drives, MissingDriveIsNotReplacedByAnother) {
    open("bench");
    replaceInFile("\"id\": 3, \"channel\"", "\"id\": 20, \"channel\"");
    EXPECT_EQ(listed(3, 1, 10688), std::vector<int>{});
    EXPECT_EQ(listed(3, 2, 10688), (std::vector<int>{4, 5}));
    EXPECT_EQ(listed(20, 1, 10688), std::vector<int>{20});
}

TEST_F(Drives, RecordHasAllFields) {
    open("bench");
    const PhyDrvInfo drive = driveInfo(0, 2);
    EXPECT_EQ(drive.channel, 2);
    EXPECT_EQ(drive.enclosureId, 255);
    EXPECT_EQ(drive.capacity, 1000 * kMb);
    EXPECT_EQ(drive.cylinders, 127); // 2048000 / (255 * 63)
    EXPECT_EQ(drive.heads, 255);
    EXPECT_EQ(drive.sectorsPerTrack, 63);
    EXPECT_STREQ(drive.model, "TQ500-7200AS");
    EXPECT_STREQ(drive.serial, "TQB0002");
    EXPECT_STREQ(drive.firmware, "TQ3.02");
    EXPECT_EQ(drive.dmaMode, 6);
    ASSERT_EQ(drive.extentCount, 1);
    EXPECT_EQ(drive.extent[0].assignment, 0);
    EXPECT_EQ(drive.extent[0].access, 96);
    EXPECT_EQ(drive.extent[0].state, 1);
    EXPECT_EQ(drive.extent[0].arrayId, 255);
    EXPECT_EQ(drive.extent[0].size, 2048000u);
}

TEST_F(Drives, ExtentsOfFailedDriveAreInaccessible) {
    open("degraded");
    const PhyDrvInfo drive = driveInfo(0, 1);
    EXPECT_EQ(drive.extent[0].assignment, kExtentAssigned);
    EXPECT_EQ(drive.extent[0].access, 0);
    EXPECT_EQ(drive.extent[0].state, 0);
    EXPECT_EQ(driveInfo(0, 0).extent[0].access, kExtentAccessible);
    replaceInFile("\"smartFailure\": false", "\"smartFailure\": true");
    EXPECT_EQ(driveInfo(0, 0).extent[0].access, kExtentAccessible | kExtentSmartFailed);
}

static Reply<PhyDrvSettings, 1> settingsOf(std::uint32_t controller, std::uint32_t drive) {
    Reply<PhyDrvSettings, 1> reply = {};
    const PhyDrvSelector selector = {drive, 1, 1, {}};
    EXPECT_EQ(q5_getPhyDrvSettings(hbaAddress(controller), 0, &selector, &reply, sizeof reply), 0);
    return reply;
}

static int set(std::uint32_t drive, const Reply<PhyDrvSettings, 1>& settings) {
    const PhyDrvSelector selector = {drive, 1, 1, {}};
    return q5_setPhyDrvSettings(hbaAddress(0), 0, &selector, &settings, sizeof settings);
}

TEST_F(Drives, StoresSettingsOfEachDrive) {
    open("settings");
    Reply<PhyDrvSettings, 1> settings = settingsOf(0, 2);
    EXPECT_EQ(settings.header.bytesUsed, 80u);
    EXPECT_EQ(settings.record[0].pdId, 2);
    EXPECT_EQ(settings.record[0].tcqSupported, 1);
    EXPECT_EQ(settings.record[0].tcqEnabled, 0);
    EXPECT_EQ(settings.record[0].ncqSupported, 0);
    settings.record[0].tcqEnabled = 1;
    settings.record[0].writeCache = 0;
    EXPECT_EQ(set(2, settings), 0);
    EXPECT_EQ(settingsOf(0, 2).record[0].tcqEnabled, 1);
    EXPECT_EQ(settingsOf(0, 2).record[0].writeCache, 0);
    EXPECT_EQ(settingsOf(0, 1).record[0].writeCache, 1);
    EXPECT_EQ(newestEvent(), "Drive 3: settings changed");
}

TEST_F(Drives, RejectsUnsupportedSettings) {
    open("settings");
    const std::string before = (settingsOf(0, 2), stateText());
    Reply<PhyDrvSettings, 1> settings = settingsOf(0, 2);
    settings.record[0].ncqEnabled = 1; // not supported
    EXPECT_NE(set(2, settings), 0);
    settings = settingsOf(0, 2);
    settings.record[0].writeCache = 2;
    EXPECT_NE(set(2, settings), 0);
    EXPECT_NE(set(1, settingsOf(0, 2)), 0); // another drive's
    EXPECT_EQ(stateText(), before);
}

TEST_F(Drives, ReturnsSettingsOfAllDrivesInOneReply) {
    open("bench");
    Reply<PhyDrvSettings, 16> reply = {};
    const PhyDrvSelector selector = {0, 16, 1, {}};
    EXPECT_EQ(q5_getPhyDrvSettings(hbaAddress(0), 0, &selector, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.header.bytesUsed, 64u + 8 * 16);
    EXPECT_EQ(reply.record[7].pdId, 7);
}

static int light(std::uint16_t drive) {
    std::uint8_t state = 9;
    EXPECT_EQ(q5_getPhyDrvLocateStatus(hbaAddress(0), 0, drive, &state), 0);
    return state;
}

TEST_F(Drives, LocateLightTurnsOffByItself) {
    open("bench");
    EXPECT_EQ(light(3), 0);
    EXPECT_EQ(q5_locatePhyDrv(hbaAddress(0), 0, 3, 30), 0);
    waitSeconds(29);
    EXPECT_EQ(light(3), 1);
    EXPECT_EQ(light(2), 0);
    waitSeconds(1);
    EXPECT_EQ(light(3), 0);
    EXPECT_EQ(q5_locatePhyDrv(hbaAddress(0), 0, 3, 30), 0);
    EXPECT_EQ(q5_stopLocatePhyDrv(hbaAddress(0), 0, 3), 0);
    EXPECT_EQ(light(3), 0);
    EXPECT_NE(q5_locatePhyDrv(hbaAddress(0), 0, 8, 30), 0);
    EXPECT_NE(q5_locatePhyDrv(hbaAddress(0), 0, 3, 0), 0);
}

TEST_F(Drives, LongestLocateTimeGivesReadableFile) {
    open("bench");
    EXPECT_EQ(q5_locatePhyDrv(hbaAddress(0), 0, 0, 0xFFFFFFFF), 0);
    EXPECT_EQ(q5_finalize(), 0);
    ASSERT_EQ(initialize(), 0);
    EXPECT_EQ(light(0), 1);
}

TEST_F(Drives, WipeClearsSparesButRefusesMembers) {
    open("settings");
    const ExtentPlacement spare = {0, 2, kNoArray, 0};
    EXPECT_EQ(q5_spareHBAExtent(hbaAddress(0), 0, &spare), 0);
    EXPECT_EQ(extentsText(2), "0 spare 1000");
    const DriveSelector free = {2, 1}, member = {0, 1}, absent = {9, 1};
    EXPECT_EQ(q5_removeHBADiskMDD(hbaAddress(0), 0, &free), 0);
    EXPECT_EQ(extentsText(2), "0 free 1000");
    EXPECT_EQ(newestEvent(), "Drive 3: configuration sectors cleared");
    const std::string before = stateText();
    EXPECT_NE(q5_removeHBADiskMDD(hbaAddress(0), 0, &member), 0);
    EXPECT_NE(q5_removeHBADiskMDD(hbaAddress(0), 0, &absent), 0);
    EXPECT_EQ(stateText(), before);
}

TEST_F(Drives, SpeedOptionAppliesToModelAndFirmware) {
    open("bench");
    int setting = 9;
    EXPECT_EQ(q5_getDataTransferSpeed(hbaAddress(0), 0, "TQ500-7200AS", "TQ3.02", &setting, 4), 0);
    EXPECT_EQ(setting, 0);
    const int wanted = -7;
    EXPECT_EQ(q5_setDataTransferSpeed(hbaAddress(0), 0, "TQ500-7200AS", "TQ3.02", &wanted, 4), 0);
    EXPECT_EQ(q5_getDataTransferSpeed(hbaAddress(0), 0, "TQ500-7200AS", "TQ3.02", &setting, 4), 0);
    EXPECT_EQ(setting, -7);
    EXPECT_EQ(newestEvent(), "Drives TQ500-7200AS TQ3.02: 3 Gb/s option set to -7");
    EXPECT_NE(q5_getDataTransferSpeed(hbaAddress(0), 0, "TQ500-7200AS", "TQ3.03", &setting, 4), 0);
    EXPECT_EQ(setting, 0);
    EXPECT_NE(q5_setDataTransferSpeed(hbaAddress(0), 0, "other", "TQ3.02", &wanted, 4), 0);
}
