// The records of a configuration file that an import keeps, and their way to the adapters.
#pragma once

#include <span>

#include "config/ctrl_block.h"
#include "config/logdrv_block.h"
#include "config/phydrv_block.h"

inline constexpr int kMaxCtrlRecords = 4;
inline constexpr int kMaxPhyDrvRecords = 64;
inline constexpr int kMaxLogDrvRecords = 512;

// In file order.
struct ImportSet {
    int ctrlCount;
    int phyDrvCount;
    int logDrvCount;
    CtrlConfigRecord ctrl[kMaxCtrlRecords];
    PhyDrvConfigRecord phyDrv[kMaxPhyDrvRecords];
    LogDrvConfigRecord logDrv[kMaxLogDrvRecords];
};

inline std::span<const PhyDrvConfigRecord> phyDrvRecords(const ImportSet& kept) {
    return {kept.phyDrv, static_cast<std::size_t>(kept.phyDrvCount)};
}

inline std::span<const LogDrvConfigRecord> logDrvRecords(const ImportSet& kept) {
    return {kept.logDrv, static_cast<std::size_t>(kept.logDrvCount)};
}

// Checks the records against the adapters present, then applies them: the checks end the import before
// any change, but once begun nothing stops it. Result::done, notFound or tooManyDrives.
int applyRecords(const ImportSet& kept, bool clear);

// Apply one record through the command a user would type, whose result is ignored. Return 0, also for
// a null record.
int ImpFileSetCtrlSettings(const CtrlConfigRecord* record);
int ImpFileSetPhydrvSettings(const PhyDrvConfigRecord* record);
int ImpFileSetLogSettings(const LogDrvConfigRecord* record);
int ImpFileCreateLogDrv(const LogDrvConfigRecord* record);
