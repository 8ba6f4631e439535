// Battery and buzzer.
#include "adapter/battery.h"

#include "simulator/operations/operation.h"

using namespace q5sim;

static constexpr std::int32_t kZeroCelsius = 2731; // tenths of a kelvin
static constexpr int kBatteryPresent = 0x80;

int q5_getBatteryInfo(HbaAddress address, std::uint32_t reserved, const BatteryQuery* query,
                      BatteryInfo* info, std::uint32_t size) {
    return fillReply(
        address, reserved, info, size, sizeof *info, [&](const Controller& controller, std::int64_t) {
            if (query == nullptr || query->reserved0 != 0 || query->reserved2 != 0)
                return refuse("battery: the query is invalid");
            info->header.bytesUsed = sizeof *info;
            if (!controller.hasBattery || controller.battery.state == kBatteryMissing)
                return kDone;
            const Battery& battery = controller.battery;
            info->temperature = static_cast<std::uint16_t>(battery.temperature + kZeroCelsius);
            info->voltage = battery.voltage < 0 ? kNoVoltage : static_cast<std::uint16_t>(battery.voltage);
            info->status = static_cast<std::uint8_t>(kBatteryPresent | battery.state);
            return kDone;
        });
}

int q5_getBuzzerStatus(HbaAddress address, std::uint32_t reserved, std::uint8_t* state, std::uint32_t size) {
    return fillReply(address, reserved, state, size, 1, [&](const Controller& controller, std::int64_t) {
        *state = controller.buzzer ? 1 : 0;
        return kDone;
    });
}

static int switchBuzzer(const Caller& caller, std::uint32_t reserved, std::uint32_t reserved2, bool on) {
    return updateController(caller, reserved, [&](Controller& controller, std::int64_t now) {
        if (reserved2 != 0)
            return refuse("buzzer: a reserved argument is not 0");
        if (controller.buzzer != on)
            addEvent(controller, now, "Buzzer %s", on ? "enabled" : "disabled");
        controller.buzzer = on;
        return kDone;
    });
}

int q5_turnOnBuzzer(HbaAddress address, std::uint32_t reserved, std::uint32_t reserved2) {
    return switchBuzzer(address, reserved, reserved2, true);
}

int q5_turnOffBuzzer(HbaAddress address, std::uint32_t reserved, std::uint32_t reserved2) {
    return switchBuzzer(address, reserved, reserved2, false);
}
