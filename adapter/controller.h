// Records and operations of controllers: information, settings, driver and place on the bus. All
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
RECORD_SIZE(VersionNumber, 16);

// Selects the controller of an information or settings call.
struct ControllerQuery {
    std::uint32_t controllerId; // the same as in the HbaAddress
    std::uint32_t count;        // always 1
    std::uint16_t infoClass;    // ControllerInfoClass; general for the settings operations
    std::uint8_t reserved10[2];
};
RECORD_SIZE(ControllerQuery, 12);
RECORD_AT(ControllerQuery, infoClass, 8);

enum ControllerInfoClass : std::uint16_t {
    kGeneralInfo = 0, // answered by ControllerInfo
    kVersionInfo = 2, // answered by ControllerVersionInfo
};

struct ControllerInfo {
    ReplyHeader header;
    std::uint8_t reserved64[236];
    VersionNumber biosVersion;
    std::uint8_t rebuildRate;
    std::uint8_t syncRate;
    std::uint8_t mpRate;
    std::uint8_t reserved319;
    std::uint8_t initRate;
    std::uint8_t migrateRate;
    std::uint8_t autoRebuild; // non-zero: enabled
    std::uint8_t reserved323;
    std::uint8_t smartCheck;        // non-zero: enabled; ControllerSettings has these two
    std::uint8_t smartPollInterval; // the other way round
    std::uint8_t reserved326;
    std::uint8_t encPollInterval;
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
RECORD_SIZE(ControllerInfo, 432);
RECORD_AT(ControllerInfo, biosVersion, 300);
RECORD_AT(ControllerInfo, rebuildRate, 316);
RECORD_AT(ControllerInfo, syncRate, 317);
RECORD_AT(ControllerInfo, mpRate, 318);
RECORD_AT(ControllerInfo, initRate, 320);
RECORD_AT(ControllerInfo, migrateRate, 321);
RECORD_AT(ControllerInfo, autoRebuild, 322);
RECORD_AT(ControllerInfo, smartCheck, 324);
RECORD_AT(ControllerInfo, smartPollInterval, 325);
RECORD_AT(ControllerInfo, encPollInterval, 327);
RECORD_AT(ControllerInfo, memoryType, 329);
RECORD_AT(ControllerInfo, memorySize, 332);
RECORD_AT(ControllerInfo, arrayCount, 338);
RECORD_AT(ControllerInfo, diskCount, 348);
RECORD_AT(ControllerInfo, maxExtentsPerDisk, 376);
RECORD_AT(ControllerInfo, maxPorts, 378);

struct ControllerVersionInfo {
    ReplyHeader header;
    std::uint8_t reserved64[8];
    VersionNumber firmwareVersion;
};
RECORD_SIZE(ControllerVersionInfo, 88);
RECORD_AT(ControllerVersionInfo, firmwareVersion, 72);

// Changed by read, modify, write: what is not named here goes back as it came.
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
RECORD_SIZE(ControllerSettings, 88);
RECORD_AT(ControllerSettings, rebuildRate, 70);
RECORD_AT(ControllerSettings, syncRate, 71);
RECORD_AT(ControllerSettings, mpRate, 72);
RECORD_AT(ControllerSettings, initRate, 74);
RECORD_AT(ControllerSettings, migrateRate, 75);
RECORD_AT(ControllerSettings, autoRebuild, 76);
RECORD_AT(ControllerSettings, smartPollInterval, 78);
RECORD_AT(ControllerSettings, smartCheck, 79);
RECORD_AT(ControllerSettings, encPollInterval, 80);
RECORD_AT(ControllerSettings, rebuildPolicy, 82);

// Where the controller sits on the host bus.
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
RECORD_SIZE(DiscoverPathInfo, 656);
RECORD_AT(DiscoverPathInfo, irq, 464);
RECORD_AT(DiscoverPathInfo, logicalSlot, 468);
RECORD_AT(DiscoverPathInfo, biosMemoryStart, 472);
RECORD_AT(DiscoverPathInfo, biosMemoryRange, 476);
RECORD_AT(DiscoverPathInfo, busMasterBase, 480);
RECORD_AT(DiscoverPathInfo, baseAddressAta, 484);
RECORD_AT(DiscoverPathInfo, baseAddressXor, 488);
RECORD_AT(DiscoverPathInfo, baseAddressSeq, 492);
RECORD_AT(DiscoverPathInfo, baseAddressMmio, 496);
RECORD_AT(DiscoverPathInfo, baseAddressSdram, 500);

struct DriverInfo {
    VersionNumber driverVersion;
};
RECORD_SIZE(DriverInfo, 16);

extern "C" {
// reply: ControllerInfo or ControllerVersionInfo, as query->infoClass says; size is its size.
int q5_getControllerInfo(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                         void* reply, std::uint32_t size);
int q5_getControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             ControllerSettings* settings, std::uint32_t size);
int q5_setControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             const ControllerSettings* settings, std::uint32_t size);
int q5_getDriverInfo(HbaAddress address, std::uint32_t reserved, DriverInfo* info);
int q5_getDiscoverPath(HbaAddress address, DiscoverPathInfo* info, std::uint32_t size);
}
