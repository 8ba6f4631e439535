// The stubs, one for each command function in a route.
#include "tests/cli/routing/command_stubs.h"

#include <utility>

#include "commands/battery.h"
#include "commands/bga.h"
#include "commands/buzz.h"
#include "commands/change_lock.h"
#include "commands/controller.h"
#include "commands/creation.h"
#include "commands/enclosure.h"
#include "commands/event.h"
#include "commands/extent.h"
#include "commands/init.h"
#include "commands/logdrv.h"
#include "commands/mediapatrol.h"
#include "commands/migrate.h"
#include "commands/phydrv.h"
#include "commands/rebuild.h"
#include "commands/sync.h"
#include "config/export.h"
#include "config/import.h"
#include "util/words.h"

static RecordedCall recorded;
static int locks = 0;

int lockChanges() {
    ++locks;
    return kRecordedResult;
}

void unlockChanges(int lock) {
    locks -= lock == kRecordedResult;
}

static int record(const char* function, int wordCount, char** words) {
    recorded.function += function;
    recorded.wordCount = wordCount;
    recorded.locked = locks == 1;
    recorded.slots.assign(words, words + kMaxWords);
    return kRecordedResult;
}

RecordedCall takeRecordedCall() {
    return std::exchange(recorded, {});
}

bool isListing(const std::string& function) {
    return function.starts_with("List");
}

#define RECORDING_STUB(function)                    \
    int function(int wordCount, char** words) {     \
        return record(#function, wordCount, words); \
    }

RECORDING_STUB(AddExtent)
RECORDING_STUB(CreateLogDrv)
RECORDING_STUB(DeleteExtent)
RECORDING_STUB(DeleteLogDrv)
RECORDING_STUB(ExportFile)
RECORDING_STUB(FreeExtent)
RECORDING_STUB(ImportFile)
RECORDING_STUB(List3GSpeed)
RECORDING_STUB(ListBGAInfo)
RECORDING_STUB(ListBatteryInfo)
RECORDING_STUB(ListBuzzStatus)
RECORDING_STUB(ListControllerInfo)
RECORDING_STUB(ListEnclosureInfo)
RECORDING_STUB(ListEventInfo)
RECORDING_STUB(ListExtentInfo)
RECORDING_STUB(ListLogDrvInfo)
RECORDING_STUB(ListLogDrvInitStatus)
RECORDING_STUB(ListLogDrvMigrateStatus)
RECORDING_STUB(ListLogDrvRCStatus)
RECORDING_STUB(ListLogDrvRebuildStatus)
RECORDING_STUB(ListLogDrvSyncStatus)
RECORDING_STUB(ListPhyDrvInfo)
RECORDING_STUB(ListPhyDrvMediaPatrol)
RECORDING_STUB(LocateEnclosure)
RECORDING_STUB(LocateLogDrv)
RECORDING_STUB(LocatePhyDrv)
RECORDING_STUB(PauseLogDrvInit)
RECORDING_STUB(PauseLogDrvMigrate)
RECORDING_STUB(PauseLogDrvRC)
RECORDING_STUB(PauseLogDrvRebuild)
RECORDING_STUB(PausePhyDrvMediaPatrol)
RECORDING_STUB(RestartLogDrvRebuild)
RECORDING_STUB(ResumeLogDrvInit)
RECORDING_STUB(ResumeLogDrvMigrate)
RECORDING_STUB(ResumeLogDrvRC)
RECORDING_STUB(ResumeLogDrvRebuild)
RECORDING_STUB(ResumePhyDrvMediaPatrol)
RECORDING_STUB(Set3GSpeed)
RECORDING_STUB(SetBuzzSettings)
RECORDING_STUB(SetControllerSettings)
RECORDING_STUB(SetLogDrvSettings)
RECORDING_STUB(SetPhyDrvSettings)
RECORDING_STUB(SpareExtent)
RECORDING_STUB(SplitExtent)
RECORDING_STUB(StartLogDrvInit)
RECORDING_STUB(StartLogDrvMigrate)
RECORDING_STUB(StartLogDrvRC)
RECORDING_STUB(StartLogDrvRebuild)
RECORDING_STUB(StartLogDrvSync)
RECORDING_STUB(StartPhyDrvMediaPatrol)
RECORDING_STUB(StopLogDrvInit)
RECORDING_STUB(StopLogDrvRC)
RECORDING_STUB(StopLogDrvRebuild)
RECORDING_STUB(StopPhyDrvMediaPatrol)
RECORDING_STUB(WipePhyDrvMDD)
