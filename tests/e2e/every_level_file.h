// The configuration file of the world every_level, block by block.
#pragma once

#include <gtest/gtest.h>

#include <string>

inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    std::size_t at = 0, times = 0;
    for (; (at = text.find(from, at)) != std::string::npos; at += to.size(), ++times)
        text.replace(at, from.size(), to);
    EXPECT_NE(times, 0u) << from;
    return text;
}

inline const std::string kControllers[] = {R"([CrtlSetIndex] 0
<AutoRebuild> Enable
<SyncRate> 12
<InitRate> 14
<MPRate> 13
<MigrateRate> 15
<RebuildRate> 11
<SmartCEnable> Disable
<SmartPollInt> 20
<EncPollInt> 21
<RebuildPolicy> 1
<BuzzerEnable> On
<GlobalSpare> 8
)"
                                           "[End] \n",
                                           R"([CrtlSetIndex] 1
<AutoRebuild> Disable
<SyncRate> 22
<InitRate> 24
<MPRate> 23
<MigrateRate> 25
<RebuildRate> 21
<SmartCEnable> Enable
<SmartPollInt> 30
<EncPollInt> 31
<RebuildPolicy> 0
<BuzzerEnable> Off
<GlobalSpare> 0
)"
                                           "[End] \n"};

inline std::string driveBlock(int index, int controller, int drive, const std::string& cache = "Enable",
                              const std::string& tcq = "not supported",
                              const std::string& ncq = "not supported") {
    return "[PhyDrvSetIndex] " + std::to_string(index) + "\n<PhyDrvCtrlID> " + std::to_string(controller) +
           "\n<PhyDrvID> " + std::to_string(drive) + "\n<WriteCache> " + cache + "\n<TCQEnable> " + tcq +
           "\n<NCQEnable> " + ncq + "\n[End] \n";
}

inline std::string driveBlocks() {
    std::string blocks = driveBlock(0, 0, 1, "Disable", "Enable") +
                         driveBlock(1, 0, 2, "Enable", "not supported", "Enable") +
                         driveBlock(2, 0, 3, "Enable", "Disable", "Disable");
    for (int drive = 4; drive <= 8; ++drive)
        blocks += driveBlock(drive - 1, 0, drive);
    for (int drive = 1; drive <= 4; ++drive)
        blocks += driveBlock(drive + 7, 1, drive);
    return blocks;
}

inline const std::string kLogicalDrives = R"([LogDrvSetIndex] 0
<LogDrvID> 0
<LogyDrvCtrlID> 0
<LogDrvName> Vault
<LogDrvSize> 1572.8640
<LogDrvSectorCount> 3072000
<LogDrvSectorSize> 512
<LogDrvStripeSize> 64
<LogDrvRaidMode> RAIDMF
<LogDrvCacheMode> Write Through
<LogDrvDiskNum> 5
<LogDrvDiskMember> (1,2,3,4,5)
<LogDrvDiskExtentIndex> (0,0,0,0,0)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 3
<LogDrvConsolidation> Disable
<LogDrvParityCnt> 2
<LogDrvSymmetric> 1
<LogDrvShift> -3
@[LogDrvSetIndex] 1
<LogDrvID> 1
<LogyDrvCtrlID> 0
<LogDrvName> Twin sets
<LogDrvSize> 4194.3040
<LogDrvSectorCount> 8192000
<LogDrvSectorSize> 4096
<LogDrvStripeSize> 128
<LogDrvRaidMode> RAID50
<LogDrvCacheMode> Write Back
<LogDrvDiskNum> 6
<LogDrvDiskMember> (6,5,4,3,2,1)
<LogDrvDiskExtentIndex> (0,1,1,1,1,1)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 8
<LogDrvConsolidation> Enable
<LogDrvSubArrayCount> 2
@[LogDrvSetIndex] 2
<LogDrvID> 2
<LogyDrvCtrlID> 0
<LogDrvName> Three terabytes
<LogDrvSize> 3000000.0000
<LogDrvSectorCount> 5859375000
<LogDrvSectorSize> 512
<LogDrvStripeSize> 32
<LogDrvRaidMode> RAID0
<LogDrvCacheMode> Auto - Write Through
<LogDrvDiskNum> 2
<LogDrvDiskMember> (7,8)
<LogDrvDiskExtentIndex> (0,0)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 0
<LogDrvConsolidation> Disable
@[LogDrvSetIndex] 3
<LogDrvID> 0
<LogyDrvCtrlID> 1
<LogDrvName> Mirror  of two
<LogDrvSize> 1048.5760
<LogDrvSectorCount> 2048000
<LogDrvSectorSize> 512
<LogDrvStripeSize> 64
<LogDrvRaidMode> RAID1
<LogDrvCacheMode> Write Back
<LogDrvDiskNum> 2
<LogDrvDiskMember> (2,1)
<LogDrvDiskExtentIndex> (0,0)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 5
<LogDrvConsolidation> Enable
@[LogDrvSetIndex] 4
<LogDrvID> 1
<LogyDrvCtrlID> 1
<LogDrvName> Plain
<LogDrvSize> 2097.1520
<LogDrvSectorCount> 4096000
<LogDrvSectorSize> 512
<LogDrvStripeSize> 64
<LogDrvRaidMode> JBOD
<LogDrvCacheMode> Write Back
<LogDrvDiskNum> 1
<LogDrvDiskMember> (3)
<LogDrvDiskExtentIndex> (0)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 6
<LogDrvConsolidation> Enable
@[LogDrvSetIndex] 5
<LogDrvID> 2
<LogyDrvCtrlID> 1
<LogDrvName> Five
<LogDrvSize> 1048.5760
<LogDrvSectorCount> 2048000
<LogDrvSectorSize> 512
<LogDrvStripeSize> 64
<LogDrvRaidMode> RAID5
<LogDrvCacheMode> Write Through
<LogDrvDiskNum> 3
<LogDrvDiskMember> (1,2,4)
<LogDrvDiskExtentIndex> (1,1,0)
<LogDrvInitMode> NONE
<LogDrvLookAheadValue> 7
<LogDrvConsolidation> Disable
@)";

inline std::string logicalDriveBlocks() {
    return replaced(kLogicalDrives, "@", "[End] \n");
}

inline std::string wholeFile() {
    return kControllers[0] + kControllers[1] + driveBlocks() + logicalDriveBlocks();
}
