// What cannot be compared with an earlier snapshot, because one of the two is incomplete.
#include "tools/status/facts.h"
#include "tools/status/rule_finders.h"
#include "tools/status/rules_baseline.h"

// Objects of the baseline that may be in the part of a list that could not be read.
static void addUnchecked(Evaluation* evaluation, const Object& object, const std::string& word,
                         const std::vector<std::uint32_t>& numbers) {
    if (numbers.empty())
        return;
    std::vector<std::string> parts;
    std::string text = numbers.size() == 1 ? word : word + "s";
    for (const std::uint32_t number : numbers) {
        text += (parts.empty() ? " " : ", ") + std::to_string(number);
        parts.push_back(word + " " + std::to_string(number));
    }
    addFindingOf(evaluation, object, parts,
                 text + " of the baseline cannot be checked: not all " + word + "s could be read");
}

static void findUncheckedControllers(Evaluation* evaluation) {
    std::vector<std::uint32_t> numbers;
    if (evaluation->baseline != nullptr && !evaluation->snapshot.faults.empty())
        for (const Controller& earlier : evaluation->baseline->controllers)
            if (findController(evaluation->snapshot, earlier.id) == nullptr)
                numbers.push_back(earlier.id);
    addUnchecked(evaluation, {}, "controller", numbers);
}

static std::vector<std::uint32_t> uncheckedDrives(const Evaluation& evaluation, const Pair& pair) {
    std::vector<std::uint32_t> numbers;
    for (const Drive& drive : pair.earlier.drives)
        if (isUncheckedDrive(evaluation, pair, drive))
            numbers.push_back(drive.number);
    return numbers;
}

static std::vector<std::uint32_t> uncheckedArrays(const Pair& pair) {
    std::vector<std::uint32_t> numbers;
    for (const LogicalDrive& drive : pair.earlier.logicalDrives)
        if (findLogicalDrive(pair.now, drive.info.logDrvId) == nullptr && !hasAllLogicalDrives(pair.now))
            numbers.push_back(drive.info.logDrvId);
    return numbers;
}

static std::vector<std::uint32_t> uncheckedEnclosures(const Pair& pair) {
    std::vector<std::uint32_t> numbers;
    for (const Enclosure& enclosure : pair.earlier.enclosures)
        if (findEnclosure(pair.now, enclosure.id) == nullptr && !hasAllEnclosures(pair.now))
            numbers.push_back(enclosure.id);
    return numbers;
}

// An object that the baseline lacks is not reported when it disappears.
static void addIncomplete(Evaluation* evaluation, const Object& object, const std::string& words) {
    addFindingOf(evaluation, object, {words + " of the baseline"},
                 "the baseline may lack " + words + ": not all could be read when it was saved");
}

static void findIncompleteBaseline(Evaluation* evaluation) {
    const Snapshot& baseline = *evaluation->baseline;
    if (!baseline.faults.empty() || baseline.controllers.empty())
        addIncomplete(evaluation, {}, "controllers");
    forEachPair(*evaluation, [&](const Pair& pair) {
        const Object object = objectOf(pair.now);
        if (!hasAllDrives(pair.earlier))
            addIncomplete(evaluation, object, "drives");
        if (!hasAllLogicalDrives(pair.earlier))
            addIncomplete(evaluation, object, "logical drives");
        if (!hasAllEnclosures(pair.earlier))
            addIncomplete(evaluation, object, "enclosures");
    });
}

void findUncheckedObjects(Evaluation* evaluation) {
    findIncompleteBaseline(evaluation);
    findUncheckedControllers(evaluation);
    forEachPair(*evaluation, [&](const Pair& pair) {
        const Object object = objectOf(pair.now);
        addUnchecked(evaluation, object, "drive", uncheckedDrives(*evaluation, pair));
        addUnchecked(evaluation, object, "logical drive", uncheckedArrays(pair));
        addUnchecked(evaluation, object, "enclosure", uncheckedEnclosures(pair));
    });
}
