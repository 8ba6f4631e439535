// Selects the command function by the second word: one table for each command, and the one function
// that searches them.
#include "cli/routes.h"

#include <span>

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
#include "util/result.h"
#include "util/utils.h"

using CommandFunction = int(int wordCount, char** words);

namespace {
struct Route {
    const char* keyword;
    CommandFunction* function; // null for the action marker "-a": look up the next word
    bool changing = false;     // holds the advisory lock while it runs
};
constexpr bool kChanging = true;

struct DispatchTable {
    CommandFunction* defaultHandler; // for the command word alone; null if it needs more words
    std::span<const Route> routes;
    const char* errorMessage;
};
} // namespace

static const Route* findSubcommand(std::span<const Route> routes, const char* word) {
    for (const Route& route : routes)
        if (strCmpNoCase(word, route.keyword) == 0)
            return &route;
    return nullptr;
}

// Calls the function for the second word or, after the action marker, for the third. A second marker is
// an unknown word.
static int dispatch(int wordCount, char** words, const DispatchTable& table) {
    if (wordCount == 1 && table.defaultHandler != nullptr)
        return table.defaultHandler(wordCount, words);
    const Route* route = findSubcommand(table.routes, words[1]);
    if (route != nullptr && route->function == nullptr)
        route = findSubcommand(table.routes, words[2]);
    if (route == nullptr || route->function == nullptr)
        return fail(Result::unknownCommand, table.errorMessage);
    if (!route->changing)
        return route->function(wordCount, words);
    const int lock = lockChanges();
    const int result = route->function(wordCount, words);
    unlockChanges(lock);
    return result;
}

int do_cmd_battery(int wordCount, char** words) {
    static const Route routes[] = {
        {"-i", ListBatteryInfo},
    };
    return dispatch(wordCount, words, {ListBatteryInfo, routes, "Invalid command for \"battery\""});
}

int do_cmd_buzz(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListBuzzStatus},
        {"enable", SetBuzzSettings, kChanging},
        {"disable", SetBuzzSettings, kChanging},
        {"-i", ListBuzzStatus},
        {"-c", ListBuzzStatus},
    };
    return dispatch(wordCount, words, {ListBuzzStatus, routes, "Invalid command for \"buzz\""});
}

int do_cmd_controller(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListControllerInfo},
        {"mod", SetControllerSettings, kChanging},
        {"-i", ListControllerInfo},
        {"-c", ListControllerInfo},
        {"-v", ListControllerInfo},
    };
    return dispatch(wordCount, words, {ListControllerInfo, routes, "Invalid command for \"ctrl\""});
}

int do_cmd_logdrv(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListLogDrvInfo},
        {"mod", SetLogDrvSettings, kChanging},
        {"locate", LocateLogDrv, kChanging},
        {"add", CreateLogDrv, kChanging},
        {"del", DeleteLogDrv, kChanging},
        {"-l", ListLogDrvInfo},
        {"-i", ListLogDrvInfo},
        {"-c", ListLogDrvInfo},
        {"-v", ListLogDrvInfo},
    };
    return dispatch(wordCount, words, {ListLogDrvInfo, routes, "Invalid command for \"logdrv\""});
}

int do_cmd_migrate(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListLogDrvMigrateStatus},
        {"start", StartLogDrvMigrate, kChanging},
        {"pause", PauseLogDrvMigrate, kChanging},
        {"resume", ResumeLogDrvMigrate, kChanging},
        {"-l", ListLogDrvMigrateStatus},
        {"-i", ListLogDrvMigrateStatus},
    };
    return dispatch(wordCount, words, {ListLogDrvMigrateStatus, routes, "Invalid command for \"migrate\""});
}

int do_cmd_rebuild(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListLogDrvRebuildStatus},
        {"start", StartLogDrvRebuild, kChanging},
        {"abort", StopLogDrvRebuild, kChanging},
        {"pause", PauseLogDrvRebuild, kChanging},
        {"resume", ResumeLogDrvRebuild, kChanging},
        {"restart", RestartLogDrvRebuild, kChanging},
        {"-l", ListLogDrvRebuildStatus},
        {"-i", ListLogDrvRebuildStatus},
    };
    return dispatch(wordCount, words, {ListLogDrvRebuildStatus, routes, "Invalid command for \"rb\""});
}

int do_cmd_sync(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListLogDrvSyncStatus},
        {"-l", StartLogDrvSync, kChanging},
        {"-i", StartLogDrvSync, kChanging},
    };
    return dispatch(wordCount, words, {ListLogDrvSyncStatus, routes, "Invalid command for \"sync\""});
}

int do_cmd_redundancyCheck(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListLogDrvRCStatus},
        {"start", StartLogDrvRC, kChanging},
        {"stop", StopLogDrvRC, kChanging},
        {"pause", PauseLogDrvRC, kChanging},
        {"resume", ResumeLogDrvRC, kChanging},
        {"-l", ListLogDrvRCStatus},
        {"-i", ListLogDrvRCStatus},
    };
    return dispatch(wordCount, words, {ListLogDrvRCStatus, routes, "Invalid command for \"rc\""});
}

int do_cmd_init(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListLogDrvInitStatus},
        {"start", StartLogDrvInit, kChanging},
        {"stop", StopLogDrvInit, kChanging},
        {"pause", PauseLogDrvInit, kChanging},
        {"resume", ResumeLogDrvInit, kChanging},
        {"-l", ListLogDrvInitStatus},
        {"-i", ListLogDrvInitStatus},
    };
    return dispatch(wordCount, words, {ListLogDrvInitStatus, routes, "Invalid command for \"init\""});
}

int do_cmd_phydrv(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListPhyDrvInfo},
        {"mod", SetPhyDrvSettings, kChanging},
        {"locate", LocatePhyDrv, kChanging},
        {"wipe", WipePhyDrvMDD, kChanging},
        {"set3G", Set3GSpeed, kChanging},
        {"list3G", List3GSpeed},
        {"-p", ListPhyDrvInfo},
        {"-i", ListPhyDrvInfo},
        {"-c", ListPhyDrvInfo},
        {"-v", ListPhyDrvInfo},
    };
    return dispatch(wordCount, words, {ListPhyDrvInfo, routes, "Invalid command for \"phydrv\""});
}

int do_cmd_extent(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListExtentInfo},
        {"spare", SpareExtent, kChanging},
        {"free", FreeExtent, kChanging},
        {"add", AddExtent, kChanging},
        {"split", SplitExtent, kChanging},
        {"delete", DeleteExtent, kChanging},
        {"-p", ListExtentInfo},
        {"-e", ListExtentInfo},
        {"-i", ListExtentInfo},
        {"-c", ListExtentInfo},
        {"-v", ListExtentInfo},
    };
    return dispatch(wordCount, words, {ListExtentInfo, routes, "Invalid command for \"extent\""});
}

int do_cmd_mediapatrol(int wordCount, char** words) {
    if (wordCount != 7)
        return fail(Result::badCount, "Invalid number of parameters for \"mp\"!");
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListPhyDrvMediaPatrol},
        {"start", StartPhyDrvMediaPatrol, kChanging},
        {"stop", StopPhyDrvMediaPatrol, kChanging},
        {"pause", PausePhyDrvMediaPatrol, kChanging},
        {"resume", ResumePhyDrvMediaPatrol, kChanging},
    };
    return dispatch(wordCount, words, {nullptr, routes, "Invalid command for \"media patrol\""});
}

int do_cmd_enclosure(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},           {"list", ListEnclosureInfo}, {"locate", LocateEnclosure},
        {"-e", ListEnclosureInfo}, {"-i", ListEnclosureInfo},   {"-v", ListEnclosureInfo},
    };
    return dispatch(wordCount, words, {ListEnclosureInfo, routes, "Invalid command for \"enclosure\""});
}

int do_cmd_bga(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},
        {"list", ListBGAInfo},
        {"-l", ListBGAInfo},
        {"-i", ListBGAInfo},
    };
    return dispatch(wordCount, words, {ListBGAInfo, routes, "Invalid command for \"bga\""});
}

int do_cmd_event(int wordCount, char** words) {
    static const Route routes[] = {
        {"-a", nullptr},       {"list", ListEventInfo}, {"-v", ListEventInfo},
        {"-c", ListEventInfo}, {"-i", ListEventInfo},
    };
    return dispatch(wordCount, words, {ListEventInfo, routes, "Invalid command for \"event\""});
}

int do_cmd_export(int wordCount, char** words) {
    if (wordCount != 5)
        return fail(Result::badCount, "Invalid number of parameters for \"export\"!");
    static const Route routes[] = {
        {"-t", ExportFile},
        {"-f", ExportFile},
    };
    return dispatch(wordCount, words, {nullptr, routes, "Invalid command for \"export\""});
}

int do_cmd_import(int wordCount, char** words) {
    if (wordCount <= 2)
        return fail(Result::badCount, "Invalid number of parameters for \"import\"!");
    static const Route routes[] = {
        {"-k", ImportFile}, {"-p", ImportFile}, {"-l", ImportFile}, {"-b", ImportFile},
        {"-a", ImportFile}, {"-c", ImportFile}, {"-f", ImportFile}, {"-i", ImportFile},
    };
    return dispatch(wordCount, words, {nullptr, routes, "Invalid command for \"import\""});
}
