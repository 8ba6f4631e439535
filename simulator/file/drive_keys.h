// The keys of drives and logical drives, each named once for reading and writing.
#pragma once

#include "simulator/file/json_reader.h"
#include "simulator/world/bad_sectors.h"

namespace q5sim {

// The limits of the numbers in a world file.
inline constexpr auto kMaxSectors = static_cast<std::int64_t>(kMaxDriveSectors);
inline constexpr std::int64_t kMaxArraySectors = kMaxSectors * std::int64_t{kMaxArrayMembers};
inline constexpr std::int64_t kMaxSeconds = std::int64_t{1} << 50; // far beyond any clock
inline constexpr std::int64_t kMaxOffset = std::int64_t{1} << 40;  // seconds
inline constexpr std::int64_t kMaxMb = std::int64_t{1} << 40;
inline constexpr std::int64_t kMaxSigned32 = 0x7FFFFFFF;
inline constexpr std::int64_t kMaxUnsigned32 = 0xFFFFFFFF;

inline constexpr Word kUseWords[] = {{"free", kUseFree},
                                     {"array", kUseArray},
                                     {"globalSpare", kUseGlobalSpare},
                                     {"dedicatedSpare", kUseDedicatedSpare},
                                     {"foreign", kUseForeign}};
inline constexpr Word kPatrolWords[] = {{"idle", 0},
                                        {"running", kPatrolRunning},
                                        {"aborted", kPatrolAborted},
                                        {"paused", kPatrolPaused},
                                        {"stopped", kPatrolStopped}};
inline constexpr Word kLevelWords[] = {{"RAID0", kRaid0},  {"RAID1", kRaid1},   {"RAID5", kRaid5},
                                       {"JBOD", kJbod},    {"RAID10", kRaid10}, {"RAID50", kRaid50},
                                       {"RAIDMF", kRaidMf}};
inline constexpr Word kStateWords[] = {{"offline", 0},
                                       {"online", kOnline},
                                       {"critical", kCritical},
                                       {"degraded", kDegraded},
                                       {"unreported", kStateNotReported}};
inline constexpr Word kActivityWords[] = {{"none", 0},
                                          {"rebuild", kRebuilding},
                                          {"initialization", kInitializing},
                                          {"redundancyCheck", kRedundancyChecking},
                                          {"synchronization", kSynchronizing},
                                          {"migration", kMigrating}};
inline constexpr Word kInitWords[] = {{"none", 0}, {"quick", 1}, {"foreground", 2}, {"background", 4}};
inline constexpr Word kEnclosureWords[] = {{"Traybox 400", kTraybox400},
                                           {"Traybox 100", kTraybox100},
                                           {"OEM-A", kOemA},
                                           {"OEM-B", kOemB},
                                           {"OEM-C", kOemC},
                                           {"Traybox 400R", kTraybox400R}};
inline constexpr Word kSensorWords[] = {{"none", 0},
                                        {"fan", kFanSensor},
                                        {"rail5V", kRail5VSensor},
                                        {"rail12V", kRail12VSensor},
                                        {"temperature", kTemperatureSensor}};
inline constexpr Word kBatteryWords[] = {
    {"charging", kBatteryCharging}, {"discharging", kBatteryDischarging},       {"full", kBatteryFull},
    {"failed", kBatteryFailed},     {"reconditioning", kBatteryReconditioning}, {"missing", kBatteryMissing}};
inline constexpr Word kReportedBatteryWords[] = {{"charging", kBatteryCharging},
                                                 {"discharging", kBatteryDischarging},
                                                 {"full", kBatteryFull},
                                                 {"failed", kBatteryFailed},
                                                 {"reconditioning", kBatteryReconditioning},
                                                 {"missing", kBatteryMissing},
                                                 {"unreported", kBatteryUnreported}};
inline constexpr Word kOnErrorWords[] = {{"skip", kSkipOnError}, {"abort", kAbortOnError}};
inline constexpr Word kRuleWords[] = {{"refuse", kRefuseCall},
                                      {"delay", kDelayCall},
                                      {"hang", kHangCall},
                                      {"zero", kZeroReply},
                                      {"short", kShortReply}};

// Keys that a file must have: only a reader checks them, since a writer writes all keys.
inline void require(Writer&, const char*) {}
inline void require(Reader& io, const char* key) {
    io.require(key);
}

template <typename Io>
void describe(Io& io, Extent& extent) {
    io.word("use", extent.use, std::span(kUseWords));
    io.number("array", extent.array, 0, 255);
    require(io, "start");
    io.number("start", extent.start, 0, kMaxSectors);
    require(io, "size");
    io.number("size", extent.size, 1, kMaxSectors);
}

template <typename Io>
void describe(Io& io, Patrol& patrol) {
    io.word("state", patrol.state, std::span(kPatrolWords));
    io.number("since", patrol.since, 0, kMaxSeconds);
    io.number("doneMb", patrol.completedMb, 0, kMaxMb);
    io.number("loops", patrol.loops, 0, 65535);
    io.number("errors", patrol.errors, 0, 65535);
}

template <typename Io>
void describe(Io& io, BadSectors& bad) {
    require(io, "start");
    io.number("start", bad.start, 0, kMaxSectors);
    io.number("count", bad.count, 1, kMaxSectors);
}

template <typename Io>
void describe(Io& io, Drive& drive) {
    require(io, "id");
    io.number("id", drive.id, 0, kMaxDriveId);
    io.number("channel", drive.channel, 0, 65535);
    io.number("enclosure", drive.enclosure, 0, kNoEnclosureId);
    io.text("model", drive.model, 21);
    io.text("serial", drive.serial, 23);
    io.text("firmware", drive.firmware, 37);
    require(io, "sectors");
    io.number("sectors", drive.sectors, kSectorsPerMb, kMaxSectors);
    io.number("dmaMode", drive.dmaMode, 0, 255);
    io.flag("failed", drive.failed);
    io.flag("failureReported", drive.failureReported);
    io.flag("smartFailure", drive.smartFailure);
    io.flag("smartReported", drive.smartReported);
    io.flag("writeCache", drive.writeCache);
    io.flag("smartCheck", drive.smartCheck);
    io.flag("tcqSupported", drive.tcqSupported);
    io.flag("ncqSupported", drive.ncqSupported);
    io.flag("tcqEnabled", drive.tcqEnabled);
    io.flag("ncqEnabled", drive.ncqEnabled);
    io.list("badSectors", drive.badSectors, kMaxBadRanges);
    describeMediaErrors(io, drive);
    io.number("locateUntil", drive.locateUntil, 0, kMaxSeconds);
    io.object("mediaPatrol", drive.patrol);
    io.list("extents", drive.extents, kMaxExtents);
}

// The number of errors in older worlds, which had no positions.
inline void describeMediaErrors(Writer&, Drive&) {}
inline void describeMediaErrors(Reader& io, Drive& drive) {
    std::uint16_t count = 0;
    io.number("mediaErrors", count, 0, 65535);
    spreadBadSectors(drive, count);
}

template <typename Io>
void describe(Io& io, RebuildTarget& target) {
    require(io, "drive");
    io.number("drive", target.drive, 0, kMaxDriveId);
    require(io, "position");
    io.number("position", target.position, 0, kMaxArrayMembers - 1);
}

template <typename Io>
void describe(Io& io, MigrationTarget& goal) {
    io.word("level", goal.level, std::span(kLevelWords));
    io.number("stripe", goal.stripe, 0, 1024);
    io.number("parity", goal.parity, 0, 255);
    io.number("subArrays", goal.subArrays, 0, 255);
    io.numbers("members", goal.members, kMaxDriveId, kMaxArrayMembers);
}

template <typename Io>
void describe(Io& io, Activity& activity) {
    require(io, "kind");
    io.word("kind", activity.kind, std::span(kActivityWords));
    io.flag("paused", activity.paused);
    io.number("since", activity.since, 0, kMaxSeconds);
    io.number("doneMb", activity.completedMb, 0, kMaxMb);
    require(io, "totalMb");
    io.number("totalMb", activity.totalMb, 1, kMaxMb);
    io.number("scannedMb", activity.scannedMb, 0, kMaxMb);
    io.word("initType", activity.initType, std::span(kInitWords));
    io.flag("noFix", activity.noFix);
    io.list("targets", activity.targets, kMaxArrayMembers);
    io.object("goal", activity.goal);
}

template <typename Io>
void describeLayout(Io& io, LogicalDrive& drive) {
    require(io, "arrayId");
    io.number("arrayId", drive.arrayId, 0, 254);
    require(io, "logDrvId");
    io.number("logDrvId", drive.logDrvId, 0, 254);
    io.text("name", drive.name, 63);
    require(io, "level");
    io.word("level", drive.level, std::span(kLevelWords));
    io.number("stripe", drive.stripe, 1, 65535);
    io.number("sectorSize", drive.sectorSize, 512, 4096);
    require(io, "sectors");
    io.number("sectors", drive.sectors, 1, kMaxArraySectors);
    require(io, "memberSectors");
    io.number("memberSectors", drive.memberSectors, 1, kMaxSectors);
    io.number("parity", drive.parity, 0, 255);
    io.number("symmetric", drive.symmetric, 0, 1);
    io.number("shift", drive.shift, -32768, 32767);
    io.number("subArrays", drive.subArrays, 0, 255);
}

template <typename Io>
void describe(Io& io, LogicalDrive& drive) {
    describeLayout(io, drive);
    io.number("cacheFlags", drive.cacheFlags, 0, 255);
    io.flag("consolidation", drive.consolidation);
    io.number("lookahead", drive.lookahead, 0, 65535);
    io.flag("active", drive.active);
    io.flag("synchronized", drive.synchronized);
    io.flag("rebuildHeld", drive.autoRebuildInhibited);
    io.flag("idle", drive.idle);
    io.mark("captured", drive.captured);
    io.number("inconsistencies", drive.inconsistencies, 0, kMaxUnsigned32);
    io.number("lostWrites", drive.lostWrites, 0, kMaxUnsigned32);
    io.number("lostStripes", drive.lostStripes, 0, kMaxUnsigned32);
    io.word("reportedState", drive.reportedState, std::span(kStateWords));
    require(io, "members");
    io.numbers("members", drive.members, kMaxDriveId, kMaxArrayMembers);
    io.numbers("staleMembers", drive.staleMembers, kMaxDriveId, kMaxArrayMembers);
    bool busy = drive.activity.kind != 0;
    io.optional("activity", busy, drive.activity);
}

} // namespace q5sim
