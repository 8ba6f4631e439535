// Rules that compare with an earlier snapshot. Only they notice what disappeared silently.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"
#include "tools/status/rules_baseline.h"

void findMissingArrays(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const LogicalDrive& drive : pair.earlier.logicalDrives)
            if (findLogicalDrive(pair.now, drive.info.logDrvId) == nullptr && hasAllLogicalDrives(pair.now))
                addFinding(evaluation, objectOf(pair.earlier, drive), "is missing; it was " + shapeOf(drive));
    });
}

void findNewArrays(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const LogicalDrive& drive : pair.now.logicalDrives)
            if (findLogicalDrive(pair.earlier, drive.info.logDrvId) == nullptr &&
                hasAllLogicalDrives(pair.earlier))
                addFinding(evaluation, objectOf(pair.now, drive), "is new; it is " + shapeOf(drive));
    });
}

// apply(pair, earlier, now): logical drives with the same ID.
template <typename Apply>
static void forEachArrayPair(const Evaluation& evaluation, Apply apply) {
    forEachPair(evaluation, [&](const Pair& pair) {
        for (const LogicalDrive& drive : pair.now.logicalDrives)
            if (const LogicalDrive* earlier = findLogicalDrive(pair.earlier, drive.info.logDrvId))
                apply(pair, *earlier, drive);
    });
}

void findChangedArrays(Evaluation* evaluation) {
    forEachArrayPair(*evaluation,
                     [&](const Pair& pair, const LogicalDrive& earlier, const LogicalDrive& now) {
                         const std::string name(fieldText(earlier.info.name));
                         if (shapeOf(earlier) != shapeOf(now))
                             addFinding(evaluation, objectOf(pair.now, now),
                                        "is " + shapeOf(now) + "; it was " + shapeOf(earlier));
                         if (name != fieldText(now.info.name))
                             addFinding(evaluation, objectOf(pair.now, now),
                                        name.empty() ? "had no name" : "was named " + name);
                     });
}

static std::string drivesOf(const LogicalDrive& drive) {
    std::vector<std::uint32_t> numbers;
    for (const Member& member : drive.members)
        numbers.push_back(member.number);
    std::sort(numbers.begin(), numbers.end());
    std::string text = numbers.size() == 1 ? "drive" : "drives";
    for (std::size_t i = 0; i < numbers.size(); ++i)
        text += (i == 0 ? " " : ", ") + std::to_string(numbers[i]);
    return text;
}

// Lost members count: only a rebuild or a migration replaces them. An online logical drive has lost none.
static bool areMembersKnown(const LogicalDrive& drive) {
    return !drive.members.empty() && (drive.lostMask || arrayState(drive) == ArrayState::online);
}

void findMovedArrays(Evaluation* evaluation) {
    forEachArrayPair(
        *evaluation, [&](const Pair& pair, const LogicalDrive& earlier, const LogicalDrive& now) {
            if (areMembersKnown(earlier) && areMembersKnown(now) && drivesOf(earlier) != drivesOf(now))
                addFinding(evaluation, objectOf(pair.now, now),
                           "is on " + drivesOf(now) + "; it was on " + drivesOf(earlier));
        });
}

void findMissingEnclosures(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.earlier.enclosures)
            if (findEnclosure(pair.now, enclosure.id) == nullptr && hasAllEnclosures(pair.now))
                addFinding(evaluation, objectOf(pair.earlier, enclosure), "is missing");
    });
}

void findNewEnclosures(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.now.enclosures)
            if (findEnclosure(pair.earlier, enclosure.id) == nullptr && hasAllEnclosures(pair.earlier))
                addFinding(evaluation, objectOf(pair.now, enclosure), "is new");
    });
}

// An enclosure reports nothing else that identifies it.
void findReplacedEnclosures(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.now.enclosures) {
            const Enclosure* earlier = findEnclosure(pair.earlier, enclosure.id);
            if (earlier != nullptr && earlier->entry.type != enclosure.entry.type)
                addFinding(evaluation, objectOf(pair.now, enclosure),
                           std::string("is now ") + enclosureTypeText(enclosure.entry.type) + "; it was " +
                               enclosureTypeText(earlier->entry.type));
        }
    });
}

static std::ptrdiff_t countSensors(const Enclosure& enclosure, std::uint8_t type) {
    const auto& all = enclosure.status->sensor;
    return std::count_if(std::begin(all), std::end(all),
                         [&](const EnclosureSensor& each) { return each.type == type; });
}

// Both enclosures are of the same type and were read.
static void compareSensors(Evaluation* evaluation, const Pair& pair, const Enclosure& earlier,
                           const Enclosure& now) {
    static constexpr std::uint8_t types[] = {kFanSensor, kRail5VSensor, kRail12VSensor, kTemperatureSensor};
    std::vector<std::string> parts;
    std::string text = "reports fewer sensors:";
    for (const std::uint8_t type : types) {
        const std::ptrdiff_t before = countSensors(earlier, type), after = countSensors(now, type);
        if (after >= before)
            continue;
        text += std::string(parts.empty() ? " " : ", ") + sensorTypeText(type) + " (" +
                std::to_string(after) + " of " + std::to_string(before) + ")";
        parts.push_back(sensorTypeText(type));
    }
    if (!parts.empty())
        addFindingOf(evaluation, objectOf(pair.now, now), parts, text);
}

// Sensors have no names: those of a type are counted.
void findMissingSensors(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        for (const Enclosure& enclosure : pair.now.enclosures) {
            const Enclosure* earlier = findEnclosure(pair.earlier, enclosure.id);
            if (earlier != nullptr && earlier->entry.type == enclosure.entry.type && earlier->status &&
                enclosure.status)
                compareSensors(evaluation, pair, *earlier, enclosure);
        }
    });
}

void findMissingBatteries(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        if (hasBattery(pair.earlier) && pair.now.battery && !hasBattery(pair.now))
            addFinding(evaluation, batteryOf(pair.now), "is missing");
    });
}

void findNewBatteries(Evaluation* evaluation) {
    forEachPair(*evaluation, [&](const Pair& pair) {
        if (pair.earlier.battery && !hasBattery(pair.earlier) && hasBattery(pair.now))
            addFinding(evaluation, batteryOf(pair.now), "is new");
    });
}

// Whether the controllers are those of an earlier time, because the library finds none.
static bool areGone(const Snapshot& snapshot) {
    return snapshot.controllerCount == 0 && !snapshot.controllers.empty();
}

// A snapshot has as many controllers as the library counts, unless the library failed.
void findMissingControllers(Evaluation* evaluation) {
    const Snapshot* baseline = evaluation->baseline;
    if (baseline == nullptr || areGone(*baseline) || !evaluation->snapshot.faults.empty())
        return;
    for (const Controller& earlier : evaluation->baseline->controllers)
        if (findController(evaluation->snapshot, earlier.id) == nullptr)
            addFinding(evaluation, objectOf(earlier), "is missing");
}

// A controller that was counted but not read is not new. If the library could not count them, any may have
// been there.
static bool isNew(const Snapshot& baseline, std::uint32_t controllerId) {
    if (findController(baseline, controllerId) != nullptr)
        return areGone(baseline);
    return (controllerId >= baseline.controllerCount ||
            baseline.controllers.size() == baseline.controllerCount) &&
           (baseline.controllerCount > 0 || baseline.faults.empty());
}

void findNewControllers(Evaluation* evaluation) {
    if (evaluation->baseline == nullptr || areGone(evaluation->snapshot))
        return;
    for (const Controller& controller : evaluation->snapshot.controllers)
        if (isNew(*evaluation->baseline, controller.id))
            addFinding(evaluation, objectOf(controller), "is new");
}

static std::string formerName(const Controller& controller) {
    return "former controller " + std::to_string(controller.id);
}

// Its logical drives are missing with it; their numbers may belong to others now.
std::string formerMissingText(const Controller& former) {
    std::string text =
        "the " + formerName(former) + " is missing, with " + counted(former.drives.size(), "drive");
    for (const LogicalDrive& drive : former.logicalDrives)
        text += ", " + shortObjectText(objectOf(former, drive));
    return text;
}

void findMissingFormerControllers(Evaluation* evaluation) {
    if (evaluation->renumbering == nullptr)
        return;
    for (const Controller& controller : evaluation->renumbering->missing)
        addFindingOf(evaluation, {}, {formerName(controller)}, formerMissingText(controller));
}

void findRenumberedControllers(Evaluation* evaluation) {
    if (evaluation->renumbering == nullptr)
        return;
    for (const NumberChange& change : evaluation->renumbering->changes)
        addFinding(evaluation, {ObjectKind::controller, change.now, change.now, ""},
                   "has another number; it was controller " + std::to_string(change.former));
}
