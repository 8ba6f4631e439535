// The list of every object that -v adds to the plain text.
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/format.h"

static std::string megabytes(std::uint64_t sectors) {
    static constexpr std::uint64_t sectorsPerMb = 2048;
    return std::to_string(sectors / sectorsPerMb) + " MB";
}

static std::string sensorText(const EnclosureSensor& sensor) {
    const char* type = sensorTypeText(sensor.type);
    if (type == nullptr)
        return "";
    const auto reading = static_cast<std::int32_t>(sensor.reading);
    if (sensor.type == kFanSensor)
        return std::string(", fan ") + std::to_string(reading) + " rpm";
    if (sensor.type == kTemperatureSensor)
        return ", " + std::to_string(reading) + " degrees Celsius";
    return std::string(", ") + type + " at " + decimal(sensor.reading, 3) + " V";
}

static std::string enclosureLine(const Enclosure& enclosure) {
    std::string line =
        "  enclosure " + std::to_string(enclosure.id) + ": " + enclosureTypeText(enclosure.entry.type);
    if (enclosure.status)
        for (const EnclosureSensor& sensor : enclosure.status->sensor)
            line += sensorText(sensor);
    return line + "\n";
}

static std::string driveLine(const Drive& drive) {
    std::string line = "  drive " + std::to_string(drive.number) + ": " +
                       knownText(fieldText(drive.info.model)) + ", " + megabytes(drive.info.capacity) + ", " +
                       placeText(drive) + ", firmware " + knownText(fieldText(drive.info.firmware));
    if (drive.patrol && drive.patrol->state == kPatrolRunning)
        line += ", media patrol " + std::to_string(drive.patrol->progress) + "%";
    if (drive.locate.value_or(0) != 0)
        line += ", locate light on";
    return printable(line) + "\n";
}

static std::string extentLines(const Drive& drive) {
    std::string lines;
    for (const ExtentEntry& extent : extents(drive.info)) {
        lines += "    extent " + std::to_string(extent.index) + ": " + megabytes(extent.size) + ", " +
                 extentUseText(extent);
        if (extent.arrayId != kNoArray)
            lines += ", array " + std::to_string(extent.arrayId);
        lines += "\n";
    }
    return lines;
}

static std::string memberText(const Member& member) {
    return std::to_string(member.number) + (member.lost ? " (lost)" : "");
}

static std::string logicalDriveLine(const LogicalDrive& drive) {
    const std::string name(fieldText(drive.info.name));
    std::string line = "  logical drive " + std::to_string(drive.info.logDrvId) +
                       (name.empty() ? "" : " " + name) + ": " + raidLevelText(drive.info.raidLevel) + ", " +
                       megabytes(drive.info.sectorCount) + ", " + arrayStateText(arrayState(drive)) +
                       ", drives";
    for (const Member& member : drive.members)
        line += (&member == drive.members.data() ? " " : ", ") + memberText(member);
    for (const Activity& activity : drive.activities)
        line += std::string(", ") + activityText(activity.kind) + (isPaused(activity) ? " paused " : " ") +
                std::to_string(activity.percent) + "%";
    return printable(line) + "\n";
}

std::string formatObjects(const Controller& controller) {
    std::string text;
    if (controller.version)
        text += "  firmware " + versionText(controller.version->firmwareVersion) + "\n";
    for (const Enclosure& enclosure : controller.enclosures)
        text += enclosureLine(enclosure);
    for (const Drive& drive : controller.drives)
        text += driveLine(drive) + extentLines(drive);
    for (const LogicalDrive& drive : controller.logicalDrives)
        text += logicalDriveLine(drive);
    return text;
}
