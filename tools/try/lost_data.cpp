// Data that commands have destroyed on a copy, and protection that it has lost.
#include <algorithm>

#include "simulator/engine/rules.h"
#include "simulator/world/array_rules.h"
#include "snapshot/text.h"
#include "tools/try/effects.h"

std::string nameOf(std::size_t controller, const q5sim::LogicalDrive& drive) {
    return "controller " + std::to_string(controller) + ": logical drive " + std::to_string(drive.logDrvId) +
           (drive.name.empty() ? "" : " " + printable(drive.name));
}

std::string sizeText(std::uint64_t sectors) {
    const std::string digits = std::to_string(sectors / q5sim::kSectorsPerMb);
    std::string text;
    for (std::size_t i = 0; i < digits.size(); i++) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            text += ',';
        text += digits[i];
    }
    return text + " MB";
}

static const q5sim::Controller* controllerAt(const q5sim::World& world, std::size_t position) {
    return position < world.controllers.size() ? &world.controllers[position] : nullptr;
}

// Whether it has the same drives and geometry.
static bool isSameShape(const q5sim::LogicalDrive& one, const q5sim::LogicalDrive& other) {
    return one.level == other.level && one.sectors == other.sectors && one.members == other.members;
}

// What happened to the data of a captured logical drive; empty: it is intact.
static std::string lossText(const q5sim::Controller& expected, const q5sim::LogicalDrive& drive,
                            const q5sim::Controller& after) {
    const q5sim::LogicalDrive* left = q5sim::findArray(after, drive.arrayId);
    if (left == nullptr)
        return "would be deleted";
    if (!left->captured && !isSameShape(drive, *left))
        return "would be deleted; another one would take its number";
    if (!left->captured)
        return "would be overwritten";
    if (left->sectors < drive.sectors)
        return "would shrink to " + sizeText(left->sectors);
    if (left->lostStripes > drive.lostStripes)
        return "would lose data that cannot be read from any member";
    const q5sim::LogicalDrive* undisturbed = q5sim::findArray(expected, drive.arrayId);
    if (undisturbed != nullptr && q5sim::functionalStatus(expected, *undisturbed) != 0 &&
        q5sim::functionalStatus(after, *left) == 0)
        return "would go offline: its data could not be reached";
    return "";
}

// Whether the extent may contain data although it is not in use: it belongs to an unknown array, or to one
// that is offline.
static bool holdsOnlyCopy(const q5sim::Controller& controller, const q5sim::Extent& extent) {
    if (extent.use == q5sim::kUseForeign)
        return true;
    const q5sim::LogicalDrive* array =
        extent.use == q5sim::kUseArray ? q5sim::findArray(controller, extent.array) : nullptr;
    return array != nullptr && q5sim::functionalStatus(controller, *array) == 0;
}

static bool isKept(const q5sim::Controller& after, std::uint16_t id, const q5sim::Extent& extent) {
    const q5sim::Drive* drive = q5sim::findDrive(after, id);
    return drive != nullptr &&
           std::any_of(drive->extents.begin(), drive->extents.end(), [&](const q5sim::Extent& left) {
               return left.use == extent.use && left.array == extent.array && left.start == extent.start;
           });
}

static std::string extentName(std::size_t controller, const q5sim::Drive& drive, std::size_t index) {
    return "controller " + std::to_string(controller) + ": drive " + std::to_string(drive.id + 1) +
           ", extent " + std::to_string(index);
}

// The loss of a deleted array is reported as a whole, not by its extents.
static void addLostExtents(const q5sim::World& before, std::size_t id, const q5sim::Controller& after,
                           TextLines* lines) {
    const q5sim::Controller& controller = before.controllers[id];
    for (const q5sim::Drive& drive : controller.drives)
        for (std::size_t i = 0; i < drive.extents.size(); i++) {
            const q5sim::Extent& extent = drive.extents[i];
            const bool deleted =
                extent.use == q5sim::kUseArray && q5sim::findArray(after, extent.array) == nullptr;
            if (!deleted && holdsOnlyCopy(controller, extent) && !isKept(after, drive.id, extent))
                lines->push_back(extentName(id, drive, i) + ", " + sizeText(extent.size) + " of " +
                                 (extent.use == q5sim::kUseForeign ? "another controller's array"
                                                                   : "an array that is offline") +
                                 ", would be given up");
        }
}

TextLines lostData(const Effects& effects) {
    TextLines lines;
    for (std::size_t id = 0; id < effects.before.controllers.size(); id++) {
        const q5sim::Controller& before = effects.before.controllers[id];
        const q5sim::Controller* after = controllerAt(effects.end, id);
        if (after == nullptr)
            continue;
        for (const q5sim::LogicalDrive& drive : before.logicalDrives)
            if (const std::string loss = lossText(effects.expected.controllers[id], drive, *after);
                drive.captured && !loss.empty())
                lines.push_back(nameOf(id, drive) + ", " + sizeText(drive.sectors) + ", " + loss);
        addLostExtents(effects.before, id, *after, &lines);
    }
    return lines;
}

// Higher is better protected.
static int protection(std::uint8_t level, std::uint8_t status) {
    if (status == 0)
        return -1;
    if (!q5sim::isRedundant(level) || status == kCritical)
        return 0;
    return status == kDegraded ? 1 : 2;
}

static void addLostSpares(const q5sim::Controller& expected, std::size_t id, const q5sim::Controller& after,
                          TextLines* lines) {
    for (const q5sim::Drive& drive : expected.drives)
        for (std::size_t i = 0; i < drive.extents.size(); i++) {
            const std::uint8_t use = drive.extents[i].use;
            if ((use == q5sim::kUseGlobalSpare || use == q5sim::kUseDedicatedSpare) &&
                !isKept(after, drive.id, drive.extents[i]))
                lines->push_back(extentName(id, drive, i) + " would no longer be a spare");
        }
}

// Whether the data of a logical drive survives the loss of drives as it would have without the commands.
static void addLostProtection(const q5sim::Controller& expected, std::size_t id,
                              const q5sim::Controller& after, TextLines* lines) {
    for (const q5sim::LogicalDrive& drive : expected.logicalDrives) {
        const q5sim::LogicalDrive* left = q5sim::findArray(after, drive.arrayId);
        if (left == nullptr || !left->captured)
            continue;
        const std::uint8_t status = q5sim::functionalStatus(after, *left);
        if (protection(left->level, status) <
            protection(drive.level, q5sim::functionalStatus(expected, drive)))
            lines->push_back(nameOf(id, *left) + " would be less protected against the loss of a drive: " +
                             q5sim::levelName(left->level) + ", " + q5sim::statusName(status));
    }
}

// Extents of members that count as lost. The adapters do not show whether such an extent is really that of
// the lost member, or belongs to another system.
static void addLostStale(const q5sim::Controller& expected, std::size_t id, const q5sim::Controller& after,
                         TextLines* lines) {
    for (const q5sim::LogicalDrive& array : expected.logicalDrives)
        for (const q5sim::Drive& drive : expected.drives)
            for (std::size_t i = 0; i < drive.extents.size(); i++)
                if (const q5sim::Extent& extent = drive.extents[i];
                    extent.use == q5sim::kUseArray && extent.array == array.arrayId &&
                    q5sim::isStaleMember(array, drive.id) && !isKept(after, drive.id, extent))
                    lines->push_back(extentName(id, drive, i) + ", " + sizeText(extent.size) +
                                     " that count as an outdated member of logical drive " +
                                     std::to_string(array.logDrvId) + ", would be given up");
}

TextLines riskedData(const Effects& effects) {
    TextLines lines;
    for (std::size_t id = 0; id < effects.expected.controllers.size(); id++) {
        const q5sim::Controller* after = controllerAt(effects.end, id);
        if (after == nullptr)
            continue;
        addLostProtection(effects.expected.controllers[id], id, *after, &lines);
        addLostSpares(effects.expected.controllers[id], id, *after, &lines);
        addLostStale(effects.expected.controllers[id], id, *after, &lines);
    }
    return lines;
}

TextLines loggedEvents(const q5sim::World& before, const q5sim::World& after) {
    TextLines lines;
    for (std::size_t id = 0; id < before.controllers.size(); id++)
        if (const q5sim::Controller* controller = controllerAt(after, id))
            for (const q5sim::Event& event : q5sim::newEvents(before.controllers[id], *controller))
                lines.push_back(printable("controller " + std::to_string(id) + ": " + event.text));
    return lines;
}

// Queries are often refused, for objects that do not exist.
TextLines refusedOperations(const q5sim::World& world) {
    TextLines lines;
    for (const q5sim::Refusal& refusal : world.refusals)
        if (!q5sim::isQuery(refusal))
            lines.insert(lines.begin(), printable(refusal.operation + ": " + refusal.reason));
    if (world.olderRefusals > 0)
        lines.insert(lines.begin(), counted(world.olderRefusals, "operation") + " before these");
    return lines;
}
