// Listings of replies whose every byte is the same, with byte counts and member counts too large and texts
// without a NUL: each shows as many records as its buffer holds, to the last byte of each field.
#include "tests/malformed/malformed_test.h"

// The whole reply is filled; any result code, since listings ignore it.
static void expectListing(const std::string& line, const Fill& fill, int result, const std::string& output) {
    for (const int adapterResult : kResults) {
        SCOPED_TRACE(line + ", byte " + fill.u8 + ", result " + std::to_string(adapterResult));
        malformedReply.fill = fill.byte;
        malformedReply.result = adapterResult;
        expectOutcome(command(line), result, output);
    }
}

static bool has(const Fill& fill, int bit) {
    return (fill.byte & bit) != 0;
}

static std::string version(const Fill& fill) {
    return fill.i32 + "." + fill.i32 + "." + fill.i32 + "." + fill.i32;
}

TEST_F(Malformed, ControllersAreListed) {
    for (const Fill& fill : fills)
        expectListing("ctrl", fill, 0,
                      "ID      MemType  MemSize Disks Arrays Enclosures     BIOS Ver   Driver Ver\n"
                      " 0      Non-ECC " +
                          right(5, fill.i32) + " MB " + right(4, fill.u16) + " " + right(6, fill.u16) +
                          "         16 " + right(12, version(fill)) + " " + right(12, version(fill)) + "\n");
}

TEST_F(Malformed, ControllersAreShownVerbosely) {
    for (const Fill& f : fills)
        expectListing(
            "ctrl -v", f, 0,
            "******************************\nController ID : 0\nBIOs Version : " + version(f) +
                "\nDriver Version : " + version(f) + "\nIRQ : " + f.i32 + "\nLogical slot number : " + f.i32 +
                "\nBus master base : " + f.u8 + "\nBIOs memory start : " + f.i32 + "\nBIOs memory range : " +
                f.i32 + "\nBase address ATA : 0x" + f.hex + "\nBase address XOR : 0x" + f.hex +
                "\nBase address SEQ : 0x" + f.hex + "\nBase address MMIO : 0x" + f.hex +
                "\nBase address SDRAM : 0x" + f.hex + "\nMemory type : Non-ECC\nMemory size : " + f.i32 +
                " MB\nMaximum extents supported in each disk : " + f.u16 + "\nNumber of disks : " + f.u16 +
                "\nNumber of arrays : " + f.u16 +
                "\nNumber of enclosure : 16\nBattery installed : Yes\nRebuild rate : " + f.u8 +
                "\nSynchronization rate : " + f.u8 + "\nMigration rate : " + f.u8 +
                "\nInitialization rate : " + f.u8 + "\nMedia patrol rate : " + f.u8 +
                "\nSmart check polling interval : " + f.u8 + "\nEnclosure polling interval : " + f.u8 +
                "\nSmart check : Enable\nAuto rebuild : Enable\nRebuild policy : Enable\n"
                "Max port supported in each controller : " +
                f.u8 + "\nFirmware version : " + version(f) + "\n");
}

TEST_F(Malformed, DrivesAreListed) {
    for (const Fill& fill : fills)
        expectListing("phydrv", fill, 0,
                      "ID CH         Size                  Model                Serial        F/W\n" +
                          times(16, fill.next + " " + fill.u16 + " " + right(10, fill.megabytes) + "MB " +
                                        full(fill, 22) + " " + full(fill, 24) + " " + full(fill, 38) + "\n"));
}

TEST_F(Malformed, DrivesAreShownVerbosely) {
    for (const Fill& f : fills)
        expectListing(
            "phydrv -v", f, 0,
            times(16, "****************************\nDisk ID : " + f.next + "\nChannel# : " + f.u16 +
                          "\nDisk name : " + full(f, 22) + "\nFirmware version : " + full(f, 38) +
                          "\nDisk size : " + f.megabytes + " MB\nNumber of cylinders : " + f.i32 +
                          "\nNumber of heads : " + f.u16 + "\nNumber of sectors : " + f.u16 +
                          "\nDMA mode : " + f.u8 +
                          "\nMedia patrol status : idle\nMedia patrol loop count : " + f.u16 +
                          "\nMedia patrol error count : " + f.u16 +
                          "\nEnclosure existed : No\nNumber of extents : " + f.u8 +
                          "\nDisk write cache mode : enabled\nSmart check : enabled\nNCQ is enabled\n"
                          "TCQ is enabled\nCurrent Locate Status : On\n"));
}

// A drive's record holds at most 16 extents, regardless of its count.
TEST_F(Malformed, ExtentsAreListed) {
    for (const Fill& fill : fills)
        expectListing("extent", fill, 0,
                      "DiskID Index AryID Size     StartLBA\n" +
                          times(256, " " + fill.next + " " + fill.u16 + " " + fill.u16 + " " +
                                         fill.megabytes + " " + fill.megabytes + "\n"));
}

TEST_F(Malformed, ExtentsAreShownVerbosely) {
    for (const Fill& f : fills) {
        std::string drive = "*********************************\nDisk ID : " + f.next + "\n";
        for (int position = 0; position < 16; ++position)
            drive += "Extent Index : " + std::to_string(position) + "\nExtent's array ID : " + f.u16 +
                     "\nExtent's start LBA : " + f.megabytes + "\nExtent's size : " + f.megabytes +
                     " MB\nMaintenance status : " +
                     (has(f, 8)   ? "Rebuilding"
                      : has(f, 1) ? "Synchronizing"
                                  : "Idle") +
                     "\nFunctional status : " + (has(f, 1) ? "Online" : "Offline") +
                     "\nAssignment status : " + (has(f, 64) ? "assigned" : "no access") +
                     "\nSmart status : " + (has(f, 2) ? "Failed" : "OK") + "\n";
        expectListing("extent -v", f, 0, times(16, drive));
    }
}

TEST_F(Malformed, LogicalDrivesAreListed) {
    for (const Fill& fill : fills)
        expectListing("logdrv", fill, 0,
                      "ID    RAID Disks Sectors   Size(MB)          DiskID Name\n" +
                          times(128, fill.u16 + " Unknown raid mode " + fill.u16 + " " + fill.u32 + " " +
                                         fill.megabytes + " " + fill.members + " " + full(fill, 88) + "\n"));
}

// The parts of a drive's block that depend on single bits, in the order of the fills.
static const struct {
    const char* writeMode;
    const char* lostMembers;
    const char* activity;
    const char* functional;
    const char* cacheMode;
} arrayTexts[] = {
    {"Auto - Write Back", "15,14,13,12,11,10,9,8,7,6,5,4,3,2,1,0",
     "Array activity status : Rebuilding\nArray initialization progress : 255 %\n", "Critical",
     "Auto - Write Back"},
    {"Write Through", "15,7", "Array activity status : Idle\n", "Offline", "Write Thru"},
    {"Write Back", "14,8,6,0", "Array activity status : Rebuilding\nArray rebuilding progress : 65 %\n",
     "Online", "Write Back"},
};

TEST_F(Malformed, LogicalDrivesAreShownVerbosely) {
    for (std::size_t i = 0; i < std::size(fills); ++i) {
        const Fill& f = fills[i];
        const auto& texts = arrayTexts[i];
        const std::string head =
            "*******************************\nArray ID : " + f.u16 + "\nArray name : " + full(f, 88) +
            "\nArray size : " + f.megabytes + " MB\nArray stripe size in number of blocks : " + f.i32 +
            "\nArray sector size : " + f.i32 +
            "\nArray raid mode : Unknown raid mode\nArray write cache mode : " + texts.writeMode +
            "\nNumber of disks in array : " + f.u16 + "\nDisk members with ID in array : " + f.members +
            "\nSet down disk members with ID in array : ";
        const std::string tail =
            std::string(texts.lostMembers) + "\n" + texts.activity +
            "Array functional status : " + texts.functional + "\nDriver Cache Mode: " + texts.cacheMode +
            "\nDriver Lookahead threshold: " + f.u16 + "\nDriver Consolidation: enabled\n";
        // From the second drive on the list of lost members begins with a comma.
        expectListing("logdrv -v", f, 0, head + tail + times(127, head + "," + tail));
    }
}

TEST_F(Malformed, ActivityOverviewIsShown) {
    for (std::size_t i = 0; i < std::size(fills); ++i)
        expectListing("bga", fills[i], 0, arrayTexts[i].activity);
}

// All five activities run, none is paused, and the percentages are the maximum values of their fields.
TEST_F(Malformed, ActivitiesAreListedWhenAllBitsAreSet) {
    const Fill& f = fills[0];
    const std::string on0 = "% in logical drive with ID 0 on controller #0!\n";
    expectListing("init", f, 0, "Initialization is in progress 255" + on0);
    expectListing("sync -a list", f, 0, "Synchronization is in progress 255" + on0);
    expectListing("rc", f, 0, "Redundancy check is in progress 255" + on0);
    expectListing("rb", f, 0, "Rebuild is in progress 255" + on0);
    expectListing("migrate", f, 0,
                  "Migration is in progress 65535% on logical drive with ID 0 in controller #0!\n");
}

TEST_F(Malformed, ActivitiesAreListedByTheirBitOnly) {
    for (const Fill* f : {&fills[1], &fills[2]}) {
        expectListing("init", *f, 0, "No activity for initialization!\n");
        expectListing("sync -a list", *f, 0, "No activity for synchronization!\n");
        expectListing("rc", *f, 0, "No activity for redundancy check!\n");
        expectListing("migrate", *f, 0, "No activity for migration!\n");
    }
    expectListing("rb", fills[1], 0, "No activity for rebuild!\n");
    expectListing("rb", fills[2], 0,
                  "Rebuild is in progress 65% in logical drive with ID 0 on controller #0!\n");
}

// An enclosure of unknown type exists and shows nothing.
TEST_F(Malformed, UnknownEnclosuresShowNothing) {
    for (const Fill& fill : fills)
        expectListing("enclosure", fill, 0, "");
}

// Byte 1 is a known type and six fans of the same speed; byte 2 another type and no sensor at all.
TEST_F(Malformed, EnclosureSensorsAreAllOfOneKind) {
    const Fill ones = {.byte = 1, .u8 = "1"}, twos = {.byte = 2, .u8 = "2"};
    expectListing("enclosure", ones, 0,
                  "Enclosure type : Traybox 400\nFan speed #1 : 16843009 \n" +
                      times(5, "Fan speed #2 : 16843009 \n"));
    expectListing("enclosure", twos, 0, "Enclosure type : Traybox 100\n");
}

TEST_F(Malformed, BatteryIsShown) {
    const char* const rest[] = {"65.535004 V\n\n", "32.896000 V\n  Battery Status - Charging\n\n",
                                "16.705000 V\n\n"};
    for (std::size_t i = 0; i < std::size(fills); ++i)
        expectListing("battery", fills[i], 0,
                      "Battery Information of controller with ID 0:\n"
                      "  Battery Temperature out of range.\n  Battery Voltage - " +
                          std::string(rest[i]));
}

// The result code matters here: a state that could not be read is unknown.
TEST_F(Malformed, BuzzersAreListed) {
    for (const Fill& fill : fills)
        for (const int result : kResults) {
            malformedReply.fill = fill.byte;
            malformedReply.result = result;
            std::string output = "CtrlId    Status\n";
            for (int id = 0; id < 4; ++id)
                output += right(6, std::to_string(id)) + (result == 0 ? "   enabled\n" : "   Unknown\n");
            expectOutcome(command("buzz"), 0, output);
        }
}

// Drive 0 was requested, another drive was returned.
TEST_F(Malformed, MediaPatrolOfAnotherDriveIsNotShown) {
    for (const Fill& fill : fills)
        expectListing("mp -a list -p 1 -i 0", fill, 5, "Disk with ID 0 in controller #0 is not existed\n");
}

TEST_F(Malformed, MediaPatrolInUnknownStateIsIdle) {
    for (const Fill& fill : fills)
        expectListing("mp -a list -i 0 -p " + fill.next, fill, 0,
                      "Media patrol status : idle\nMedia patrol loop count : " + fill.u16 +
                          "\nMedia patrol error count : " + fill.u16 + "\n");
}

// The texts that identify a drive's model are terminated before they are passed to the adapter.
TEST_F(Malformed, SpeedOptionIsShownAndSet) {
    for (const Fill& fill : fills)
        for (const int result : kResults) {
            malformedReply.fill = fill.byte;
            malformedReply.result = result;
            const std::string shown = "3G option in control 0 disk 0 " + full(fill, 22) + " is on.\n";
            const std::string failed = "3G setting for control 0 disk 0\n";
            expectOutcome(command("phydrv -a list3G -p 1"), result == 0 ? 0 : 8,
                          result == 0 ? shown : "Failed to get the " + failed);
            EXPECT_EQ(malformedReply.model, full(fill, 22));
            EXPECT_EQ(malformedReply.firmware, full(fill, 38));
            expectOutcome(command("phydrv -a set3G -p 1 -e 1"), result == 0 ? 0 : 8,
                          result == 0 ? "" : "Failed to set the " + failed);
            EXPECT_EQ(malformedReply.model, full(fill, 22));
            EXPECT_EQ(malformedReply.firmware, full(fill, 38));
        }
}

// 49 slots are filled in turn; the fourth event read is the slot that is never filled.
TEST_F(Malformed, EventsAreBoundedByBuffer) {
    for (const Fill& fill : fills) {
        std::string plain = "Event_Index  Event_ID\n", verbose;
        for (int i = 0; i < 50; ++i) {
            plain += right(11, std::to_string(i)) + "  0x" + (i == 3 ? "0" : fill.hex) + "\n";
            verbose += i == 3 ? "EventID: 0x0 \nEvent Desciption: \n"
                              : "EventID: 0x" + fill.hex + " \nEvent Desciption: " + full(fill, 324) + "\n";
        }
        malformedReply.fill = fill.byte;
        malformedReply.eventsDelivered = UINT32_MAX;
        g_EventBuffer = {};
        expectOutcome(command("event -c 100"), 0, plain);
        g_EventBuffer = {};
        expectOutcome(command("event -v -c 100"), 0, verbose);
    }
}
