// Records and operations of enclosures and their sensors. All operations return 0 on success; the
// argument called reserved is always 0.
#pragma once

#include "adapter/common.h"

struct EnclosureQuery {
    std::uint16_t enclosureId; // first one requested
    std::uint16_t count;       // always 1
};
ASSERT_SIZE(EnclosureQuery, 4);

// One enclosure of a list reply.
struct EnclosureEntry {
    std::uint8_t reserved0[14];
    std::uint8_t type; // EnclosureType; 0: no enclosure with this ID
    std::uint8_t reserved15;
};
ASSERT_SIZE(EnclosureEntry, 16);
ASSERT_OFFSET(EnclosureEntry, type, 14);

enum EnclosureType : std::uint8_t {
    kNoEnclosure = 0,
    kTraybox400 = 1,
    kTraybox100 = 2,
    kOemA = 3,
    kOemB = 4,
    kOemC = 5,
    kTraybox400R = 6,
};

inline constexpr int kMaxEnclosures = 16; // of one controller, IDs 0..15

struct EnclosureSensor {
    std::uint8_t type; // EnclosureSensorType; any other value: no sensor
    std::uint8_t reserved1[3];
    std::uint32_t reading; // fan speed and degrees Celsius signed, millivolts unsigned
};
ASSERT_SIZE(EnclosureSensor, 8);
ASSERT_OFFSET(EnclosureSensor, reading, 4);

enum EnclosureSensorType : std::uint8_t {
    kFanSensor = 1,
    kRail5VSensor = 3,
    kRail12VSensor = 4,
    kTemperatureSensor = 5,
};

struct EnclosureStatus {
    ReplyHeader header;
    std::uint8_t reserved64[4];
    EnclosureSensor sensor[6];
};
ASSERT_SIZE(EnclosureStatus, 116);
ASSERT_OFFSET(EnclosureStatus, sensor, 68);

extern "C" {
// reply: a Reply of EnclosureEntry records.
int q5_getEnclosureInfo(HbaAddress address, std::uint32_t reserved, const EnclosureQuery* query, void* reply,
                        std::uint32_t size);
int q5_getEnclosureStatus(HbaAddress address, std::uint32_t reserved, const EnclosureQuery* query,
                          EnclosureStatus* status, std::uint32_t size);
}
