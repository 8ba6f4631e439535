// The adapter calls of an export and their replies.
#pragma once

#include "tests/config/config_blocks.h"

inline void expectSettingsRead(std::uint32_t controller, const ControllerSettings& settings, int result = 0) {
    expectCall("q5_getControllerSettings", queryFor(controller, ControllerQuery{controller, 1, 0, {}}, 88),
               bytesOf(settings), result);
}

inline void expectBuzzerRead(std::uint32_t controller, std::uint8_t state) {
    expectCall("q5_getBuzzerStatus", bytesOf(hbaAddress(controller), std::uint32_t{0}, std::uint32_t{1}),
               bytesOf(state));
}

inline void expectDrivesRead(std::uint32_t controller, const Bytes& reply, int result = 0) {
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{0, 16, 255, {}}, 10688), reply, result);
}

inline void expectDriveSettingsRead(std::uint32_t controller, const Bytes& reply) {
    expectCall("q5_getPhyDrvSettings", queryFor(controller, PhyDrvSelector{0, 16, 1, {}}, 320), reply);
}

inline void expectLogDrvsRead(std::uint32_t controller, const std::vector<LogDrvInfo>& drives) {
    expectCall("q5_getLogDrvInfo", queryFor(controller, LogDrvQuery{0, 128}, 26688), listReply(drives));
}

inline void expectLogDrvSettingsRead(std::uint32_t controller, const std::vector<LogDrvSettings>& settings) {
    expectCall("q5_getLogDrvSettings", queryFor(controller, LogDrvQuery{0, 128}, 14912), listReply(settings));
}

// One member of an array. Its extents belong to these arrays and have the indexes 10, 11, 12 and so on.
inline void expectMemberRead(std::uint32_t controller, std::uint32_t driveId,
                             const std::vector<std::uint16_t>& arrays) {
    PhyDrvInfo drive = {};
    drive.driveId = static_cast<std::uint16_t>(driveId);
    drive.extentCount = static_cast<std::uint8_t>(arrays.size());
    for (std::size_t i = 0; i < arrays.size(); ++i) {
        drive.extent[i].index = static_cast<std::uint16_t>(10 + i);
        drive.extent[i].arrayId = arrays[i];
    }
    expectCall("q5_getPhyDrvInfo", queryFor(controller, PhyDrvQuery{driveId, 1, 255, {}}, 728),
               listReply<PhyDrvInfo>({drive}));
}

// A drive whose extents except the last are global spares.
inline PhyDrvInfo driveWithSpares(std::uint8_t extentCount) {
    PhyDrvInfo drive = {};
    drive.extentCount = extentCount;
    for (int i = 0; i + 1 < extentCount && i < 16; ++i)
        drive.extent[i].assignment = i % 2 == 0 ? 2 : 0xFF;
    if (extentCount > 0 && extentCount <= 16)
        drive.extent[extentCount - 1].assignment = 0xFD;
    return drive;
}

// A controller with controllerSettings(), an enabled buzzer and two spares.
inline void expectCtrlBlockRead(std::uint32_t controller) {
    expectSettingsRead(controller, controllerSettings());
    expectBuzzerRead(controller, 1);
    expectDrivesRead(controller, listReply<PhyDrvInfo>({driveWithSpares(3)}));
}

// A controller with raid5Drive(), whose members have these extents of the array.
inline void expectLogDrvBlockRead(std::uint32_t controller) {
    expectLogDrvsRead(controller, {raid5Drive()});
    expectLogDrvSettingsRead(controller, {raid5Settings()});
    expectMemberRead(controller, 0, {21});
    expectMemberRead(controller, 1, {21, 21});
    expectMemberRead(controller, 2, {4, 21});
}

// The block of that drive.
inline std::string exportedLogDrvBlock(int index, int controller) {
    return with(logDrvBlock(index, controller), "(0,0,1)", "(10,10,11)");
}
