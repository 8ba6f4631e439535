// Controllers that have another number than in an earlier snapshot.
#include "tools/status/renumbered.h"

#include <algorithm>

#include "snapshot/serials.h"
#include "tools/status/facts.h"
#include "tools/status/rules.h"

const Controller* findByDrives(const Snapshot& snapshot, const Controller& wanted) {
    const Controller* best = nullptr;
    std::size_t most = 0;
    for (const Controller& each : snapshot.controllers) {
        const std::size_t shared = countSharedDrives(wanted, each);
        if (shared > most || (shared > 0 && shared == most && each.id == wanted.id)) {
            best = &each;
            most = shared;
        }
    }
    return best;
}

// The present controller that is the wanted one: each has more drives of the other than of any other
// controller.
static const Controller* findSame(const Snapshot& earlier, const Snapshot& now, const Controller& wanted) {
    const Controller* found = findByDrives(now, wanted);
    return found != nullptr && findByDrives(earlier, *found) == &wanted ? found : nullptr;
}

static bool isComplete(const Snapshot& snapshot) {
    return snapshot.faults.empty() && snapshot.controllers.size() == snapshot.controllerCount &&
           std::all_of(snapshot.controllers.begin(), snapshot.controllers.end(), hasAllDrives);
}

static bool isNowAnother(const Renumbering& renumbering, std::uint32_t id) {
    return std::any_of(renumbering.changes.begin(), renumbering.changes.end(),
                       [&](const NumberChange& change) { return change.now == id; });
}

static bool isMissing(const Renumbering& renumbering, std::uint32_t id) {
    return std::any_of(renumbering.missing.begin(), renumbering.missing.end(),
                       [&](const Controller& each) { return each.id == id; });
}

// The number itself if the controller has kept it.
static std::uint32_t presentNumber(const Renumbering& renumbering, std::uint32_t former) {
    for (const NumberChange& change : renumbering.changes)
        if (change.former == former)
            return change.now;
    return former;
}

static bool hasMoved(const Renumbering& renumbering, std::uint32_t former) {
    return presentNumber(renumbering, former) != former;
}

static Snapshot inPresentNumbers(const Renumbering& renumbering, Snapshot snapshot) {
    std::erase_if(snapshot.controllers,
                  [&](const Controller& each) { return isMissing(renumbering, each.id); });
    for (Controller& each : snapshot.controllers)
        each.id = presentNumber(renumbering, each.id);
    std::sort(snapshot.controllers.begin(), snapshot.controllers.end(),
              [](const Controller& left, const Controller& right) { return left.id < right.id; });
    snapshot.controllerCount = static_cast<std::uint32_t>(snapshot.controllers.size());
    return snapshot;
}

std::optional<Renumbering> findRenumbering(const Snapshot& earlier, const Snapshot& now) {
    if (!isComplete(earlier) || !isComplete(now))
        return std::nullopt;
    Renumbering renumbering;
    for (const Controller& each : earlier.controllers)
        if (const Controller* same = findSame(earlier, now, each); same != nullptr && same->id != each.id)
            renumbering.changes.push_back({each.id, same->id});
    if (renumbering.changes.empty())
        return std::nullopt;
    for (const Controller& each : earlier.controllers)
        if (!hasMoved(renumbering, each.id) && isNowAnother(renumbering, each.id))
            renumbering.missing.push_back(each);
    renumbering.earlier = inPresentNumbers(renumbering, earlier);
    return renumbering;
}

// Whether the finding is about a number, not about the controller that has it: it stays with the number.
static bool isAboutNumber(const Finding& finding) {
    return finding.object.kind == ObjectKind::host ||
           std::string_view(finding.rule->id) == "controller-renumbered";
}

static Object withNumber(Object object, std::uint32_t number) {
    object.controller = number;
    if (object.kind == ObjectKind::controller || object.kind == ObjectKind::battery)
        object.number = object.controller;
    return object;
}

Findings inPresentNumbers(const Renumbering& renumbering, const Findings& findings) {
    Findings present;
    for (const Finding& each : findings) {
        if (isAboutNumber(each))
            present.push_back(each);
        else if (!isMissing(renumbering, each.object.controller)) {
            present.push_back(each);
            present.back().object =
                withNumber(each.object, presentNumber(renumbering, each.object.controller));
        }
    }
    return present;
}

Findings inPresentNumber(const NumberChange& change, const Findings& findings) {
    Findings present;
    for (const Finding& each : findings)
        if (!isAboutNumber(each) && each.object.controller == change.former) {
            present.push_back(each);
            present.back().object = withNumber(each.object, change.now);
        }
    return present;
}
