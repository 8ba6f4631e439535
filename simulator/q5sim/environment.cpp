// The commands for batteries, sensors, enclosures, controllers and power.
#include <cstring>

#include "simulator/q5sim/command.h"

namespace q5sim {

struct Choice {
    const char* word;
    std::uint8_t code;
};

static const Choice* findChoice(std::initializer_list<Choice> const& choices, const char* word) {
    for (const Choice& choice : choices)
        if (std::strcmp(choice.word, word) == 0)
            return &choice;
    return nullptr;
}

int batteryCommand(const Arguments& arguments) {
    static const std::initializer_list<Choice> states = {{"charging", kBatteryCharging},
                                                         {"discharging", kBatteryDischarging},
                                                         {"full", kBatteryFull},
                                                         {"failed", kBatteryFailed},
                                                         {"missing", kBatteryMissing}};
    const Choice* state = findChoice(states, arguments.words[1]);
    if (state == nullptr)
        return usageError(std::string(arguments.words[1]) + " is not a state of a battery");
    const Options& options = arguments.options;
    const std::string headline =
        std::string("battery of controller ") + arguments.words[0] + ": " + arguments.words[1];
    return changeController(
        arguments.words[0], headline, true, [&](Controller& controller, std::int64_t now) {
            const bool same = controller.hasBattery && controller.battery.state == state->code;
            Reason reason = same && options.hasCelsius ? "" : setBattery(controller, state->code, now);
            if (reason.empty() && options.hasCelsius)
                controller.battery.temperature = options.celsius * 10;
            return reason;
        });
}

static bool readEnclosure(const char* word, std::int64_t& id) {
    return readNumber(word, kMaxEnclosures - 1, id);
}

int sensorCommand(const Arguments& arguments) {
    static const std::initializer_list<Choice> types = {{"fan", kFanSensor},
                                                        {"temperature", kTemperatureSensor},
                                                        {"5v", kRail5VSensor},
                                                        {"12v", kRail12VSensor}};
    const Choice* type = findChoice(types, arguments.words[2]);
    std::int64_t enclosure = 0, value = 0;
    if (!readEnclosure(arguments.words[1], enclosure))
        return usageError(std::string(arguments.words[1]) + " is not an enclosure ID");
    if (type == nullptr)
        return usageError(std::string(arguments.words[2]) + " is not a kind of sensor");
    if (!readSigned(arguments.words[3], INT32_MAX, value))
        return usageError(std::string(arguments.words[3]) + " is not a reading");
    const std::string headline = std::string(arguments.words[2]) + " sensor of enclosure " +
                                 arguments.words[1] + " of controller " + arguments.words[0] + " set to " +
                                 arguments.words[3];
    return changeController(arguments.words[0], headline, false, [&](Controller& controller, std::int64_t) {
        return setSensor(controller, static_cast<std::uint32_t>(enclosure), type->code,
                         static_cast<std::int32_t>(value));
    });
}

static int changeEnclosure(const Arguments& arguments, const char* done,
                           Reason (*inject)(Controller&, std::uint32_t, std::int64_t)) {
    std::int64_t enclosure = 0;
    if (!readEnclosure(arguments.words[1], enclosure))
        return usageError(std::string(arguments.words[1]) + " is not an enclosure ID");
    const std::string headline =
        std::string("enclosure ") + arguments.words[1] + " of controller " + arguments.words[0] + " " + done;
    return changeController(arguments.words[0], headline, true,
                            [&](Controller& controller, std::int64_t now) {
                                return inject(controller, static_cast<std::uint32_t>(enclosure), now);
                            });
}

int pullEnclosureCommand(const Arguments& arguments) {
    return changeEnclosure(arguments, "removed", pullEnclosure);
}

int insertEnclosureCommand(const Arguments& arguments) {
    return changeEnclosure(arguments, "inserted", insertEnclosure);
}

int swapControllerCommand(const Arguments& arguments) {
    return changeController(arguments.words[0], std::string("controller ") + arguments.words[0] + " replaced",
                            true, [](Controller& controller, std::int64_t now) {
                                swapController(controller, now);
                                return Reason();
                            });
}

int powerCutCommand(const Arguments&) {
    return changeWholeWorld([] { return std::string("power was cut and is back"); },
                            [](World& world, std::int64_t now) {
                                cutPower(world, now);
                                return Reason();
                            });
}

} // namespace q5sim
