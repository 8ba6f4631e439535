// Consistency checks of a world.
#include "simulator/world/world_check.h"

#include <algorithm>

#include "simulator/world/array_rules.h"

namespace q5sim {

static FieldPath below(FieldPath path, const char* list, std::size_t position) {
    path.emplace_back(list);
    path.push_back(std::to_string(position));
    return path;
}

static FieldPath below(FieldPath path, const char* key) {
    path.emplace_back(key);
    return path;
}

template <typename List, typename Field>
static void checkDistinct(const List& items, Field id, const FieldPath& path, const char* list,
                          const char* key) {
    for (std::size_t i = 0; i < items.size(); i++)
        for (std::size_t k = 0; k < i; k++)
            if (items[i].*id == items[k].*id)
                throw WorldError{below(below(path, list, i), key), "this ID is taken by an earlier entry"};
}

static bool contains(const std::vector<std::uint16_t>& members, std::uint16_t drive) {
    return std::find(members.begin(), members.end(), drive) != members.end();
}

// Whether the array lists the drive now or will after its rebuild or migration.
static bool isMember(const LogicalDrive& array, std::uint16_t drive) {
    const std::vector<RebuildTarget>& targets = array.activity.targets;
    return contains(array.members, drive) || contains(array.activity.goal.members, drive) ||
           std::any_of(targets.begin(), targets.end(),
                       [&](const RebuildTarget& target) { return target.drive == drive; });
}

static void checkUse(const Controller& controller, const Drive& drive, const Extent& extent,
                     const FieldPath& path) {
    if (extent.use > kUseForeign)
        throw WorldError{below(path, "use"), "this use of an extent is unknown"};
    if (extent.use == kUseFree || extent.use == kUseGlobalSpare) {
        if (extent.array != kNoArray)
            throw WorldError{below(path, "array"),
                             "only extents of arrays and dedicated spares name an array"};
        return;
    }
    if (extent.use == kUseForeign)
        return;
    const LogicalDrive* array = findArray(controller, extent.array);
    if (array == nullptr)
        throw WorldError{below(path, "array"), "there is no array with this ID"};
    if (extent.use == kUseArray && !isMember(*array, drive.id))
        throw WorldError{below(path, "array"), "the array does not list this drive among its members"};
    if (extent.use == kUseArray && extent.size < array->memberSectors)
        throw WorldError{below(path, "size"), "the extent is smaller than its array's memberSectors"};
}

static void checkBadSectors(const Drive& drive, const FieldPath& path) {
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < drive.badSectors.size(); i++) {
        const BadSectors& bad = drive.badSectors[i];
        if (bad.start < end || bad.start + bad.count > drive.sectors)
            throw WorldError{below(below(path, "badSectors", i), "start"),
                             "the bad sectors overlap the ones before or the drive's end"};
        end = bad.start + bad.count;
    }
}

// A pulled drive may have extents of arrays that are gone.
static void checkPulledDrive(const Drive& drive, const FieldPath& path) {
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < drive.extents.size(); i++) {
        const Extent& extent = drive.extents[i];
        const FieldPath here = below(path, "extents", i);
        if (extent.use > kUseForeign)
            throw WorldError{below(here, "use"), "this use of an extent is unknown"};
        if (extent.start < end || extent.start + extent.size > drive.sectors)
            throw WorldError{below(here, "start"),
                             "the extent overlaps the one before it or the drive's end"};
        end = extent.start + extent.size;
    }
    if (drive.patrol.state > kPatrolStopped)
        throw WorldError{below(below(path, "mediaPatrol"), "state"), "this state is unknown"};
    checkBadSectors(drive, path);
}

static void checkExtents(const Controller& controller, const Drive& drive, const FieldPath& path) {
    std::uint64_t end = 0;
    std::vector<std::uint16_t> arrays;
    for (std::size_t i = 0; i < drive.extents.size(); i++) {
        const Extent& extent = drive.extents[i];
        const FieldPath here = below(path, "extents", i);
        if (extent.start < end || extent.start + extent.size > drive.sectors)
            throw WorldError{below(here, "start"),
                             "the extent overlaps the one before it or the drive's end"};
        end = extent.start + extent.size;
        checkUse(controller, drive, extent, here);
        if (extent.use == kUseArray && contains(arrays, extent.array))
            throw WorldError{below(here, "array"), "the array has another extent on this drive"};
        if (extent.use == kUseArray)
            arrays.push_back(extent.array);
    }
}

static void checkMembers(const std::vector<std::uint16_t>& members, const FieldPath& path) {
    for (std::size_t i = 0; i < members.size(); i++)
        if (std::count(members.begin(), members.end(), members[i]) != 1)
            throw WorldError{below(path, "members", i), "the drive is listed twice"};
}

static void checkTargets(const LogicalDrive& array, const FieldPath& path) {
    const std::vector<RebuildTarget>& targets = array.activity.targets;
    for (std::size_t i = 0; i < targets.size(); i++)
        for (std::size_t k = 0; k < targets.size(); k++)
            if (targets[i].position >= array.members.size() ||
                (k != i &&
                 (targets[i].position == targets[k].position || targets[i].drive == targets[k].drive)))
                throw WorldError{below(path, "targets", i), "the rebuild's targets do not fit the members"};
}

static bool isKnownActivity(std::uint8_t kind) {
    static constexpr std::uint8_t kinds[] = {
        0, kRebuilding, kInitializing, kRedundancyChecking, kSynchronizing, kMigrating};
    return std::find(std::begin(kinds), std::end(kinds), kind) != std::end(kinds);
}

static void checkActivity(const LogicalDrive& array, const FieldPath& path) {
    const Activity& activity = array.activity;
    const FieldPath here = below(path, "activity");
    if (!isKnownActivity(activity.kind))
        throw WorldError{below(here, "kind"), "this activity is unknown"};
    checkTargets(array, here);
    checkMembers(activity.goal.members, below(here, "goal"));
    if (activity.kind != kRebuilding &&
        !activity.targets.empty()) // those of a captured rebuild can be unknown
        throw WorldError{below(here, "targets"), "only a rebuild has targets"};
    if (activity.completedMb > activity.totalMb)
        throw WorldError{below(here, "doneMb"), "more is done than there is to do"};
    const MigrationTarget& goal = activity.goal;
    const bool keepsMembers = goal.members.size() >= array.members.size() &&
                              std::equal(array.members.begin(), array.members.end(), goal.members.begin());
    const ArrayGeometry wanted = {goal.level, goal.members.size(), goal.parity, goal.subArrays};
    if (activity.kind == kMigrating &&
        (!keepsMembers || !isValidGeometry(wanted) || !isValidStripe(goal.stripe)))
        throw WorldError{below(here, "goal"), "no array can have this level, stripe and members"};
}

static void checkArray(const LogicalDrive& array, const FieldPath& path) {
    if (!isValidGeometry(geometryOf(array)))
        throw WorldError{below(path, "level"), "this level cannot have these members, parity and subArrays"};
    const std::size_t data = dataMembers(geometryOf(array));
    if (array.sectors > array.memberSectors * data)
        throw WorldError{below(path, "sectors"), "the members provide less space"};
    checkMembers(array.members, path);
    for (std::size_t i = 0; i < array.staleMembers.size(); i++)
        if (!contains(array.members, array.staleMembers[i]) ||
            std::count(array.staleMembers.begin(), array.staleMembers.end(), array.staleMembers[i]) != 1)
            throw WorldError{below(path, "staleMembers", i), "the drive is not a member, or is listed twice"};
    checkActivity(array, path);
}

// IDs ascend; after the last possible one they start again at 1.
static void checkEvents(const std::vector<Event>& events, const FieldPath& path) {
    for (std::size_t i = 1; i < events.size(); i++)
        if (events[i].id <= events[i - 1].id && events[i].id != 1)
            throw WorldError{below(below(path, "events", i), "id"), "the IDs of events must count up"};
}

static void checkController(const Controller& controller, const FieldPath& path) {
    checkDistinct(controller.enclosures, &Enclosure::id, path, "enclosures", "id");
    checkDistinct(controller.drives, &Drive::id, path, "drives", "id");
    checkDistinct(controller.logicalDrives, &LogicalDrive::arrayId, path, "logicalDrives", "arrayId");
    checkDistinct(controller.logicalDrives, &LogicalDrive::logDrvId, path, "logicalDrives", "logDrvId");
    for (std::size_t i = 0; i < controller.drives.size(); i++) {
        const Drive& drive = controller.drives[i];
        const FieldPath here = below(path, "drives", i);
        if (drive.patrol.state > kPatrolStopped)
            throw WorldError{below(below(here, "mediaPatrol"), "state"), "this state is unknown"};
        checkExtents(controller, drive, here);
        checkBadSectors(drive, here);
    }
    checkDistinct(controller.pulledDrives, &Drive::id, path, "pulledDrives", "id");
    checkDistinct(controller.pulledEnclosures, &Enclosure::id, path, "pulledEnclosures", "id");
    for (std::size_t i = 0; i < controller.pulledDrives.size(); i++)
        checkPulledDrive(controller.pulledDrives[i], below(path, "pulledDrives", i));
    for (std::size_t i = 0; i < controller.logicalDrives.size(); i++)
        checkArray(controller.logicalDrives[i], below(path, "logicalDrives", i));
    checkEvents(controller.events, path);
}

void checkWorld(const World& world) {
    for (std::size_t i = 0; i < world.controllers.size(); i++)
        checkController(world.controllers[i], below({}, "controllers", i));
}

} // namespace q5sim
