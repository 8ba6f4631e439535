// Which settings of drives count as cleared, and what the comparison with an exported file makes of them.
#include <gtest/gtest.h>

#include "tools/backup/configuration.h"

static PhyDrvSettings settingsOfDrive(std::uint16_t driveId, bool isOn) {
    PhyDrvSettings settings = {};
    settings.pdId = driveId;
    settings.writeCache = isOn ? 1 : 0;
    return settings;
}

// Controller 0 with two drives. The first has settings that are all zero, the second has none.
static Snapshot clearedDrives() {
    Snapshot snapshot;
    snapshot.controllers.resize(1);
    std::vector<Drive>& drives = snapshot.controllers[0].drives;
    for (std::uint16_t id = 0; id < 2; ++id) {
        drives.emplace_back();
        drives[id].number = id + 1u;
        drives[id].info.driveId = id;
    }
    drives[0].settings = settingsOfDrive(0, false);
    return snapshot;
}

static bool isCleared(const std::string& text, Snapshot snapshot) {
    removeClearedSettings(text, &snapshot);
    return !snapshot.controllers[0].drives[0].settings;
}

TEST(ClearedSettings, AreRemoved) {
    EXPECT_TRUE(isCleared("", clearedDrives()));
    EXPECT_TRUE(isCleared("[PhyDrvSetIndex] 0\n<PhyDrvCtrlID> 1\n<PhyDrvID> 1\n", clearedDrives()));
}

// The drive may have everything switched off.
TEST(ClearedSettings, AreKeptIfTheFileHasADriveOfTheController) {
    EXPECT_FALSE(isCleared("[PhyDrvSetIndex] 0\n<PhyDrvCtrlID> 0\n<PhyDrvID> 1\n", clearedDrives()));
}

TEST(ClearedSettings, AreKeptIfAnotherDriveHasSome) {
    for (const bool isOn : {true, false}) {
        Snapshot snapshot = clearedDrives();
        snapshot.controllers[0].drives[1].settings = settingsOfDrive(1, isOn);
        EXPECT_FALSE(isCleared("", snapshot));
    }
}

TEST(ClearedSettings, OthersAreKept) {
    Snapshot snapshot = clearedDrives();
    snapshot.controllers[0].drives[0].settings = settingsOfDrive(0, true);
    EXPECT_FALSE(isCleared("", snapshot));
}
