// The ctrl command on a world with known values, and settings that persist between runs.
#include <gtest/gtest.h>

#include "tests/e2e/harness.h"

static const std::string kHeader =
    "ID      MemType  MemSize Disks Arrays Enclosures     BIOS Ver   Driver Ver\n";
static const std::string kFirstRow =
    " 0          ECC   128 MB    3      1          2      1.2.3.4   9.10.11.12\n";

static const std::string kFirstBlock = "******************************\n"
                                       "Controller ID : 0\n"
                                       "BIOs Version : 1.2.3.4\n"
                                       "Driver Version : 9.10.11.12\n"
                                       "IRQ : 23\n"
                                       "Logical slot number : 3\n"
                                       "Bus master base : 255\n"
                                       "BIOs memory start : -1\n"
                                       "BIOs memory range : 16384\n"
                                       "Base address ATA : 0x10\n"
                                       "Base address XOR : 0xff\n"
                                       "Base address SEQ : 0x1000\n"
                                       "Base address MMIO : 0xffffffff\n"
                                       "Base address SDRAM : 0x0\n"
                                       "Memory type : ECC\n"
                                       "Memory size : 128 MB\n"
                                       "Maximum extents supported in each disk : 15\n"
                                       "Number of disks : 3\n"
                                       "Number of arrays : 1\n"
                                       "Number of enclosure : 2\n"
                                       "Battery installed : Yes\n"
                                       "Rebuild rate : 11\n"
                                       "Synchronization rate : 12\n"
                                       "Migration rate : 15\n"
                                       "Initialization rate : 14\n"
                                       "Media patrol rate : 13\n"
                                       "Smart check polling interval : 20\n"
                                       "Enclosure polling interval : 21\n"
                                       "Smart check : Disable\n"
                                       "Auto rebuild : Enable\n"
                                       "Rebuild policy : Disable\n"
                                       "Max port supported in each controller : 6\n"
                                       "Firmware version : 5.6.7.8\n";

struct Ctrl : testing::Test {
    Session s;
    Ctrl() { s.useWorld(fixtureWorld("two_controllers")); }

    // The line of the first controller's verbose listing that starts with this name.
    std::string line(const std::string& name) {
        const std::string listing = s.run({"ctrl", "-v", "-c", "1"}).out;
        const std::size_t start = listing.find("\n" + name + " : ");
        return start == std::string::npos
                   ? ""
                   : listing.substr(start + 1, listing.find('\n', start + 1) - start - 1);
    }
    ProcessOutcome mod(const std::string& settings) { return s.run({"ctrl", "-a", "mod", "-s", settings}); }
};

TEST_F(Ctrl, ListsEveryControllerWithDriverOfFirst) {
    const std::string both =
        kHeader + kFirstRow + " 1      Non-ECC    64 MB    1      0          0     40.0.0.1   9.10.11.12\n";
    EXPECT_EQ(s.run({"ctrl"}), (ProcessOutcome{0, both, ""}));
    EXPECT_EQ(s.run({"CTRL", "-A", "LIST"}), (ProcessOutcome{0, both, ""}));
    EXPECT_EQ(s.run({"ctrl", "-c", "0"}), (ProcessOutcome{0, both, ""}));
    EXPECT_EQ(s.run({"ctrl", "-c", "99"}), (ProcessOutcome{0, both, ""}));
    EXPECT_EQ(s.prompt("ctrl\nexit\n"), (ProcessOutcome{0, "cli>" + both + "cli>", ""}));
}

TEST_F(Ctrl, ListsRequestedCount) {
    EXPECT_EQ(s.run({"ctrl", "-c", "1"}), (ProcessOutcome{0, kHeader + kFirstRow, ""}));
    EXPECT_EQ(s.run({"ctrl", "-a", "list", "-c", "1"}), (ProcessOutcome{0, kHeader + kFirstRow, ""}));
}

// Starting at ID 1, two controllers are listed although only one exists: the second row is zeroes.
TEST_F(Ctrl, ListsZeroesBeyondTheLastController) {
    EXPECT_EQ(s.run({"ctrl", "-i", "1"}),
              (ProcessOutcome{
                  0,
                  kHeader + " 1      Non-ECC    64 MB    1      0          0     40.0.0.1     99.0.0.1\n"
                            " 2      Non-ECC     0 MB    0      0          0      0.0.0.0     99.0.0.1\n",
                  ""}));
}

TEST_F(Ctrl, ListsControllerVerbosely) {
    EXPECT_EQ(s.run({"ctrl", "-v", "-c", "1"}), (ProcessOutcome{0, kFirstBlock, ""}));
    EXPECT_EQ(s.prompt("ctrl -c 1 -v\nexit\n"), (ProcessOutcome{0, "cli>" + kFirstBlock + "cli>", ""}));
}

TEST_F(Ctrl, RejectsBadOptions) {
    EXPECT_EQ(s.run({"ctrl", "-i", "2"}), (ProcessOutcome{5, "No controller with ID #2 is existed!\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-i", "1", "-c", "1"}),
              (ProcessOutcome{5, "No controller with ID #1 is existed!\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-i", "4294967295"}),
              (ProcessOutcome{5, "No controller with ID #-1 is existed!\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-i", "x"}), (ProcessOutcome{6, "Invalid controller ID 'x' specified\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-c", "1.5"}),
              (ProcessOutcome{1, "Invalid controller count '1.5' specified\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-v", "-z"}), (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-z"}), (ProcessOutcome{9, "Invalid command for \"ctrl\"\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-a", "-a"}), (ProcessOutcome{9, "Invalid command for \"ctrl\"\n", ""}));
}

TEST_F(Ctrl, KeepsSettingsBetweenRuns) {
    EXPECT_EQ(mod("rebuildrate=255,SyncRate=1,initrate=77x,migraterate=66,mprate=55"), kSilentSuccess);
    EXPECT_EQ(mod("smartpoll=44,encpoll=33,smart=Enable,autorebuild=disable,rebuildpolicy=ENABLE"),
              kSilentSuccess);
    EXPECT_EQ(line("Rebuild rate"), "Rebuild rate : 255");
    EXPECT_EQ(line("Synchronization rate"), "Synchronization rate : 1");
    EXPECT_EQ(line("Initialization rate"), "Initialization rate : 77");
    EXPECT_EQ(line("Migration rate"), "Migration rate : 66");
    EXPECT_EQ(line("Media patrol rate"), "Media patrol rate : 55");
    EXPECT_EQ(line("Smart check polling interval"), "Smart check polling interval : 44");
    EXPECT_EQ(line("Enclosure polling interval"), "Enclosure polling interval : 33");
    EXPECT_EQ(line("Smart check"), "Smart check : Enable");
    EXPECT_EQ(line("Auto rebuild"), "Auto rebuild : Disable");
    EXPECT_EQ(line("Rebuild policy"), "Rebuild policy : Enable");
}

TEST_F(Ctrl, ChangesNamedController) {
    EXPECT_EQ(s.run({"ctrl", "-a", "mod", "-i", "1", "-s", "rebuildrate=200"}), kSilentSuccess);
    EXPECT_EQ(line("Rebuild rate"), "Rebuild rate : 11");
    EXPECT_NE(s.run({"ctrl", "-v", "-i", "1"}).out.find("\nRebuild rate : 200\n"), std::string::npos);
}

TEST_F(Ctrl, ChangesNothingWhenOneItemIsInvalid) {
    const std::string before = s.worldText();
    EXPECT_EQ(mod("rebuildrate=5,mprate=0,initrate=256,smart=on"),
              (ProcessOutcome{1,
                              "mprate is out of range!\n"
                              "initrate is out of range!\n"
                              "Incorrect parameters!\n",
                              ""}));
    EXPECT_EQ(mod("rebuildrate=0"),
              (ProcessOutcome{1, "rebuild rate is out of range!\nIncorrect parameters!\n", ""}));
    EXPECT_EQ(mod("rebuildrate=5,color=red"), (ProcessOutcome{1, "Invalid parameters for \"ctrl\"!\n", ""}));
    EXPECT_EQ(mod("rebuildrate=5,"), (ProcessOutcome{1, "Invalid parameters for \"ctrl\"!\n", ""}));
    EXPECT_EQ(mod("rebuildrate"), (ProcessOutcome{1, "Incorrect parameters!\n", ""}));
    EXPECT_EQ(s.worldText(), before);
}

TEST_F(Ctrl, ChecksWordCountOfChange) {
    EXPECT_EQ(s.run({"ctrl", "-a", "mod", "-s"}),
              (ProcessOutcome{2, "Invalid numbers of parameter in command \"ctrl -a mod\" \n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-a", "mod", "-i", "0", "-s"}),
              (ProcessOutcome{2, "Invalid numbers of parameter in command \"ctrl -a mod\"\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-a", "mod", "-i", "zero", "-x", "mprate=3"}),
              (ProcessOutcome{6, "Invalid controller ID 'zero' specified\n", ""}));
    EXPECT_EQ(s.run({"ctrl", "-a", "mod", "-x", "mprate=3"}),
              (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
}

TEST_F(Ctrl, AcceptsQuotedSettingsAtPromptAndIgnoresTheRest) {
    EXPECT_EQ(s.prompt("ctrl -a mod -s \"mprate = 9, smart=enable\" and more\nexit\n"),
              (ProcessOutcome{0, "cli>cli>", ""}));
    EXPECT_EQ(line("Media patrol rate"), "Media patrol rate : 9");
    EXPECT_EQ(line("Smart check"), "Smart check : Enable");
}

// Without -a the action word reaches the listing, which reads it as an option.
TEST_F(Ctrl, RejectsActionWordWithoutOption) {
    EXPECT_EQ(s.run({"ctrl", "list"}), (ProcessOutcome{1, "Invalid parameters defined\n", ""}));
}
