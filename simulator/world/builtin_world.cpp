// The built-in world: two controllers with a sample of everything.
#include "simulator/world/array_rules.h"
#include "simulator/world/world.h"

namespace q5sim {

static constexpr std::uint64_t k500Gb = 976773168;
static constexpr std::uint64_t k250Gb = 488397168;

static Drive newDrive(std::uint16_t id, std::uint16_t enclosure, std::uint64_t sectors, const char* model,
                      const char* firmware) {
    Drive drive;
    drive.id = id;
    drive.channel = id;
    drive.enclosure = enclosure;
    drive.sectors = sectors;
    drive.model = model;
    drive.serial = std::string(sectors == k500Gb ? "TQ5A00" : "TQ2C07") + std::to_string(41720 + id * 13);
    drive.firmware = firmware;
    drive.extents = {{kUseFree, kNoArray, 0, sectors}};
    return drive;
}

static void useFirstMb(Drive& drive, std::uint16_t arrayId, std::uint64_t megabytes) {
    const std::uint64_t size = megabytes * kSectorsPerMb;
    drive.extents = {{kUseArray, arrayId, 0, size}, {kUseFree, kNoArray, size, drive.sectors - size}};
}

// Adds an array on the first megabytes of empty drives.
static void addArray(Controller& controller, const char* name, std::uint8_t level,
                     std::vector<std::uint16_t> members, std::uint64_t memberMb) {
    LogicalDrive array;
    array.arrayId = static_cast<std::uint16_t>(controller.logicalDrives.size());
    array.logDrvId = array.arrayId;
    array.name = name;
    array.level = level;
    array.members = std::move(members);
    array.memberSectors = memberMb * kSectorsPerMb;
    array.sectors = array.memberSectors * dataMembers(geometryOf(array));
    array.reportedState = kOnline;
    for (std::uint16_t member : array.members)
        useFirstMb(*findDrive(controller, member), array.arrayId, memberMb);
    controller.logicalDrives.push_back(std::move(array));
}

static void setQueuing(Drive& drive, bool ncq, bool tcq) {
    drive.ncqSupported = drive.ncqEnabled = ncq;
    drive.tcqSupported = drive.tcqEnabled = tcq;
}

static Controller firstController(std::int64_t now) {
    Controller controller;
    controller.bios = {{2, 3, 0, 12}};
    controller.firmware = {{2, 3, 1, 7}};
    controller.driver = {{1, 8, 0, 4}};
    controller.ecc = true;
    controller.memoryMb = 256;
    controller.maxPorts = 8;
    controller.busLocation = {16,         2,          0xFEB00000, 65536,      1,
                              0xFE9FC000, 0xFE9FA000, 0xFE9F8000, 0xFE9F0000, 0xD0000000};
    controller.autoRebuild = true;
    controller.hasBattery = true;
    controller.battery = {312, 4105, kBatteryFull};
    controller.enclosures = {{0,
                              kTraybox400,
                              {{kFanSensor, 2700},
                               {kTemperatureSensor, 31},
                               {kFanSensor, 2660},
                               {kRail5VSensor, 5020},
                               {kRail12VSensor, 12060},
                               {kTemperatureSensor, 34}}}};
    for (std::uint16_t id = 0; id < 8; id++)
        controller.drives.push_back(
            newDrive(id, 0, k500Gb, id < 6 ? "TQ500-7200AS" : "TQ500-7200NS", id < 6 ? "TQ3.02" : "TQ3.11"));
    for (Drive& drive : controller.drives)
        setQueuing(drive, true, drive.id >= 6);
    addArray(controller, "Archive", kRaid5, {0, 1, 2}, 200000);
    addArray(controller, "System", kRaid1, {3, 4}, 60000);
    controller.drives[5].extents[0].use = kUseGlobalSpare;
    addEvent(controller, now - 86400, "Controller started");
    addEvent(controller, now - 86340, "Drive 6: extent 0 is a global spare now");
    addEvent(controller, now - 3600, "Logical drive 0: synchronization ended");
    return controller;
}

static Controller secondController(std::int64_t now) {
    Controller controller;
    controller.bios = {{2, 1, 4, 3}};
    controller.firmware = {{2, 1, 4, 9}};
    controller.driver = {{1, 8, 0, 4}};
    controller.memoryMb = 64;
    controller.maxPorts = 4;
    controller.busLocation = {18,         4,          0xFEA00000, 32768,      2,
                              0xFE8FC000, 0xFE8FA000, 0xFE8F8000, 0xFE8F0000, 0xD8000000};
    controller.buzzer = false;
    for (std::uint16_t id = 0; id < 4; id++)
        controller.drives.push_back(newDrive(id, kNoEnclosureId, k250Gb, "TQ250-7200AS", "TQ2.40"));
    for (Drive& drive : controller.drives)
        setQueuing(drive, false, drive.id < 2);
    addArray(controller, "Scratch", kRaid10, {0, 1, 2, 3}, 120000);
    addEvent(controller, now - 86400, "Controller started");
    return controller;
}

World builtinWorld(std::int64_t now) {
    World world;
    const std::int64_t newest = now > 86400 ? now : 86400; // no event before the epoch
    world.controllers = {firstController(newest), secondController(newest)};
    return world;
}

} // namespace q5sim
