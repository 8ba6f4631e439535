// A backup of the healthy world, and cli-restore over that world after changes. The program is
// cli-restore-rehearse, which is cli-restore with the simulated adapters linked in.
#pragma once

#include <nlohmann/json.hpp>

#include "tests/backup/backup_fixture.h"

using Json = nlohmann::ordered_json;

inline Json healthyWorld() {
    return Json::parse(readFile(STATUS_SOURCES "/healthy.world.json"));
}

// As after the replacement of a controller and of all drives: no logical drives, no spares, default settings.
inline void blank(Json* controller) {
    Json& world = *controller;
    world["logicalDrives"] = Json::array();
    for (const char* key : {"rates", "autoRebuild", "rebuildPolicy", "smartCheck", "smartPollMinutes",
                            "enclosurePollMinutes", "buzzer", "speedOptions"})
        world.erase(key);
    for (Json& drive : world.contains("drives") ? world["drives"] : world["logicalDrives"]) {
        std::uint64_t end = 0;
        for (const Json& extent : drive["extents"])
            end = extent["start"].get<std::uint64_t>() + extent["size"].get<std::uint64_t>();
        if (end > 0)
            drive["extents"] = {{{"use", "free"}, {"start", 0}, {"size", end}}};
        for (const char* key : {"writeCache", "tcqEnabled", "ncqEnabled"})
            drive.erase(key);
    }
}

struct Restore : BackupSession {
    Json world = healthyWorld();

    void SetUp() override {
        BackupSession::SetUp();
        session.setClock(0);
        session.useWorld(world.dump());
        ASSERT_LE(backup().status, 1);
    }
    Json& controller() { return world["controllers"][0]; }
    // As after the replacement of the drive.
    void replaceSerial(std::size_t index) {
        controller()["drives"][index]["serial"] = "N" + std::to_string(index);
    }
    void setAutoRebuild(const std::string& mode) {
        ASSERT_EQ(cli({"ctrl", "-a", "mod", "-i", "0", "-s", "autorebuild=" + mode}).status, 0);
    }
    void makeSpare() { ASSERT_EQ(cli({"extent", "-a", "spare", "-p", "3", "-e", "0", "-i", "0"}).status, 0); }
    // On the program with the simulated adapters.
    ProcessOutcome restore(const Words& more, const std::string& controllerId = "0") {
        Words words = {"-i", controllerId, newest() + ".cfg"};
        words.insert(words.end(), more.begin(), more.end());
        return runOther(CLI_RESTORE_REHEARSE, words);
    }
    ProcessOutcome restoreIn(const Json& changed, const Words& more = {}) {
        session.useWorld(changed.dump());
        return restore(more);
    }
    // With this reason; what else it prints is left to the test.
    static void expectPrevented(const ProcessOutcome& outcome, const std::string& reason) {
        EXPECT_EQ(outcome.status, 4) << outcome;
        EXPECT_NE(outcome.out.find("prevented: " + reason), std::string::npos) << outcome;
    }
    std::string status() { return runOther(CLI_STATUS, {"--json"}).out; }
};
