// Battery states and the cache modes that follow from them.
#include "simulator/engine/cache.h"

#include "simulator/engine/progress.h"

namespace q5sim {

// How long the states of a battery last.
static constexpr std::int64_t kChargeSeconds = 4 * 3600;
static constexpr std::int64_t kDischargeSeconds = 2 * 3600;
static constexpr std::int64_t kReconditionSeconds = 6 * 3600;

const char* batteryStateName(std::uint8_t state) {
    switch (state) {
    case kBatteryCharging:
        return "is charging";
    case kBatteryDischarging:
        return "is discharging";
    case kBatteryFull:
        return "is fully charged";
    case kBatteryFailed:
        return "has failed";
    case kBatteryReconditioning:
        return "is reconditioning";
    default:
        return "is missing";
    }
}

static std::int64_t durationOf(std::uint8_t state) {
    switch (state) {
    case kBatteryCharging:
        return kChargeSeconds;
    case kBatteryDischarging:
        return kDischargeSeconds;
    case kBatteryReconditioning:
        return kReconditionSeconds;
    default:
        return kNoDeadline;
    }
}

std::int64_t batteryDueTime(const Controller& controller) {
    const Battery& battery = controller.battery;
    const std::int64_t duration = durationOf(battery.state);
    if (!controller.hasBattery || battery.since == 0 || duration == kNoDeadline)
        return kNoDeadline;
    return battery.since + duration;
}

void completeBatteryState(Controller& controller, std::int64_t at) {
    Battery& battery = controller.battery;
    battery.reportedState = battery.state;
    battery.state = battery.state == kBatteryDischarging ? kBatteryFailed : kBatteryFull;
    battery.since = at;
    reportBattery(controller, at);
}

static bool isUnprotected(const Controller& controller) {
    const std::uint8_t state = controller.battery.state;
    return controller.hasBattery && (state == kBatteryFailed || state == kBatteryMissing);
}

void reportBattery(Controller& controller, std::int64_t now) {
    Battery& battery = controller.battery;
    const bool isFirst = battery.reportedState == kBatteryUnreported && !isUnprotected(controller);
    if (controller.hasBattery && battery.state != battery.reportedState && !isFirst) {
        addEvent(controller, now, "Battery %s", batteryStateName(battery.state));
        battery.reportedState = battery.state;
    }
    const bool forced = isUnprotected(controller);
    if (forced == controller.writeThroughForced)
        return;
    controller.writeThroughForced = forced;
    for (const LogicalDrive& array : controller.logicalDrives)
        if ((array.cacheFlags & kWriteBack) != 0)
            addEvent(controller, now, "Logical drive %d: write cache is %s", array.logDrvId,
                     forced ? "write-through without a battery" : "write-back again");
}

std::uint8_t effectiveCacheFlags(const Controller& controller, const LogicalDrive& array) {
    const int flags = isUnprotected(controller) ? array.cacheFlags & ~kWriteBack : array.cacheFlags;
    return static_cast<std::uint8_t>(flags);
}

bool losesCacheInPowerCut(const Controller& controller, const LogicalDrive& array) {
    return !controller.hasBattery && (effectiveCacheFlags(controller, array) & kWriteBack) != 0;
}

} // namespace q5sim
