// Settings of logical drives.
#include "adapter/logdrv.h"

#include "simulator/operations/operation.h"

using namespace q5sim;

static LogDrvSettings settingsOf(const LogicalDrive& drive) {
    LogDrvSettings settings = {};
    settings.cacheFlags = drive.cacheFlags;
    putText(settings.name, drive.name);
    settings.consolidation = drive.consolidation;
    settings.lookahead = drive.lookahead;
    return settings;
}

int q5_getLogDrvSettings(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query, void* reply,
                         std::uint32_t size) {
    const std::size_t needed = sizeof(ReplyHeader) + sizeof(LogDrvSettings);
    return fillReply(address, reserved, reply, size, needed, [&](const Controller& controller, std::int64_t) {
        if (query == nullptr || query->count < 1 ||
            (query->count == 1 && findLogicalDrive(controller, query->logDrvId) == nullptr))
            return refuse("settings: there is no such logical drive");
        RecordList list(reply, size);
        std::uint32_t left = query->count;
        for (const LogicalDrive& drive : controller.logicalDrives)
            if (left > 0 && isWanted(drive.logDrvId, query->logDrvId, query->count)) {
                if (!list.add(settingsOf(drive)))
                    break;
                left--;
            }
        return kDone;
    });
}

// The name field is shorter than the names of arrays: a name written back as it was read is kept whole.
static void applySettings(LogicalDrive& drive, const LogDrvSettings& settings) {
    const LogDrvSettings before = settingsOf(drive);
    if (std::memcmp(before.name, settings.name, sizeof before.name) != 0)
        drive.name = fieldText(settings.name, sizeof settings.name - 1);
    drive.cacheFlags = settings.cacheFlags;
    drive.consolidation = settings.consolidation != 0;
    drive.lookahead = settings.lookahead;
}

int q5_setLogDrvSettings(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query,
                         const void* settings, std::uint32_t size) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        LogDrvSettings wanted;
        if (query == nullptr || query->count != 1 || settings == nullptr ||
            size != sizeof(ReplyHeader) + sizeof wanted)
            return refuse("settings of a logical drive: the request is invalid");
        std::memcpy(&wanted, static_cast<const std::uint8_t*>(settings) + sizeof(ReplyHeader), sizeof wanted);
        LogicalDrive* drive = findLogicalDrive(controller, query->logDrvId);
        if (drive == nullptr)
            return refuse("settings: there is no logical drive %u", query->logDrvId);
        const LogicalDrive before = *drive;
        applySettings(*drive, wanted);
        if (*drive != before)
            addEvent(controller, now, "Logical drive %d: settings changed", drive->logDrvId);
        return kDone;
    });
}
