#include "tests/simulator/random_world.h"

#include <algorithm>
#include <random>

#include "simulator/engine/activities.h"
#include "simulator/engine/fault_injection.h"
#include "simulator/world/array_rules.h"
#include "simulator/world/bad_sectors.h"
#include "simulator/world/extent_alloc.h"

using namespace q5sim;

namespace {
struct Dice {
    std::mt19937 random;
    std::uint32_t serials = 0;
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); }
    bool chance(std::uint32_t percent) { return below(100) < percent; }
};

struct Shape {
    RaidLevel level;
    std::uint32_t minMembers, maxMembers;
};
} // namespace

static constexpr Shape shapes[] = {{kRaid0, 1, 4},  {kRaid1, 2, 2},  {kRaid5, 3, 5}, {kJbod, 1, 1},
                                   {kRaid10, 4, 4}, {kRaid50, 6, 6}, {kRaidMf, 3, 5}};

static Drive randomDrive(Dice& dice, std::uint16_t id, bool enclosed) {
    Drive drive;
    drive.id = drive.channel = id;
    drive.enclosure = enclosed ? 0 : kNoEnclosureId;
    drive.sectors = (500 + dice.below(4000)) * kSectorsPerMb + dice.below(kSectorsPerMb);
    drive.model = "MODEL" + std::to_string(dice.below(2));
    drive.serial = "S" + std::to_string(++dice.serials);
    drive.firmware = "F1";
    drive.smartFailure = dice.chance(10);
    drive.extents = {{kUseFree, kNoArray, 0, drive.sectors}};
    for (std::uint32_t i = dice.chance(40) ? dice.below(5) : 0; i > 0; i--)
        addBadSectors(drive, dice.random() % drive.sectors, 1 + dice.below(3000));
    if (dice.chance(20))
        drive.patrol.state = kPatrolRunning;
    return drive;
}

// Drives with enough free space, in random order.
static std::vector<Drive*> freeDrives(Dice& dice, Controller& controller, std::uint64_t sectors) {
    std::vector<Drive*> found;
    for (Drive& drive : controller.drives)
        if (bestFitFreeExtent(drive, sectors) != kNoExtent)
            found.push_back(&drive);
    std::shuffle(found.begin(), found.end(), dice.random);
    return found;
}

static void randomizeState(Dice& dice, Controller& controller, LogicalDrive& array, std::int64_t now) {
    array.active = dice.chance(90);
    array.idle = dice.chance(15);
    array.synchronized = dice.chance(70) || !isRedundant(array.level);
    array.inconsistencies = dice.chance(20) ? dice.below(20) : 0;
    array.cacheFlags = static_cast<std::uint8_t>(dice.below(4));
    if (isRedundant(array.level) && dice.chance(15))
        array.staleMembers = {array.members[dice.below(static_cast<std::uint32_t>(array.members.size()))]};
    if (dice.chance(20))
        startInitialization(controller, array, static_cast<std::uint8_t>(1u << dice.below(3)), now);
    else if (isRedundant(array.level) && dice.chance(30))
        startActivity(array, dice.chance(50) ? kSynchronizing : kRedundancyChecking,
                      array.memberSectors / kSectorsPerMb, now);
    array.activity.paused = array.activity.kind != 0 && dice.chance(20);
}

static void addArray(Dice& dice, Controller& controller, std::int64_t now) {
    const Shape& shape = shapes[dice.below(static_cast<std::uint32_t>(std::size(shapes)))];
    const std::uint32_t count = shape.minMembers + dice.below(shape.maxMembers - shape.minMembers + 1);
    LogicalDrive array;
    array.arrayId = array.logDrvId = static_cast<std::uint16_t>(controller.logicalDrives.size());
    array.name = "random";
    array.level = shape.level;
    array.parity = shape.level == kRaidMf ? static_cast<std::uint8_t>(1 + dice.below(2)) : std::uint8_t{0};
    array.subArrays = shape.level == kRaid50 ? 2 : 0;
    array.memberSectors = (100 + dice.below(900)) * kSectorsPerMb;
    const std::vector<Drive*> drives = freeDrives(dice, controller, array.memberSectors);
    if (drives.size() < count)
        return;
    for (std::size_t i = 0; i < count; i++) {
        array.members.push_back(drives[i]->id);
        allocateExtent(controller, *drives[i], bestFitFreeExtent(*drives[i], array.memberSectors),
                       array.memberSectors, array.arrayId);
    }
    array.sectors = array.memberSectors * dataMembers(geometryOf(array));
    randomizeState(dice, controller, array, now);
    controller.logicalDrives.push_back(array);
}

// Turns some of the free space into spares and foreign extents.
static void useFreeExtents(Dice& dice, Controller& controller) {
    const auto arrays = static_cast<std::uint32_t>(controller.logicalDrives.size());
    for (Drive& drive : controller.drives)
        for (Extent& extent : drive.extents) {
            if (extent.use != kUseFree || !dice.chance(40))
                continue;
            const std::uint32_t use = dice.below(5);
            if (use < 2)
                extent.use = kUseGlobalSpare;
            else if (use < 4 && arrays > 0)
                extent = {kUseDedicatedSpare, static_cast<std::uint16_t>(dice.below(arrays)), extent.start,
                          extent.size};
            else if (use == 4)
                extent = {kUseForeign, static_cast<std::uint16_t>(dice.below(8)), extent.start, extent.size};
        }
}

static void breakDrives(Dice& dice, Controller& controller, std::int64_t now) {
    for (std::uint16_t id = 0; id < kRandomDrives; id++)
        if (dice.chance(6))
            failDrive(controller, id);
        else if (dice.chance(5))
            pullDrive(controller, id, now);
        else if (dice.chance(3))
            std::erase_if(controller.drives, [&](const Drive& drive) { return drive.id == id; });
}

static Controller randomController(Dice& dice, std::int64_t now) {
    Controller controller;
    controller.autoRebuild = dice.chance(50);
    controller.rebuildOnError = dice.chance(50) ? kSkipOnError : kAbortOnError;
    controller.maxExtentsPerDisk = static_cast<std::uint16_t>(dice.chance(80) ? kMaxExtents : 3);
    controller.rates.rebuild = static_cast<std::uint8_t>(1 + dice.below(255));
    const bool enclosed = dice.chance(50);
    if (enclosed)
        controller.enclosures = {
            {0, kTraybox100, {{kFanSensor, static_cast<std::int32_t>(dice.below(3000))}}}};
    for (std::uint16_t id = 0; id < kRandomDrives; id++)
        if (dice.chance(85))
            controller.drives.push_back(randomDrive(dice, id, enclosed && dice.chance(80)));
    for (std::uint32_t i = dice.below(5); i > 0; i--)
        addArray(dice, controller, now);
    useFreeExtents(dice, controller);
    breakDrives(dice, controller, now);
    if (dice.chance(60))
        setBattery(controller, static_cast<std::uint8_t>(dice.below(6)), now);
    return controller;
}

World randomWorld(std::uint32_t seed, std::int64_t now) {
    Dice dice = {std::mt19937(seed), 0};
    World world;
    for (std::uint32_t count = 1 + dice.below(3); count > 0; count--)
        world.controllers.push_back(randomController(dice, now));
    return world;
}
