// Listing logical drives, their lost members, and locating and activating them.
#include "adapter/creation.h"

#include "simulator/engine/cache.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"

using namespace q5sim;

static LogDrvInfo arrayRecord(const Controller& controller, const LogicalDrive& drive) {
    LogDrvInfo record = {};
    record.arrayId = drive.arrayId;
    record.raidLevel = drive.level;
    record.activityStatus = drive.activity.kind;
    record.functionalStatus = functionalStatus(controller, drive);
    record.writeCacheMode = effectiveCacheFlags(controller, drive) & kWritePolicyMask;
    record.sectorCount = drive.sectors;
    record.diskCount = static_cast<std::uint16_t>(drive.members.size());
    record.stripeBlocks = drive.stripe;
    record.logDrvId = drive.logDrvId;
    putText(record.name, drive.name);
    for (std::size_t i = 0; i < drive.members.size(); i++)
        record.memberIds[i] = static_cast<std::uint8_t>(drive.members[i]);
    record.parityCount = drive.parity;
    record.symmetric = drive.symmetric;
    record.shift = drive.shift;
    record.subArrayCount = drive.subArrays;
    record.sectorSize = drive.sectorSize;
    return record;
}

int q5_getLogDrvInfo(HbaAddress address, std::uint32_t reserved, const LogDrvQuery* query, void* reply,
                     std::uint32_t size) {
    return fillReply(address, reserved, reply, size, sizeof(ReplyHeader),
                     [&](const Controller& controller, std::int64_t) {
                         if (query == nullptr || query->count < 1)
                             return refuse("logical drives: the query is invalid");
                         RecordList list(reply, size);
                         std::uint32_t left = query->count;
                         for (const LogicalDrive& drive : controller.logicalDrives)
                             if (left > 0 && isWanted(drive.logDrvId, query->logDrvId, query->count)) {
                                 if (!list.add(arrayRecord(controller, drive)))
                                     break;
                                 left--;
                             }
                         return kDone;
                     });
}

int q5_getAryLostDisk(HbaAddress address, std::uint32_t reserved, std::uint8_t logDrvId,
                      std::uint32_t* lostMask) {
    return fillReply(address, reserved, lostMask, sizeof *lostMask, sizeof *lostMask,
                     [&](const Controller& controller, std::int64_t) {
                         const LogicalDrive* drive = findLogicalDrive(controller, logDrvId);
                         if (drive == nullptr)
                             return refuse("lost members: there is no logical drive %d", logDrvId);
                         for (std::size_t position : lostMembers(controller, *drive))
                             *lostMask |= std::uint32_t{1} << drive->members[position];
                         return kDone;
                     });
}

static int setMemberLights(const Caller& caller, std::uint32_t reserved, std::uint16_t logDrvId,
                           std::uint32_t seconds) {
    return updateController(caller, reserved, [&](Controller& controller, std::int64_t now) {
        const LogicalDrive* array = findLogicalDrive(controller, logDrvId);
        if (array == nullptr)
            return refuse("locating: there is no logical drive %d", logDrvId);
        bool changed = seconds > 0;
        for (std::uint16_t member : array->members)
            if (Drive* drive = findDrive(controller, member)) {
                changed = changed || drive->locateUntil > now;
                drive->locateUntil = seconds > 0 ? now + seconds : 0;
            }
        if (changed)
            addEvent(controller, now, "Logical drive %d: locate lights %s", logDrvId,
                     seconds > 0 ? "on" : "off");
        return kDone;
    });
}

int q5_locateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t logDrvId,
                    std::uint32_t seconds) {
    return seconds > 0 ? setMemberLights(address, reserved, logDrvId, seconds) : kRefused;
}

int q5_stopLocateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t logDrvId) {
    return setMemberLights(address, reserved, logDrvId, 0);
}

int q5_activateLogDrv(HbaAddress address, std::uint32_t reserved, std::uint16_t arrayId) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        LogicalDrive* drive = findArray(controller, arrayId);
        if (drive == nullptr)
            return refuse("activation: there is no logical drive with array ID %d", arrayId);
        if (drive->active)
            return refuse("activation: logical drive %d is active already", drive->logDrvId);
        drive->active = true;
        addEvent(controller, now, "Logical drive %d activated", drive->logDrvId);
        if (functionalStatus(controller, *drive) == 0)
            return refuse("activation of logical drive %d: too many members are lost", drive->logDrvId);
        return kDone;
    });
}
