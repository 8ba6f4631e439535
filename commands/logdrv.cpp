// The logdrv command: lists, locates and deletes logical drives. Changing settings is in
// logdrv_settings.cpp, creation in creation.cpp.
#include "commands/logdrv.h"

#include <cstdio>

#include "adapter/logdrv.h"
#include "adapter/reply.h"
#include "commands/activity.h"
#include "commands/logdrv_lookup.h"
#include "commands/options.h"
#include "commands/vocabulary.h"
#include "util/utils.h"

static double megabytes(const LogDrvInfo& drive) {
    return SectorCount2MB(drive.sectorCount);
}

// The members as "(1,2,3)". The record is a copy because BlockIDsString() increments the IDs in place.
static const char* memberText(LogDrvInfo drive) {
    return BlockIDsString(boundedMemberCount(drive), drive.memberIds);
}

// Compatibility: the column headed "Sectors" shows the stripe size.
static void printRow(const LogDrvInfo& drive) {
    std::printf("%2d %7s %5d %7u %10.2f %15s %.*s\n", drive.logDrvId, TranslateRaidLevel2Str(drive.raidLevel),
                drive.diskCount, drive.stripeBlocks, megabytes(drive), memberText(drive),
                FIELD_PRINTF_ARGS(drive.name));
}

static void printDrive(const LogDrvInfo& drive) {
    std::puts("*******************************");
    std::printf("Array ID : %d\n", drive.logDrvId);
    std::printf("Array name : %.*s\n", FIELD_PRINTF_ARGS(drive.name));
    std::printf("Array size : %.2f MB\n", megabytes(drive));
    std::printf("Array stripe size in number of blocks : %d\n", static_cast<int>(drive.stripeBlocks));
    std::printf("Array sector size : %d\n", static_cast<int>(drive.sectorSize));
    std::printf("Array raid mode : %s\n", TranslateRaidLevel2Str(drive.raidLevel));
    std::printf("Array write cache mode : %s\n",
                TranslateWriteMode2Str(static_cast<int>(drive.writeCacheMode)));
    std::printf("Number of disks in array : %d\n", drive.diskCount);
    std::printf("Disk members with ID in array : %s\n", memberText(drive));
}

// Prints the lost members, highest ID first.
//
// Compatibility: printedCount counts them across the whole listing, so from the second drive with lost
// members on, the list begins with a comma.
static void printLostMembers(std::uint32_t lostMask, int* printedCount) {
    if (lostMask == 0)
        return;
    std::printf("Set down disk members with ID in array : ");
    for (int id = 15; id >= 0; --id)
        if ((lostMask >> id & 1) != 0)
            std::printf((*printedCount)++ == 0 ? "%d" : ",%d", id);
    std::puts("");
}

static const char* functionalLine(const LogDrvInfo& drive) {
    if (drive.functionalStatus & kCritical)
        return "Array functional status : Critical";
    if (drive.functionalStatus & kOnline)
        return "Array functional status : Online";
    if (drive.functionalStatus & kDegraded)
        return "Array functional status : Degrade";
    return "Array functional status : Offline";
}

// Compatibility: settings are queried by the drive's position in the listing, not by its ID.
static LogDrvSettings readSettings(std::uint32_t controller, std::uint32_t position) {
    const LogDrvQuery query = {position, 1};
    Reply<LogDrvSettings, 1> reply = {};
    q5_getLogDrvSettings(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    return reply.record[0];
}

static const char* cacheModeText(const LogDrvInfo& drive) {
    if (drive.writeCacheMode & kWriteBack)
        return "Write Back";
    return drive.writeCacheMode & kBypass ? "By Pass" : "Write Thru";
}

static void printSettings(const LogDrvInfo& drive, const LogDrvSettings& settings) {
    std::printf("Driver Cache Mode: %s%s\n", settings.cacheFlags & kAutoMode ? "Auto - " : "",
                cacheModeText(drive));
    std::printf("Driver Lookahead threshold: %d\n", settings.lookahead);
    std::printf("Driver Consolidation: %s\n", settings.consolidation != 0 ? "enabled" : "disabled");
    if (drive.raidLevel == kRaid50)
        std::printf("Array sub array count:%d\n", drive.subArrayCount);
    if (drive.raidLevel == kRaidMf) {
        std::printf("Array parity count:%d\n", drive.parityCount);
        std::printf("Array Symmetric:%d\n", drive.symmetric);
        std::printf("Array Shift:%d\n", drive.shift);
    }
}

static void showDrive(std::uint32_t controller, const LogDrvInfo& drive, std::uint32_t position,
                      int* lostPrinted) {
    std::uint32_t lostMask = 0;
    q5_getAryLostDisk(hbaAddress(controller), 0, static_cast<std::uint8_t>(drive.logDrvId), &lostMask);
    printDrive(drive);
    printLostMembers(lostMask, lostPrinted);
    printActivity(controller, drive);
    std::puts(functionalLine(drive));
    printSettings(drive, readSettings(controller, position));
}

static void showDrives(std::uint32_t controller, std::span<const LogDrvInfo> drives) {
    std::uint32_t position = 0;
    int lostPrinted = 0;
    for (const LogDrvInfo& drive : drives)
        showDrive(controller, drive, position++, &lostPrinted);
}

static void printTable(std::span<const LogDrvInfo> drives) {
    std::printf("%2s %7s %5s %7s %10s %15s %s\n", "ID", "RAID", "Disks", "Sectors", "Size(MB)", "DiskID",
                "Name");
    for (const LogDrvInfo& drive : drives)
        printRow(drive);
}

int ListLogDrvInfo(int wordCount, char** words) {
    std::uint32_t controller = 0, first = 0, count = kMaxLogDrvs;
    bool hasId = false, verbose = false;
    const Option options[] = {
        flagOption("-v", &verbose),
        numberOption("-i", "controller ID", &controller, Result::badId),
        numberOption("-l", "logical drive ID", &first, Result::badId, &hasId),
        countOption("-c", "controller count", &count, kMaxLogDrvs - 1),
    };
    if (const int result = readOptions(wordCount, words, firstOption(wordCount, words), options,
                                       "Invalid parameters defined"))
        return result;

    const LogDrvQuery query = {first, hasId ? 1 : count};
    Reply<LogDrvInfo, kMaxLogDrvs> reply = {};
    q5_getLogDrvInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    if (records(reply).empty())
        std::printf("No array with ID %d in controller #%d is existed\n", static_cast<int>(first),
                    static_cast<int>(controller));
    else if (verbose)
        showDrives(controller, records(reply));
    else
        printTable(records(reply));
    return Result::done;
}

int LocateLogDrv(int wordCount, char** words) {
    if (wordCount != (CheckIsIncludeCharacter(wordCount, words, "-i") ? 9 : 7))
        return fail(Result::badCount, "Invalid number of parameters for \"logdrv\" defined");
    std::uint32_t controller = 0, logDrv = 0, seconds = 0;
    const Option options[] = {
        numberOption("-l", "logical drive ID", &logDrv, Result::badId),
        numberOption("-i", "controller ID", &controller, Result::badId),
        numberOption("-d", "duration", &seconds, Result::badValue),
    };
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    LogDrvInfo drive;
    if (!findLogDrv(controller, logDrv, &drive)) {
        std::printf("No array with ID %d in controller #%d is existed\n", static_cast<int>(logDrv),
                    static_cast<int>(controller));
        return Result::notFound;
    }
    const auto id = static_cast<std::uint16_t>(logDrv);
    const int adapterResult = seconds == 0 ? q5_stopLocateLogDrv(hbaAddress(controller), 0, id)
                                           : q5_locateLogDrv(hbaAddress(controller), 0, id, seconds);
    if (adapterResult != 0) {
        std::printf("Failed to locate the logical drive with ID %d in controller #%d!\n",
                    static_cast<int>(logDrv), static_cast<int>(controller));
        return Result::refused;
    }
    return Result::done;
}

int DeleteLogDrv(int wordCount, char** words) {
    if (wordCount != (CheckIsIncludeCharacter(wordCount, words, "-i") ? 7 : 5))
        return fail(Result::badCount, "Invalid number of parameters for \"logdrv -a del\" defined");
    std::uint32_t controller = 0, logDrv = 0;
    const Option options[] = {
        numberOption("-l", "logical drive ID", &logDrv, Result::badId),
        numberOption("-i", "controller ID", &controller, Result::badId),
    };
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;
    const DeleteArrayRequest request = {1, logDrv};
    if (q5_delDiskArray(hbaAddress(controller), 0, &request, sizeof request) != 0) {
        std::printf("Failed to delete an array with ID %d specified\n", static_cast<int>(logDrv));
        return Result::refused;
    }
    return Result::done;
}
