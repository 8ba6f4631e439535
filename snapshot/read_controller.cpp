// Reading one controller: its own records, battery, buzzer and enclosures.
#include "snapshot/read.h"

static std::optional<DriverInfo> readDriver(const Reading& reading) {
    Guarded<DriverInfo> reply;
    const bool done = readRecord<q5_getDriverInfo>(reading.faults, &reply, [&](DriverInfo* info) {
        return callReadOnly<q5_getDriverInfo>(reading.address, 0u, info);
    });
    return done ? std::optional(reply.record) : std::nullopt;
}

static std::optional<DiscoverPathInfo> readPlace(const Reading& reading) {
    Guarded<DiscoverPathInfo> reply;
    const bool done = readRecord<q5_getDiscoverPath>(reading.faults, &reply, [&](DiscoverPathInfo* info) {
        return callReadOnly<q5_getDiscoverPath>(reading.address, info,
                                                static_cast<std::uint32_t>(sizeof *info));
    });
    return done ? std::optional(reply.record) : std::nullopt;
}

// A failure means that the state is unknown, which is not a fault.
static std::optional<std::uint8_t> readBuzzer(const Reading& reading) {
    Faults unknown;
    Guarded<std::uint8_t> reply;
    const bool done = readRecord<q5_getBuzzerStatus>(&unknown, &reply, [&](std::uint8_t* state) {
        return callReadOnly<q5_getBuzzerStatus>(reading.address, 0u, state, 1u);
    });
    if (!reply.isIntact())
        addFault<q5_getBuzzerStatus>(reading.faults, FaultKind::overrun, 1);
    return done ? std::optional(reply.record) : std::nullopt;
}

void readEnclosures(Controller* controller) {
    const HbaAddress address = hbaAddress(controller->id);
    for (std::uint16_t id = 0; id < kMaxEnclosures; ++id) {
        const EnclosureQuery query = {id, 1};
        const auto entry =
            readOne<q5_getEnclosureInfo, EnclosureEntry>({address, &controller->faults}, query);
        if (!entry || entry->type == kNoEnclosure)
            continue;
        Enclosure enclosure;
        enclosure.id = id;
        enclosure.entry = *entry;
        enclosure.status =
            readReply<q5_getEnclosureStatus, EnclosureStatus>({address, &enclosure.faults}, query);
        controller->enclosures.push_back(std::move(enclosure));
    }
}

Controller readController(std::uint32_t id) {
    Controller controller;
    controller.id = id;
    const Reading reading = {hbaAddress(id), &controller.faults};
    const ControllerQuery general = {id, 1, kGeneralInfo, {}};
    const ControllerQuery version = {id, 1, kVersionInfo, {}};
    controller.info = readReply<q5_getControllerInfo, ControllerInfo>(reading, general);
    controller.version = readReply<q5_getControllerInfo, ControllerVersionInfo>(reading, version);
    controller.settings = readReply<q5_getControllerSettings, ControllerSettings>(reading, general);
    controller.driver = readDriver(reading);
    controller.place = readPlace(reading);
    controller.battery = readReply<q5_getBatteryInfo, BatteryInfo>(reading, BatteryQuery{});
    controller.buzzer = readBuzzer(reading);
    readEnclosures(&controller);
    readDrives(&controller);
    readLogicalDrives(&controller);
    return controller;
}
