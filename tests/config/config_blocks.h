// Sample blocks and the adapter records that they are written from.
#pragma once

#include "adapter/controller.h"
#include "adapter/logdrv.h"
#include "adapter/phydrv.h"
#include "tests/config/config_file.h"

inline ControllerSettings controllerSettings() {
    ControllerSettings settings = {};
    settings.rebuildRate = 50;
    settings.syncRate = 10;
    settings.mpRate = 30;
    settings.initRate = 20;
    settings.migrateRate = 40;
    settings.autoRebuild = 1;
    settings.smartPollInterval = 60;
    settings.smartCheck = 1;
    settings.encPollInterval = 7;
    settings.rebuildPolicy = 1;
    return settings;
}

inline const std::string kCtrlLines = R"(<AutoRebuild> Enable
<SyncRate> 10
<InitRate> 20
<MPRate> 30
<MigrateRate> 40
<RebuildRate> 50
<SmartCEnable> Enable
<SmartPollInt> 60
<EncPollInt> 7
<RebuildPolicy> 1
<BuzzerEnable> On
<GlobalSpare> 2
)"
                                      "[End] \n";

inline PhyDrvSettings driveSettings(std::uint16_t driveId) {
    PhyDrvSettings settings = {};
    settings.pdId = driveId;
    settings.writeCache = 1;
    settings.tcqSupported = 1;
    settings.ncqSupported = 1;
    settings.ncqEnabled = 1;
    return settings;
}

inline std::string driveLines(int controller, int driveId) {
    return "<PhyDrvCtrlID> " + std::to_string(controller) + "\n<PhyDrvID> " + std::to_string(driveId) +
           "\n<WriteCache> Enable\n<TCQEnable> Disable\n<NCQEnable> Enable\n[End] \n";
}

// Three members, drives 1 to 3 for users. The array ID differs from the logical drive ID.
inline LogDrvInfo raid5Drive() {
    LogDrvInfo drive = {};
    drive.arrayId = 21;
    drive.raidLevel = 5;
    drive.writeCacheMode = 1;
    drive.sectorCount = 2000000; // 1024 MB
    drive.diskCount = 3;
    drive.stripeBlocks = 64;
    drive.logDrvId = 4;
    put(drive.name, "Data 1");
    drive.memberIds[1] = 1;
    drive.memberIds[2] = 2;
    drive.parityCount = 3;
    drive.symmetric = 1;
    drive.shift = -2;
    drive.subArrayCount = 2;
    drive.sectorSize = 512;
    return drive;
}

inline LogDrvSettings raid5Settings() {
    LogDrvSettings settings = {};
    settings.consolidation = 1;
    settings.lookahead = 8;
    return settings;
}

inline const std::string kLogDrvLines = R"(<LogDrvID> 4
<LogyDrvCtrlID> 1
<LogDrvName> Data 1
<LogDrvSize> 1024.0000
<LogDrvSectorCount> 2000000
<LogDrvSectorSize> 512
<LogDrvStripeSize> 64
<LogDrvRaidMode> RAID5
<LogDrvCacheMode> Write Back
<LogDrvDiskNum> 3
<LogDrvDiskMember> (1,2,3)
<LogDrvDiskExtentIndex> (0,0,1)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 8
<LogDrvConsolidation> Enable
)"
                                        "[End] \n";

inline std::string marked(const std::string& marker, int index, const std::string& lines) {
    return marker + " " + std::to_string(index) + "\n" + lines;
}

inline std::string ctrlBlock(int index) {
    return marked("[CrtlSetIndex]", index, kCtrlLines);
}

inline std::string driveBlock(int index, int controller, int driveId) {
    return marked("[PhyDrvSetIndex]", index, driveLines(controller, driveId));
}

// Logical drive 4 of this controller.
inline std::string logDrvBlock(int index, int controller) {
    return marked("[LogDrvSetIndex]", index,
                  with(kLogDrvLines, "CtrlID> 1", "CtrlID> " + std::to_string(controller)));
}

// Plans the next adapter count.
inline void expectAdapters(std::uint32_t count) {
    expectCall("q5_getNumberOfHBA", {}, bytesOf(count));
}
