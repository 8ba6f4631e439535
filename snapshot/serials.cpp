// The serial numbers of drives.
#include "snapshot/serials.h"

#include <algorithm>

#include "snapshot/text.h"

std::string_view serialOf(const Drive& drive) {
    return trimmed(fieldText(drive.info.serial));
}

static bool hasSerial(const Controller& controller, std::string_view serial) {
    return std::any_of(controller.drives.begin(), controller.drives.end(),
                       [serial](const Drive& drive) { return serialOf(drive) == serial; });
}

std::size_t countSharedDrives(const Controller& one, const Controller& other) {
    const auto isShared = [&](const Drive& drive) {
        return !serialOf(drive).empty() && hasSerial(other, serialOf(drive));
    };
    return static_cast<std::size_t>(std::count_if(one.drives.begin(), one.drives.end(), isShared));
}
