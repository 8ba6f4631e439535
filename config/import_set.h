// The records that an import selects from a configuration file, and the functions that apply them.
#pragma once

#include <span>

#include "adapter/creation.h"
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

inline std::span<const PhyDrvConfigRecord> phyDrvRecords(const ImportSet& set) {
    return {set.phyDrv, static_cast<std::size_t>(set.phyDrvCount)};
}

inline std::span<const LogDrvConfigRecord> logDrvRecords(const ImportSet& set) {
    return {set.logDrv, static_cast<std::size_t>(set.logDrvCount)};
}

// Checks the records against the adapters present, then applies them. A failed check ends the import
// before any change; a failed change does not end it. Result::done, notFound or tooManyDrives.
int applyRecords(const ImportSet& set, bool clear);

// Apply one record with the command that a user would type; its result is ignored. Return 0, also for a
// null record.
int ImpFileSetCtrlSettings(const CtrlConfigRecord* record);
int ImpFileSetPhydrvSettings(const PhyDrvConfigRecord* record);
int ImpFileSetLogSettings(const LogDrvConfigRecord* record);
int ImpFileCreateLogDrv(const LogDrvConfigRecord* record);

// Creates the record's logical drive with its exact number of sectors, on the extents that the record lists.
// Returns the result code of the creation.
int CreateOnExtents(const LogDrvConfigRecord& record);

// The request that CreateOnExtents() sends, without sending it. Returns Result::done, or after a message the
// result code of a record that cannot be created.
int PhraseCreateOnExtents(const LogDrvConfigRecord& record, CreateArrayRequest* request);
