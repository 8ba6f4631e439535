// Enclosures and their sensors.
#include "adapter/enclosure.h"

#include <algorithm>

#include "simulator/operations/operation.h"

using namespace q5sim;

// Drift of a sensor type around its reading: a new value every period seconds, at most amplitude away.
struct SensorDrift {
    std::uint8_t type;
    std::int64_t period;
    std::int64_t amplitude;
};
static constexpr SensorDrift kSensorDrifts[] = {
    {kFanSensor, 10, 40}, {kRail5VSensor, 20, 15}, {kRail12VSensor, 20, 30}, {kTemperatureSensor, 60, 1}};

// A stopped fan does not drift.
static bool isSteady(const Sensor& sensor) {
    return sensor.steady || (sensor.type == kFanSensor && sensor.reading == 0);
}

// The same time gives the same reading; adjacent sensors do not drift in step.
static std::uint32_t readingAt(const Sensor& sensor, std::size_t position, std::int64_t now) {
    std::int64_t reading = sensor.reading;
    for (const SensorDrift& drift : kSensorDrifts) {
        if (drift.type != sensor.type || isSteady(sensor))
            continue;
        const std::int64_t span = 2 * drift.amplitude + 1;
        const std::int64_t phase = (now / drift.period * 7 + static_cast<std::int64_t>(position) * 5) % span;
        reading += (phase + span) % span - drift.amplitude;
    }
    if (sensor.type != kTemperatureSensor)
        reading = std::max<std::int64_t>(reading, 0); // a fan does not turn backward, a rail is positive
    return static_cast<std::uint32_t>(reading);
}

int q5_getEnclosureInfo(HbaAddress address, std::uint32_t reserved, const EnclosureQuery* query, void* reply,
                        std::uint32_t size) {
    const std::size_t needed = sizeof(ReplyHeader) + sizeof(EnclosureEntry);
    return fillReply(address, reserved, reply, size, needed, [&](const Controller& controller, std::int64_t) {
        if (query == nullptr || query->count < 1)
            return refuse("enclosures: the query is invalid");
        RecordList list(reply, size);
        const std::uint32_t end = std::uint32_t{query->enclosureId} + query->count;
        for (std::uint32_t id = query->enclosureId; id < end && id < kMaxEnclosures; id++) {
            const Enclosure* enclosure = findEnclosure(controller, id);
            EnclosureEntry entry = {};
            entry.type = enclosure != nullptr ? enclosure->type : std::uint8_t{kNoEnclosure};
            if (!list.add(entry))
                break;
        }
        return kDone;
    });
}

int q5_getEnclosureStatus(HbaAddress address, std::uint32_t reserved, const EnclosureQuery* query,
                          EnclosureStatus* status, std::uint32_t size) {
    return fillReply(address, reserved, status, size, sizeof *status,
                     [&](const Controller& controller, std::int64_t now) {
                         if (query == nullptr || query->count != 1)
                             return refuse("enclosure status: the query is invalid");
                         const Enclosure* enclosure = findEnclosure(controller, query->enclosureId);
                         if (enclosure == nullptr)
                             return refuse("enclosure status: there is no enclosure %d", query->enclosureId);
                         status->header.bytesUsed = sizeof *status;
                         for (std::size_t i = 0; i < enclosure->sensors.size(); i++) {
                             status->sensor[i].type = enclosure->sensors[i].type;
                             status->sensor[i].reading = readingAt(enclosure->sensors[i], i, now);
                         }
                         return kDone;
                     });
}
