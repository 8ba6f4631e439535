// Rules about what cannot be read, and about the controllers of one host together.
#include <algorithm>
#include <map>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"

// Operations that report details on which no rule depends. If they fail, no problem is hidden.
static bool isDetail(const Fault& fault) {
    static constexpr std::string_view details[] = {"q5_getDiscoverPath", "q5_getDriverInfo",
                                                   "q5_getDataTransferSpeed", "q5_getPhyDrvLocateStatus",
                                                   "q5_getControllerSettings"};
    return fault.kind == FaultKind::refused &&
           std::find(std::begin(details), std::end(details), fault.operation) != std::end(details);
}

// A part of the finding for each fault: its operation and kind, numbered to tell repeated ones apart.
static std::vector<std::string> operationsOf(const Faults& faults) {
    std::vector<std::string> operations;
    std::map<std::string, int> counts;
    for (const Fault& fault : faults) {
        const std::string operation = fault.operation + " " + std::to_string(static_cast<int>(fault.kind));
        operations.push_back(operation + " " + std::to_string(++counts[operation]));
    }
    return operations;
}

static void addFaults(Evaluation* evaluation, const Object& object, const Faults& faults, bool details) {
    Faults wanted;
    std::copy_if(faults.begin(), faults.end(), std::back_inserter(wanted),
                 [&](const Fault& fault) { return isDetail(fault) == details; });
    if (wanted.empty())
        return;
    std::string text = faultText(wanted.front());
    if (wanted.size() > 1)
        text += ", and " + counted(wanted.size() - 1, "more fault");
    addFindingOf(evaluation, object, operationsOf(wanted), text);
}

// A failed drive refuses operations; its failure is already a finding.
static void findFaults(Evaluation* evaluation, bool details) {
    addFaults(evaluation, {}, evaluation->snapshot.faults, details);
    for (const Controller& controller : evaluation->snapshot.controllers) {
        addFaults(evaluation, objectOf(controller), controller.faults, details);
        for (const Enclosure& enclosure : controller.enclosures)
            addFaults(evaluation, objectOf(controller, enclosure), enclosure.faults, details);
        for (const Drive& drive : controller.drives)
            if (!isInaccessible(drive))
                addFaults(evaluation, objectOf(controller, drive), drive.faults, details);
        for (const LogicalDrive& drive : controller.logicalDrives)
            addFaults(evaluation, objectOf(controller, drive), drive.faults, details);
    }
}

void findUnreadableObjects(Evaluation* evaluation) {
    findFaults(evaluation, false);
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (batteryState(controller) > kBatteryReconditioning)
            addFinding(evaluation, batteryOf(controller),
                       "reports the unknown state " + std::to_string(batteryState(controller)));
}

void findNoController(Evaluation* evaluation) {
    if (evaluation->snapshot.controllerCount == 0 && evaluation->snapshot.faults.empty())
        addFinding(evaluation, {}, "no controller is found");
}

void findUnreadableDetails(Evaluation* evaluation) {
    findFaults(evaluation, true);
}

using Versions = std::vector<std::pair<std::uint32_t, std::string>>; // of each controller

// "firmware versions differ: 1.8.0.4 on controller 0, 1.8.0.5 on controller 1"
static void compareVersions(Evaluation* evaluation, const Versions& versions, const char* what) {
    std::string text;
    bool differ = false;
    for (const auto& [controller, version] : versions) {
        text += (text.empty() ? " " : ", ") + version + " on controller " + std::to_string(controller);
        differ = differ || version != versions.front().second;
    }
    if (differ)
        addFinding(evaluation, {}, std::string(what) + " versions differ:" + text);
}

void findFirmwareDifferences(Evaluation* evaluation) {
    Versions versions;
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (controller.version)
            versions.emplace_back(controller.id, versionText(controller.version->firmwareVersion));
    compareVersions(evaluation, versions, "firmware");
}

void findDriverDifferences(Evaluation* evaluation) {
    Versions versions;
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (controller.driver)
            versions.emplace_back(controller.id, versionText(controller.driver->driverVersion));
    compareVersions(evaluation, versions, "driver");
}

// Compares a count of the controller with its list. If the list has a fault, that is the finding.
static void compareCount(Evaluation* evaluation, const Controller& controller, std::string_view operation,
                         std::size_t reported, std::size_t listed, const char* word) {
    if (reported != listed && !hasFault(controller, operation))
        addFinding(evaluation, objectOf(controller),
                   "counts " + counted(reported, word) + ", but lists " + std::to_string(listed));
}

void findDriveCountDifferences(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (controller.info)
            compareCount(evaluation, controller, "q5_getPhyDrvInfo", controller.info->diskCount,
                         controller.drives.size(), "drive");
}

void findArrayCountDifferences(Evaluation* evaluation) {
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (controller.info)
            compareCount(evaluation, controller, "q5_getLogDrvInfo", controller.info->arrayCount,
                         controller.logicalDrives.size(), "logical drive");
}
