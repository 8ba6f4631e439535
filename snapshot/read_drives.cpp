// Reading a controller's drives, page by page, and what belongs to each of them.
#include "snapshot/read.h"

static std::optional<std::uint8_t> readLocate(const Reading& reading, const PhyDrvInfo& info) {
    Guarded<std::uint8_t> reply;
    const bool done = readRecord<q5_getPhyDrvLocateStatus>(reading.faults, &reply, [&](std::uint8_t* state) {
        return callReadOnly<q5_getPhyDrvLocateStatus>(reading.address, 0u, info.driveId, state);
    });
    return done ? std::optional(reply.record) : std::nullopt;
}

// The option applies to all drives of this model and firmware; the operation reads both as C strings.
static std::optional<std::int32_t> readSpeed(const Reading& reading, const PhyDrvInfo& info) {
    const std::string model(fieldText(info.model));
    const std::string firmware(fieldText(info.firmware));
    Guarded<int> reply;
    const bool done = readRecord<q5_getDataTransferSpeed>(reading.faults, &reply, [&](int* setting) {
        return callReadOnly<q5_getDataTransferSpeed>(reading.address, 0u, model.c_str(), firmware.c_str(),
                                                     setting, static_cast<std::uint32_t>(sizeof *setting));
    });
    return done ? std::optional<std::int32_t>(reply.record) : std::nullopt;
}

// Settings with the ID of another drive are not used.
static std::optional<PhyDrvSettings> readSettings(const Reading& reading, const PhyDrvInfo& info) {
    const PhyDrvSelector selector = {info.driveId, 1, 1, {}};
    const auto settings = readOne<q5_getPhyDrvSettings, PhyDrvSettings>(reading, selector);
    if (!settings || settings->pdId == info.driveId)
        return settings;
    addFault<q5_getPhyDrvSettings>(reading.faults, FaultKind::foreign, settings->pdId);
    return std::nullopt;
}

static Drive readDrive(const HbaAddress& address, const PhyDrvInfo& info) {
    Drive drive;
    drive.number = info.driveId + 1u;
    drive.info = info;
    const Reading reading = {address, &drive.faults};
    if (info.extentCount > kMaxExtents)
        addFault<q5_getPhyDrvInfo>(&drive.faults, FaultKind::impossible, info.extentCount);
    drive.settings = readSettings(reading, info);
    const DriveSelector patrolled = {info.driveId, 1};
    drive.patrol = readReply<q5_getHBAMediaPatrolProgress, MediaPatrolProgress>(reading, patrolled);
    drive.locate = readLocate(reading, info);
    drive.speed3Gb = readSpeed(reading, info);
    return drive;
}

// Adds the drives of one page. Returns whether the listing made progress: an ID that is not higher than
// the previous one means that the adapter ignores the requested first ID.
static bool addPage(Controller* controller, const std::vector<PhyDrvInfo>& page) {
    for (const PhyDrvInfo& info : page) {
        if (controller->drives.size() >= kMaxSnapshotDrives)
            return false;
        if (!controller->drives.empty() && info.driveId + 1u <= controller->drives.back().number) {
            addFault<q5_getPhyDrvInfo>(&controller->faults, FaultKind::repeated, info.driveId);
            return false;
        }
        controller->drives.push_back(readDrive(hbaAddress(controller->id), info));
    }
    return true;
}

static std::optional<std::vector<PhyDrvInfo>> readPage(Controller* controller, std::uint32_t first,
                                                       bool expected) {
    Faults faults;
    const PhyDrvQuery query = {first, kMaxDrives, kAllDrives, {}};
    auto page =
        readList<q5_getPhyDrvInfo, PhyDrvInfo, kMaxDrives>({hbaAddress(controller->id), &faults}, query);
    for (const Fault& fault : faults)
        if (expected || fault.kind != FaultKind::refused)
            controller->faults.push_back(fault);
    return page;
}

// A listing requests 16 drives. The next one starts after the last ID seen, until the controller's own
// count is reached and a page was not full. Past that count, a refusal only says that no drive is left.
void readDrives(Controller* controller) {
    const std::size_t reported = controller->info ? controller->info->diskCount : 0;
    std::uint32_t first = 0;
    while (first < kMaxSnapshotDrives) {
        const bool expected = controller->drives.empty() || controller->drives.size() < reported;
        const auto page = readPage(controller, first, expected);
        if (!page || !addPage(controller, *page))
            return;
        if (page->size() < kMaxDrives && controller->drives.size() >= reported)
            return;
        first = page->empty() ? first + kMaxDrives : controller->drives.back().number;
    }
}
