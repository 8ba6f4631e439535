// The migrate command: changes a logical drive's RAID level, stripe size or members online, and
// shows, pauses and resumes the migration.
#include "commands/migrate.h"

#include <cstdlib>

#include "commands/activity.h"
#include "commands/settings_text.h"
#include "commands/vocabulary.h"
#include "util/utils.h"

static const char noDrive[] = "No logical drive with ID %d in controller #%d is existed!\n";

int ListLogDrvMigrateStatus(int wordCount, char** words) {
    return listActivity(wordCount, words,
                        {&migration, nullptr, noDrive, "No activity for migration!", "Migration is paused!\n",
                         "Migration is in progress %d%% on logical drive with ID %d in controller #%d!\n"});
}

int GetRaidLevelValue(int code) {
    static const struct {
        int code, rank;
    } ranks[] = {{0, 10}, {1, 20},  {3, 30},  {16, 40}, {95, 50},
                 {5, 60}, {80, 70}, {81, 80}, {85, 90}, {96, 100}};
    for (const auto& row : ranks)
        if (row.code == code)
            return row.rank;
    return 0;
}

bool IsAllowDoMigrate(int current, int target) {
    return GetRaidLevelValue(target) >= GetRaidLevelValue(current);
}

namespace {
// The contents of a migration text.
struct MigrationSettings {
    bool hasLevel;
    int level;
    std::uint16_t stripe; // 0: keep the drive's
    long count;           // of parities or subarrays; -1: not specified
};
} // namespace

// Applies one item. Every key requires a value.
static ItemResult applyItem(MigrationSettings* target, const char* item) {
    const char* value = itemValue(item);
    const bool raid = keyContains(item, "raid"), stripe = keyContains(item, "stripe");
    if (!raid && !stripe && !keyContains(item, "count"))
        return abortItems("Invalid parameters for \"ctrl\"!");
    if (value == nullptr)
        return ItemResult::invalid;
    if (raid) {
        target->hasLevel = true;
        target->level = TranslateRaidLevel(value);
    } else if (stripe) {
        target->stripe = static_cast<std::uint16_t>(atoiText(value));
    } else {
        target->count = std::strtol(value, nullptr, 10);
    }
    return ItemResult::ok;
}

// RAIDMF requires 2 or 3 parities and RAID50 two subarrays; the other levels ignore the count.
static bool storeCount(MigrateRequest* request, int level, long count) {
    if (level == kRaidMf)
        request->parityCount = static_cast<std::uint8_t>(count);
    else if (level == kRaid50)
        request->subArrayCount = static_cast<std::uint8_t>(count);
    else
        return true;
    return count == 2 || (level == kRaidMf && count == 3);
}

static void storeMembers(MigrateRequest* request, const IdList<>& drives, const IdList<>& extents) {
    request->memberCount = static_cast<std::uint16_t>(drives.count);
    for (int i = 0; i < drives.count; ++i)
        request->member[i] = {extents.id[i], drives.id[i]};
}

// Fills in the request, or prints why the migration is not allowed.
static int fillRequest(MigrateRequest* request, const LogDrvInfo& drive, const MigrationSettings& target) {
    const int level = target.hasLevel ? target.level : drive.raidLevel;
    request->raidLevel = static_cast<std::uint16_t>(level);
    request->stripeSize = target.stripe != 0 ? target.stripe : static_cast<std::uint16_t>(drive.stripeBlocks);
    if (!IsAllowDoMigrate(drive.raidLevel, level))
        return fail(Result::badValue, "Error: migrate only support from low level raid to high level raid");
    if (!storeCount(request, level, target.count))
        return fail(Result::badValue, "Invalide parameter in \"migrate count\"!");
    return Result::done;
}

int StartLogDrvMigrate(int wordCount, char** words) {
    if (wordCount < 9)
        return fail(Result::badCount, "Invalid number of parameters in command \"migrate -a start\"!");
    LogDrvArgs args = {.controller = UINT32_MAX, .logDrv = UINT32_MAX}; // negative: not specified
    IdList<> drives = {}, extents = {};
    const Option options[] = {
        logDrvOption(&args),        controllerOption(&args), driveListOption("-p", &drives),
        listOption("-e", &extents), ignoredOption("-s"),
    };
    int end = 0;
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined", &end))
        return result;

    MigrationSettings target = {.hasLevel = false, .level = 0, .stripe = 0, .count = -1};
    // Compatibility: the migration text is always the last word, wherever "-s" is.
    if (const int result =
            applyItems(wordAt(words, end - 1), &target, applyItem, "Invalide parameter in \"migrate\"!"))
        return result;
    if (static_cast<int>(args.controller) < 0 || static_cast<int>(args.logDrv) < 0)
        return fail(Result::badValue, "Control id and array id must be refer in \"migrate\"!");
    LogDrvInfo drive;
    if (!lookupLogDrv(args, &drive, noDrive))
        return Result::notFound;

    MigrateRequest request = {};
    request.logDrvId = static_cast<std::uint16_t>(args.logDrv);
    if (const int result = fillRequest(&request, drive, target))
        return result;
    storeMembers(&request, drives, extents);
    if (isBusy(drive))
        return Result::done;
    return reportActivity(q5_migrateHBAArray(hbaAddress(args.controller), 0, &request), args.logDrv,
                          "Migration is started on Array %d.\n",
                          "Migration is failed to start on Array %d.\n");
}

static int pauseMigration(HbaAddress address, const LogDrvIdBlock* drive) {
    const ActivityQuery query = {drive->logDrvId, kMigrationKind};
    return q5_PauseMigration(address, 0, &query);
}

static int resumeMigration(HbaAddress address, const LogDrvIdBlock* drive) {
    const ActivityQuery query = {drive->logDrvId, kMigrationKind};
    return q5_ResumeMigration(address, 0, &query);
}

int PauseLogDrvMigrate(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&migration, ActivityPrecondition::notPaused, pauseMigration,
                            "Invalid numbers of parameter in command \"migrate -a pause\"!", noDrive,
                            "Migration paused on Array %d.\n",
                            "Migration is failed to pause on Array %d.\n"});
}

int ResumeLogDrvMigrate(int wordCount, char** words) {
    return controlActivity(wordCount, words,
                           {&migration, ActivityPrecondition::paused, resumeMigration,
                            "Invalid numbers of parameter in command \"migrate -a resume\"!", noDrive,
                            "Migration resumed on Array %d.\n",
                            "Migration is failed to resume on Array %d.\n"});
}
