// The state of a logical drive, as users see it.
#include "snapshot/state.h"

ArrayState arrayState(const LogicalDrive& drive) {
    const std::uint8_t status = drive.info.functionalStatus;
    if ((status & kCritical) != 0)
        return ArrayState::critical;
    if ((status & kDegraded) != 0)
        return ArrayState::degraded;
    return (status & kOnline) != 0 ? ArrayState::online : ArrayState::offline;
}

const char* arrayStateText(ArrayState state) {
    static constexpr const char* words[] = {"online", "degraded", "critical", "offline"};
    return words[static_cast<std::size_t>(state)];
}
