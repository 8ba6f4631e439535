// Listing physical drives, and their locate lights.
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"

using namespace q5sim;

// The usual translated geometry.
static constexpr std::uint16_t kHeads = 255;
static constexpr std::uint16_t kSectorsPerTrack = 63;

static PhyDrvInfo driveRecord(const Controller& controller, const Drive& drive) {
    PhyDrvInfo record = {};
    record.driveId = drive.id;
    record.channel = drive.channel;
    record.enclosureId = drive.enclosure;
    record.capacity = drive.sectors;
    record.cylinders = static_cast<std::int32_t>(
        std::min<std::uint64_t>(drive.sectors / (kHeads * kSectorsPerTrack), INT32_MAX));
    record.heads = kHeads;
    record.sectorsPerTrack = kSectorsPerTrack;
    putText(record.model, drive.model);
    putText(record.serial, drive.serial);
    putText(record.firmware, drive.firmware);
    record.dmaMode = drive.dmaMode;
    record.extentCount = static_cast<std::uint8_t>(drive.extents.size());
    for (std::size_t i = 0; i < drive.extents.size(); i++)
        record.extent[i] = extentEntry(controller, drive, i);
    return record;
}

int q5_getPhyDrvInfo(HbaAddress address, std::uint32_t reserved, const PhyDrvQuery* query, void* reply,
                     std::uint32_t size) {
    return fillReply(address, reserved, reply, size, sizeof(ReplyHeader),
                     [&](const Controller& controller, std::int64_t) {
                         if (query == nullptr || query->count < 1 || query->filter != kAllDrives)
                             return refuse("drives: the query is invalid");
                         RecordList list(reply, size);
                         std::uint32_t left = query->count;
                         for (const Drive& drive : controller.drives)
                             if (left > 0 && isWanted(drive.id, query->firstDriveId, query->count)) {
                                 if (!list.add(driveRecord(controller, drive)))
                                     break;
                                 left--;
                             }
                         return kDone;
                     });
}

int q5_getPhyDrvLocateStatus(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId,
                             std::uint8_t* state) {
    return fillReply(address, reserved, state, 1, 1, [&](const Controller& controller, std::int64_t now) {
        const Drive* drive = findDrive(controller, driveId);
        if (drive == nullptr)
            return refuse("locating: there is no drive %d", driveId + 1);
        *state = drive->locateUntil > now ? 1 : 0;
        return kDone;
    });
}

int q5_locatePhyDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId,
                    std::uint32_t seconds) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        Drive* drive = findDrive(controller, driveId);
        if (drive == nullptr || seconds == 0)
            return refuse("locating drive %d: there is no such drive, or no time is given", driveId + 1);
        drive->locateUntil = now + seconds;
        addEvent(controller, now, "Drive %d: locate light on for %u seconds", driveId + 1, seconds);
        return kDone;
    });
}

int q5_stopLocatePhyDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t driveId) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        Drive* drive = findDrive(controller, driveId);
        if (drive == nullptr)
            return refuse("locating: there is no drive %d", driveId + 1);
        if (drive->locateUntil > now)
            addEvent(controller, now, "Drive %d: locate light off", driveId + 1);
        drive->locateUntil = 0;
        return kDone;
    });
}
