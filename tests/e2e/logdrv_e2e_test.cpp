// The logdrv command across runs: listing, settings, locating and deletion.
#include "tests/e2e/array_session.h"

using LogDrv = Arrays;

static const std::string kMirrorBlock = "*******************************\n"
                                        "Array ID : 0\n"
                                        "Array name : one\n"
                                        "Array size : 500.00 MB\n"
                                        "Array stripe size in number of blocks : 64\n"
                                        "Array sector size : 512\n"
                                        "Array raid mode : RAID1\n"
                                        "Array write cache mode : Write Through\n"
                                        "Number of disks in array : 2\n"
                                        "Disk members with ID in array : (3,4)\n"
                                        "Array activity status : Synchronizing\n"
                                        "Array synchronization progress : 16 %\n"
                                        "Array functional status : Online\n"
                                        "Driver Cache Mode: Write Thru\n"
                                        "Driver Lookahead threshold: 3\n"
                                        "Driver Consolidation: enabled\n";

// Compatibility: settings are read by the position in the listing, not by the ID.
static const std::string kStripedBlock = "*******************************\n"
                                         "Array ID : 1\n"
                                         "Array name : two words\n"
                                         "Array size : 100.00 MB\n"
                                         "Array stripe size in number of blocks : 32\n"
                                         "Array sector size : 512\n"
                                         "Array raid mode : RAID0\n"
                                         "Array write cache mode : Auto - Write Through\n"
                                         "Number of disks in array : 1\n"
                                         "Disk members with ID in array : (8)\n"
                                         "Array activity status : Idle\n"
                                         "Array functional status : Online\n";

TEST_F(LogDrv, ListsNothingWithoutLogicalDrives) {
    EXPECT_EQ(outcomeOf("logdrv"), "0: No array with ID 0 in controller #0 is existed\n");
    EXPECT_EQ(outcomeOf("logdrv -v -l 3"), "0: No array with ID 3 in controller #0 is existed\n");
    EXPECT_EQ(outcomeOf("logdrv list"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf("logdrv -a nothing"), "9: Invalid command for \"logdrv\"\n");
}

TEST_F(LogDrv, KeepsSettingsBetweenRuns) {
    EXPECT_EQ(add("3 4", "name=first,raid=raid1,capacity=500"), "0: ");
    EXPECT_EQ(add("8", "name=second,raid=raid0,capacity=100,stripe=32"), "0: ");
    EXPECT_EQ(
        outcomeOf("logdrv -a mod -l 0 -s writepolicy=writethru,lookahead=3,consolidation=enable,name=one"),
        "0: ");
    EXPECT_EQ(outcomeOf("logdrv -a mod -i 0 -l 1 -s",
                        "writepolicy=auto,lookahead=8,consolidation=disable,name= two words "),
              "0: ");
    advanceClockTo(10); // 80 of 500 MB
    const std::string autoLines = "Driver Cache Mode: Auto - Write Thru\n"
                                  "Driver Lookahead threshold: 8\n"
                                  "Driver Consolidation: disabled\n";
    EXPECT_EQ(outcomeOf("logdrv -v"), "0: " + kMirrorBlock + kStripedBlock + autoLines);
    EXPECT_EQ(outcomeOf("logdrv -v -c 1"), "0: " + kMirrorBlock);
    EXPECT_EQ(outcomeOf("LOGDRV -A LIST -V -L 0"), "0: " + kMirrorBlock);
    const std::string mirrorsLines = "Driver Cache Mode: Write Thru\n"
                                     "Driver Lookahead threshold: 3\n"
                                     "Driver Consolidation: enabled\n";
    EXPECT_EQ(outcomeOf("logdrv -v -l 1"), "0: " + kStripedBlock + mirrorsLines);

    // Refused settings change nothing.
    EXPECT_EQ(outcomeOf("logdrv -a mod -l 0 -s name=new,lookahead=9"), "1: Invalid parameters defined\n");
    EXPECT_EQ(outcomeOf("logdrv -a mod -l 0 -s name=new,consolidation=on"), "1: Incorrect parameters!\n");
    EXPECT_EQ(outcomeOf("logdrv -v -l 0"), "0: " + kMirrorBlock);
    EXPECT_EQ(outcomeOf("logdrv -a mod -l 7 -s name=x"),
              "5: The logical drive with ID 7 in controller #0 is not existed!\n");
}

TEST_F(LogDrv, ReadsSettingsByListPosition) {
    EXPECT_EQ(add("1", "name=first,raid=raid0,capacity=100"), "0: ");
    EXPECT_EQ(add("2", "name=second,raid=raid0,capacity=100"), "0: ");
    EXPECT_EQ(outcomeOf("logdrv -a mod -l 1 -s writepolicy=auto,lookahead=8,consolidation=enable"), "0: ");
    EXPECT_EQ(outcomeOf("logdrv -a del -l 0"), "0: ");
    EXPECT_TRUE(outcomeOf("logdrv -v")
                    .ends_with("Array functional status : Online\n"
                               "Driver Cache Mode: Write Thru\n"
                               "Driver Lookahead threshold: 0\n"
                               "Driver Consolidation: disabled\n"));
}

TEST_F(LogDrv, BlinksMembersUntilTimeout) {
    EXPECT_EQ(add("3 4", "name=one,raid=raid1,capacity=500"), "0: ");
    const auto blinks = [&](const char* drive) {
        return outcomeOf(std::string("phydrv -v -p ") + drive).find("Current Locate Status : On\n") !=
               std::string::npos;
    };
    EXPECT_EQ(outcomeOf("logdrv -a locate -l 0 -d 30"), "0: ");
    advanceClockTo(29);
    EXPECT_TRUE(blinks("3") && blinks("4"));
    EXPECT_FALSE(blinks("2") || blinks("5"));
    advanceClockTo(30);
    EXPECT_FALSE(blinks("3") || blinks("4"));
    EXPECT_EQ(outcomeOf("logdrv -a locate -l 0 -d 30"), "0: ");
    EXPECT_TRUE(blinks("3") && blinks("4"));
    EXPECT_EQ(outcomeOf("logdrv -a locate -l 0 -i 0 -d 0"), "0: ");
    EXPECT_FALSE(blinks("3") || blinks("4"));
    EXPECT_EQ(outcomeOf("logdrv -a locate -l 7 -d 30"),
              "5: No array with ID 7 in controller #0 is existed\n");
}

TEST_F(LogDrv, DeletesOnce) {
    EXPECT_EQ(add("3 4", "name=one,raid=raid1,capacity=500"), "0: ");
    EXPECT_EQ(outcomeOf("logdrv -a del -l 0 -i 0"), "0: ");
    EXPECT_EQ(outcomeOf("logdrv"), "0: No array with ID 0 in controller #0 is existed\n");
    EXPECT_EQ(outcomeOf("extent -p 3"), "0: DiskID Index AryID Size     StartLBA\n"
                                        "     3     0    -1   500.00     0.00\n"
                                        "     3     1    -1   300.00   500.00\n");
    const std::string before = s.worldWithoutRefusals();
    EXPECT_EQ(outcomeOf("logdrv -a del -l 0"), "8: Failed to delete an array with ID 0 specified\n");
    EXPECT_EQ(outcomeOf("logdrv -a del -l 0 -i 1"), "8: Failed to delete an array with ID 0 specified\n");
    EXPECT_EQ(s.worldWithoutRefusals(), before);
}
