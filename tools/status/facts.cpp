// Derives from the adapters' codes what the rules and the formats need.
#include "tools/status/facts.h"

#include <algorithm>

#include "snapshot/text.h"

bool isRedundant(std::uint8_t level) {
    return level != kRaid0 && level != kJbod;
}

bool isRefused(const Controller& controller, std::string_view operation) {
    return std::any_of(controller.faults.begin(), controller.faults.end(), [&](const Fault& fault) {
        return fault.kind == FaultKind::refused && fault.operation == operation;
    });
}

std::string shapeOf(const LogicalDrive& drive) {
    static constexpr std::uint64_t sectorsPerMb = 2048;
    return std::string(raidLevelText(drive.info.raidLevel)) + " of " +
           std::to_string(drive.info.sectorCount / sectorsPerMb) + " MB";
}

bool hasAllDrives(const Controller& controller) {
    if (controller.drives.empty() && isRefused(controller, "q5_getPhyDrvInfo"))
        return false;
    return controller.info && controller.info->diskCount <= controller.drives.size();
}

// One call lists them all.
bool hasAllLogicalDrives(const Controller& controller) {
    if (controller.logicalDrives.empty() && isRefused(controller, "q5_getLogDrvInfo"))
        return false;
    return controller.info && controller.info->arrayCount <= controller.logicalDrives.size();
}

// Each is read by a call of its own.
bool hasAllEnclosures(const Controller& controller) {
    return !hasFault(controller, "q5_getEnclosureInfo");
}

bool mayBeUnlisted(const Controller& controller, std::uint32_t number) {
    if (hasAllDrives(controller))
        return false;
    return controller.drives.empty() || !isRefused(controller, "q5_getPhyDrvInfo") ||
           number > controller.drives.back().number;
}

bool hasBattery(const Controller& controller) {
    return controller.battery && controller.battery->status != 0;
}

std::uint8_t batteryState(const Controller& controller) {
    return controller.battery ? controller.battery->status & 0x7F : 0;
}

std::int32_t batteryTenthsCelsius(const BatteryInfo& battery) {
    static constexpr std::int32_t zeroCelsius = 2731;
    return battery.temperature - zeroCelsius;
}

std::string knownText(std::string_view field) {
    const std::string_view text = trimmed(field);
    return text.empty() ? "unknown" : std::string(text);
}

std::string placeText(std::uint16_t channel, std::uint16_t enclosureId, std::string_view serial) {
    std::string text = "channel " + std::to_string(channel);
    if (enclosureId != kNoEnclosureId)
        text += ", enclosure " + std::to_string(enclosureId);
    return text + ", serial " + knownText(serial);
}

std::string placeText(const Drive& drive) {
    return placeText(drive.info.channel, drive.info.enclosureId, fieldText(drive.info.serial));
}

std::string versionText(const VersionNumber& version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.third) + "." + std::to_string(version.fourth);
}

// Whether the drive is a member of the array, or is being rebuilt as one.
static bool holdsPartOf(const LogicalDrive& array, const Drive& drive) {
    return memberExtent(drive, array.info.arrayId) != nullptr;
}

static bool isMember(const LogicalDrive& array, const Drive& drive) {
    return std::any_of(array.members.begin(), array.members.end(),
                       [&](const Member& member) { return member.number == drive.number; });
}

// Most extents are not spares, so the checks that need a search come last.
bool isSuitableSpare(const LogicalDrive& array, const Drive& drive, const ExtentEntry& extent,
                     std::uint64_t neededSectors) {
    const bool dedicated =
        (extent.assignment & kExtentDedicatedSpare) != 0 && extent.arrayId == array.info.arrayId;
    const bool global = (extent.assignment & kExtentGlobalSpare) != 0;
    return (dedicated || global) && isAccessible(extent) && extent.size >= neededSectors &&
           !isMember(array, drive) && !holdsPartOf(array, drive);
}

// The size of each member: the smallest extent of the array in the drives' lists; 0 if there is none.
static std::uint64_t memberSectors(const Controller& controller, const LogicalDrive& array) {
    std::uint64_t least = 0;
    for (const Drive& drive : controller.drives)
        for (const ExtentEntry& extent : extents(drive.info))
            if ((extent.assignment & kExtentAssigned) != 0 && extent.arrayId == array.info.arrayId)
                least = least == 0 ? extent.size : std::min(least, extent.size);
    return least;
}

std::size_t countSuitableSpares(const Controller& controller, const LogicalDrive& array) {
    const std::uint64_t needed = memberSectors(controller, array);
    std::size_t count = 0;
    for (const Drive& drive : controller.drives) {
        const auto all = extents(drive.info);
        count += std::any_of(all.begin(), all.end(), [&](const ExtentEntry& extent) {
            return isSuitableSpare(array, drive, extent, needed);
        });
    }
    return count;
}
