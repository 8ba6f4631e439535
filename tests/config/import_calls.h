// The adapter calls with which an import checks and changes an adapter.
#pragma once

#include "adapter/creation.h"
#include "tests/config/config_blocks.h"

// The query for a controller that has this number of drives.
inline void expectDriveCount(std::uint32_t controller, std::uint16_t drives, int result = 0) {
    ControllerInfo info = {};
    info.diskCount = drives;
    info.arrayCount = 77;
    expectCall("q5_getControllerInfo", queryFor(controller, ControllerQuery{controller, 1, 0, {}}, 432),
               bytesOf(info), result);
}

// The checks of a system with this number of controllers, which have 16 drives each.
inline void expectChecks(std::uint32_t controllers) {
    expectAdapters(controllers);
    for (std::uint32_t controller = 0; controller < controllers; ++controller)
        expectDriveCount(controller, 16);
}

// Each of these reads the current settings, filled with a pattern, and writes those of the file.
inline void expectCtrlChange(std::uint32_t controller,
                             const ControllerSettings& wanted = controllerSettings()) {
    ControllerSettings settings;
    std::memset(&settings, 0x5A, sizeof settings);
    const ControllerQuery query = {controller, 1, 0, {}};
    expectCall("q5_getControllerSettings", queryFor(controller, query, 88), bytesOf(settings));
    settings.rebuildRate = wanted.rebuildRate;
    settings.syncRate = wanted.syncRate;
    settings.mpRate = wanted.mpRate;
    settings.initRate = wanted.initRate;
    settings.migrateRate = wanted.migrateRate;
    settings.autoRebuild = wanted.autoRebuild;
    settings.smartPollInterval = wanted.smartPollInterval;
    settings.smartCheck = wanted.smartCheck;
    settings.encPollInterval = wanted.encPollInterval;
    settings.rebuildPolicy = wanted.rebuildPolicy;
    expectCall("q5_setControllerSettings",
               bytesOf(hbaAddress(controller), std::uint32_t{0}, query, settings, std::uint32_t{88}));
}

struct DriveFlags {
    std::uint8_t writeCache, tcq, ncq;
};

inline void expectDriveChange(std::uint32_t controller, std::uint32_t driveId,
                              DriveFlags wanted = {1, 0, 1}) {
    const PhyDrvSelector selector = {driveId, 1, 1, {}};
    PhyDrvSettings settings;
    std::memset(&settings, 0x5A, sizeof settings);
    expectCall("q5_getPhyDrvSettings", queryFor(controller, selector, 80),
               listReply<PhyDrvSettings>({settings}));
    settings.writeCache = wanted.writeCache;
    settings.tcqEnabled = wanted.tcq;
    settings.ncqEnabled = wanted.ncq;
    expectCall("q5_setPhyDrvSettings",
               concat({bytesOf(hbaAddress(controller), std::uint32_t{0}, selector),
                       listReply<PhyDrvSettings>({settings}), bytesOf(std::uint32_t{80})}));
}

struct ExpectedLogDrvSettings {
    std::uint8_t policy = 1;
    std::uint16_t lookahead = 8;
    std::uint8_t consolidation = 1;
    std::string name = "Data 1";
};

inline void expectLogDrvChange(std::uint32_t controller, std::uint32_t logDrvId,
                               const ExpectedLogDrvSettings& wanted = {}) {
    const LogDrvQuery query = {logDrvId, 1};
    LogDrvSettings settings = {};
    settings.cacheFlags = 0xFF;
    expectCall("q5_getLogDrvSettings", queryFor(controller, query, 180),
               listReply<LogDrvSettings>({settings}));
    settings.cacheFlags = static_cast<std::uint8_t>(0xF2 | wanted.policy);
    settings.lookahead = wanted.lookahead;
    settings.consolidation = wanted.consolidation;
    put(settings.name, wanted.name);
    expectCall("q5_setLogDrvSettings",
               concat({bytesOf(hbaAddress(controller), std::uint32_t{0}, query),
                       listReply<LogDrvSettings>({settings}), bytesOf(std::uint32_t{180})}));
}

inline LogDrvInfo listed(std::uint16_t arrayId, std::uint16_t logDrvId) {
    LogDrvInfo drive = {};
    drive.arrayId = arrayId;
    drive.logDrvId = logDrvId;
    return drive;
}

inline void expectLogDrvList(std::uint32_t controller, const std::vector<LogDrvInfo>& drives) {
    expectCall("q5_getLogDrvInfo", queryFor(controller, LogDrvQuery{0, 128}, 26688), listReply(drives));
}

inline void expectDeletion(std::uint32_t controller, std::uint32_t arrayId, int result = 0) {
    expectCall(
        "q5_delDiskArray",
        bytesOf(hbaAddress(controller), std::uint32_t{0}, DeleteArrayRequest{1, arrayId}, std::uint32_t{8}),
        {}, result);
}

// The creation of the drive of kLogDrvLines.
inline CreateArrayRequest creation() {
    CreateArrayRequest request = {};
    request.stripeSize = 64;
    request.constant4 = 1;
    request.capacity = 2000000;
    put(request.name, "Data 1");
    request.raidLevel = 5;
    request.constant91 = 1;
    request.allocation = 3;
    request.memberCount = 3;
    request.parityCount = 2;
    request.subArrayCount = 2;
    request.origin = 1;
    request.sectorSize = 512;
    request.member[1].driveId = 1;
    request.member[2].driveId = 2;
    return request;
}

inline void expectCreation(std::uint32_t controller, const CreateArrayRequest& request, int result = 0) {
    expectCall("q5_addHBAArray", bytesOf(hbaAddress(controller), std::uint32_t{0}, request), {}, result);
}
