// Random worlds: controllers, drives, arrays on them, and faults.
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
struct RandomSource {
    std::mt19937 engine;
    std::uint32_t serials = 0;
    std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(engine() % limit); }
    bool chance(std::uint32_t percent) { return below(100) < percent; }
};

struct Shape {
    RaidLevel level;
    std::uint32_t minMembers, maxMembers;
};
} // namespace

static constexpr Shape shapes[] = {{kRaid0, 1, 4},  {kRaid1, 2, 2},  {kRaid5, 3, 5}, {kJbod, 1, 1},
                                   {kRaid10, 4, 4}, {kRaid50, 6, 6}, {kRaidMf, 3, 5}};

static Drive randomDrive(RandomSource& random, std::uint16_t id, bool enclosed) {
    Drive drive;
    drive.id = drive.channel = id;
    drive.enclosure = enclosed ? 0 : kNoEnclosureId;
    drive.sectors = (500 + random.below(4000)) * kSectorsPerMb + random.below(kSectorsPerMb);
    drive.model = "MODEL" + std::to_string(random.below(2));
    drive.serial = "S" + std::to_string(++random.serials);
    drive.firmware = "F1";
    drive.smartFailure = random.chance(10);
    drive.extents = {{kUseFree, kNoArray, 0, drive.sectors}};
    for (std::uint32_t i = random.chance(40) ? random.below(5) : 0; i > 0; i--)
        addBadSectors(drive, random.engine() % drive.sectors, 1 + random.below(3000));
    if (random.chance(20))
        drive.patrol.state = kPatrolRunning;
    return drive;
}

// Drives with enough free space, in random order.
static std::vector<Drive*> freeDrives(RandomSource& random, Controller& controller, std::uint64_t sectors) {
    std::vector<Drive*> found;
    for (Drive& drive : controller.drives)
        if (bestFitFreeExtent(drive, sectors) != kNoExtent)
            found.push_back(&drive);
    std::shuffle(found.begin(), found.end(), random.engine);
    return found;
}

static void randomizeState(RandomSource& random, Controller& controller, LogicalDrive& array,
                           std::int64_t now) {
    array.active = random.chance(90);
    array.idle = random.chance(15);
    array.synchronized = random.chance(70) || !isRedundant(array.level);
    array.inconsistencies = random.chance(20) ? random.below(20) : 0;
    array.cacheFlags = static_cast<std::uint8_t>(random.below(4));
    if (isRedundant(array.level) && random.chance(15))
        array.staleMembers = {array.members[random.below(static_cast<std::uint32_t>(array.members.size()))]};
    if (random.chance(20))
        startInitialization(controller, array, static_cast<std::uint8_t>(1u << random.below(3)), now);
    else if (isRedundant(array.level) && random.chance(30))
        startActivity(array, random.chance(50) ? kSynchronizing : kRedundancyChecking,
                      array.memberSectors / kSectorsPerMb, now);
    array.activity.paused = array.activity.kind != 0 && random.chance(20);
}

static void addArray(RandomSource& random, Controller& controller, std::int64_t now) {
    const Shape& shape = shapes[random.below(static_cast<std::uint32_t>(std::size(shapes)))];
    const std::uint32_t count = shape.minMembers + random.below(shape.maxMembers - shape.minMembers + 1);
    LogicalDrive array;
    array.arrayId = array.logDrvId = static_cast<std::uint16_t>(controller.logicalDrives.size());
    array.name = "random";
    array.level = shape.level;
    array.parity = shape.level == kRaidMf ? static_cast<std::uint8_t>(1 + random.below(2)) : std::uint8_t{0};
    array.subArrays = shape.level == kRaid50 ? 2 : 0;
    array.memberSectors = (100 + random.below(900)) * kSectorsPerMb;
    const std::vector<Drive*> drives = freeDrives(random, controller, array.memberSectors);
    if (drives.size() < count)
        return;
    for (std::size_t i = 0; i < count; i++) {
        array.members.push_back(drives[i]->id);
        allocateExtent(controller, *drives[i], bestFitFreeExtent(*drives[i], array.memberSectors),
                       array.memberSectors, array.arrayId);
    }
    array.sectors = array.memberSectors * dataMembers(geometryOf(array));
    randomizeState(random, controller, array, now);
    controller.logicalDrives.push_back(array);
}

// Turns some of the free space into spares and foreign extents.
static void useFreeExtents(RandomSource& random, Controller& controller) {
    const auto arrays = static_cast<std::uint32_t>(controller.logicalDrives.size());
    for (Drive& drive : controller.drives)
        for (Extent& extent : drive.extents) {
            if (extent.use != kUseFree || !random.chance(40))
                continue;
            const std::uint32_t use = random.below(5);
            if (use < 2)
                extent.use = kUseGlobalSpare;
            else if (use < 4 && arrays > 0)
                extent = {kUseDedicatedSpare, static_cast<std::uint16_t>(random.below(arrays)), extent.start,
                          extent.size};
            else if (use == 4)
                extent = {kUseForeign, static_cast<std::uint16_t>(random.below(8)), extent.start,
                          extent.size};
        }
}

static void breakDrives(RandomSource& random, Controller& controller, std::int64_t now) {
    for (std::uint16_t id = 0; id < kRandomDrives; id++)
        if (random.chance(6))
            failDrive(controller, id);
        else if (random.chance(5))
            pullDrive(controller, id, now);
        else if (random.chance(3))
            std::erase_if(controller.drives, [&](const Drive& drive) { return drive.id == id; });
}

static Controller randomController(RandomSource& random, std::int64_t now) {
    Controller controller;
    controller.autoRebuild = random.chance(50);
    controller.rebuildOnError = random.chance(50) ? kSkipOnError : kAbortOnError;
    controller.maxExtentsPerDisk = static_cast<std::uint16_t>(random.chance(80) ? kMaxExtents : 3);
    controller.rates.rebuild = static_cast<std::uint8_t>(1 + random.below(255));
    const bool enclosed = random.chance(50);
    if (enclosed)
        controller.enclosures = {
            {0, kTraybox100, {{kFanSensor, static_cast<std::int32_t>(random.below(3000))}}}};
    for (std::uint16_t id = 0; id < kRandomDrives; id++)
        if (random.chance(85))
            controller.drives.push_back(randomDrive(random, id, enclosed && random.chance(80)));
    for (std::uint32_t i = random.below(5); i > 0; i--)
        addArray(random, controller, now);
    useFreeExtents(random, controller);
    breakDrives(random, controller, now);
    if (random.chance(60))
        setBattery(controller, static_cast<std::uint8_t>(random.below(6)), now);
    return controller;
}

World randomWorld(std::uint32_t seed, std::int64_t now) {
    RandomSource random = {std::mt19937(seed), 0};
    World world;
    for (std::uint32_t count = 1 + random.below(3); count > 0; count--)
        world.controllers.push_back(randomController(random, now));
    return world;
}
