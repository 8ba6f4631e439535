// Settings of physical drives, their configuration sectors and the 3 Gb/s option.
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

using namespace q5sim;

static PhyDrvSettings settingsOf(const Drive& drive) {
    PhyDrvSettings settings = {};
    settings.pdId = drive.id;
    settings.writeCache = drive.writeCache;
    settings.smartCheck = drive.smartCheck;
    settings.tcqSupported = drive.tcqSupported;
    settings.ncqSupported = drive.ncqSupported;
    settings.tcqEnabled = drive.tcqEnabled;
    settings.ncqEnabled = drive.ncqEnabled;
    return settings;
}

int q5_getPhyDrvSettings(HbaAddress address, std::uint32_t reserved, const PhyDrvSelector* selector,
                         void* reply, std::uint32_t size) {
    const std::size_t needed = sizeof(ReplyHeader) + sizeof(PhyDrvSettings);
    return fillReply(address, reserved, reply, size, needed, [&](const Controller& controller, std::int64_t) {
        if (selector == nullptr || selector->count < 1 ||
            (selector->count == 1 && findDrive(controller, selector->driveId) == nullptr))
            return refuse("drive settings: there is no such drive");
        RecordList list(reply, size);
        std::uint32_t left = selector->count;
        for (const Drive& drive : controller.drives)
            if (left > 0 && isWanted(drive.id, selector->driveId, selector->count)) {
                if (!list.add(settingsOf(drive)))
                    break;
                left--;
            }
        return kDone;
    });
}

static bool areValidSettings(const PhyDrvSettings& settings, const Drive& drive) {
    const std::uint8_t flags[] = {settings.writeCache, settings.smartCheck, settings.tcqEnabled,
                                  settings.ncqEnabled};
    return settings.pdId == drive.id && !drive.failed &&
           std::all_of(std::begin(flags), std::end(flags), [](std::uint8_t flag) { return flag <= 1; }) &&
           (drive.tcqSupported || settings.tcqEnabled == 0) &&
           (drive.ncqSupported || settings.ncqEnabled == 0);
}

int q5_setPhyDrvSettings(HbaAddress address, std::uint32_t reserved, const PhyDrvSelector* selector,
                         const void* settings, std::uint32_t size) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        PhyDrvSettings wanted;
        if (selector == nullptr || selector->count != 1 || settings == nullptr ||
            size != sizeof(ReplyHeader) + sizeof wanted)
            return refuse("drive settings: the request is invalid");
        std::memcpy(&wanted, static_cast<const std::uint8_t*>(settings) + sizeof(ReplyHeader), sizeof wanted);
        Drive* drive = findDrive(controller, selector->driveId);
        if (drive == nullptr || !areValidSettings(wanted, *drive))
            return refuse("settings of drive %u: it is missing, failed, or does not support them",
                          selector->driveId + 1);
        const Drive before = *drive;
        drive->writeCache = wanted.writeCache != 0;
        drive->smartCheck = wanted.smartCheck != 0;
        drive->tcqEnabled = wanted.tcqEnabled != 0;
        drive->ncqEnabled = wanted.ncqEnabled != 0;
        if (*drive != before)
            addEvent(controller, now, "Drive %d: settings changed", drive->id + 1);
        return kDone;
    });
}

// A stale member can be wiped: its data is out of date.
static bool isMemberInUse(const Controller& controller, const Drive& drive, const Extent& extent) {
    const LogicalDrive* array = extent.use == kUseArray ? findArray(controller, extent.array) : nullptr;
    return array != nullptr && (!isStaleMember(*array, drive.id) || array->activity.kind == kRebuilding);
}

int q5_removeHBADiskMDD(HbaAddress address, std::uint32_t reserved, const DriveSelector* selector) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        Drive* drive = selector != nullptr ? findDrive(controller, selector->driveId) : nullptr;
        if (drive == nullptr || selector->count != 1 || drive->failed)
            return refuse("wiping: there is no such working drive");
        for (Extent& extent : drive->extents) {
            if (isMemberInUse(controller, *drive, extent))
                return refuse("wiping drive %d: it is a member of logical drive %d", drive->id + 1,
                              findArray(controller, extent.array)->logDrvId);
            extent.use = kUseFree;
            extent.array = kNoArray;
        }
        addEvent(controller, now, "Drive %d: configuration sectors cleared", drive->id + 1);
        return kDone;
    });
}

// Model and firmware of a drive, as in its record.
struct DriveKind {
    std::string model, firmware;
};

static DriveKind kindOf(const char* model, const char* firmware) {
    return {fieldText(model, sizeof PhyDrvInfo::model), fieldText(firmware, sizeof PhyDrvInfo::firmware)};
}

static bool isPresent(const Controller& controller, const DriveKind& kind) {
    return std::any_of(controller.drives.begin(), controller.drives.end(), [&](const Drive& drive) {
        return drive.model == kind.model && drive.firmware == kind.firmware;
    });
}

template <typename List>
static auto findOption(List& options, const DriveKind& kind) {
    return std::find_if(options.begin(), options.end(), [&](const SpeedOption& option) {
        return option.model == kind.model && option.firmware == kind.firmware;
    });
}

int q5_getDataTransferSpeed(HbaAddress address, std::uint32_t reserved, const char* model,
                            const char* firmware, int* setting, std::uint32_t size) {
    return fillReply(address, reserved, setting, size, sizeof *setting,
                     [&](const Controller& controller, std::int64_t) {
                         if (model == nullptr || firmware == nullptr)
                             return refuse("3 Gb/s option: the query is invalid");
                         const DriveKind kind = kindOf(model, firmware);
                         if (!isPresent(controller, kind))
                             return refuse("3 Gb/s option: there is no drive of this model and firmware");
                         const auto option = findOption(controller.speedOptions, kind);
                         *setting = option == controller.speedOptions.end() ? 0 : option->setting;
                         return kDone;
                     });
}

int q5_setDataTransferSpeed(HbaAddress address, std::uint32_t reserved, const char* model,
                            const char* firmware, const int* setting, std::uint32_t size) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (model == nullptr || firmware == nullptr || setting == nullptr || size != sizeof *setting)
            return refuse("3 Gb/s option: the request is invalid");
        const DriveKind kind = kindOf(model, firmware);
        if (!isPresent(controller, kind))
            return refuse("3 Gb/s option: there is no drive of this model and firmware");
        auto option = findOption(controller.speedOptions, kind);
        if (option == controller.speedOptions.end() && controller.speedOptions.size() >= kMaxSpeedOptions)
            return refuse("3 Gb/s option: there are too many already");
        if (option == controller.speedOptions.end())
            option = controller.speedOptions.insert(option, {kind.model, kind.firmware, 0});
        if (option->setting != *setting)
            addEvent(controller, now, "Drives %s %s: 3 Gb/s option set to %d", kind.model.c_str(),
                     kind.firmware.c_str(), *setting);
        option->setting = *setting;
        return kDone;
    });
}
