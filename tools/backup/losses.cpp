// What a snapshot lacks that an earlier one has.
#include "tools/backup/losses.h"

#include "snapshot/state.h"
#include "snapshot/text.h"
#include "tools/backup/settings.h"
#include "tools/status/facts.h"
#include "tools/status/rules.h"

static void warn(const std::string& text, Lines* lines) {
    lines->push_back({Severity::warning, printable(text)});
}

static std::string nameOf(const Controller& controller, const LogicalDrive& drive) {
    return objectText(objectOf(controller, drive));
}

static void addFewer(const std::string& object, std::size_t now, std::size_t earlier, const char* word,
                     Lines* lines) {
    if (now < earlier)
        warn(object + " has " + counted(now, word) + "; it had " + std::to_string(earlier), lines);
}

static bool isPlaceKnown(const Controller& controller, const LogicalDrive& drive, int member) {
    if (member >= boundedMemberCount(drive.info))
        return false;
    const Drive* place = findDrive(controller, drive.info.memberIds[member] + 1u);
    return place != nullptr && memberExtent(*place, drive.info.arrayId) != nullptr;
}

// A restore needs the last state in which the logical drive was complete: no adapter reports where a lost
// member was.
static void addLostParts(const Controller& now, const LogicalDrive& drive, const Controller& earlier,
                         const LogicalDrive& before, Lines* lines) {
    const std::string name = nameOf(earlier, before);
    if (arrayState(drive) > arrayState(before))
        warn(name + " is " + arrayStateText(arrayState(drive)) + "; it was " +
                 arrayStateText(arrayState(before)),
             lines);
    for (int i = 0; i < boundedMemberCount(before.info); ++i)
        if (isPlaceKnown(earlier, before, i) && !isPlaceKnown(now, drive, i))
            warn(name + " cannot be restored from this backup: where its member on drive " +
                     std::to_string(before.info.memberIds[i] + 1) + " was is not known",
                 lines);
}

// A logical drive with another level or size may be a different one that was created with the same ID.
static void addLostArrays(const Controller& now, const Controller& earlier, Lines* lines) {
    for (const LogicalDrive& before : earlier.logicalDrives) {
        const LogicalDrive* drive = findLogicalDrive(now, before.info.logDrvId);
        if (drive != nullptr && drive->info.raidLevel == before.info.raidLevel &&
            drive->info.sectorCount == before.info.sectorCount) {
            addLostParts(now, *drive, earlier, before, lines);
            continue;
        }
        const std::string present = drive != nullptr ? shapeOf(*drive) : "missing";
        warn(nameOf(earlier, before) + " is " + present + "; it was " + shapeOf(before), lines);
    }
}

Lines lossLines(const Snapshot& now, const Snapshot& saved) {
    Lines lines;
    addFewer("this host", now.controllers.size(), saved.controllers.size(), "controller", &lines);
    const std::optional<Renumbering> renumbering = findRenumbering(saved, now);
    const Snapshot& earlier = renumbering ? renumbering->earlier : saved;
    for (const Controller& before : earlier.controllers)
        if (const Controller* controller = findController(now, before.id)) {
            const std::string object = "controller " + std::to_string(before.id);
            addFewer(object, controller->drives.size(), before.drives.size(), "drive", &lines);
            addFewer(object, controller->logicalDrives.size(), before.logicalDrives.size(), "logical drive",
                     &lines);
            addLostArrays(*controller, before, &lines);
        }
    const Lines zeros = zeroLines(now, earlier);
    lines.insert(lines.end(), zeros.begin(), zeros.end());
    return lines;
}
