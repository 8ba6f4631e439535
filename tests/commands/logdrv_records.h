// Shared by the tests of commands on logical drives: the adapter's replies about drives and activities.
// Bytes that no command may read are filled with a pattern.
#pragma once

#include "adapter/activity.h"
#include "adapter/logdrv.h"
#include "tests/mock_adapter.h"

inline constexpr std::uint8_t kFillPattern = 0xA6;

template <typename Record>
Record patternFilled() {
    Record record;
    std::memset(&record, kFillPattern, sizeof record);
    return record;
}

// A drive with these activities running; the other fields hold the pattern.
inline LogDrvInfo driveWithActivities(int activities, std::uint16_t logDrvId = 3) {
    LogDrvInfo drive = patternFilled<LogDrvInfo>();
    drive.activityStatus = static_cast<std::uint8_t>(activities);
    drive.logDrvId = logDrvId;
    return drive;
}

// Expects the lookup of one drive, which finds this one, or none.
inline void expectLookup(std::uint32_t controller, std::uint32_t logDrvId, const LogDrvInfo& drive,
                         int result = 0) {
    expectCall("q5_getLogDrvInfo", queryFor(controller, LogDrvQuery{logDrvId, 1}, 272),
               listReply<LogDrvInfo>({drive}), result);
}

inline void expectMissing(std::uint32_t controller, std::uint32_t logDrvId) {
    expectCall("q5_getLogDrvInfo", queryFor(controller, LogDrvQuery{logDrvId, 1}, 272),
               bytesOf(replyHeader(64)));
}

using Drives = std::vector<LogDrvInfo>;

// Expects the query of a listing.
inline void expectListing(std::uint32_t controller, std::uint32_t first, std::uint32_t count,
                          const Bytes& reply, int result = 0) {
    expectCall("q5_getLogDrvInfo", queryFor(controller, LogDrvQuery{first, count}, 26688), reply, result);
}

template <std::size_t Size>
inline void put(char (&field)[Size], const std::string& text) {
    std::memcpy(field, text.c_str(), text.size() + 1);
}

// A RAID5 of 1000 MB on drives 1, 2 and 8 as users count them. Fields that no listing reads hold the
// pattern.
inline LogDrvInfo raid5(std::uint16_t id = 0) {
    LogDrvInfo drive = driveWithActivities(0, id);
    drive.raidLevel = 5;
    drive.functionalStatus = 1;
    drive.writeCacheMode = 1;
    drive.sectorCount = 2048000;
    drive.diskCount = 3;
    drive.stripeBlocks = 128;
    put(drive.name, "data");
    drive.memberIds[0] = 0;
    drive.memberIds[1] = 1;
    drive.memberIds[2] = 7;
    drive.sectorSize = 512;
    return drive;
}

// The query for an activity's progress. Its reply holds the pattern except for the state and the
// percentage.
struct ProgressRead {
    const char* operation;
    std::uint32_t kind;
    std::uint32_t size;
    std::size_t stateAt;
    std::size_t percentAt;
};

inline constexpr ProgressRead kInitRead = {"q5_getLogDrvInitProgress", 0, 524, 70, 71};
inline constexpr ProgressRead kSyncRead = {"q5_getLogDrvSynchProgress", 0, 72, 70, 71};
inline constexpr ProgressRead kCheckRead = {"q5_getRedundancyCheckProgress", 0, 72, 70, 71};
inline constexpr ProgressRead kRebuildRead = {"q5_getRebuildProgress", 0, 88, 64, 66};
inline constexpr ProgressRead kMigrationRead = {"q5_getMigrationProgress", 1, 208, 70, 68};

inline constexpr std::uint8_t kRunning = 1;
inline constexpr std::uint8_t kPaused = 3;
inline constexpr std::uint8_t kUnpausedStates[] = {0, 1, 2, 4, 255};

inline void expectProgress(const ProgressRead& read, std::uint32_t controller, std::uint32_t logDrvId,
                           std::uint8_t state, std::uint8_t percent, int result = 0) {
    Bytes reply(read.size, kFillPattern);
    reply[read.stateAt] = state;
    reply[read.percentAt] = percent;
    if (read.kind == 1)
        reply[read.percentAt + 1] = 0; // the only percentage of two bytes
    expectCall(read.operation, queryFor(controller, ActivityQuery{logDrvId, read.kind}, read.size), reply,
               result);
}

// The arguments of a control operation: the address, the reserved 0 and eight bytes that select the
// drive.
inline void expectControl(const char* operation, std::uint32_t controller, std::uint32_t logDrvId,
                          std::uint32_t kind = 0, int result = 0) {
    expectCall(operation, bytesOf(hbaAddress(controller), std::uint32_t{0}, logDrvId, kind), {}, result);
}

inline const std::string kSilentSuccess = "0: ";
inline const std::string kUnknownOptionOutcome = "1: Invalid parameters defined\n";

// Messages shared by several activities, for drive 3 of controller 2.
inline constexpr const char* kNoDriveOnController =
    "5: No logical drive with ID 3 on controller #2 is existed!\n";
inline constexpr const char* kNoDriveInController =
    "5: No logical drive with ID 3 in controller #2 is existed!\n";

// Names parameterized tests after their rows.
struct RowName {
    template <typename Row>
    std::string operator()(const testing::TestParamInfo<Row>& info) const {
        return info.param.name;
    }
};
