// The phydrv actions set3G and list3G: the 3 Gb/s option, which the adapter stores for all drives with
// the same model and firmware.
//
// Compatibility: these two actions read numbers as atoi does.
#include <cstdio>

#include "adapter/phydrv.h"
#include "adapter/reply.h"
#include "commands/options.h"
#include "commands/phydrv.h"

namespace {
struct SpeedArgs {
    std::uint8_t controller;
    std::uint8_t drive; // from 0
    int setting;
};

// The model and firmware of a drive, always NUL-terminated.
struct DriveModel {
    char model[sizeof PhyDrvInfo::model + 1];
    char firmware[sizeof PhyDrvInfo::firmware + 1];
};
} // namespace

static int parseSpeedArgs(int wordCount, char** words, bool hasSetting, const char* errorMessage,
                          SpeedArgs* args) {
    std::uint32_t controller = 0, drive = 1, setting = 0;
    const Option options[] = {
        atoiOption("-p", &drive),
        atoiOption("-i", &controller),
        atoiOption("-e", &setting),
    };
    const std::span<const Option> accepted(options, hasSetting ? 3 : 2);
    if (const int result = readOptions(wordCount, words, 3, accepted, errorMessage))
        return result;
    args->controller = static_cast<std::uint8_t>(controller);
    args->drive = static_cast<std::uint8_t>(drive - 1);
    args->setting = static_cast<int>(setting);
    return Result::done;
}

static int lookupDriveModel(const SpeedArgs& args, DriveModel* driveModel) {
    const PhyDrvQuery query = {args.drive, 1, kAllDrives, {}};
    Reply<PhyDrvInfo, 1> reply = {};
    q5_getPhyDrvInfo(hbaAddress(args.controller), 0, &query, &reply, sizeof reply);
    if (records(reply).empty()) {
        std::printf("Disk %d is not existed!\n", args.drive);
        return Result::refused;
    }
    const PhyDrvInfo& drive = reply.record[0];
    std::snprintf(driveModel->model, sizeof driveModel->model, "%.*s", FIELD_PRINTF_ARGS(drive.model));
    std::snprintf(driveModel->firmware, sizeof driveModel->firmware, "%.*s",
                  FIELD_PRINTF_ARGS(drive.firmware));
    return Result::done;
}

int Set3GSpeed(int wordCount, char** words) {
    if (wordCount <= 6)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a set3G\" defined");
    SpeedArgs args = {};
    if (const int result = parseSpeedArgs(wordCount, words, true,
                                          "Invalid subcommand for \"phydrv -a set3G\" defined", &args))
        return result;
    DriveModel driveModel;
    if (const int result = lookupDriveModel(args, &driveModel))
        return result;

    if (q5_setDataTransferSpeed(hbaAddress(args.controller), 0, driveModel.model, driveModel.firmware,
                                &args.setting, sizeof args.setting) != 0) {
        std::printf("Failed to set the 3G setting for control %d disk %d\n", args.controller, args.drive);
        return Result::refused;
    }
    return Result::done;
}

int List3GSpeed(int wordCount, char** words) {
    if (wordCount <= 4)
        return fail(Result::badCount, "Invalid number of parameters for \"phydrv -a list3G\" defined");
    SpeedArgs args = {};
    if (const int result = parseSpeedArgs(wordCount, words, false,
                                          "Invalid subcommand for \"phydrv -a list3G\" defined", &args))
        return result;
    DriveModel driveModel;
    if (const int result = lookupDriveModel(args, &driveModel))
        return result;

    int setting = 0;
    if (q5_getDataTransferSpeed(hbaAddress(args.controller), 0, driveModel.model, driveModel.firmware,
                                &setting, sizeof setting) != 0) {
        std::printf("Failed to get the 3G setting for control %d disk %d\n", args.controller, args.drive);
        return Result::refused;
    }
    std::printf("3G option in control %d disk %d %s is %s.\n", args.controller, args.drive, driveModel.model,
                setting != 0 ? "on" : "off");
    return Result::done;
}
