// The operation that starts a migration.
#include "adapter/activity.h"
#include "simulator/engine/activities.h"
#include "simulator/operations/operation.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

using namespace q5sim;

// What the array is after the requested migration, with the added members.
static MigrationTarget migrationTarget(const LogicalDrive& array, const MigrateRequest& request) {
    MigrationTarget goal;
    goal.level = static_cast<std::uint8_t>(request.raidLevel);
    goal.stripe = request.stripeSize != 0 ? request.stripeSize : array.stripe;
    goal.parity = goal.level == kRaidMf ? request.parityCount : std::uint8_t{0};
    goal.subArrays = goal.level == kRaid50 ? request.subArrayCount : std::uint8_t{0};
    goal.members = array.members;
    for (std::size_t i = 0; i < request.memberCount; i++)
        goal.members.push_back(static_cast<std::uint16_t>(request.member[i].driveId));
    return goal;
}

static bool isChange(const LogicalDrive& array, const MigrationTarget& goal) {
    return goal.level != array.level || goal.stripe != array.stripe || goal.members != array.members ||
           goal.parity != array.parity || goal.subArrays != array.subArrays;
}

static bool hasTwice(const std::vector<std::uint16_t>& members) {
    for (std::size_t i = 0; i < members.size(); i++)
        if (std::count(members.begin(), members.end(), members[i]) != 1)
            return true;
    return false;
}

// The existing data must fit, and something must change.
static bool isValidMigration(const LogicalDrive& array, const MigrationTarget& goal) {
    const ArrayGeometry geometry = {goal.level, goal.members.size(), goal.parity, goal.subArrays};
    return goal.level != kJbod && isValidGeometry(geometry) && isValidStripe(goal.stripe) &&
           !hasTwice(goal.members) && array.sectors <= array.memberSectors * dataMembers(geometry) &&
           isChange(array, goal);
}

static bool allocateMember(Controller& controller, const LogicalDrive& array, const RequestMember& member) {
    Drive* drive = findDrive(controller, member.driveId);
    if (drive == nullptr || drive->failed || member.extent >= drive->extents.size())
        return false;
    const Extent& extent = drive->extents[member.extent];
    if (extent.use != kUseFree || extent.size < array.memberSectors || holdsExtentOf(*drive, array.arrayId))
        return false;
    allocateExtent(controller, *drive, member.extent, array.memberSectors, array.arrayId);
    return true;
}

int q5_migrateHBAArray(HbaAddress address, std::uint32_t reserved, const MigrateRequest* request) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (request == nullptr || request->memberCount > kMaxTypedMembers || request->raidLevel > 255)
            return refuse("migration: the request is invalid");
        LogicalDrive* array = findLogicalDrive(controller, request->logDrvId);
        if (array == nullptr)
            return refuse("migration: there is no logical drive %d", request->logDrvId);
        if (array->activity.kind != 0 || functionalStatus(controller, *array) != kOnline)
            return refuse("migration of logical drive %d: it has another activity or is not online",
                          array->logDrvId);
        for (std::size_t i = 0; i < request->memberCount; i++)
            if (request->member[i].driveId > kMaxDriveId)
                return refuse("migration: there is no drive %u", request->member[i].driveId + 1);
        const MigrationTarget goal = migrationTarget(*array, *request);
        if (!isValidMigration(*array, goal))
            return refuse("migration of logical drive %d: the level cannot have these members, the data does "
                          "not fit, or nothing changes",
                          array->logDrvId);
        for (std::size_t i = 0; i < request->memberCount; i++)
            if (!allocateMember(controller, *array, request->member[i]))
                return refuse("migration: extent %u of drive %u is not free or too small",
                              request->member[i].extent, request->member[i].driveId + 1);
        startActivity(*array, kMigrating, array->memberSectors / kSectorsPerMb, now);
        array->activity.goal = goal;
        addEvent(controller, now, "Logical drive %d: migration from %s to %s started", array->logDrvId,
                 levelName(array->level), levelName(goal.level));
        return kDone;
    });
}
