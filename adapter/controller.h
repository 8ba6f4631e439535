// Records and operations of controllers: information, settings, driver and bus location. All
// operations return 0 on success; the argument called reserved is always 0.
#pragma once

#include "adapter/common.h"

// The four parts of a version number, printed with dots.
struct VersionNumber {
    std::int32_t major;
    std::int32_t minor;
    std::int32_t third;
    std::int32_t fourth;
};
ASSERT_SIZE(VersionNumber, 16);

// Selects the controller of an information or settings call.
struct ControllerQuery {
    std::uint32_t controllerId; // the same as in the HbaAddress
    std::uint32_t count;        // always 1
    std::uint16_t infoClass;    // ControllerInfoClass; general for the settings operations
    std::uint8_t reserved10[2];
};
ASSERT_SIZE(ControllerQuery, 12);
ASSERT_OFFSET(ControllerQuery, infoClass, 8);

enum ControllerInfoClass : std::uint16_t {
    kGeneralInfo = 0, // returns ControllerInfo
    kVersionInfo = 2, // returns ControllerVersionInfo
};

struct ControllerInfo {
    ReplyHeader header;
    std::uint8_t reserved64[236];
    VersionNumber biosVersion;
    std::uint8_t rebuildRate; // all rates 1..255, as in ControllerSettings
    std::uint8_t syncRate;
    std::uint8_t mpRate;
    std::uint8_t reserved319;
    std::uint8_t initRate;
    std::uint8_t migrateRate;
    std::uint8_t autoRebuild; // non-zero: enabled
    std::uint8_t reserved323;
    std::uint8_t smartCheck;        // non-zero: enabled; ControllerSettings has this and
    std::uint8_t smartPollInterval; // the next field, in minutes, in reverse order
    std::uint8_t reserved326;
    std::uint8_t encPollInterval; // minutes
    std::uint8_t reserved328;
    std::uint8_t memoryType; // 1: ECC, any other value: non-ECC
    std::uint8_t reserved330[2];
    std::int32_t memorySize; // MB
    std::uint8_t reserved336[2];
    std::uint16_t arrayCount;
    std::uint8_t reserved340[8];
    std::uint16_t diskCount;
    std::uint8_t reserved350[26];
    std::uint16_t maxExtentsPerDisk;
    std::uint8_t maxPorts;
    std::uint8_t reserved379[53];
};
ASSERT_SIZE(ControllerInfo, 432);
ASSERT_OFFSET(ControllerInfo, biosVersion, 300);
ASSERT_OFFSET(ControllerInfo, rebuildRate, 316);
ASSERT_OFFSET(ControllerInfo, syncRate, 317);
ASSERT_OFFSET(ControllerInfo, mpRate, 318);
ASSERT_OFFSET(ControllerInfo, initRate, 320);
ASSERT_OFFSET(ControllerInfo, migrateRate, 321);
ASSERT_OFFSET(ControllerInfo, autoRebuild, 322);
ASSERT_OFFSET(ControllerInfo, smartCheck, 324);
ASSERT_OFFSET(ControllerInfo, smartPollInterval, 325);
ASSERT_OFFSET(ControllerInfo, encPollInterval, 327);
ASSERT_OFFSET(ControllerInfo, memoryType, 329);
ASSERT_OFFSET(ControllerInfo, memorySize, 332);
ASSERT_OFFSET(ControllerInfo, arrayCount, 338);
ASSERT_OFFSET(ControllerInfo, diskCount, 348);
ASSERT_OFFSET(ControllerInfo, maxExtentsPerDisk, 376);
ASSERT_OFFSET(ControllerInfo, maxPorts, 378);

struct ControllerVersionInfo {
    ReplyHeader header;
    std::uint8_t reserved64[8];
    VersionNumber firmwareVersion;
};
ASSERT_SIZE(ControllerVersionInfo, 88);
ASSERT_OFFSET(ControllerVersionInfo, firmwareVersion, 72);

// Changed by read, modify, write: reserved fields are written back unchanged.
struct ControllerSettings {
    ReplyHeader header;
    std::uint8_t reserved64[6];
    std::uint8_t rebuildRate; // all rates 1..255
    std::uint8_t syncRate;
    std::uint8_t mpRate;
    std::uint8_t reserved73;
    std::uint8_t initRate;
    std::uint8_t migrateRate;
    std::uint8_t autoRebuild; // 1: enabled, 0: disabled
    std::uint8_t reserved77;
    std::uint8_t smartPollInterval; // minutes, 1..255
    std::uint8_t smartCheck;        // 1: enabled, 0: disabled
    std::uint8_t encPollInterval;   // minutes, 1..255
    std::uint8_t reserved81;
    std::uint8_t rebuildPolicy; // 1: enabled, 0: disabled
    std::uint8_t reserved83[5];
};
ASSERT_SIZE(ControllerSettings, 88);
ASSERT_OFFSET(ControllerSettings, rebuildRate, 70);
ASSERT_OFFSET(ControllerSettings, syncRate, 71);
ASSERT_OFFSET(ControllerSettings, mpRate, 72);
ASSERT_OFFSET(ControllerSettings, initRate, 74);
ASSERT_OFFSET(ControllerSettings, migrateRate, 75);
ASSERT_OFFSET(ControllerSettings, autoRebuild, 76);
ASSERT_OFFSET(ControllerSettings, smartPollInterval, 78);
ASSERT_OFFSET(ControllerSettings, smartCheck, 79);
ASSERT_OFFSET(ControllerSettings, encPollInterval, 80);
ASSERT_OFFSET(ControllerSettings, rebuildPolicy, 82);

// The controller's location on the host bus.
struct DiscoverPathInfo {
    ReplyHeader header;
    std::uint8_t reserved64[400];
    std::int32_t irq;
    std::int32_t logicalSlot;
    std::uint32_t biosMemoryStart;
    std::int32_t biosMemoryRange;
    std::uint8_t busMasterBase;
    std::uint8_t reserved481[3];
    std::uint32_t baseAddressAta;
    std::uint32_t baseAddressXor;
    std::uint32_t baseAddressSeq;
    std::uint32_t baseAddressMmio;
    std::uint32_t baseAddressSdram;
    std::uint8_t reserved504[152];
};
ASSERT_SIZE(DiscoverPathInfo, 656);
ASSERT_OFFSET(DiscoverPathInfo, irq, 464);
ASSERT_OFFSET(DiscoverPathInfo, logicalSlot, 468);
ASSERT_OFFSET(DiscoverPathInfo, biosMemoryStart, 472);
ASSERT_OFFSET(DiscoverPathInfo, biosMemoryRange, 476);
ASSERT_OFFSET(DiscoverPathInfo, busMasterBase, 480);
ASSERT_OFFSET(DiscoverPathInfo, baseAddressAta, 484);
ASSERT_OFFSET(DiscoverPathInfo, baseAddressXor, 488);
ASSERT_OFFSET(DiscoverPathInfo, baseAddressSeq, 492);
ASSERT_OFFSET(DiscoverPathInfo, baseAddressMmio, 496);
ASSERT_OFFSET(DiscoverPathInfo, baseAddressSdram, 500);

struct DriverInfo {
    VersionNumber driverVersion;
};
ASSERT_SIZE(DriverInfo, 16);

extern "C" {
// reply: ControllerInfo or ControllerVersionInfo, depending on query->infoClass; size is its size.
int q5_getControllerInfo(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                         void* reply, std::uint32_t size);
int q5_getControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             ControllerSettings* settings, std::uint32_t size);
int q5_setControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             const ControllerSettings* settings, std::uint32_t size);
int q5_getDriverInfo(HbaAddress address, std::uint32_t reserved, DriverInfo* info);
int q5_getDiscoverPath(HbaAddress address, DiscoverPathInfo* info, std::uint32_t size);
}
