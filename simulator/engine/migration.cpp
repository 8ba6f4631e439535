// The end of a migration: another level, stripe size or more members take effect, or none of it does.
#include <algorithm>

#include "simulator/engine/activities.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"

namespace q5sim {

void finishMigration(LogicalDrive& array) {
    const std::size_t before = dataMembers(geometryOf(array));
    const MigrationTarget goal = array.activity.goal;
    array.level = goal.level;
    array.stripe = goal.stripe;
    array.parity = goal.parity;
    array.subArrays = goal.subArrays;
    array.members = goal.members;
    if (dataMembers(geometryOf(array)) != before)
        array.sectors = array.memberSectors * dataMembers(geometryOf(array));
    array.synchronized = true;
    array.activity = {};
}

void abortMigration(Controller& controller, LogicalDrive& array) {
    for (std::uint16_t member : array.activity.goal.members) {
        const bool old = std::find(array.members.begin(), array.members.end(), member) != array.members.end();
        Drive* drive = findDrive(controller, member);
        if (!old && drive != nullptr)
            freeMemberExtent(*drive, array.arrayId);
    }
    array.activity = {};
}

} // namespace q5sim
