// The serial numbers of drives.
#include "snapshot/serials.h"

#include <gtest/gtest.h>

#include <cstring>

static Drive driveWith(const char* serial) {
    Drive drive;
    std::memset(drive.info.serial, ' ', sizeof drive.info.serial);
    std::memcpy(drive.info.serial, serial, std::strlen(serial));
    return drive;
}

static Controller controllerWith(std::initializer_list<const char*> serials) {
    Controller controller;
    for (const char* serial : serials)
        controller.drives.push_back(driveWith(serial));
    return controller;
}

TEST(Serials, AreWithoutBlanks) {
    EXPECT_EQ(serialOf(driveWith("  S1")), "S1");
    EXPECT_EQ(serialOf(driveWith("")), "");
}

TEST(Serials, IdentifyDrivesWherever) {
    const Controller one = controllerWith({"S1", "S2", "", "S3"});
    EXPECT_EQ(countSharedDrives(one, controllerWith({"S3", "", "S4", "S1"})), 2U);
    EXPECT_EQ(countSharedDrives(one, controllerWith({"S", ""})), 0U);
    EXPECT_EQ(countSharedDrives(controllerWith({}), one), 0U);
}
