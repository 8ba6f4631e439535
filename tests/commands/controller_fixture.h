// Shared by the tests of the ctrl command: expecting the calls of a listing.
#pragma once

#include "adapter/battery.h"
#include "adapter/controller.h"
#include "adapter/enclosure.h"
#include "adapter/session.h"
#include "tests/mock_adapter.h"

// All replies about one controller; zero by default.
struct ControllerReplies {
    DiscoverPathInfo path;
    ControllerInfo info;
    ControllerVersionInfo version;
    ControllerSettings settings;
    BatteryInfo battery;
    std::uint8_t enclosureType[16];
};

inline void expectControllerCount(std::uint32_t count) {
    expectCall("q5_getNumberOfHBA", {}, bytesOf(count));
}

inline void expectDriverInfo(std::uint32_t controller, const VersionNumber& version) {
    expectCall("q5_getDriverInfo", bytesOf(hbaAddress(controller), std::uint32_t{0}), bytesOf(version));
}

// Expects the calls of a listing for one controller, each returning result.
inline void expectController(std::uint32_t controller, const ControllerReplies& replies, int result = 0) {
    const ControllerQuery general = {controller, 1, 0, {}}, version = {controller, 1, 2, {}};
    expectCall("q5_getDiscoverPath", bytesOf(hbaAddress(controller), std::uint32_t{656}),
               bytesOf(replies.path), result);
    expectCall("q5_getControllerInfo", queryFor(controller, general, 432), bytesOf(replies.info), result);
    expectCall("q5_getControllerInfo", queryFor(controller, version, 88), bytesOf(replies.version), result);
    expectCall("q5_getControllerSettings", queryFor(controller, general, 88), bytesOf(replies.settings),
               result);
    expectCall("q5_getBatteryInfo", queryFor(controller, BatteryQuery{0, 0}, 112), bytesOf(replies.battery),
               result);
    for (std::uint16_t id = 0; id < 16; ++id) {
        EnclosureEntry entry = {};
        entry.type = replies.enclosureType[id];
        expectCall("q5_getEnclosureInfo", queryFor(controller, EnclosureQuery{id, 1}, 80),
                   listReply(std::vector<EnclosureEntry>{entry}), result);
    }
}
