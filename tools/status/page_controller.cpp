// A controller on the HTML page: its own facts and battery; the other parts follow.
#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/page_parts.h"
#include "tools/status/rules.h"

static constexpr char kUnread[] = "could not be read";

static std::string enabledText(bool enabled) {
    return enabled ? "enabled" : "disabled";
}

static std::string memoryText(const Controller& controller) {
    if (!controller.info)
        return kUnread;
    return std::to_string(controller.info->memorySize) +
           (controller.info->memoryType == 1 ? " MB, ECC" : " MB, non-ECC");
}

static void addControllerFacts(const Controller& controller, std::string* page) {
    *page += "<dl>\n";
    addFact(page, "Firmware",
            controller.version ? versionText(controller.version->firmwareVersion) : kUnread);
    addFact(page, "BIOS", controller.info ? versionText(controller.info->biosVersion) : kUnread);
    addFact(page, "Driver", controller.driver ? versionText(controller.driver->driverVersion) : kUnread);
    addFact(page, "Memory", memoryText(controller));
    addFact(page, "Automatic rebuild",
            controller.settings ? enabledText(controller.settings->autoRebuild != 0) : kUnread);
    addFact(page, "Buzzer", controller.buzzer ? enabledText(*controller.buzzer != 0) : "unknown");
    if (!hasBattery(controller))
        addFact(page, "Battery", controller.battery ? "none" : kUnread);
    *page += "</dl>\n";
}

static void addBatteryFacts(const BatteryInfo& battery, std::uint8_t state, std::string* page) {
    *page += "<dl>\n";
    addFact(page, "State", batteryStateText(state));
    addFact(page, "Temperature",
            battery.temperature == 0 ? "no reading" : decimal(batteryTenthsCelsius(battery), 1) + " °C");
    addFact(page, "Voltage",
            battery.voltage == kNoVoltage ? "no reading" : decimal(battery.voltage, 3) + " V");
    *page += "</dl>\n";
}

static void addBattery(const Report& report, const Controller& controller, std::string* page) {
    if (!hasBattery(controller))
        return;
    openCard(report, batteryOf(controller), "Battery", page);
    addBatteryFacts(*controller.battery, batteryState(controller), page);
    closeCard(page);
}

static void addCards(const Report& report, const Controller& controller, std::string* page) {
    *page += "<h3>Controller and battery</h3>\n<div class=\"cards\">\n";
    openCard(report, objectOf(controller), "Controller " + std::to_string(controller.id), page);
    addControllerFacts(controller, page);
    closeCard(page);
    addBattery(report, controller, page);
    *page += "</div>\n";
}

void addController(const Report& report, const Controller& controller, std::string* page) {
    const std::string number = std::to_string(controller.id);
    const std::string id = "c" + number;
    *page += "<section id=\"" + id + "\" aria-labelledby=\"" + id + "-heading\">\n<h2 id=\"" + id +
             "-heading\">Controller " + number + "</h2>\n";
    addCards(report, controller, page);
    addLogicalDrives(report, controller, page);
    addEnclosures(report, controller, page);
    addDrives(report, controller, page);
    *page += "</section>\n";
}
