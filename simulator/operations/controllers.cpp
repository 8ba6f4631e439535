// Controllers: information, settings, driver and location on the bus.
#include "adapter/controller.h"

#include "simulator/engine/progress.h"
#include "simulator/operations/operation.h"

using namespace q5sim;

static VersionNumber versionNumber(const Version& version) {
    return {version.part[0], version.part[1], version.part[2], version.part[3]};
}

static ControllerInfo generalInfo(const Controller& controller) {
    ControllerInfo info = {};
    info.header.bytesUsed = sizeof info;
    info.biosVersion = versionNumber(controller.bios);
    info.rebuildRate = controller.rates.rebuild;
    info.syncRate = controller.rates.sync;
    info.mpRate = controller.rates.patrol;
    info.initRate = controller.rates.init;
    info.migrateRate = controller.rates.migrate;
    info.autoRebuild = controller.autoRebuild;
    info.smartCheck = controller.smartCheck;
    info.smartPollInterval = controller.smartPoll;
    info.encPollInterval = controller.encPoll;
    info.memoryType = controller.ecc ? 1 : 0;
    info.memorySize = controller.memoryMb;
    info.arrayCount = static_cast<std::uint16_t>(controller.logicalDrives.size());
    info.diskCount = static_cast<std::uint16_t>(controller.drives.size());
    info.maxExtentsPerDisk = controller.maxExtentsPerDisk;
    info.maxPorts = controller.maxPorts;
    return info;
}

static ControllerVersionInfo versionInfo(const Controller& controller) {
    ControllerVersionInfo info = {};
    info.header.bytesUsed = sizeof info;
    info.firmwareVersion = versionNumber(controller.firmware);
    return info;
}

// Whether the query names the controller of the address.
static bool matchesAddress(const ControllerQuery* query, HbaAddress address) {
    return query != nullptr && query->controllerId == address.controllerId && query->count == 1;
}

int q5_getControllerInfo(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                         void* reply, std::uint32_t size) {
    const bool version = query != nullptr && query->infoClass == kVersionInfo;
    const std::size_t needed = version ? sizeof(ControllerVersionInfo) : sizeof(ControllerInfo);
    return fillReply(address, reserved, reply, size, needed, [&](const Controller& controller, std::int64_t) {
        if (!matchesAddress(query, address) || (!version && query->infoClass != kGeneralInfo))
            return refuse("controller information: the query is invalid");
        const ControllerInfo general = generalInfo(controller);
        const ControllerVersionInfo versions = versionInfo(controller);
        std::memcpy(reply, version ? static_cast<const void*>(&versions) : &general, needed);
        return kDone;
    });
}

int q5_getControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             ControllerSettings* settings, std::uint32_t size) {
    return fillReply(address, reserved, settings, size, sizeof *settings,
                     [&](const Controller& controller, std::int64_t) {
                         if (!matchesAddress(query, address) || query->infoClass != kGeneralInfo)
                             return refuse("controller settings: the query is invalid");
                         settings->header.bytesUsed = sizeof *settings;
                         settings->rebuildRate = controller.rates.rebuild;
                         settings->syncRate = controller.rates.sync;
                         settings->mpRate = controller.rates.patrol;
                         settings->initRate = controller.rates.init;
                         settings->migrateRate = controller.rates.migrate;
                         settings->autoRebuild = controller.autoRebuild;
                         settings->smartPollInterval = controller.smartPoll;
                         settings->smartCheck = controller.smartCheck;
                         settings->encPollInterval = controller.encPoll;
                         settings->rebuildPolicy = controller.rebuildPolicy;
                         return kDone;
                     });
}

static bool areValidSettings(const ControllerSettings& settings) {
    const std::uint8_t numbers[] = {settings.rebuildRate,    settings.syncRate,    settings.mpRate,
                                    settings.initRate,       settings.migrateRate, settings.smartPollInterval,
                                    settings.encPollInterval};
    const std::uint8_t flags[] = {settings.autoRebuild, settings.smartCheck, settings.rebuildPolicy};
    return std::all_of(std::begin(numbers), std::end(numbers), [](std::uint8_t n) { return n >= 1; }) &&
           std::all_of(std::begin(flags), std::end(flags), [](std::uint8_t flag) { return flag <= 1; });
}

static void applySettings(Controller& controller, const ControllerSettings& settings) {
    controller.rates = {settings.rebuildRate, settings.syncRate, settings.mpRate, settings.initRate,
                        settings.migrateRate};
    controller.autoRebuild = settings.autoRebuild != 0;
    controller.smartPoll = settings.smartPollInterval;
    controller.smartCheck = settings.smartCheck != 0;
    controller.encPoll = settings.encPollInterval;
    controller.rebuildPolicy = settings.rebuildPolicy != 0;
}

int q5_setControllerSettings(HbaAddress address, std::uint32_t reserved, const ControllerQuery* query,
                             const ControllerSettings* settings, std::uint32_t size) {
    return updateController(address, reserved, [&](Controller& controller, std::int64_t now) {
        if (!matchesAddress(query, address) || query->infoClass != kGeneralInfo || settings == nullptr ||
            size != sizeof *settings || !areValidSettings(*settings))
            return refuse("controller settings: the request is invalid, or a value is out of range");
        Controller changed = controller;
        applySettings(changed, *settings);
        if (changed == controller)
            return kDone;
        if (changed.rates != controller.rates)
            checkpointAllProgress(controller, now);
        applySettings(controller, *settings);
        addEvent(controller, now, "Controller settings changed");
        return kDone;
    });
}

int q5_getDriverInfo(HbaAddress address, std::uint32_t reserved, DriverInfo* info) {
    if (info == nullptr)
        return kRefused;
    *info = {};
    return withController(address, reserved, [&](const Controller& controller, std::int64_t) {
        info->driverVersion = versionNumber(controller.driver);
        return kDone;
    });
}

int q5_getDiscoverPath(HbaAddress address, DiscoverPathInfo* info, std::uint32_t size) {
    return fillReply(address, 0, info, size, sizeof *info, [&](const Controller& controller, std::int64_t) {
        const BusLocation& location = controller.busLocation;
        info->header.bytesUsed = sizeof *info;
        info->irq = location.irq;
        info->logicalSlot = location.slot;
        info->biosMemoryStart = location.biosMemoryStart;
        info->biosMemoryRange = location.biosMemoryRange;
        info->busMasterBase = location.busMasterBase;
        info->baseAddressAta = location.ata;
        info->baseAddressXor = location.xorEngine;
        info->baseAddressSeq = location.sequencer;
        info->baseAddressMmio = location.mmio;
        info->baseAddressSdram = location.sdram;
        return kDone;
    });
}
