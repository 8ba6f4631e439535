// What a snapshot lacks of the objects that a backup is for.
#include <algorithm>

#include "snapshot/state.h"
#include "snapshot/text.h"
#include "tools/backup/configuration.h"

static constexpr char kLostMembers[] = "q5_getAryLostDisk";

static void warn(const std::string& text, Lines* lines) {
    lines->push_back({Severity::warning, printable(text)});
}

// Whether the fault means that the backup lacks objects. Refused settings do not; sensors, batteries and
// progress are not part of the configuration.
static bool concernsBackup(const Fault& fault) {
    static constexpr std::string_view listings[] = {"q5_getNumberOfHBA", "q5_getControllerInfo",
                                                    "q5_getPhyDrvInfo", "q5_getLogDrvInfo"};
    static constexpr std::string_view settings[] = {"q5_getControllerSettings", "q5_getPhyDrvSettings",
                                                    "q5_getLogDrvSettings", kLostMembers};
    const auto isOneOf = [&](const auto& names) {
        return std::find(std::begin(names), std::end(names), fault.operation) != std::end(names);
    };
    return isOneOf(listings) || (isOneOf(settings) && fault.kind == FaultKind::overrun) ||
           (isOneOf(settings) && fault.kind == FaultKind::impossible);
}

// A logical drive that is online has lost no member. Otherwise another one may be lost, and nothing shows it.
static bool mayHideLoss(const LogicalDrive& drive, const Fault& fault) {
    return fault.operation == kLostMembers && arrayState(drive) != ArrayState::online;
}

static constexpr char kIncomplete[] = "; the backup is incomplete";

static void addFault(const std::string& object, const Fault& fault, Lines* lines) {
    warn(object + ": " + faultText(fault) + kIncomplete, lines);
}

static void addFaults(const std::string& object, const Faults& faults, Lines* lines) {
    for (const Fault& fault : faults)
        if (concernsBackup(fault))
            addFault(object, fault, lines);
}

static void addFaults(const std::string& where, const LogicalDrive& drive, Lines* lines) {
    for (const Fault& fault : drive.faults)
        if (concernsBackup(fault) || mayHideLoss(drive, fault))
            addFault("logical drive " + std::to_string(drive.info.logDrvId) + " of " + where, fault, lines);
}

static void addWrongCount(const std::string& where, std::size_t reported, std::size_t listed,
                          const char* word, Lines* lines) {
    if (reported != listed)
        warn(where + ": counts " + counted(reported, word) + ", but lists " + counted(listed, word) +
                 kIncomplete,
             lines);
}

static void addController(const Controller& controller, Lines* lines) {
    const std::string where = "controller " + std::to_string(controller.id);
    addFaults(where, controller.faults, lines);
    if (controller.info) {
        addWrongCount(where, controller.info->diskCount, controller.drives.size(), "drive", lines);
        addWrongCount(where, controller.info->arrayCount, controller.logicalDrives.size(), "logical drive",
                      lines);
    }
    for (const Drive& drive : controller.drives)
        addFaults("drive " + std::to_string(drive.number) + " of " + where, drive.faults, lines);
    for (const LogicalDrive& drive : controller.logicalDrives)
        addFaults(where, drive, lines);
}

Lines incompleteLines(const Snapshot& snapshot) {
    Lines lines;
    addFaults("this host", snapshot.faults, &lines);
    for (const Controller& controller : snapshot.controllers)
        addController(controller, &lines);
    return lines;
}
