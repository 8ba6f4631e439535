// The phydrv command: lists physical drives, changes their settings, blinks their lights and wipes
// their reserved sectors. The 3 Gb/s option is in phydrv_speed.cpp.
#include "commands/phydrv.h"

#include <cstdio>

#include "adapter/enclosure.h"
#include "adapter/phydrv.h"
#include "adapter/reply.h"
#include "commands/mediapatrol.h"
#include "commands/options.h"
#include "commands/phydrv_query.h"
#include "commands/settings_text.h"
#include "commands/vocabulary.h"

using SettingsReply = Reply<PhyDrvSettings, 1>;

static const char* enabledText(std::uint8_t flag) {
    return flag != 0 ? "enabled" : "disabled";
}

static void printRow(const PhyDrvInfo& drive) {
    std::printf("%2d %2d %10.2fMB %22.*s %21.*s %10.*s\n", drive.driveId + 1, drive.channel,
                SectorCount2MB(drive.capacity), FIELD_PRINTF_ARGS(drive.model),
                FIELD_PRINTF_ARGS(drive.serial), FIELD_PRINTF_ARGS(drive.firmware));
}

static void printDrive(const PhyDrvInfo& drive) {
    std::puts("****************************");
    std::printf("Disk ID : %d\n", drive.driveId + 1);
    std::printf("Channel# : %d\n", drive.channel);
    std::printf("Disk name : %.*s\n", FIELD_PRINTF_ARGS(drive.model));
    std::printf("Firmware version : %.*s\n", FIELD_PRINTF_ARGS(drive.firmware));
    std::printf("Disk size : %.2f MB\n", SectorCount2MB(drive.capacity));
    std::printf("Number of cylinders : %d\n", drive.cylinders);
    std::printf("Number of heads : %d\n", drive.heads);
    std::printf("Number of sectors : %d\n", drive.sectorsPerTrack);
    std::printf("DMA mode : %d\n", drive.dmaMode);
}

static SettingsReply readSettings(std::uint32_t controller, std::uint32_t drive) {
    const PhyDrvSelector selector = {drive, 1, 1, {}};
    SettingsReply reply = {};
    q5_getPhyDrvSettings(hbaAddress(controller), 0, &selector, &reply, sizeof reply);
    return reply;
}

// The type of the enclosure that contains a drive. The adapter is not called for a drive outside any
// enclosure.
static std::uint8_t readEnclosureType(std::uint32_t controller, const PhyDrvInfo& drive) {
    if (drive.enclosureId == kNoEnclosureId)
        return kNoEnclosure;
    const EnclosureQuery query = {drive.enclosureId, 1};
    Reply<EnclosureEntry, 1> reply = {};
    q5_getEnclosureInfo(hbaAddress(controller), 0, &query, &reply, sizeof reply);
    return reply.record[0].type;
}

static void printEnclosure(std::uint8_t type) {
    static const char* const typeLines[] = {
        nullptr,
        "Enclosure type : Traybox 400",
        "Enclosure type : Traybox 100",
        "Enclosure type : OEM-A",
        "Enclosure type : OEM-B",
        "Enclosure type : OEM-C",
        "Enclosure type : Traybox 400R",
    };
    if (type == kNoEnclosure || type >= std::size(typeLines)) {
        std::puts("Enclosure existed : No");
        return;
    }
    std::puts("Enclosure existed : Yes");
    std::puts(typeLines[type]);
}

static bool readLocateState(std::uint32_t controller, std::uint16_t drive) {
    std::uint8_t state = 0;
    q5_getPhyDrvLocateStatus(hbaAddress(controller), 0, drive, &state);
    return state != 0;
}

static void printSettings(const PhyDrvSettings& settings) {
    std::printf("Disk write cache mode : %s\n", enabledText(settings.writeCache));
    std::printf("Smart check : %s\n", enabledText(settings.smartCheck));
    if (settings.ncqSupported != 0)
        std::printf("NCQ is %s\n", enabledText(settings.ncqEnabled));
    else
        std::puts("NCQ feature is not supported");
    if (settings.tcqSupported != 0)
        std::printf("TCQ is %s\n", enabledText(settings.tcqEnabled));
    else
        std::puts("TCQ feature is not supported");
}

static void showDrive(std::uint32_t controller, const PhyDrvInfo& drive) {
    const PhyDrvSettings settings = readSettings(controller, drive.driveId).record[0];
    const MediaPatrolProgress patrol = readMediaPatrol(controller, drive.driveId);
    const std::uint8_t enclosureType = readEnclosureType(controller, drive);
    const bool blinking = readLocateState(controller, drive.driveId);

    printDrive(drive);
    printMediaPatrol(patrol);
    printEnclosure(enclosureType);
    std::printf("Number of extents : %d\n", drive.extentCount);
    if (settings.pdId == drive.driveId)
        printSettings(settings);
    std::printf("Current Locate Status : %s\n", blinking ? "On" : "Off");
}

int ListPhyDrvInfo(int wordCount, char** words) {
    ListingArgs listing;
    if (const int result = parseListingArgs(wordCount, words, &listing))
        return result;
    DriveReply reply;
    if (!queryDrives(listing, &reply)) {
        std::printf("Disk with ID %d in controller #%d is not existed\n", static_cast<int>(listing.first),
                    static_cast<int>(listing.controller));
        return Result::notFound;
    }
    if (!listing.verbose)
        std::printf("%2s %2s %12s %22s %21s %10s\n", "ID", "CH", "Size", "Model", "Serial", "F/W");
    for (const PhyDrvInfo& drive : records(reply)) {
        if (listing.verbose)
            showDrive(listing.controller, drive);
        else
            printRow(drive);
    }
    return Result::done;
}

static std::uint8_t* settingField(PhyDrvSettings* settings, const char* item) {
    if (itemContains(item, "writecache"))
        return &settings->writeCache;
    if (itemContains(item, "ncq"))
        return &settings->ncqEnabled;
    if (itemContains(item, "tcq"))
        return &settings->tcqEnabled;
    return nullptr;
}

static ItemResult changeSetting(PhyDrvSettings* settings, const char* item) {
    std::uint8_t* field = settingField(settings, item);
    return field != nullptr ? parseSwitch(item, field) : abortItems("Invalid parameters for \"phydrv\"!");
}

int SetPhyDrvSettings(int wordCount, char** words) {
    if (wordCount != 9)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a mod\" defined");
    std::uint32_t controller = 0, drive = 0;
    const Option options[] = {
        driveOption("-p", "physical drive ID", &drive),
        numberOption("-i", "controller ID", &controller, Result::badId),
        ignoredOption("-s"),
    };
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;

    SettingsReply reply = readSettings(controller, drive);
    // Compatibility: the settings text is always the last word, wherever "-s" is.
    if (const int result = applyItems(words[8], &reply.record[0], changeSetting, "Incorrect parameters!"))
        return result;
    const PhyDrvSelector selector = {drive, 1, 1, {}};
    q5_setPhyDrvSettings(hbaAddress(controller), 0, &selector, &reply, sizeof reply);
    return Result::done;
}

int LocatePhyDrv(int wordCount, char** words) {
    if (wordCount != 9)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a locate\" defined");
    std::uint32_t controller = 0, drive = 0, seconds = 0;
    const Option options[] = {
        driveOption("-p", "physical drive ID", &drive),
        numberOption("-i", "controller ID", &controller, Result::badId),
        numberOption("-d", "duration", &seconds, Result::badValue),
    };
    if (const int result = readOptions(wordCount, words, 3, options, "Invalid parameters defined"))
        return result;

    const auto driveId = static_cast<std::uint16_t>(drive);
    if (seconds != 0)
        q5_locatePhyDrv(hbaAddress(controller), 0, driveId, seconds);
    else
        q5_stopLocatePhyDrv(hbaAddress(controller), 0, driveId);
    return Result::done;
}

int WipePhyDrvMDD(int wordCount, char** words) {
    if (wordCount != 7)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a wipe\" defined");
    std::uint32_t controller = 0, drive = 0;
    const Option options[] = {
        driveOption("-p", "disk ID", &drive),
        numberOption("-i", "controller ID", &controller, Result::badId),
    };
    if (const int result =
            readOptions(wordCount, words, 3, options, "Invalid subcommand for \"phydrv -a wipe\" defined"))
        return result;

    const DriveSelector selector = {drive, 1};
    if (q5_removeHBADiskMDD(hbaAddress(controller), 0, &selector) != 0) {
        std::printf("Failed to wipe the reserved sector of disk with ID %d in controller #%d!\n",
                    static_cast<int>(drive), static_cast<int>(controller));
        return Result::refused;
    }
    return Result::done;
}
