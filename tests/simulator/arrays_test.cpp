// Logical drives: listing, state, lost members, settings, lights, activation and deletion.
#include <cstring>

#include "tests/simulator/simulated_world.h"

class Arrays : public SimulatedWorld {};

static std::vector<int> listed(std::uint32_t first, std::uint32_t count, std::uint32_t size) {
    static Reply<LogDrvInfo, 128> reply;
    reply = {};
    const LogDrvQuery query = {first, count};
    EXPECT_EQ(q5_getLogDrvInfo(hbaAddress(0), 0, &query, &reply, size), 0);
    std::vector<int> ids;
    for (const LogDrvInfo& drive : records(reply))
        ids.push_back(drive.logDrvId);
    return ids;
}

TEST_F(Arrays, ListsByFirstIdCountAndBufferSize) {
    open("degraded");
    EXPECT_EQ(listed(0, 128, 26688), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(listed(1, 128, 26688), (std::vector<int>{1, 2}));
    EXPECT_EQ(listed(0, 2, 26688), (std::vector<int>{0, 1}));
    EXPECT_EQ(listed(0, 128, 272), std::vector<int>{0});
    EXPECT_EQ(listed(2, 1, 272), std::vector<int>{2});
    EXPECT_EQ(listed(3, 1, 272), std::vector<int>{});
}

static std::uint32_t lost(std::uint8_t logDrvId) {
    std::uint32_t mask = 0xFFFFFFFF;
    EXPECT_EQ(q5_getAryLostDisk(hbaAddress(0), 0, logDrvId, &mask), 0);
    return mask;
}

TEST_F(Arrays, StateFollowsMembers) {
    open("degraded");
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical); // RAID5 without one
    EXPECT_EQ(lost(0), 1u << 1);
    EXPECT_EQ(arrayInfo(0, 1).functionalStatus, kDegraded); // RAIDMF with two parities without one
    EXPECT_EQ(lost(1), 1u << 4);
    EXPECT_EQ(arrayInfo(0, 2).functionalStatus, 0); // RAID0 without one
    EXPECT_EQ(lost(2), 1u << 8);
    EXPECT_EQ(eventTexts(0, 51),
              (std::vector<std::string>{"Drive 2 has failed", "Drive 5 has failed", "Drive 9 has failed",
                                        "Logical drive 0 is critical", "Logical drive 1 is degraded",
                                        "Logical drive 2 is offline"}));
    replaceInFile("\"failed\": false", "\"failed\": true"); // drive 0 too
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, 0);
    EXPECT_EQ(lost(0), 3u);
    std::uint32_t mask = 5;
    EXPECT_NE(q5_getAryLostDisk(hbaAddress(0), 0, 3, &mask), 0);
    EXPECT_EQ(mask, 0u);
}

static std::string failing(const std::string& text, int drive) {
    const std::string id = "\"id\": " + std::to_string(drive) + ",";
    const std::size_t at = text.find("\"failed\": false", text.find(id));
    std::string failed = text;
    return failed.replace(at, 15, "\"failed\": true");
}

TEST_F(Arrays, MirrorPairsAndSubarraysSurviveOneLossEach) {
    open("bench");
    EXPECT_EQ(create(request(kRaid10, 200, {0, 1, 2, 3})), 0);
    EXPECT_EQ(create(request(kRaid50, 400, {0, 1, 2, 3, 4, 5})), 0);
    const std::string whole = fileText();
    writeText(file, failing(whole, 0));
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kDegraded); // the other pair is whole
    EXPECT_EQ(arrayInfo(0, 1).functionalStatus, kDegraded); // so is the other subarray
    writeText(file, failing(failing(whole, 0), 3));
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, kCritical);
    EXPECT_EQ(arrayInfo(0, 1).functionalStatus, kCritical);
    writeText(file, failing(failing(whole, 0), 1));
    EXPECT_EQ(arrayInfo(0, 0).functionalStatus, 0); // both halves of a pair
    EXPECT_EQ(arrayInfo(0, 1).functionalStatus, 0); // two of a subarray
}

TEST_F(Arrays, ReportsLargeSizes) {
    open("large");
    EXPECT_EQ(arrayInfo(0, 0).sectorCount, 2u * 2861588 * kMb);
    EXPECT_EQ(driveInfo(0, 0).capacity, 5860533168u);
}

static Reply<LogDrvSettings, 1> settingsOf(std::uint32_t logDrvId) {
    Reply<LogDrvSettings, 1> reply = {};
    const LogDrvQuery query = {logDrvId, 1};
    EXPECT_EQ(q5_getLogDrvSettings(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    return reply;
}

static int set(std::uint32_t logDrvId, const Reply<LogDrvSettings, 1>& settings) {
    const LogDrvQuery query = {logDrvId, 1};
    return q5_setLogDrvSettings(hbaAddress(0), 0, &query, &settings, sizeof settings);
}

TEST_F(Arrays, SettingsKeepUnknownCacheBitsAndLongNames) {
    open("settings");
    Reply<LogDrvSettings, 1> settings = settingsOf(3);
    EXPECT_EQ(settings.header.bytesUsed, 180u);
    EXPECT_EQ(settings.record[0].cacheFlags, 65);
    EXPECT_STREQ(settings.record[0].name, "A name that is a good deal long");
    settings.record[0].cacheFlags = 72;
    settings.record[0].lookahead = 8;
    settings.record[0].consolidation = 0;
    EXPECT_EQ(set(3, settings), 0);
    EXPECT_EQ(settingsOf(3).record[0].cacheFlags, 72);
    EXPECT_EQ(settingsOf(3).record[0].lookahead, 8);
    EXPECT_EQ(settingsOf(3).record[0].consolidation, 0);
    EXPECT_EQ(arrayInfo(0, 3).writeCacheMode, 8u); // the policy bits alone
    EXPECT_STREQ(arrayInfo(0, 3).name, "A name that is a good deal longer than settings can carry");
    settings = settingsOf(3);
    std::memcpy(settings.record[0].name, "short", 6);
    EXPECT_EQ(set(3, settings), 0);
    EXPECT_STREQ(arrayInfo(0, 3).name, "short");
    EXPECT_EQ(newestEvent(), "Logical drive 3: settings changed");
}

TEST_F(Arrays, ReplacesInvalidUtf8InNames) {
    open("settings");
    Reply<LogDrvSettings, 1> settings = settingsOf(3);
    std::memset(settings.record[0].name, 'x', sizeof settings.record[0].name); // no NUL
    std::memcpy(settings.record[0].name, "\xFF\xC3\xA4\xC3", 4);
    EXPECT_EQ(set(3, settings), 0);
    EXPECT_STREQ(arrayInfo(0, 3).name, "?\xC3\xA4?xxxxxxxxxxxxxxxxxxxxxxxxxxx");
    EXPECT_EQ(q5_finalize(), 0);
    EXPECT_EQ(initialize(), 0);
}

TEST_F(Arrays, RejectsSettingsOfMissingDrive) {
    open("settings");
    Reply<LogDrvSettings, 1> reply;
    std::memset(static_cast<void*>(&reply), 0xAA, sizeof reply);
    const LogDrvQuery query = {0, 1};
    EXPECT_NE(q5_getLogDrvSettings(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.header.bytesUsed, 0u);
    EXPECT_EQ(reply.record[0].name[31], '\0');
    EXPECT_NE(set(0, settingsOf(3)), 0);
}

TEST_F(Arrays, ReturnsSettingsOfAllDrivesInOneReply) {
    open("degraded");
    static Reply<LogDrvSettings, 128> reply;
    reply = {};
    const LogDrvQuery query = {0, 128};
    EXPECT_EQ(q5_getLogDrvSettings(hbaAddress(0), 0, &query, &reply, sizeof reply), 0);
    EXPECT_EQ(reply.header.bytesUsed, 64u + 3 * 116);
    EXPECT_STREQ(reply.record[2].name, "offline");
}

static int light(std::uint16_t drive) {
    std::uint8_t state = 9;
    EXPECT_EQ(q5_getPhyDrvLocateStatus(hbaAddress(0), 0, drive, &state), 0);
    return state;
}

TEST_F(Arrays, LocateLightsAllMembers) {
    open("settings");
    EXPECT_EQ(q5_locateLogDrv(hbaAddress(0), 0, 3, 20), 0);
    waitSeconds(19);
    EXPECT_EQ(light(0) + light(1), 2);
    EXPECT_EQ(light(2), 0);
    waitSeconds(1);
    EXPECT_EQ(light(0) + light(1), 0);
    EXPECT_EQ(q5_locateLogDrv(hbaAddress(0), 0, 3, 20), 0);
    EXPECT_EQ(q5_stopLocateLogDrv(hbaAddress(0), 0, 3), 0);
    EXPECT_EQ(light(0) + light(1), 0);
    EXPECT_EQ(q5_stopLocateLogDrv(hbaAddress(0), 0, 3), 0); // nothing to stop is not an error
    EXPECT_NE(q5_locateLogDrv(hbaAddress(0), 0, 7, 20), 0); // the array's ID, not the drive's
    EXPECT_NE(q5_locateLogDrv(hbaAddress(0), 0, 3, 0), 0);
}

TEST_F(Arrays, DistinguishesArrayIdFromLogicalDriveId) {
    open("settings");
    EXPECT_EQ(arrayInfo(0, 3).arrayId, 7);
    EXPECT_EQ(arrayInfo(0, 7).logDrvId, 0xFFFF);
    EXPECT_EQ(driveInfo(0, 0).extent[0].arrayId, 7);
    const DeleteArrayRequest byDrive = {1, 3}, byArray = {1, 7}, two = {2, 7};
    EXPECT_NE(q5_delDiskArray(hbaAddress(0), 0, &byDrive, 8), 0);
    EXPECT_NE(q5_delDiskArray(hbaAddress(0), 0, &two, 8), 0);
    EXPECT_EQ(q5_delDiskArray(hbaAddress(0), 0, &byArray, 8), 0);
    EXPECT_EQ(arrayInfo(0, 3).logDrvId, 0xFFFF);
    EXPECT_EQ(extentsText(0), "0 free 400, 400 free 600");
    EXPECT_EQ(newestEvent(), "Logical drive 3 deleted");
}

TEST_F(Arrays, DeletionFreesDedicatedSpares) {
    open("bench");
    EXPECT_EQ(create(request(kRaid1, 400, {0, 1})), 0);
    const ExtentPlacement spare = {0, 2, 0, 0};
    EXPECT_EQ(q5_spareHBAExtent(hbaAddress(0), 0, &spare), 0);
    EXPECT_EQ(extentsText(2), "0 spare0 1000");
    const DeleteArrayRequest request = {1, 0};
    EXPECT_EQ(q5_delDiskArray(hbaAddress(0), 0, &request, 8), 0);
    EXPECT_EQ(extentsText(2), "0 free 1000");
    EXPECT_NE(q5_delDiskArray(hbaAddress(0), 0, &request, 8), 0);
}

TEST_F(Arrays, ActivationBringsArrayOnline) {
    open("settings");
    EXPECT_EQ(arrayInfo(0, 3).functionalStatus, kOnline);
    EXPECT_NE(q5_activateLogDrv(hbaAddress(0), 0, 7), 0); // it is active
    replaceInFile("\"active\": true", "\"active\": false");
    EXPECT_EQ(arrayInfo(0, 3).functionalStatus, 0);
    EXPECT_NE(q5_activateLogDrv(hbaAddress(0), 0, 3), 0); // not an array's ID
    EXPECT_EQ(q5_activateLogDrv(hbaAddress(0), 0, 7), 0);
    EXPECT_EQ(arrayInfo(0, 3).functionalStatus, kOnline);
}
