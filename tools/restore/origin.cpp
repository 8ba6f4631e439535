// Identifies controllers by the serials of their drives.
#include "tools/restore/origin.h"

#include "snapshot/serials.h"

static bool sharesDrive(const Controller& a, const Controller& b) {
    return countSharedDrives(a, b) > 0;
}

static const Controller* findSharing(const Snapshot& snapshot, const Controller& controller) {
    for (const Controller& each : snapshot.controllers)
        if (sharesDrive(each, controller))
            return &each;
    return nullptr;
}

std::string doubtAboutOrigin(const Snapshot& saved, const Snapshot& now, std::uint32_t id) {
    const Controller* before = findController(saved, id);
    const Controller* present = findController(now, id);
    if (present == nullptr || (before != nullptr && sharesDrive(*before, *present)))
        return "";
    const std::string own = std::to_string(id);
    if (const Controller* other = findSharing(saved, *present)) {
        const std::string from = std::to_string(other->id);
        const std::string has = "this controller has drives of controller " + from + " of the backup, ";
        return before != nullptr ? has + "but none of controller " + own + "; use --from " + from +
                                       ", or --from " + own + " if that one is meant nevertheless"
                                 : has + "which has no controller " + own + "; use --from " + from;
    }
    const Controller* other = before != nullptr ? findSharing(now, *before) : nullptr;
    if (other == nullptr)
        return "";
    const std::string there = std::to_string(other->id);
    return "the drives of controller " + own + " of the backup are at controller " + there + " now; use -i " +
           there + " --from " + own + ", or --from " + own + " if this controller is meant nevertheless";
}
