// The phydrv command on a world with known drives, and changes that persist between runs.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/e2e/harness.h"

struct PhyDrv : testing::Test {
    Session s;
    PhyDrv() { s.useWorld(fixtureWorld("drives_and_boxes")); }

    // The value of a line in the drive's verbose block; empty when there is no such line.
    std::string shown(const std::string& drive, const std::string& name) {
        const std::string block = s.run({"phydrv", "-v", "-p", drive}).out;
        const std::size_t start = block.find("\n" + name) + name.size() + 1;
        return start == name.size() ? "" : block.substr(start, block.find('\n', start) - start);
    }
    ProcessOutcome mod(const std::string& drive, const std::string& settings) {
        return s.run({"phydrv", "-a", "mod", "-p", drive, "-i", "0", "-s", settings});
    }
    ProcessOutcome locate(const std::string& drive, const std::string& seconds) {
        return s.run({"phydrv", "-a", "locate", "-p", drive, "-i", "0", "-d", seconds});
    }
    ProcessOutcome wipe(const std::string& drive) {
        return s.run({"phydrv", "-a", "wipe", "-p", drive, "-i", "0"});
    }
    std::string speed(const std::string& drive, const std::string& controller = "0") {
        return s.run({"phydrv", "-a", "list3G", "-p", drive, "-i", controller}).out;
    }
    // Number of events of the first controller.
    long events() {
        const std::string listing = s.run({"event", "-c", "100"}).out;
        return std::count(listing.begin(), listing.end(), '\n');
    }
};

static const std::string kHeader =
    "ID CH         Size                  Model                Serial        F/W\n";
static const std::string kFirstRow =
    " 1 10    2000.00MB              Alpha 500                A-0000        1.0\n";
static const std::string kSecondRow =
    " 2 11    2000.00MB              Alpha 500                A-0001        1.0\n";
static const std::string kThirdRow =
    " 3 12    2000.00MB               Beta 250                B-0002        2.B\n";
static const std::string kFourthRow =
    " 4 13    2000.00MB              Alpha 500                A-0003        1.0\n";
static const std::string kSixthRow =
    " 6 15       1.00MB  A model of 21 letters A serial of 23 letters.        1.1\n";

TEST_F(PhyDrv, ListsEveryDrive) {
    const ProcessOutcome all = {0, kHeader + kFirstRow + kSecondRow + kThirdRow + kFourthRow + kSixthRow, ""};
    EXPECT_EQ(s.run({"phydrv"}), all);
    EXPECT_EQ(s.run({"PHYDRV", "-A", "LIST", "-C", "0"}), all);
    EXPECT_EQ(s.prompt("phydrv -c 20\nexit\n"), (ProcessOutcome{0, "cli>" + all.out + "cli>", ""}));
    EXPECT_EQ(s.run({"phydrv", "-i", "1"}),
              (ProcessOutcome{
                  0, kHeader + " 1  0    2000.00MB              Alpha 500                C-0000        1.0\n",
                  ""}));
}

TEST_F(PhyDrv, ListsOneDriveOrCountFromIt) {
    EXPECT_EQ(s.run({"phydrv", "-p", "3"}), (ProcessOutcome{0, kHeader + kThirdRow, ""}));
    EXPECT_EQ(s.run({"phydrv", "-c", "4", "-p", "3"}), (ProcessOutcome{0, kHeader + kThirdRow, ""}));
    EXPECT_EQ(s.run({"phydrv", "-p", "3", "-c", "2"}),
              (ProcessOutcome{0, kHeader + kThirdRow + kFourthRow, ""}));
    EXPECT_EQ(s.run({"phydrv", "-p", "4", "-c", "3"}),
              (ProcessOutcome{0, kHeader + kFourthRow + kSixthRow, ""}));
    EXPECT_EQ(s.run({"phydrv", "-a", "list", "-c", "2"}),
              (ProcessOutcome{0, kHeader + kFirstRow + kSecondRow, ""}));
}

TEST_F(PhyDrv, ReportsMissingDrives) {
    EXPECT_EQ(s.run({"phydrv", "-p", "5"}),
              (ProcessOutcome{5, "Disk with ID 4 in controller #0 is not existed\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-p", "0"}),
              (ProcessOutcome{5, "Disk with ID -1 in controller #0 is not existed\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-i", "2"}),
              (ProcessOutcome{5, "Disk with ID 0 in controller #2 is not existed\n", ""}));
    EXPECT_EQ(s.prompt("phydrv -p 40 -v\nexit\n"),
              (ProcessOutcome{5, "cli>Disk with ID 39 in controller #0 is not existed\ncli>", ""}));
}

// The adapters report a geometry of 255 heads and 63 sectors, with 254 cylinders.
TEST_F(PhyDrv, ShowsDriveVerbosely) {
    const std::string first = "****************************\nDisk ID : 1\nChannel# : 10\n"
                              "Disk name : Alpha 500\nFirmware version : 1.0\nDisk size : 2000.00 MB\n"
                              "Number of cylinders : 254\nNumber of heads : 255\nNumber of sectors : 63\n"
                              "DMA mode : 5\nMedia patrol status : idle\nMedia patrol loop count : 0\n"
                              "Media patrol error count : 0\nEnclosure existed : Yes\n"
                              "Enclosure type : Traybox 400\nNumber of extents : 3\n"
                              "Disk write cache mode : enabled\nSmart check : enabled\nNCQ is enabled\n"
                              "TCQ feature is not supported\nCurrent Locate Status : Off\n";
    const std::string sixth = "****************************\nDisk ID : 6\nChannel# : 15\n"
                              "Disk name : A model of 21 letters\nFirmware version : 1.1\n"
                              "Disk size : 1.00 MB\nNumber of cylinders : 0\nNumber of heads : 255\n"
                              "Number of sectors : 63\nDMA mode : 6\nMedia patrol status : aborted\n"
                              "Media patrol loop count : 2\nMedia patrol error count : 7\n"
                              "Enclosure existed : Yes\nEnclosure type : OEM-A\nNumber of extents : 0\n"
                              "Disk write cache mode : disabled\nSmart check : disabled\n"
                              "NCQ feature is not supported\nTCQ feature is not supported\n"
                              "Current Locate Status : Off\n";
    EXPECT_EQ(s.run({"phydrv", "-p", "1", "-v"}), (ProcessOutcome{0, first, ""}));
    EXPECT_EQ(s.prompt("phydrv -v -p 6\nexit\n"), (ProcessOutcome{0, "cli>" + sixth + "cli>", ""}));
    const std::string all = s.run({"phydrv", "-v"}).out;
    EXPECT_EQ(all.find(first), 0u);
    EXPECT_EQ(all.rfind(sixth), all.size() - sixth.size());
    EXPECT_EQ(shown("2", "Enclosure type : "), "Traybox 100");
    EXPECT_EQ(shown("3", "Enclosure existed : "), "No");
    EXPECT_EQ(shown("4", "Enclosure type : "), "Traybox 400R");
}

TEST_F(PhyDrv, KeepsSettingsBetweenRuns) {
    EXPECT_EQ(mod("1", "WriteCache=disable,ncq=Disable"), kSilentSuccess);
    EXPECT_EQ(shown("1", "Disk write cache mode : "), "disabled");
    EXPECT_EQ(shown("1", "NCQ is "), "disabled");
    EXPECT_EQ(shown("2", "Disk write cache mode : "), "enabled");
    EXPECT_EQ(shown("2", "TCQ is "), "disabled");
    EXPECT_EQ(
        s.prompt(
            "phydrv -a mod -p 2 -i 0 -s \"tcq = enable\"\nphydrv -a mod -p 1 -i 0 -s ncq=enable\nexit\n"),
        (ProcessOutcome{0, "cli>cli>cli>", ""}));
    EXPECT_EQ(shown("2", "TCQ is "), "enabled");
    EXPECT_EQ(shown("1", "NCQ is "), "enabled");
    EXPECT_EQ(shown("1", "Disk write cache mode : "), "disabled");
}

TEST_F(PhyDrv, IgnoresQueuingWithoutSupport) {
    EXPECT_EQ(mod("3", "writecache=disable,ncq=enable"), kSilentSuccess);
    EXPECT_EQ(shown("3", "NCQ feature"), " is not supported");
    EXPECT_EQ(shown("3", "Disk write cache mode : "), "enabled");
}

TEST_F(PhyDrv, ChangesNothingForInvalidSettings) {
    const ProcessOutcome unknown = {1, "Invalid parameters for \"phydrv\"!\n", ""};
    EXPECT_EQ(mod("1", "writecache=disable,smart=enable"), unknown);
    EXPECT_EQ(mod("1", "writecache=disable,"), unknown);
    EXPECT_EQ(mod("1", "writecache=disable,ncq=off"), (ProcessOutcome{1, "Incorrect parameters!\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-a", "mod", "-s", "writecache=disable", "-p", "1", "-i", "0"}), unknown);
    EXPECT_EQ(s.run({"phydrv", "-a", "mod", "-p", "1", "-s", "writecache=disable"}),
              (ProcessOutcome{2, "Invalid number of parameters for \"phydrv -a mod\" defined\n", ""}));
    EXPECT_EQ(shown("1", "Disk write cache mode : "), "enabled");
}

TEST_F(PhyDrv, BlinksUntilTimeout) {
    EXPECT_EQ(locate("1", "30"), kSilentSuccess);
    EXPECT_EQ(shown("1", "Current Locate Status : "), "On");
    EXPECT_EQ(shown("2", "Current Locate Status : "), "Off");
    s.setClock(kSessionStart + 29);
    EXPECT_EQ(shown("1", "Current Locate Status : "), "On");
    s.setClock(kSessionStart + 31);
    EXPECT_EQ(shown("1", "Current Locate Status : "), "Off");
}

TEST_F(PhyDrv, StopsBlinkingOnRequest) {
    EXPECT_EQ(locate("2", "4000000000"), kSilentSuccess);
    EXPECT_EQ(shown("2", "Current Locate Status : "), "On");
    EXPECT_EQ(locate("2", "0"), kSilentSuccess);
    EXPECT_EQ(shown("2", "Current Locate Status : "), "Off");
    EXPECT_EQ(locate("5", "30"), kSilentSuccess); // no such drive; not checked
}

TEST_F(PhyDrv, WipesUnusedDrivesOnly) {
    EXPECT_EQ(
        wipe("1"),
        (ProcessOutcome{8, "Failed to wipe the reserved sector of disk with ID 0 in controller #0!\n", ""}));
    EXPECT_EQ(
        wipe("5"),
        (ProcessOutcome{8, "Failed to wipe the reserved sector of disk with ID 4 in controller #0!\n", ""}));
    EXPECT_EQ(wipe("4"), kSilentSuccess);
    const std::string extents = s.run({"extent", "-v", "-p", "4"}).out;
    EXPECT_EQ(extents.find("spare"), std::string::npos) << extents;
    EXPECT_NE(extents.find("Assignment status : free\n"), std::string::npos) << extents;
    EXPECT_EQ(s.run({"extent", "-v", "-p", "1"}).out.find("array ID : 0\n") == std::string::npos, false);
}

TEST_F(PhyDrv, KeepsTransferOptionPerModel) {
    EXPECT_EQ(s.run({"phydrv", "-a", "list3G", "-p", "1", "-i", "0"}),
              (ProcessOutcome{0, "3G option in control 0 disk 0 Alpha 500 is off.\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-a", "set3G", "-p", "1", "-i", "0", "-e", "1"}), kSilentSuccess);
    EXPECT_EQ(speed("1"), "3G option in control 0 disk 0 Alpha 500 is on.\n");
    EXPECT_EQ(speed("4"), "3G option in control 0 disk 3 Alpha 500 is on.\n");
    EXPECT_EQ(speed("3"), "3G option in control 0 disk 2 Beta 250 is off.\n");
    EXPECT_EQ(speed("1", "1"), "3G option in control 1 disk 0 Alpha 500 is off.\n");
    EXPECT_EQ(s.run({"PHYDRV", "-a", "SET3g", "-e", "0", "-p", "2", "-i", "0"}), kSilentSuccess);
    EXPECT_EQ(speed("1"), "3G option in control 0 disk 0 Alpha 500 is off.\n");
}

TEST_F(PhyDrv, ReportsMissingDrivesForTransferOption) {
    const ProcessOutcome missing = {8, "Disk 4 is not existed!\n", ""};
    EXPECT_EQ(s.run({"phydrv", "-a", "list3G", "-p", "5", "-i", "0"}), missing);
    EXPECT_EQ(s.run({"phydrv", "-a", "set3G", "-p", "5", "-i", "0", "-e", "1"}), missing);
    EXPECT_EQ(s.run({"phydrv", "-a", "list3G", "-p", "1", "-i", "9"}),
              (ProcessOutcome{8, "Disk 0 is not existed!\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-a", "set3G", "-m", "Alpha 500", "-f", "1.0"}),
              (ProcessOutcome{1, "Invalid subcommand for \"phydrv -a set3G\" defined\n", ""}));
}

TEST_F(PhyDrv, LogsEachChange) {
    const long before = events();
    mod("1", "writecache=disable");
    EXPECT_EQ(events(), before + 1);
    locate("1", "30");
    EXPECT_EQ(events(), before + 2);
    locate("1", "0");
    EXPECT_EQ(events(), before + 3);
    wipe("4");
    EXPECT_EQ(events(), before + 4);
    s.run({"phydrv", "-a", "set3G", "-p", "1", "-i", "0", "-e", "1"});
    EXPECT_EQ(events(), before + 5);
    wipe("1");
    EXPECT_EQ(events(), before + 5);
}

TEST_F(PhyDrv, RejectsUnknownWords) {
    EXPECT_EQ(s.run({"phydrv", "-a", "erase"}), (ProcessOutcome{9, "Invalid command for \"phydrv\"\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "list"}), (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-p", "x"}),
              (ProcessOutcome{6, "Invalid physical drive ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"phydrv", "-c", "x"}),
              (ProcessOutcome{1, "Invalid physical drive count 'x' specified\n", ""}));
    EXPECT_EQ(wipe("x"), (ProcessOutcome{6, "Invalid disk ID 'x' specified\n", ""}));
    EXPECT_EQ(locate("1", "x"), (ProcessOutcome{1, "Invalid duration 'x' specified\n", ""}));
}

// Compatibility: a missing value is read from the stale word that the previous line left.
TEST_F(PhyDrv, ReadsStaleWordAtPrompt) {
    EXPECT_EQ(s.prompt("phydrv -p 3\nphydrv -p\nexit\n"),
              (ProcessOutcome{0, "cli>" + kHeader + kThirdRow + "cli>" + kHeader + kThirdRow + "cli>", ""}));
    EXPECT_EQ(s.run({"phydrv", "-p"}), (ProcessOutcome{6, "Invalid physical drive ID '' specified\n", ""}));
}
