// The 3 Gb/s option of the phydrv command, set3G and list3G: the adapter keeps it for all drives of a
// model and firmware. Numbers are read leniently here, as these two actions always did.
#include <cstdio>

#include "adapter/phydrv.h"
#include "adapter/reply.h"
#include "commands/options.h"
#include "commands/phydrv.h"

namespace {
struct SpeedWords {
    std::uint8_t controller;
    std::uint8_t drive; // from 0
    int setting;
};

// The texts that name a drive's kind, terminated whatever the record held.
struct DriveKind {
    char model[sizeof PhyDrvInfo::model + 1];
    char firmware[sizeof PhyDrvInfo::firmware + 1];
};
} // namespace

static int readSpeedWords(int wordCount, char** words, bool settingTaken, const char* errorMessage,
                          SpeedWords* read) {
    std::uint32_t controller = 0, drive = 1, setting = 0;
    const Option options[] = {
        atoiOption("-p", &drive),
        atoiOption("-i", &controller),
        atoiOption("-e", &setting),
    };
    const std::span<const Option> taken(options, settingTaken ? 3 : 2);
    if (const int result = readOptions(wordCount, words, 3, taken, errorMessage))
        return result;
    read->controller = static_cast<std::uint8_t>(controller);
    read->drive = static_cast<std::uint8_t>(drive - 1);
    read->setting = static_cast<int>(setting);
    return Result::done;
}

static int findDriveKind(const SpeedWords& read, DriveKind* kind) {
    const PhyDrvQuery query = {read.drive, 1, kAllDrives, {}};
    Reply<PhyDrvInfo, 1> reply = {};
    q5_getPhyDrvInfo(hbaAddress(read.controller), 0, &query, &reply, sizeof reply);
    if (records(reply).empty()) {
        std::printf("Disk %d is not existed!\n", read.drive);
        return Result::refused;
    }
    const PhyDrvInfo& drive = reply.record[0];
    std::snprintf(kind->model, sizeof kind->model, "%.*s", FIELD_PRINTF_ARGS(drive.model));
    std::snprintf(kind->firmware, sizeof kind->firmware, "%.*s", FIELD_PRINTF_ARGS(drive.firmware));
    return Result::done;
}

int Set3GSpeed(int wordCount, char** words) {
    if (wordCount <= 6)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a set3G\" defined");
    SpeedWords read = {};
    if (const int result = readSpeedWords(wordCount, words, true,
                                          "Invalid subcommand for \"phydrv -a set3G\" defined", &read))
        return result;
    DriveKind kind;
    if (const int result = findDriveKind(read, &kind))
        return result;

    if (q5_setDataTransferSpeed(hbaAddress(read.controller), 0, kind.model, kind.firmware, &read.setting,
                                sizeof read.setting) != 0) {
        std::printf("Failed to set the 3G setting for control %d disk %d\n", read.controller, read.drive);
        return Result::refused;
    }
    return Result::done;
}

int List3GSpeed(int wordCount, char** words) {
    if (wordCount <= 4)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a list3G\" defined");
    SpeedWords read = {};
    if (const int result = readSpeedWords(wordCount, words, false,
                                          "Invalid subcommand for \"phydrv -a list3G\" defined", &read))
        return result;
    DriveKind kind;
    if (const int result = findDriveKind(read, &kind))
        return result;

    int setting = 0;
    if (q5_getDataTransferSpeed(hbaAddress(read.controller), 0, kind.model, kind.firmware, &setting,
                                sizeof setting) != 0) {
        std::printf("Failed to get the 3G setting for control %d disk %d\n", read.controller, read.drive);
        return Result::refused;
    }
    std::printf("3G option in control %d disk %d %s is %s.\n", read.controller, read.drive, kind.model,
                setting != 0 ? "on" : "off");
    return Result::done;
}
