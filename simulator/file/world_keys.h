// The keys of the world and its controllers, each named once for reading and writing.
#pragma once

#include "simulator/file/drive_keys.h"

namespace q5sim {

template <typename Io>
void describe(Io& io, Sensor& sensor) {
    io.word("type", sensor.type, std::span(kSensorWords));
    io.number("reading", sensor.reading, -kMaxSigned32, kMaxSigned32);
    io.flag("alarm", sensor.alarm);
    io.mark("steady", sensor.steady);
}

template <typename Io>
void describe(Io& io, Enclosure& enclosure) {
    require(io, "id");
    io.number("id", enclosure.id, 0, kMaxEnclosures - 1);
    require(io, "type");
    io.word("type", enclosure.type, std::span(kEnclosureWords));
    io.list("sensors", enclosure.sensors, 6);
}

template <typename Io>
void describe(Io& io, Battery& battery) {
    io.number("temperatureTenths", battery.temperature, -1000, 2000);
    io.number("millivolts", battery.voltage, -1, 65535);
    io.word("state", battery.state, std::span(kBatteryWords));
    io.word("reportedState", battery.reportedState, std::span(kReportedBatteryWords));
    io.number("since", battery.since, 0, kMaxSeconds);
}

template <typename Io>
void describe(Io& io, BusLocation& location) {
    io.number("irq", location.irq, 0, kMaxSigned32);
    io.number("slot", location.slot, 0, kMaxSigned32);
    io.number("biosMemoryStart", location.biosMemoryStart, 0, kMaxUnsigned32);
    io.number("biosMemoryRange", location.biosMemoryRange, 0, kMaxSigned32);
    io.number("busMasterBase", location.busMasterBase, 0, 255);
    io.number("ata", location.ata, 0, kMaxUnsigned32);
    io.number("xor", location.xorEngine, 0, kMaxUnsigned32);
    io.number("sequencer", location.sequencer, 0, kMaxUnsigned32);
    io.number("mmio", location.mmio, 0, kMaxUnsigned32);
    io.number("sdram", location.sdram, 0, kMaxUnsigned32);
}

template <typename Io>
void describe(Io& io, Rates& rates) {
    io.number("rebuild", rates.rebuild, 1, 255);
    io.number("synchronization", rates.sync, 1, 255);
    io.number("mediaPatrol", rates.patrol, 1, 255);
    io.number("initialization", rates.init, 1, 255);
    io.number("migration", rates.migrate, 1, 255);
}

template <typename Io>
void describe(Io& io, SpeedOption& option) {
    io.text("model", option.model, 21);
    io.text("firmware", option.firmware, 37);
    io.number("setting", option.setting, -kMaxSigned32 - 1, kMaxSigned32);
}

template <typename Io>
void describe(Io& io, Event& event) {
    require(io, "id");
    io.number("id", event.id, 0, kMaxUnsigned32 - 1);
    io.number("time", event.time, 0, kMaxSeconds);
    io.text("text", event.text, 323);
}

template <typename Io>
void describe(Io& io, Controller& controller) {
    io.version("biosVersion", controller.bios);
    io.version("firmwareVersion", controller.firmware);
    io.version("driverVersion", controller.driver);
    io.flag("eccMemory", controller.ecc);
    io.number("memoryMb", controller.memoryMb, 0, kMaxSigned32);
    io.number("maxExtentsPerDisk", controller.maxExtentsPerDisk, 1, kMaxExtents);
    io.number("maxPorts", controller.maxPorts, 0, 255);
    io.object("busPlace", controller.busLocation);
    io.object("rates", controller.rates);
    io.flag("autoRebuild", controller.autoRebuild);
    io.word("rebuildOnError", controller.rebuildOnError, std::span(kOnErrorWords));
    io.flag("rebuildPolicy", controller.rebuildPolicy);
    io.flag("smartCheck", controller.smartCheck);
    io.number("smartPollMinutes", controller.smartPoll, 1, 255);
    io.number("enclosurePollMinutes", controller.encPoll, 1, 255);
    io.flag("buzzer", controller.buzzer);
    io.flag("writeThroughForced", controller.writeThroughForced);
    io.optional("battery", controller.hasBattery, controller.battery);
    io.list("enclosures", controller.enclosures, kMaxEnclosures);
    io.list("drives", controller.drives, kMaxDriveId + 1);
    io.list("pulledDrives", controller.pulledDrives, kMaxDriveId + 1);
    io.list("pulledEnclosures", controller.pulledEnclosures, kMaxEnclosures);
    io.numbers("knownDrives", controller.knownDrives, kMaxDriveId, kMaxDriveId + 1);
    io.list("logicalDrives", controller.logicalDrives, kMaxLogDrvs);
    io.list("speedOptions", controller.speedOptions, kMaxSpeedOptions);
    io.list("events", controller.events, 4 * kMaxEventsKept);
}

template <typename Io>
void describe(Io& io, Rule& rule) {
    io.word("kind", rule.kind, std::span(kRuleWords));
    require(io, "operation");
    io.text("operation", rule.operation, 63);
    io.number("times", rule.times, 0, kMaxUnsigned32);
    io.number("after", rule.after, 0, kMaxUnsigned32);
    io.number("result", rule.result, -kMaxSigned32, kMaxSigned32);
    io.number("seconds", rule.seconds, 0, 86400);
    io.number("calls", rule.calls, 0, kMaxUnsigned32);
    io.number("hits", rule.hits, 0, kMaxUnsigned32);
}

template <typename Io>
void describe(Io& io, Refusal& refusal) {
    io.number("time", refusal.time, 0, kMaxSeconds);
    io.text("operation", refusal.operation, 63);
    io.text("reason", refusal.reason, 255);
}

template <typename Io>
void describe(Io& io, World& world) {
    io.number("clockOffset", world.clockOffset, 0, kMaxOffset);
    io.number("speed", world.speed, 1, kMaxSpeed);
    io.number("speedSince", world.speedSince, 0, kMaxSeconds);
    io.list("rules", world.rules, kMaxRules);
    io.list("refusals", world.refusals, kMaxRefusals);
    io.count("olderRefusals", world.olderRefusals, kMaxUnsigned32);
    io.notes("assumed", world.assumed, kMaxAssumed, kMaxAssumedLength);
    require(io, "controllers");
    io.list("controllers", world.controllers, kMaxControllers);
}

} // namespace q5sim
