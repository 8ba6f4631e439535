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

// The status byte shows which activities there are. Their progress may be unreadable.
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

static void addPatrol(const MediaPatrolProgress& patrol, const Target& target, View* view) {
    view->drives.push_back({target, patrol.state});
    if (patrol.state == kPatrolRunning || patrol.state == kPatrolPaused)
        view->activities.push_back(
            {kMediaPatrol, target, unsigned{patrol.progress}, patrol.state == kPatrolPaused});
}

void addController(const Options& options, const Controller& controller, View* view) {
    for (const LogicalDrive& drive : controller.logicalDrives) {
        if (options.logicalDrive && drive.info.logDrvId != *options.logicalDrive)
            continue;
        const Target target = {controller.id,       false,
                               drive.info.logDrvId, printable(fieldText(drive.info.name)),
                               drive.info.arrayId,  {drive.info.raidLevel, drive.info.sectorCount}};
        const bool isMigrating = (drive.info.activityStatus & kMigrating) != 0;
        view->arrays.push_back({target, arrayState(drive), isMigrating});
        addActivities(options, drive, target, view);
    }
    if ((options.kinds & kMediaPatrol) != 0)
        for (const Drive& drive : controller.drives)
            if (drive.patrol)
                addPatrol(*drive.patrol, {controller.id, true, drive.number, "", 0}, view);
}

static const Fault* findRefusal(const Faults& faults, std::initializer_list<std::string_view> operations) {
    for (const Fault& fault : faults)
        if (fault.kind == FaultKind::refused &&
            std::find(operations.begin(), operations.end(), fault.operation) != operations.end())
            return &fault;
    return nullptr;
}

static const Fault* findRefusedListing(const Controller& controller) {
    return findRefusal(controller.faults, {"q5_getControllerInfo", "q5_getLogDrvInfo", "q5_getPhyDrvInfo"});
}

static std::string shortListText(std::size_t count, std::size_t listed, const char* word) {
    return listed < count ? "counts " + counted(count, word) + ", but lists " + counted(listed, word) : "";
}

// Which of the selected lists is shorter than the controller's own count; empty: none.
static std::string shortListsText(const Options& options, const Controller& controller) {
    std::string text;
    if (controller.info && (options.kinds & kMediaPatrol) != 0)
        text = shortListText(controller.info->diskCount, controller.drives.size(), "drive");
    if (controller.info && (options.kinds & kAnyActivity) != 0 && text.empty())
        text = shortListText(controller.info->arrayCount, controller.logicalDrives.size(), "logical drive");
    return text;
}

// The state of a media patrol is in its progress: unlike for a logical drive, nothing else shows whether it
// runs.
static std::string refusedPatrolText(const Options& options, const Controller& controller) {
    if ((options.kinds & kMediaPatrol) != 0)
        for (const Drive& drive : controller.drives)
            if (const Fault* refusal = findRefusal(drive.faults, {"q5_getHBAMediaPatrolProgress"}))
                return "drive " + std::to_string(drive.number) + " of controller " +
                       std::to_string(controller.id) + ": " + faultText(*refusal);
    return "";
}

// Why it is unknown what is active: a refused call, or a list that is short; empty: it is known.
static std::string findProblem(const Options& options, const Controller& controller) {
    const Fault* refusal = findRefusedListing(controller);
    const std::string text = refusal != nullptr ? faultText(*refusal) : shortListsText(options, controller);
    return text.empty() ? refusedPatrolText(options, controller)
                        : "controller " + std::to_string(controller.id) + ": " + text;
}

// The general record says how many drives and logical drives to expect.
static Controller readOnce(const Options& options, std::uint32_t id) {
    Controller controller;
    controller.id = id;
    const ControllerQuery general = {id, 1, kGeneralInfo, {}};
    controller.info =
        readReply<q5_getControllerInfo, ControllerInfo>({hbaAddress(id), &controller.faults}, general);
    if ((options.kinds & kMediaPatrol) != 0)
        readDrives(&controller);
    if ((options.kinds & kAnyActivity) != 0)
        readLogicalDrives(&controller);
    return controller;
}

// An object may be deleted between the count and the list: a short list is read again.
static Controller readSelected(const Options& options, std::uint32_t id) {
    Controller controller = readOnce(options, id);
    const bool isShort =
        findRefusedListing(controller) == nullptr && !shortListsText(options, controller).empty();
    return isShort ? readOnce(options, id) : controller;
}

View observe(const Options& options, std::uint32_t controllerCount) {
    View view;
    const std::uint32_t count = std::min(controllerCount, kMaxSnapshotControllers);
    for (std::uint32_t id = 0; id < count; ++id) {
        if (options.controller && id != *options.controller)
            continue;
        const Controller controller = readSelected(options, id);
        addController(options, controller, &view);
        if (view.problem.empty())
            view.problem = findProblem(options, controller);
    }
    return view;
}
