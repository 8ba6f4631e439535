// The drive maps of --drives.
#include <gtest/gtest.h>

#include "tools/restore/drive_map.h"

TEST(DriveMap, ReadsPairs) {
    DriveMap drives;
    EXPECT_EQ(readDriveMap("2=5,3=3,16=-", &drives), "");
    EXPECT_EQ(drives, (DriveMap{{2, 5}, {3, 3}, {16, std::nullopt}}));
    EXPECT_EQ(driveMapText(drives), "2=5,3=3,16=-");
}

TEST(DriveMap, RefusesOtherTexts) {
    for (const char* text :
         {"", "2", "2=", "=2", "2=0", "0=2", "2=x", "-=2", "2=3,", ",2=3", "257=1", "2=3=4"}) {
        DriveMap drives;
        EXPECT_NE(readDriveMap(text, &drives), "") << text;
    }
    DriveMap twice, both;
    EXPECT_EQ(readDriveMap("2=3,2=4", &twice), "drive 2 is mapped twice");
    EXPECT_EQ(readDriveMap("2=3,4=3", &both), "drive 3 would take the place of two drives");
}
