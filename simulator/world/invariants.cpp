// Checks beyond those of a world file: a hand-edited world may break them until it is advanced.
#include "simulator/world/invariants.h"

#include <algorithm>

#include "simulator/world/array_rules.h"
#include "simulator/world/extent_alloc.h"
#include "simulator/world/world_check.h"

namespace q5sim {

namespace {
struct Findings {
    std::vector<std::string> lines;
    std::string where; // prefix of the lines
    void require(bool holds, const std::string& text) {
        if (!holds)
            lines.push_back(where + text);
    }
};
} // namespace

static void checkFile(Findings& findings, const World& world) {
    try {
        checkWorld(world);
    } catch (const WorldError& error) {
        std::string path;
        for (const std::string& step : error.path)
            path += (path.empty() ? "" : ".") + step;
        findings.require(false, path + ": " + error.reason);
    }
}

static void checkCapacity(Findings& findings, const Controller& controller) {
    for (const Drive& drive : controller.drives) {
        std::uint64_t used = 0;
        for (const Extent& extent : drive.extents)
            used += extent.size;
        findings.require(used <= drive.sectors, "the extents of a drive exceed its size");
        findings.require(drive.extents.size() <= kMaxExtents, "a drive has too many extents");
    }
}

static bool isTarget(const LogicalDrive& array, std::size_t position) {
    const std::vector<RebuildTarget>& targets = array.activity.targets;
    return std::any_of(targets.begin(), targets.end(),
                       [&](const RebuildTarget& target) { return target.position == position; });
}

static void checkActivity(Findings& findings, const Controller& controller, const LogicalDrive& array) {
    const Activity& activity = array.activity;
    findings.require(activity.kind == 0 || array.reportedState != 0,
                     "an offline logical drive has an activity");
    for (const RebuildTarget& target : activity.targets) {
        const Drive* drive = findDrive(controller, target.drive);
        findings.require(drive != nullptr && !drive->failed && holdsExtentOf(*drive, array.arrayId),
                         "a rebuild target is not usable");
    }
}

static void checkArray(Findings& findings, const Controller& controller, const LogicalDrive& array) {
    const std::uint8_t status = functionalStatus(controller, array);
    findings.require(array.reportedState == status,
                     std::string("the reported state is not ") + statusName(status));
    for (std::size_t i = 0; i < array.members.size(); i++) {
        const bool lost = !isWorkingMember(controller, array, i);
        findings.require(!lost || status != kOnline, "it is online without all members");
        findings.require(!lost || status == 0 || array.idle || isStaleMember(array, array.members[i]) ||
                             isTarget(array, i),
                         "a lost member is not stale");
    }
    checkActivity(findings, controller, array);
}

std::vector<std::string> findViolations(const World& world) {
    Findings findings;
    checkFile(findings, world);
    for (std::size_t i = 0; i < world.controllers.size(); i++) {
        const Controller& controller = world.controllers[i];
        findings.where = "controller " + std::to_string(i) + ": ";
        checkCapacity(findings, controller);
        for (const LogicalDrive& array : controller.logicalDrives) {
            findings.where = "controller " + std::to_string(i) + ": logical drive " +
                             std::to_string(array.logDrvId) + ": ";
            checkArray(findings, controller, array);
        }
    }
    return findings.lines;
}

static bool hasLogged(const Controller& before, const Controller& after, const std::string& text) {
    const std::vector<Event> events = newEvents(before, after);
    return std::any_of(events.begin(), events.end(),
                       [&](const Event& event) { return event.text.find(text) != std::string::npos; });
}

static void checkDriveStep(Findings& findings, const Controller& before, const Controller& after) {
    for (const Drive& drive : before.drives) {
        const std::string name = "Drive " + std::to_string(drive.id + 1);
        const Drive* now = findDrive(after, drive.id);
        if (now == nullptr)
            findings.require(hasLogged(before, after, name + " has been removed"),
                             name + ": removed silently");
        else if (now->failed && !drive.failed)
            findings.require(hasLogged(before, after, name + " has failed"), name + ": failed silently");
    }
}

static void checkArrayStep(Findings& findings, const Controller& before, const Controller& after) {
    for (const LogicalDrive& array : before.logicalDrives) {
        const LogicalDrive* now = findArray(after, array.arrayId);
        if (now == nullptr || now->reportedState == array.reportedState ||
            array.reportedState == kStateNotReported)
            continue;
        const std::string text =
            "Logical drive " + std::to_string(array.logDrvId) + " is " + statusName(now->reportedState);
        findings.require(hasLogged(before, after, text), "no event: " + text);
    }
}

std::vector<std::string> findStepViolations(const World& before, const World& after) {
    Findings findings;
    for (std::size_t i = 0; i < before.controllers.size() && i < after.controllers.size(); i++) {
        findings.where = "controller " + std::to_string(i) + ": ";
        checkDriveStep(findings, before.controllers[i], after.controllers[i]);
        checkArrayStep(findings, before.controllers[i], after.controllers[i]);
    }
    return findings.lines;
}

} // namespace q5sim
