// One reading of the adapters: the selected activities, and the objects they belong to.
#include "tools/wait/observe.h"

#include <algorithm>

#include "snapshot/read.h"
#include "snapshot/text.h"

static const Activity* findActivity(const LogicalDrive& drive, unsigned kind) {
    for (const Activity& activity : drive.activities)
        if (activity.kind == kind)
            return &activity;
    return nullptr;
}

// The status byte decides which activities there are. The progress of one may be unreadable.
static void addActivities(const Options& options, const LogicalDrive& drive, const Target& target,
                          View* view) {
    for (unsigned kind = 1; kind < kMediaPatrol; kind <<= 1)
        if ((drive.info.activityStatus & kind & options.kinds) != 0) {
            const Activity* activity = findActivity(drive, kind);
            SeenActivity seen = {kind, target, std::nullopt, false};
            if (activity != nullptr) {
                seen.percent = activity->percent;
                seen.paused = isPaused(*activity);
            }
            view->activities.push_back(seen);
        }
}

static void addPatrol(const Drive& drive, const Target& target, View* view) {
    view->drives.push_back({target, drive.patrol ? std::optional(drive.patrol->state) : std::nullopt});
    if (drive.patrol && (drive.patrol->state == kPatrolRunning || drive.patrol->state == kPatrolPaused))
        view->activities.push_back(
            {kMediaPatrol, target, unsigned{drive.patrol->progress}, drive.patrol->state == kPatrolPaused});
}

void addController(const Options& options, const Controller& controller, View* view) {
    for (const LogicalDrive& drive : controller.logicalDrives) {
        if (options.logicalDrive && drive.info.logDrvId != *options.logicalDrive)
            continue;
        const Target target = {controller.id, false, drive.info.logDrvId,
                               printable(fieldText(drive.info.name)), drive.info.arrayId};
        view->arrays.push_back({target, arrayState(drive)});
        addActivities(options, drive, target, view);
    }
    if ((options.kinds & kMediaPatrol) != 0)
        for (const Drive& drive : controller.drives)
            addPatrol(drive, {controller.id, true, drive.number, "", 0}, view);
}

// Only after a refused listing is it unknown what is active.
static const Fault* findProblem(const Controller& controller) {
    const auto refused = [](const Fault& fault) {
        return fault.kind == FaultKind::refused &&
               (fault.operation == "q5_getLogDrvInfo" || fault.operation == "q5_getPhyDrvInfo");
    };
    const auto found = std::find_if(controller.faults.begin(), controller.faults.end(), refused);
    return found != controller.faults.end() ? &*found : nullptr;
}

// The general record says how many drives to expect.
static Controller readSelected(const Options& options, std::uint32_t id) {
    Controller controller;
    controller.id = id;
    if ((options.kinds & kMediaPatrol) != 0) {
        Faults ignored;
        const ControllerQuery general = {id, 1, kGeneralInfo, {}};
        controller.info =
            readReply<q5_getControllerInfo, ControllerInfo>({hbaAddress(id), &ignored}, general);
        readDrives(&controller);
    }
    if ((options.kinds & kAnyActivity) != 0)
        readLogicalDrives(&controller);
    return controller;
}

View observe(const Options& options, std::uint32_t controllerCount) {
    View view;
    const std::uint32_t count = std::min(controllerCount, kMaxSnapshotControllers);
    for (std::uint32_t id = 0; id < count; ++id) {
        if (options.controller && id != *options.controller)
            continue;
        const Controller controller = readSelected(options, id);
        addController(options, controller, &view);
        const Fault* problem = findProblem(controller);
        if (problem != nullptr && view.problem.empty())
            view.problem = "controller " + std::to_string(id) + ": " + faultText(*problem);
    }
    return view;
}
