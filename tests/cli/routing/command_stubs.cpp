// The stand-ins, one for each command function that a word can lead to.
#include "tests/cli/routing/command_stubs.h"

#include "commands/battery.h"
#include "commands/bga.h"
#include "commands/buzz.h"
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

static int record(const char* function, int wordCount, char** words) {
    recorded.function += function;
    recorded.wordCount = wordCount;
    recorded.slots.assign(words, words + kMaxWords);
    return kRecordedResult;
}

RecordedCall takeRecordedCall() {
    const RecordedCall call = recorded;
    recorded = {};
    return call;
}

#define RECORDED(function)                          \
    int function(int wordCount, char** words) {     \
        return record(#function, wordCount, words); \
    }

RECORDED(AddExtent)
RECORDED(CreateLogDrv)
RECORDED(DeleteExtent)
RECORDED(DeleteLogDrv)
RECORDED(ExportFile)
RECORDED(FreeExtent)
RECORDED(ImportFile)
RECORDED(List3GSpeed)
RECORDED(ListBGAInfo)
RECORDED(ListBatteryInfo)
RECORDED(ListBuzzStatus)
RECORDED(ListControllerInfo)
RECORDED(ListEnclosureInfo)
RECORDED(ListEventInfo)
RECORDED(ListExtentInfo)
RECORDED(ListLogDrvInfo)
RECORDED(ListLogDrvInitStatus)
RECORDED(ListLogDrvMigrateStatus)
RECORDED(ListLogDrvRCStatus)
RECORDED(ListLogDrvRebuildStatus)
RECORDED(ListLogDrvSyncStatus)
RECORDED(ListPhyDrvInfo)
RECORDED(ListPhyDrvMediaPatrol)
RECORDED(LocateEnclosure)
RECORDED(LocateLogDrv)
RECORDED(LocatePhyDrv)
RECORDED(PauseLogDrvInit)
RECORDED(PauseLogDrvMigrate)
RECORDED(PauseLogDrvRC)
RECORDED(PauseLogDrvRebuild)
RECORDED(PausePhyDrvMediaPatrol)
RECORDED(RestartLogDrvRebuild)
RECORDED(ResumeLogDrvInit)
RECORDED(ResumeLogDrvMigrate)
RECORDED(ResumeLogDrvRC)
RECORDED(ResumeLogDrvRebuild)
RECORDED(ResumePhyDrvMediaPatrol)
RECORDED(Set3GSpeed)
RECORDED(SetBuzzSettings)
RECORDED(SetControllerSettings)
RECORDED(SetLogDrvSettings)
RECORDED(SetPhyDrvSettings)
RECORDED(SpareExtent)
RECORDED(SplitExtent)
RECORDED(StartLogDrvInit)
RECORDED(StartLogDrvMigrate)
RECORDED(StartLogDrvRC)
RECORDED(StartLogDrvRebuild)
RECORDED(StartLogDrvSync)
RECORDED(StartPhyDrvMediaPatrol)
RECORDED(StopLogDrvInit)
RECORDED(StopLogDrvRC)
RECORDED(StopLogDrvRebuild)
RECORDED(StopPhyDrvMediaPatrol)
RECORDED(WipePhyDrvMDD)
