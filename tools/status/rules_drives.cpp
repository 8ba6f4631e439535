// Rules about single drives.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

template <typename Apply>
static void forEachDrive(Evaluation* evaluation, Apply apply) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        for (const Drive& drive : controller.drives)
            apply(controller, drive);
}

static std::string placeOf(const Drive& drive) {
    return "; " + placeText(drive);
}

void findSmartFailures(Evaluation* evaluation) {
    forEachDrive(evaluation, [&](const Controller& controller, const Drive& drive) {
        const auto all = extents(drive.info);
        if (std::any_of(all.begin(), all.end(),
                        [](const ExtentEntry& extent) { return (extent.access & kExtentSmartFailed) != 0; }))
            addFinding(evaluation, objectOf(controller, drive),
                       "predicts its failure (SMART)" + placeOf(drive));
    });
}

void findPatrolErrors(Evaluation* evaluation) {
    forEachDrive(evaluation, [&](const Controller& controller, const Drive& drive) {
        if (drive.patrol && drive.patrol->errorCount > evaluation->limits.patrolErrors)
            addFinding(evaluation, objectOf(controller, drive),
                       "media patrol found " + counted(drive.patrol->errorCount, "error") + placeOf(drive));
    });
}

static bool isLostBy(const LogicalDrive* array, const Drive& drive) {
    return array != nullptr &&
           std::any_of(array->members.begin(), array->members.end(),
                       [&](const Member& member) { return member.lost && member.number == drive.number; });
}

// A lost member is already a finding.
static void findInaccessibleMember(Evaluation* evaluation, const Controller& controller, const Drive& drive) {
    for (const ExtentEntry& extent : extents(drive.info)) {
        const LogicalDrive* array = findArray(controller, extent.arrayId);
        if ((extent.assignment & kExtentAssigned) == 0 || isAccessible(extent) || isLostBy(array, drive))
            continue;
        const std::string owner = array != nullptr ? shortObjectText(objectOf(controller, *array))
                                                   : "array " + std::to_string(extent.arrayId);
        addFinding(evaluation, objectOf(controller, drive),
                   "cannot be accessed, but belongs to " + owner + placeOf(drive));
        return;
    }
}

void findInaccessibleDrives(Evaluation* evaluation) {
    forEachDrive(evaluation, [&](const Controller& controller, const Drive& drive) {
        findInaccessibleMember(evaluation, controller, drive);
    });
}

void findInaccessibleSpares(Evaluation* evaluation) {
    forEachDrive(evaluation, [&](const Controller& controller, const Drive& drive) {
        const auto all = extents(drive.info);
        if (std::any_of(all.begin(), all.end(),
                        [](const ExtentEntry& extent) { return isSpare(extent) && !isAccessible(extent); }))
            addFinding(evaluation, objectOf(controller, drive),
                       "is a spare, but cannot be accessed" + placeOf(drive));
    });
}

static bool isInUse(const ExtentEntry& extent) {
    return (extent.assignment & kExtentAssigned) != 0 || isSpare(extent);
}

// Other rules report the drive if what cannot be accessed is in use. A failed drive whose place a spare has
// taken has no other trace.
static bool isFailedUnused(const Drive& drive) {
    const auto all = extents(drive.info);
    return std::any_of(all.begin(), all.end(), [](const ExtentEntry& each) { return !isAccessible(each); }) &&
           std::none_of(all.begin(), all.end(),
                        [](const ExtentEntry& each) { return !isAccessible(each) && isInUse(each); });
}

void findInaccessibleUnused(Evaluation* evaluation) {
    forEachDrive(evaluation, [&](const Controller& controller, const Drive& drive) {
        if (isFailedUnused(drive))
            addFinding(evaluation, objectOf(controller, drive),
                       (isInaccessible(drive) ? "cannot be accessed, and no logical drive uses it"
                                              : "has unused space that cannot be accessed") +
                           placeOf(drive));
    });
}
