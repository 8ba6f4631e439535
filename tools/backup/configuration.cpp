// The configuration file expected for a snapshot.
#include "tools/backup/configuration.h"

#include <algorithm>

#include "config/block.h"
#include "config/ctrl_block.h"
#include "config/logdrv_block.h"
#include "config/phydrv_block.h"
#include "snapshot/text.h"
#include "tools/common/option_table.h"

// A line of the expected file. extentsUnknown: it lists the extents of a logical drive with a member that is
// missing or was refused alone, so that they depend on more than the snapshot contains.
struct ExpectedLine {
    std::string text;
    bool extentsUnknown = false;
};
using Expected = std::vector<ExpectedLine>;

static std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

static void addBlock(const char* marker, std::size_t index, const char* block, bool extentsUnknown,
                     Expected* expected) {
    expected->push_back({std::string(marker) + " " + std::to_string(index)});
    for (const std::string& line : splitLines(block))
        expected->push_back({line, extentsUnknown && line.rfind("<LogDrvDiskExtentIndex>", 0) == 0});
}

// The number of drives in one listing, which is all that an export contains. The snapshot may have more.
static std::size_t exportedDrives(const Controller& controller) {
    return std::min<std::size_t>(controller.drives.size(), kMaxDrives);
}

// The global spares as an export counts them: those of the first drive, times the number of drives.
static int exportedSpares(const Controller& controller) {
    if (controller.drives.empty())
        return 0;
    const auto list = extents(controller.drives[0].info);
    const auto spares = std::count_if(list.begin(), list.end(), [](const ExtentEntry& extent) {
        return (extent.assignment & kExtentGlobalSpare) != 0;
    });
    return static_cast<int>(exportedDrives(controller)) * static_cast<int>(spares);
}

static void addControllers(const Snapshot& snapshot, Expected* expected) {
    for (const Controller& controller : snapshot.controllers) {
        const ControllerSettings settings = controller.settings.value_or(ControllerSettings{});
        char text[kBlockTextSize];
        CtrlSettingsToBuffer(&settings, controller.buzzer.value_or(0), exportedSpares(controller), text);
        addBlock(kCtrlMarker, controller.id, text, false, expected);
    }
}

// The drives of a controller from one position to another.
static void addDrives(const Controller& controller, std::size_t first, std::size_t end, std::size_t* index,
                      Expected* expected) {
    for (std::size_t i = first; i < end; ++i) {
        const auto& settings = controller.drives[i].settings;
        if (!settings)
            continue;
        char text[kBlockTextSize];
        PDSettingsToBuffer(static_cast<int>(controller.id), &*settings, text);
        addBlock(kPhyDrvMarker, (*index)++, text, false, expected);
    }
}

// Whether the list of drives was refused, or is shorter than the controller's own count. Either makes the
// backup incomplete.
static bool mayLackDrives(const Controller& controller) {
    return hasFault(controller, "q5_getPhyDrvInfo") ||
           (controller.info && controller.info->diskCount > controller.drives.size());
}

static std::string keyOf(const std::string& line) {
    return line.substr(0, line.find(' '));
}

static std::string valueOf(const std::string& line) {
    return line.substr(std::min(keyOf(line).size() + 1, line.size()));
}

// Whether the exported lines from this one on are the block of a drive that the snapshot lacks. blank: a
// block of this controller, which begins with the IDs of the controller and the drive.
static bool isUnlistedDrive(const Controller& controller, const Expected& blank,
                            const std::vector<std::string>& lines, std::size_t first) {
    if (lines.size() - first < blank.size() || lines[first] != blank[0].text ||
        lines[first + 1] != blank[1].text)
        return false;
    for (std::size_t i = 2; i < blank.size(); ++i)
        if (keyOf(lines[first + i]) != keyOf(blank[i].text))
            return false;
    std::uint64_t number = 0;
    return readNumber(valueOf(lines[first + 2]).c_str(), UINT16_MAX, &number) &&
           findDrive(controller, static_cast<std::uint32_t>(number)) == nullptr;
}

// An export reads the settings of the drives without listing the drives. If the list in the snapshot is
// incomplete, the blocks of other drives are accepted as they are.
static void addUnlistedDrives(const Controller& controller, const std::vector<std::string>& lines,
                              std::size_t* index, Expected* expected) {
    const PhyDrvSettings settings = {};
    char text[kBlockTextSize];
    PDSettingsToBuffer(static_cast<int>(controller.id), &settings, text);
    while (mayLackDrives(controller) && expected->size() < lines.size()) {
        Expected blank;
        addBlock(kPhyDrvMarker, *index, text, false, &blank);
        const std::size_t first = expected->size();
        if (!isUnlistedDrive(controller, blank, lines, first))
            return;
        for (std::size_t i = 0; i < blank.size(); ++i)
            expected->push_back({lines[first + i]});
        ++*index;
    }
}

static void addDrives(const Snapshot& snapshot, const std::vector<std::string>& lines, Expected* expected) {
    std::size_t index = 0;
    for (const Controller& controller : snapshot.controllers) {
        for (std::size_t i = 0; i < exportedDrives(controller); ++i) {
            addUnlistedDrives(controller, lines, &index, expected);
            addDrives(controller, i, i + 1, &index, expected);
        }
        addUnlistedDrives(controller, lines, &index, expected);
    }
}

std::string furtherDriveBlocks(const Snapshot& snapshot) {
    Expected blocks;
    std::size_t index = 0;
    for (const Controller& controller : snapshot.controllers)
        addDrives(controller, exportedDrives(controller), controller.drives.size(), &index, &blocks);
    std::string text;
    for (const ExpectedLine& line : blocks)
        text.append(line.text).append("\n");
    return text;
}

static bool hasDriveBlocks(const std::vector<std::string>& lines, const Controller& controller) {
    const std::string line = "<PhyDrvCtrlID> " + std::to_string(controller.id);
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// A cleared record has the ID of the first drive. For any other drive it is a foreign one, which is not used.
static bool hasOnlyClearedSettings(const Controller& controller) {
    return std::all_of(controller.drives.begin(), controller.drives.end(), [](const Drive& drive) {
        return !drive.settings || (drive.info.driveId == 0 && isZero(*drive.settings));
    });
}

void removeClearedSettings(const std::string& text, Snapshot* snapshot) {
    const std::vector<std::string> lines = splitLines(text);
    for (Controller& controller : snapshot->controllers)
        if (hasOnlyClearedSettings(controller) && !hasDriveBlocks(lines, controller))
            for (Drive& drive : controller.drives)
                drive.settings.reset();
}

static bool wasRefusedAlone(const Drive& drive) {
    return std::any_of(drive.faults.begin(), drive.faults.end(), [](const Fault& fault) {
        return fault.operation == "q5_getPhyDrvInfo" && fault.kind == FaultKind::refused;
    });
}

// The index of the drive's first extent that belongs to the array.
static std::optional<std::uint8_t> extentOf(const Controller& controller, std::uint32_t driveId,
                                            std::uint16_t arrayId) {
    const Drive* drive = findDrive(controller, driveId + 1);
    if (drive == nullptr || wasRefusedAlone(*drive))
        return std::nullopt;
    for (const ExtentEntry& extent : extents(drive->info))
        if (extent.arrayId == arrayId)
            return static_cast<std::uint8_t>(extent.index);
    return std::nullopt;
}

static void addLogicalDrives(const Snapshot& snapshot, Expected* expected) {
    std::size_t index = 0;
    for (const Controller& controller : snapshot.controllers)
        for (const LogicalDrive& drive : controller.logicalDrives) {
            std::uint8_t list[kMaxArrayMembers] = {};
            bool extentsUnknown = false;
            for (int i = 0; i < boundedMemberCount(drive.info); ++i) {
                const auto extent = extentOf(controller, drive.info.memberIds[i], drive.info.arrayId);
                extentsUnknown = extentsUnknown || !extent;
                list[i] = extent.value_or(0);
            }
            const LogDrvSettings settings = drive.settings.value_or(LogDrvSettings{});
            char text[kBlockTextSize];
            LDSettingsToBuffer(static_cast<int>(controller.id), &drive.info, &settings, list, text);
            addBlock(kLogDrvMarker, index++, text, extentsUnknown, expected);
        }
}

std::string compareConfiguration(const std::string& text, const Snapshot& snapshot) {
    const std::vector<std::string> lines = splitLines(text);
    Expected expected;
    addControllers(snapshot, &expected);
    addDrives(snapshot, lines, &expected);
    addLogicalDrives(snapshot, &expected);
    for (std::size_t i = 0; i < std::max(lines.size(), expected.size()); ++i) {
        const bool both = i < lines.size() && i < expected.size();
        if (both && (lines[i] == expected[i].text || expected[i].extentsUnknown))
            continue;
        return "line " + std::to_string(i + 1) + " of the exported file is " +
               (i < lines.size() ? "\"" + printable(lines[i]) + "\"" : "missing") + "; the adapters report " +
               (i < expected.size() ? "\"" + printable(expected[i].text) + "\"" : "nothing more");
    }
    return text.empty() || text.back() == '\n' ? "" : "the exported file ends within a line";
}
